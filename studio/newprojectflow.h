// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/contract/serviceclient.h"
#include "common/contract/studioservice.h"

#include <QWidget>

class QLabel;
class QPushButton;
class QStackedWidget;

namespace Studio {

class ErrorCenter;
class ProjectForm;
class RecordDrafts;
class RecordEditor;
class ThemeStep;

/// Making a project in three steps: its theme, the theme's record, then its name and type. A theme
/// without a record has no second step. The record is saved when the step is left.
///
/// Whatever fails, nothing that was entered is lost, and saving again never makes two: one form
/// makes one project, under a guid chosen when it was started.
class NewProjectFlow : public QWidget
{
    Q_OBJECT

public:
    NewProjectFlow(QXSC::ServiceClient &client, QXSC::StudioService &service, ErrorCenter &errors,
                   const RecordDrafts &drafts, QWidget *parent);
    ~NewProjectFlow() override;

    /// Begins anew.
    ///
    /// @param typeID the type that is offered first
    void start(const QString &typeID);
    void takeFocus();
    /// Forgets what belongs to the person who was signed in; a draft stays for them.
    void leave();
    bool holdsChanges() const;
    /// Asks what becomes of what was entered; returns whether it may be given up.
    bool maySetAside();

signals:
    /// The project exists, on the service.
    void created(const QString &guid, const QString &typeID);
    void cancelled();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void build();
    void connectParts();
    void addStep(QWidget *step);
    void renew();
    void load();
    void loadTypes();
    void showStep(int step);
    void showChoice();
    void next();
    void back();
    void openRecord();
    void openForm();
    bool hasRecordStep() const;
    void save();
    void create();
    QXSC::ProjectRecordPtr request(const QXSC::NewProject &project);
    void cancel();
    void applyColors();

    QXSC::ServiceClient &m_client;
    QXSC::StudioService &m_service;
    ErrorCenter &m_errors;
    QLabel *m_step;
    QLabel *m_choice;
    QStackedWidget *m_steps;
    ThemeStep *m_themes = nullptr;
    RecordEditor *m_record;
    ProjectForm *m_form;
    QPushButton *m_cancel;
    QPushButton *m_back;
    QPushButton *m_next;
    QPushButton *m_save;
    QString m_typeID;
    /// Of the project this form makes.
    QString m_guid;
    bool m_isSaving = false;
};

} // namespace Studio
