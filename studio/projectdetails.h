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

/// Everything about one project, beside the list.
class ProjectDetails : public Card
{
    Q_OBJECT

public:
    explicit ProjectDetails(QWidget *parent = nullptr);

    /// Shows a project; null shows what the panel is for.
    void show(const QXSC::ProjectRecordPtr &project);
    /// Shows the state the service has just told.
    void showPublished(bool published);

signals:
    /// The person wants to know whether the project is published now.
    void checkRequested();

protected:
    void changeEvent(QEvent *event) override;

private:
    void build();
    QLabel *addRow(QFormLayout *form, const QString &caption, const char *name);
    void applyColors();

    QLabel *m_hint;
    QWidget *m_content;
    QScrollArea *m_scroll;
    QLabel *m_name;
    QLabel *m_description;
    QLabel *m_created;
    QLabel *m_modified;
    QLabel *m_createdBy;
    QLabel *m_eventDate;
    QLabel *m_published;
    QPushButton *m_check;
    QList<QLabel *> m_captions;
};

} // namespace Studio
