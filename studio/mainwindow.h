// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/contract/serviceclient.h"
#include "common/contract/studioservice.h"

#include "studio/recorddrafts.h"

#include <QMainWindow>

class QMenu;
class QStackedWidget;

namespace Studio {

class DraftNotice;
class ErrorCenter;
class NavigationRail;
class Page;
class ProjectsPage;
class RecordPage;
class Settings;
class SignInPage;
class StatisticsPage;

/// Studio's window: the sign-in page, then the rail and its pages. Problems appear in the strip
/// above both.
///
/// Signing in again after the session has ended leaves the pages as they were; when somebody else
/// signs in, or to another account or server, the pages forget what they held before.
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    MainWindow(QXSC::ServiceClient &client, QXSC::StudioService &service, ErrorCenter &errors,
               Settings &settings);
    ~MainWindow() override;

    SignInPage *signInPage() const { return m_signIn; }

    void showSignIn();

protected:
    void closeEvent(QCloseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void build();
    void placeOnScreen();
    void addPage(Page *page);
    QMenu *makeAccountMenu();
    void addAppearances(QMenu *menu);
    Page *page(int number) const;
    void leavePages();
    bool mayClosePages();
    void openPages();
    void showPage(int page);
    void goOn(const RecordDraft &draft);
    void openProject(const QXSC::ProjectRecordPtr &project);
    void connectStatistics();
    void signOut();

    QXSC::ServiceClient &m_client;
    QXSC::StudioService &m_service;
    ErrorCenter &m_errors;
    Settings &m_settings;
    QStackedWidget *m_stack;
    SignInPage *m_signIn;
    QWidget *m_work;
    NavigationRail *m_rail;
    QStackedWidget *m_pages;
    DraftNotice *m_draftNotice;
    ProjectsPage *m_projects;
    RecordPage *m_records;
    StatisticsPage *m_statistics;
    RecordDrafts m_drafts;
    /// Server, person and account the pages were opened for.
    QStringList m_openFor;
};

} // namespace Studio
