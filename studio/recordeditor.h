// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/contract/serviceclient.h"
#include "common/contract/studioservice.h"
#include "studio/recordmerge.h"

#include <QStringList>
#include <QTimer>
#include <QWidget>

class QLabel;
class QPushButton;
class QStackedWidget;

namespace ZelWebServiceControls {
class DataRecordManager;
}

namespace Studio {

class ErrorCenter;
class TextLabel;

/// Edits the record of one theme: the form, what has changed in it, Save and Revert.
///
/// What is typed is kept as a draft half a second later, until it is saved or given up. When the
/// record has moved on the server meanwhile, the author chooses field by field. The fields follow
/// the width of the window as soon as that rests.
class RecordEditor : public QWidget
{
    Q_OBJECT

public:
    RecordEditor(QXSC::ServiceClient &client, QXSC::StudioService &service, ErrorCenter &errors,
                 const RecordDrafts &drafts, QWidget *parent);
    ~RecordEditor() override;

    /// Loads the record of a theme in place of the one shown, which is given up. Errors propagate;
    /// then there is nothing that could be saved.
    void load(const QString &themeGuid, const QString &themeName);
    /// Loads the record of a draft's theme and goes on where the draft ends. Returns whether it
    /// did: an author who does not want to decide between the draft and what somebody has saved
    /// since leaves it where it was. Errors propagate.
    bool resume(const RecordDraft &draft);
    /// Shows nothing; a draft stays for the next start.
    void clear();

    QString themeGuid() const { return m_themeGuid; }

    QString themeName() const { return m_themeName; }

    /// Whether there are fields to edit.
    bool hasFields() const;
    bool hasChanges() const;
    /// Stores the changes. Returns whether nothing is left to save; errors propagate.
    bool save();
    /// Lets the author save or give up what was changed. Returns whether nothing is left.
    bool maySetAside();
    void takeFocus();

signals:
    /// What is changed is not what it was, also after saving.
    void changed();

protected:
    void changeEvent(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void build();
    void connectParts();
    void renewForm();
    void fetch(const QString &themeGuid, const QString &themeName);
    void showForm();
    QXSC::DataRecordPtr record() const;
    QList<RecordDraft::Entry> edited();
    bool resolve(const QXSC::DataRecordPtr &newer);
    bool decide(QList<FieldConflict> &conflicts, const QString &explanation,
                const QString &confirm);
    void rebuild();
    void adopt(const QXSC::DataRecordPtr &newer, const QList<FieldConflict> &choices);
    void accepted(qint64 version);
    void askToRevert();
    void revert();
    void store();
    void fieldEdited();
    void showChanges();
    bool keepDraft();
    void dropDraft();
    void fitSize();
    void showStatus(const QString &text, bool isAlarm = false);
    void applyColors();

    QXSC::ServiceClient &m_client;
    QXSC::StudioService &m_service;
    ErrorCenter &m_errors;
    const RecordDrafts &m_drafts;
    std::unique_ptr<DraftFile> m_draft;
    QStackedWidget *m_stack;
    QWidget *m_sheet;
    TextLabel *m_message;
    ZelWebServiceControls::DataRecordManager *m_form = nullptr;
    QLabel *m_status;
    QPushButton *m_revert;
    QPushButton *m_save;
    QString m_themeGuid;
    QString m_themeName;
    /// The entries as they were loaded or saved last.
    QList<RecordDraft::Entry> m_loaded;
    QStringList m_marked;
    /// Whether the form was built to its end.
    bool m_isWhole = false;
    bool m_isAlarm = false;
    QSize m_builtSize;
    QTimer m_marking;
    QTimer m_drafting;
    QTimer m_resting;
};

} // namespace Studio
