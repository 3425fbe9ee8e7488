// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/contract/serviceclient.h"
#include "platform/core/export.h"

#include <QFrame>
#include <QPointer>

class QComboBox;
class QPushButton;

namespace Zel {
class FlexGrid;
}

namespace ZelWebServiceControls {

/// How often each answer of a deployment's surveys and quizzes was chosen, one question at a time,
/// inside a frame.
///
/// Shows all responses, whatever the time. Errors of the service propagate from `load`; those of
/// what a person does reach the host of the control around the frame.
class ZEL_EXPORT SurveyReport : public QObject
{
    Q_OBJECT

public:
    explicit SurveyReport(QFrame *frame);

    /// Fetches the surveys and shows the first question of the first one. Without any, what is
    /// shown stays and does nothing. Error 91 without a client.
    void load(QXSC::ServiceClient *client, const QString &deploymentGuid);

    /// At design time the buttons without an action are hidden.
    void setDesignTime(bool designTime);

private:
    /// Of one question, the respondents that answered it and those that did not.
    struct Respondents
    {
        qint32 answered = 0;
        qint32 skipped = 0;
    };

    void build();
    void chooseSurvey(int index);
    void chooseQuestion(int index);
    QList<Respondents> countRespondents(const QXSC::SurveyRecord &survey);
    void showQuestion(const QXSC::SurveyQuestion &question, const Respondents &respondents);
    void visualize();
    QXSC::ServiceClient &client() const;

    QFrame *m_frame;
    QComboBox *m_surveyCombo = nullptr;
    QComboBox *m_questionCombo = nullptr;
    Zel::FlexGrid *m_grid = nullptr;
    QList<QPushButton *> m_plain;
    QPushButton *m_visualize = nullptr;
    QPointer<QXSC::ServiceClient> m_client;
    QString m_deployment;
    QXSC::SurveyCollectionPtr m_surveys;
    QXSC::SurveyRecordPtr m_survey;
    QList<Respondents> m_respondents;
};

} // namespace ZelWebServiceControls
