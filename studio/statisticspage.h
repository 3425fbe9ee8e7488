// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/contract/serviceclient.h"
#include "common/contract/studioservice.h"
#include "studio/page.h"

#include <QDateTime>

#include <functional>

class QComboBox;
class QLabel;
class QPushButton;
class QStackedLayout;
class QDateTimeEdit;
class QTabBar;
class QToolButton;

namespace ZelWebServiceControls {
class StatsControl;
}

namespace Zel {
class RuntimeError;
}

namespace Studio {

class ErrorCenter;
class QuestionWatch;
class TextLabel;

/// What happened in the deployments of a project, and moderating what its audience asks.
///
/// A report begins where the deployment was published. What failed can be tried again, which brings
/// the control back; more than the control can count is said as a sentence, and the control is
/// ready for a shorter range.
class StatisticsPage : public Page
{
    Q_OBJECT

public:
    StatisticsPage(QXSC::ServiceClient &client, QXSC::StudioService &service, ErrorCenter &errors,
                   QWidget *parent = nullptr);
    ~StatisticsPage() override;

    QString title() const override;
    QString icon() const override;
    void open() override;
    void leave() override;
    bool mayLeave() override;

    /// The project whose deployments are shown from the next `open` on.
    void setProject(const QXSC::ProjectRecordPtr &project);

signals:
    /// The person wants to choose a project.
    void projectsRequested();
    /// How many questions came since the last look.
    void newQuestions(int count);

protected:
    void changeEvent(QEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;

private:
    QWidget *makeHeader();
    QWidget *makeEmptyState();
    void prepareControl();
    void connectParts();
    void load();
    void showDeployment(int index);
    void run(const QDateTime &start, const QDateTime &end);
    void runAgain();
    void failed(const Zel::RuntimeError &error);
    void overflowed(const Zel::RuntimeError &error);
    void bringBack();
    void makeAgain();
    void forget();
    void refresh();
    void showEmpty(const QString &text, bool offersProjects);
    QString deployment() const;
    void applyColors();

    QXSC::ServiceClient &m_client;
    QXSC::StudioService &m_service;
    ErrorCenter &m_errors;
    QStackedLayout *m_stack;
    QWidget *m_report;
    QWidget *m_empty;
    TextLabel *m_project;
    QLabel *m_deploymentLabel;
    QComboBox *m_deployments;
    QToolButton *m_refresh;
    TextLabel *m_emptyText;
    QPushButton *m_choose;
    ZelWebServiceControls::StatsControl *m_control;
    QTabBar *m_tabs;
    QDateTimeEdit *m_start;
    QDateTimeEdit *m_end;
    QPushButton *m_runButton;
    QString m_runCaption;
    QuestionWatch *m_questions;
    /// A change to a question that has failed, until it was made.
    std::function<void()> m_unsent;
    /// The end the report was given; a person who leaves it means now.
    QDateTime m_givenEnd;
    QXSC::ProjectRecordPtr m_shown;
    bool m_isLoaded = false;
};

} // namespace Studio
