// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "stats/surveyreport.h"

#include "platform/core/rounding.h"
#include "platform/widgets/errorreport.h"
#include "platform/widgets/messageboxes.h"
#include "stats/reportparts.h"
#include "stats/surveyresults.h"
#include "stats/surveyvisualization.h"
#include "stats/workbook.h"

#include <QComboBox>
#include <QPushButton>

using Zel::RuntimeError;

namespace ZelWebServiceControls {

SurveyReport::SurveyReport(QFrame *frame)
    : QObject(frame)
    , m_frame(frame)
{
    build();
    connect(m_surveyCombo, &QComboBox::activated, this, [this](int index) {
        Zel::guardUserAction(m_frame, [this, index] { chooseSurvey(index); });
    });
    connect(m_questionCombo, &QComboBox::activated, this, [this](int index) {
        Zel::guardUserAction(m_frame, [this, index] { chooseQuestion(index); });
    });
    connect(m_visualize, &QPushButton::clicked, this,
            [this] { Zel::guardUserAction(m_frame, [this] { visualize(); }); });
}

void SurveyReport::build()
{
    ReportParts parts(m_frame);
    m_surveyCombo = parts.choice(QStringLiteral("Label10"), tr("Survey Name"),
                                 QStringLiteral("surveyListCombo"));
    m_questionCombo = parts.choice(QStringLiteral("qlabel"), tr("Question"),
                                   QStringLiteral("surveyQuestionCombo"));
    m_grid = parts.grid(QStringLiteral("surveyGrid"), tr("Answers"));
    m_grid->setColumnAlignment(3, Qt::AlignRight); // "Total Respondents"; answers begin in column 2
    m_grid->setColumnAlignment(4, Qt::AlignRight);
    m_grid->setColumnAlignment(5, Qt::AlignRight);
    m_plain.append(parts.plainButton(QStringLiteral("surveyChart2D"), tr("2D")));
    m_plain.append(parts.plainButton(QStringLiteral("surveyChart3D"), tr("3D")));
    m_plain.append(parts.plainButton(QStringLiteral("surveyChartPie"), tr("Pie")));
    m_visualize = parts.visualizeButton(QStringLiteral("dataVis"));
}

void SurveyReport::load(QXSC::ServiceClient *client, const QString &deploymentGuid)
{
    if (!client)
        throw RuntimeError(RuntimeError::ObjectNotSet);
    // A host may destroy the report during the call.
    const QPointer<SurveyReport> self(this);
    const QXSC::SurveyCollectionPtr surveys = client->GetSurveys(QString(deploymentGuid));
    if (!self)
        return;
    m_client = client;
    m_deployment = deploymentGuid;
    m_surveys = surveys;
    m_survey.reset();
    if (!m_surveys || m_surveys->count() < 1)
        return;
    m_surveyCombo->clear();
    for (const QXSC::SurveyRecordPtr &survey : *m_surveys)
        m_surveyCombo->addItem(survey->name);
    m_surveyCombo->setCurrentIndex(0);
    m_visualize->setEnabled(true);
    chooseSurvey(0);
}

void SurveyReport::setDesignTime(bool designTime)
{
    for (QPushButton *const button : std::as_const(m_plain))
        button->setHidden(designTime);
}

void SurveyReport::chooseSurvey(int index)
{
    if (!m_surveys || index < 0 || index >= m_surveys->count())
        return;
    // Until the responses are there nothing of the former survey stands under this one's name.
    const QXSC::SurveyRecordPtr survey = m_surveys->item(index + 1);
    m_survey.reset();
    m_questionCombo->clear();
    m_grid->clear();
    if (!survey->questions)
        throw RuntimeError(RuntimeError::ObjectNotSet);
    const QPointer<SurveyReport> self(this);
    const QList<Respondents> respondents = countRespondents(*survey);
    if (!self)
        return;
    m_survey = survey;
    m_respondents = respondents;
    for (const QXSC::SurveyQuestionPtr &question : *m_survey->questions)
        m_questionCombo->addItem(question->questionTxt);
    if (m_questionCombo->count() == 0)
        return;
    m_questionCombo->setCurrentIndex(0);
    chooseQuestion(0);
}

void SurveyReport::chooseQuestion(int index)
{
    if (m_survey && index >= 0 && index < m_survey->questions->count())
        showQuestion(*m_survey->questions->item(index + 1), m_respondents.value(index));
}

QList<SurveyReport::Respondents> SurveyReport::countRespondents(const QXSC::SurveyRecord &survey)
{
    QList<Respondents> respondents(survey.questions->count());
    const QXSC::SurveyResponseArray responses =
        client().GetSurveyResponses(QString(m_deployment), survey.guid);
    if (!responses)
        return respondents;
    SurveyUsers users;
    users.SortResponse(responses, std::make_shared<QXSC::SurveyRecord>(survey));
    users.forEachRow([&respondents](const SurveyUsers::Row &row) {
        for (qsizetype question = 0; question < respondents.size(); ++question) {
            Respondents &of = respondents[question];
            ++(row.cells[question].text ? of.answered : of.skipped);
        }
    });
    return respondents;
}

void SurveyReport::showQuestion(const QXSC::SurveyQuestion &question,
                                const Respondents &respondents)
{
    m_grid->clear();
    m_grid->setColumnWidths({130, 220, 3000, 850, 600, 600});
    m_grid->addRow(QStringLiteral("\t\t\t\t\t"));
    const qint32 n = respondents.answered;
    for (const QXSC::SurveyAnswerPtr &answer : answersOf(question)) {
        const double percentage = n ? Zel::roundHalfEven(double(answer->count) * 100 / n) : 0;
        m_grid->addRow(QStringLiteral("\t%1\t%2\t%2\t%3%\t%4")
                           .arg(answer->correct ? QStringLiteral("X") : QString(),
                                ReportParts::oneLine(answer->answerTxt),
                                QString::number(percentage, 'f', 0),
                                QString::number(answer->count)));
        m_grid->mergeLastRow(2, 3);
    }
    const auto addTotal = [this](const QString &label, qint32 count) {
        m_grid->addRow(QStringLiteral("\t\t\t%1\t%1\t%2").arg(label, QString::number(count)));
        m_grid->mergeLastRow(3, 4);
    };
    addTotal(QStringLiteral("Total Respondents"), n);
    if (respondents.skipped > 0)
        addTotal(QStringLiteral("(skipped question)"), respondents.skipped);
}

void SurveyReport::visualize()
{
    if (!m_survey)
        return;
    const QPointer<SurveyReport> self(this);
    const QXSC::SurveyRecordPtr survey = m_survey;
    const QXSC::SurveyResponseArray responses =
        client().GetSurveyResponses(QString(m_deployment), survey->guid);
    if (!self)
        return;
    if (!responses || responses->isEmpty()) {
        Zel::informUser(m_frame, tr("There are currently no respondents to the survey/quiz"),
                        tr("No respondents"));
        return;
    }
    SurveyModels models{m_survey, {}};
    models.users.SortResponse(responses, m_survey);
    const QString workbook = surveyWorkbook(*m_survey, models.users);
    const qint16 respondents = models.users.getUsetCount();
    SurveyVisualization form;
    form.setModels(models);
    const qint16 questions = Zel::Int16::from(m_survey->questions->count()).value();
    if (form.Init(workbook, questions, respondents).toBool())
        form.showModal(m_frame);
    else
        Zel::informUser(m_frame, tr("The results could not be charted."));
}

QXSC::ServiceClient &SurveyReport::client() const
{
    if (!m_client)
        throw RuntimeError(RuntimeError::ObjectNotSet);
    return *m_client;
}

} // namespace ZelWebServiceControls
