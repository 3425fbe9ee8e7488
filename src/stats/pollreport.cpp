// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "stats/pollreport.h"

#include "platform/core/rounding.h"
#include "platform/widgets/flexgrid.h"
#include "platform/widgets/messageboxes.h"
#include "stats/pollusers.h"
#include "stats/pollvisualization.h"
#include "stats/reportparts.h"
#include "stats/workbook.h"

#include <QComboBox>
#include <QPushButton>

#include <limits>

using Zel::RuntimeError;

namespace ZelWebServiceControls {

namespace {

/// The sum of votes, 32-bit as each count is.
qint32 totalOf(const QXSC::PollAnswerCollection &answers)
{
    qint64 total = 0;
    for (const QXSC::PollAnswerPtr &answer : answers)
        total += answer->count;
    if (total > std::numeric_limits<qint32>::max() || total < std::numeric_limits<qint32>::min())
        throw RuntimeError(RuntimeError::Overflow);
    return qint32(total);
}

} // namespace

PollReport::PollReport(QFrame *frame)
    : QObject(frame)
    , m_frame(frame)
{
    build();
    connect(m_combo, &QComboBox::activated, this,
            [this](int index) { Zel::guardUserAction(m_frame, [this, index] { choose(index); }); });
    connect(m_visualize, &QPushButton::clicked, this,
            [this] { Zel::guardUserAction(m_frame, [this] { visualize(); }); });
}

void PollReport::build()
{
    ReportParts parts(m_frame);
    m_combo = parts.choice(QStringLiteral("Label15"), tr("Poll Question"),
                           QStringLiteral("PollQuestionCombo"));
    m_grid = parts.grid(QStringLiteral("poll"), tr("Votes"));
    m_grid->setColumnAlignment(3, Qt::AlignRight); // "Total"; answers stand over columns 2 and 3
    m_grid->setColumnAlignment(4, Qt::AlignRight);
    m_grid->setColumnAlignment(5, Qt::AlignRight);
    m_plain.append(parts.plainButton(QStringLiteral("pollChart2D"), tr("2D")));
    m_plain.append(parts.plainButton(QStringLiteral("pollChart3D"), tr("3D")));
    m_plain.append(parts.plainButton(QStringLiteral("pollChartPie"), tr("Pie")));
    m_visualize = parts.visualizeButton(QStringLiteral("pollVis"));
}

void PollReport::load(QXSC::ServiceClient *client, const QString &deploymentGuid)
{
    if (!client)
        throw RuntimeError(RuntimeError::ObjectNotSet);
    // A host may destroy the report during the call.
    const QPointer<PollReport> self(this);
    const QXSC::PollQuestionCollectionPtr polls = client->GetPolls(QString(deploymentGuid));
    if (!self)
        return;
    m_client = client;
    m_deployment = deploymentGuid;
    m_polls = polls;
    if (!m_polls || m_polls->count() < 1)
        return;
    m_combo->clear();
    for (const QXSC::PollQuestionPtr &question : *m_polls)
        m_combo->addItem(question->questionTxt);
    m_combo->setCurrentIndex(0);
    choose(0);
    m_visualize->setEnabled(true);
}

void PollReport::setDesignTime(bool designTime)
{
    for (QPushButton *const button : std::as_const(m_plain))
        button->setHidden(designTime);
}

void PollReport::choose(int index)
{
    if (m_polls && index >= 0 && index < m_polls->count())
        showPollQuestion(*m_polls->item(index + 1));
}

void PollReport::showPollQuestion(const QXSC::PollQuestion &question)
{
    static const QXSC::PollAnswerCollection none;
    const QXSC::PollAnswerCollection &answers = question.answers ? *question.answers : none;
    const qint32 total = totalOf(answers);
    m_grid->clear();
    m_percentages.clear();
    m_grid->setColumnWidths({150, 200, 3000, 500, 1100, 600});
    m_grid->addRow(QStringLiteral("\t\t\t\t\t"));
    for (const QXSC::PollAnswerPtr &answer : answers) {
        const double percentage =
            total > 0 ? Zel::roundHalfEven(double(answer->count) * 100 / total) : 0;
        m_percentages.append({u'A' + QString::number(m_percentages.size() + 1), percentage});
        const QString text = ReportParts::oneLine(answer->answerTxt);
        m_grid->addRow(
            QStringLiteral("\t\t%1\t%1\t%2 votes\t%3%")
                .arg(text, QString::number(answer->count), QString::number(percentage, 'f', 0)));
        m_grid->mergeLastRow(2, 3);
    }
    m_grid->addRow(QStringLiteral("\t\t\tTotal\t") + QString::number(total) +
                   (total > 0 ? QStringLiteral(" votes\t100%") : QStringLiteral(" votes\t0%")));
}

void PollReport::visualize()
{
    if (!m_polls || m_polls->count() < 1)
        return;
    const QPointer<PollReport> self(this);
    const QXSC::PollResponseArray votes = client().GetPollResponses(QString(m_deployment));
    if (!self)
        return;
    PollModels models{m_polls, {}};
    qint16 voters = 0;
    const bool voted = votes && !votes->isEmpty();
    if (voted) {
        models.users.SortResponse(votes);
        voters = models.users.getUserCount();
    }
    PollVisualization form;
    form.setModels(models);
    const QString workbook = pollWorkbook(*m_polls, voted ? &models.users : nullptr);
    if (form.Init(workbook, Zel::Int16::from(m_polls->count()).value(), voters).toBool())
        form.showModal(m_frame);
    else
        Zel::informUser(m_frame, tr("The results could not be charted."));
}

QXSC::ServiceClient &PollReport::client() const
{
    if (!m_client)
        throw RuntimeError(RuntimeError::ObjectNotSet);
    return *m_client;
}

} // namespace ZelWebServiceControls
