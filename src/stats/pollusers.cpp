// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "stats/pollusers.h"

#include "platform/core/int16.h"
#include "stats/pollresults.h"
#include "stats/workbooktext.h"

using Zel::RuntimeError;

namespace ZelWebServiceControls {

namespace {

/// The numbers of the asked questions among the answered ones.
std::vector<quint32> columnsOf(const QXSC::PollQuestionCollection &questions,
                               const PollResults &results)
{
    std::vector<quint32> columns;
    for (const QXSC::PollQuestionPtr &question : questions)
        columns.push_back(results.find(question->guid));
    return columns;
}

/// How often the question comes that is asked most often: as often its answers stand in a row.
qsizetype mostColumnsOfOne(const std::vector<quint32> &columns)
{
    QHash<quint32, qsizetype> times;
    qsizetype most = 0;
    for (const quint32 column : columns)
        most = std::max(most, ++times[column]);
    return most;
}

} // namespace

PollUsers::PollUsers()
    : m_results(std::make_shared<PollResults>())
{
}

QVariant PollUsers::SortResponse(const QXSC::PollResponseArray &respList)
{
    if (!respList)
        throw RuntimeError(RuntimeError::SubscriptOutOfRange);
    m_results->append(*respList);
    return QVariant();
}

qint16 PollUsers::getUserCount() const
{
    return Zel::Int16::from(count()).value();
}

QVariant PollUsers::getExcelFormat(const QXSC::PollQuestionCollectionPtr &g_pollList) const
{
    if (!g_pollList)
        throw RuntimeError(RuntimeError::ObjectNotSet);
    WorkbookText rows(rowsBound(*g_pollList));
    appendRows(rows, *g_pollList);
    return rows.take();
}

qsizetype PollUsers::count() const
{
    return qsizetype(m_results->chains.respondentCount());
}

PollUser PollUsers::user(qsizetype number) const
{
    if (number < 1 || number > count())
        throw RuntimeError(RuntimeError::SubscriptOutOfRange);
    return PollUser(m_results, quint32(number - 1));
}

PollUser PollUsers::user(const QString &guid) const
{
    const std::optional<quint32> respondent = m_results->chains.find(guid);
    if (!respondent)
        throw RuntimeError(RuntimeError::InvalidProcedureCall);
    return PollUser(m_results, *respondent);
}

void PollUsers::forEachRow(const QXSC::PollQuestionCollection &questions,
                           const std::function<void(const Row &row)> &visit) const
{
    const std::vector<quint32> columns = columnsOf(questions, *m_results);
    PollCells cells(*m_results);
    Row row;
    for (quint32 respondent = 0; respondent < m_results->chains.respondentCount(); ++respondent) {
        cells.read(respondent);
        row.guid = m_results->chains.guid(respondent);
        row.cells.clear();
        for (const quint32 column : columns)
            row.cells.append(cells.joined(column));
        visit(row);
    }
}

qsizetype PollUsers::rowsBound(const QXSC::PollQuestionCollection &questions) const
{
    const qsizetype times = mostColumnsOfOne(columnsOf(questions, *m_results));
    const qsizetype answers = m_results->answerLength + m_results->responses.size();
    return m_results->chains.guidLength() + times * answers +
           count() * (70 + 64 * questions.count());
}

void PollUsers::appendRows(WorkbookText &out, const QXSC::PollQuestionCollection &questions) const
{
    const std::vector<quint32> columns = columnsOf(questions, *m_results);
    PollCells cells(*m_results);
    for (quint32 respondent = 0; respondent < m_results->chains.respondentCount(); ++respondent) {
        cells.read(respondent);
        out.literal(u"<Row>\r\n<Cell><Data ss:Type='String'>");
        out.text(m_results->chains.guid(respondent));
        out.literal(u"</Data></Cell>");
        for (const quint32 column : columns) {
            out.literal(u"<Cell ss:StyleID='s29'><Data ss:Type='String'>");
            bool first = true;
            cells.forEach(column, [&](const QString &id) {
                if (!first)
                    out.literal(u",");
                out.text(id);
                first = false;
            });
            out.literal(u"</Data></Cell>");
        }
        out.literal(u"</Row>\r\n");
    }
}

} // namespace ZelWebServiceControls
