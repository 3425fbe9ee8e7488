// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/contract/projectrecord.h"
#include "studio/card.h"

class QFormLayout;
class QLabel;
class QPushButton;
class QScrollArea;

namespace Studio {

class TextLabel;

/// Everything about one project, beside the list. It takes the keyboard so that a long description
/// can be scrolled without a mouse.
class ProjectDetails : public Card
{
    Q_OBJECT

public:
    explicit ProjectDetails(QWidget *parent = nullptr);

    /// Shows a project; null shows what the panel is for.
    /// @param published what the service last said, which may be newer than the record
    void showProject(const QXSC::ProjectRecordPtr &project, bool published);

signals:
    /// The person wants to know whether the project is published now.
    void checkRequested();
    /// The person wants to see what happened in the project.
    void openRequested();

protected:
    void changeEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void build();
    TextLabel *addRow(QFormLayout *form, const QString &caption, const char *name);
    void applyColors();

    QLabel *m_hint;
    QWidget *m_content;
    QScrollArea *m_scroll;
    TextLabel *m_name;
    TextLabel *m_description;
    TextLabel *m_created;
    TextLabel *m_modified;
    TextLabel *m_createdBy;
    TextLabel *m_eventDate;
    TextLabel *m_published;
    QPushButton *m_open;
    QPushButton *m_check;
    QList<QLabel *> m_captions;
};

} // namespace Studio
