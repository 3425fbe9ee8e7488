// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/contract/serviceclient.h"
#include "common/contract/studioservice.h"
#include "studio/page.h"

class QComboBox;
class QLabel;
class QLineEdit;
class QMenu;
class QToolButton;

namespace Zel {
class ListView;
}

namespace ZelWebServiceControls {
class ProjectList;
}

namespace Studio {

class ErrorCenter;
class ProjectDetails;
class Settings;

/// The projects of the account: type, filter line, column switches, the project list, and the
/// details of the project that is chosen.
class ProjectsPage : public Page
{
    Q_OBJECT

public:
    ProjectsPage(QXSC::ServiceClient &client, QXSC::StudioService &service, ErrorCenter &errors,
                 Settings &settings, QWidget *parent = nullptr);

    QString title() const override;
    QString icon() const override;
    void open() override;
    void remember() override;

private:
    void build();
    QWidget *makeHeader();
    QMenu *makeColumnMenu();
    void loadTypes();
    void loadProjects();
    void refresh();
    void switchColumn(const QString &property, bool on);
    void filter(const QString &text);
    void showCount();
    void showProject(const QXSC::ProjectRecordPtr &project);
    void updatePublished();
    void fit();

    QXSC::ServiceClient &m_client;
    QXSC::StudioService &m_service;
    ErrorCenter &m_errors;
    Settings &m_settings;
    QComboBox *m_type;
    QLineEdit *m_filter;
    QToolButton *m_columns;
    ZelWebServiceControls::ProjectList *m_projects;
    Zel::ListView *m_list;
    ProjectDetails *m_details;
    QLabel *m_count;
    bool m_isFitted = false;
};

} // namespace Studio
