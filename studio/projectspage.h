// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/contract/serviceclient.h"
#include "common/contract/studioservice.h"
#include "studio/page.h"

#include <QHash>

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QStackedLayout;
class QToolButton;

namespace Zel {
class ListView;
}

namespace ZelWebServiceControls {
class ProjectList;
}

namespace Studio {

class ErrorCenter;
class NewProjectFlow;
class ProjectDetails;
class Settings;

/// The projects of the account: type, filter line, column switches, the project list, and the
/// details of the project that is chosen. New Project puts the making of one in their place.
///
/// Loading fetches first and shows then: when the service fails, everything on screen stays as it
/// was, and what a person had arranged (selection, sorting, filter, widths) outlives a refresh.
class ProjectsPage : public Page
{
    Q_OBJECT

public:
    ProjectsPage(QXSC::ServiceClient &client, QXSC::StudioService &service, ErrorCenter &errors,
                 Settings &settings, QWidget *parent = nullptr);

    QString title() const override;
    QString icon() const override;
    void open() override;
    void leave() override;
    void remember() override;

protected:
    void changeEvent(QEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;

private:
    void build();
    void buildView();
    void makeEmptyState();
    QWidget *makeHeader();
    void makeTools(QWidget *header);
    void makeShortcuts();
    void connectParts();
    void loadTypes();
    void startNewProject();
    void endNewProject();
    void showCreated(const QString &guid, const QString &typeID);
    void loadCreated(const QString &guid, const QString &typeID);
    bool isMakingProject() const;
    void chooseType();
    void showType(const QString &typeID);
    void load(const QString &typeID);
    void refresh();
    void filter(const QString &text);
    void showCount();
    void showSelected();
    void checkPublished();
    void fit();
    void applyColors();

    QXSC::ServiceClient &m_client;
    QXSC::StudioService &m_service;
    ErrorCenter &m_errors;
    Settings &m_settings;
    QStackedLayout *m_stack;
    QWidget *m_view;
    NewProjectFlow *m_flow;
    QToolButton *m_new;
    QPushButton *m_first;
    QComboBox *m_type;
    QLineEdit *m_filter;
    QToolButton *m_columns;
    QToolButton *m_refresh;
    ZelWebServiceControls::ProjectList *m_projects;
    Zel::ListView *m_list;
    ProjectDetails *m_details;
    QLabel *m_count;
    /// The type whose projects are shown.
    QString m_shownType;
    /// Whether what the list shows is what the service has answered.
    bool m_isLoaded = false;
    /// What the service has said since the list was loaded, by guid.
    QHash<QString, bool> m_checked;
    /// The widths Studio gave the columns itself; a person who leaves them has none of their own.
    QList<double> m_fittedWidths;
};

} // namespace Studio
