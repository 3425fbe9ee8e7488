// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "workbooktext.h"

namespace {

/// The head of a workbook; %1 and %2 are what breaks the default namespace and that of "ss".
const QString headText = QStringLiteral(
    "<?xml version=\"1.0\"?>\r\n"
    "<?mso-application progid=\"Excel.Sheet\"?>\r\n"
    "<Workbook xmlns=\"urn:schemas-microsoft-com:office:spreadshe%1et\"\r\n"
    " xmlns:o=\"urn:schemas-microsoft-com:office:office\"\r\n"
    " xmlns:x=\"urn:schemas-microsoft-com:office:excel\"\r\n"
    " xmlns:ss=\"urn:schemas-microsoft-com:office:spreads%2heet\"\r\n"
    " xmlns:html=\"http://www.w3.org/TR/REC-html40\">\r\n"
    " <DocumentProperties xmlns=\"urn:schemas-microsoft-com:office:office\">\r\n"
    "  <Author>Studio</Author>\r\n"
    "  <Created>2007-01-25T12:54:31Z</Created>\r\n"
    " </DocumentProperties>\r\n"
    " <Styles>\r\n"
    "  <Style ss:ID=\"Default\" ss:Name=\"Normal\"><Alignment ss:Vertical=\"Bottom\"/></Style>\r\n"
    "  <Style ss:ID=\"s21\"><Font ss:Bold=\"1\"/></Style>\r\n"
    "  <Style ss:ID=\"s28\"><Interior ss:Color=\"#CCFFCC\" ss:Pattern=\"Solid\"/></Style>\r\n"
    "  <Style ss:ID=\"s29\"><Interior ss:Color=\"#FFFFFF\" ss:Pattern=\"Solid\"/></Style>\r\n"
    "  <Style ss:ID=\"s32\"><Interior ss:Color=\"#CCFFCC\" ss:Pattern=\"Solid\"/></Style>\r\n"
    "  <Style ss:ID=\"s41\"><Font ss:Bold=\"1\"/></Style>\r\n"
    "  <Style ss:ID=\"s45\"><Font ss:Bold=\"1\"/></Style>\r\n"
    "  <Style ss:ID=\"s53\"><Interior ss:Color=\"#C0C0C0\" ss:Pattern=\"Solid\"/></Style>\r\n"
    "  <Style ss:ID=\"s55\"><NumberFormat ss:Format=\"0.0%\"/></Style>\r\n"
    " </Styles>\r\n");

constexpr QStringView End = u"\r\n";

} // namespace

WorkbookText::WorkbookText(const QList<Question> &questions, Kind kind, Form form)
    : m_questions(questions)
    , m_kind(kind)
    , m_form(form)
{
    m_keys = keys();
}

QString WorkbookText::escaped(const QString &text) const
{
    return m_form == Form::Kept ? text : text.toHtmlEscaped();
}

QStringList WorkbookText::keys() const
{
    QStringList keys;
    for (const Question &question : m_questions) {
        QStringList positions;
        for (qsizetype k = 0; k < question.answers.size(); ++k) {
            if (question.answers[k].isCorrect)
                positions << QString::number(k + 1);
        }
        keys << positions.join(u',');
    }
    return keys;
}

qsizetype WorkbookText::mostAnswers() const
{
    qsizetype most = 0;
    for (const Question &question : m_questions)
        most = std::max(most, question.answers.size());
    return most;
}

void WorkbookText::addRespondent(const QString &guid, const QStringList &answers)
{
    m_rows += u"<Row>\r\n<Cell><Data ss:Type='String'>" + escaped(guid) + u"</Data></Cell>";
    int score = 0;
    for (qsizetype q = 0; q < m_questions.size(); ++q) {
        const QString &answer = answers.at(q);
        const bool isSurvey = m_kind == Kind::Survey;
        const bool isRight = isSurvey && !answer.isEmpty() && answer == m_keys[q];
        const bool isNumber = isSurvey && !answer.isEmpty() && !answer.contains(u',');
        score += isRight ? 1 : 0;
        m_rows += isRight ? u"<Cell ss:StyleID='s28'><Data ss:Type='"
                          : u"<Cell ss:StyleID='s29'><Data ss:Type='";
        m_rows += isNumber ? u"Number'>" : u"String'>";
        m_rows += isSurvey && answer.isEmpty() ? QStringLiteral("(skipped)") : escaped(answer);
        m_rows += u"</Data></Cell>";
    }
    if (m_kind == Kind::Survey) {
        const double share = score / static_cast<double>(m_questions.size());
        m_rows += u"<Cell ss:StyleID='s53'><Data ss:Type='Number'>" + QString::number(score) +
                  u"</Data></Cell><Cell ss:StyleID='s55'><Data ss:Type='Number'>" +
                  QString::number(share, 'g', 15) + u"</Data></Cell>";
    }
    m_rows += u"</Row>\r\n";
    ++m_respondents;
}

QString WorkbookText::head() const
{
    const QString gap = m_form == Form::Kept ? QStringLiteral("\r\n") : QString();
    return QString(headText).arg(gap, gap);
}

QString WorkbookText::headerRow() const
{
    QString row = QStringLiteral("<Row ss:Height='50'>\r\n<Cell ss:StyleID='s41'/>\r\n");
    for (const Question &question : m_questions)
        row += u"<Cell ss:StyleID='s41'><Data ss:Type='String'>" + escaped(question.text) +
               u"</Data></Cell>\r\n";
    return row + u"</Row>\r\n";
}

QString WorkbookText::responses() const
{
    QString sheet = QStringLiteral("<Worksheet ss:Name='Responses'>\r\n<Table>\r\n"
                                   "<Column ss:AutoFitWidth='0' ss:Width='140'/>\r\n");
    sheet += headerRow();
    for (qsizetype k = 0; k < mostAnswers(); ++k) {
        sheet += u"<Row>\r\n<Cell ss:StyleID='s21'/>\r\n";
        for (qsizetype q = 0; q < m_questions.size(); ++q) {
            if (k >= m_questions[q].answers.size())
                continue;
            const Answer &answer = m_questions[q].answers[k];
            sheet += u"<Cell ss:Index='" + QString::number(q + 2) + u'\'';
            if (answer.isCorrect && m_kind == Kind::Survey)
                sheet += u" ss:StyleID='s32'";
            sheet += u"><Data ss:Type='String'>" + QString::number(k + 1) + u" - " +
                     escaped(answer.text) + u"</Data></Cell>\r\n";
        }
        sheet += u"</Row>\r\n";
    }
    if (m_kind == Kind::Survey)
        sheet +=
            u"<Row>\r\n<Cell ss:StyleID='s21'><Data ss:Type='String'>User ID</Data></Cell>"
            u"<Cell ss:StyleID='s41' ss:Index='" +
            QString::number(m_questions.size() + 2) +
            u"'><Data ss:Type='String'>Correct</Data></Cell><Cell ss:StyleID='s41' ss:Index='" +
            QString::number(m_questions.size() + 3) +
            u"'><Data ss:Type='String'>Percent Correct</Data></Cell></Row>\r\n";
    else if (m_respondents > 0)
        sheet += u"<Row>\r\n<Cell ss:StyleID='s21'><Data ss:Type='String'>User ID</Data></Cell>"
                 u"</Row>\r\n";
    return sheet;
}

QString WorkbookText::totals() const
{
    if (m_kind == Kind::Poll)
        return QString();
    const QString count = QString::number(m_respondents);
    QString rows = QStringLiteral(
        "<Row>\r\n<Cell ss:StyleID='s45'><Data ss:Type='String'>Correct</Data></Cell>");
    for (const QString &key : m_keys)
        rows += u"<Cell ss:StyleID='s53' ss:Formula='=COUNTIF(R[-" + count + u"]C:R[-1]C,\"" + key +
                u"\")'></Cell>";
    rows += u"<Cell ss:StyleID='s53' ss:Formula='=SUM(R[-" + count + u"]C:R[-1]C)'></Cell>";
    rows += u"<Cell ss:StyleID='s55' ss:Formula='=AVERAGE(R[-" + count + u"]C:R[-1]C)'></Cell>";
    rows += u"</Row>\r\n<Row>\r\n<Cell ss:StyleID='s45'>"
            u"<Data ss:Type='String'>Percent Correct</Data></Cell>";
    for (qsizetype q = 0; q < m_keys.size(); ++q)
        rows += u"<Cell ss:StyleID='s55' ss:Formula='=(R[-1]C/" + count + u")'></Cell>";
    rows += u"<Cell ss:StyleID='s55' ss:Formula='=AVERAGE(RC[-" + QString::number(m_keys.size()) +
            u"]:RC[-1])'></Cell></Row>\r\n";
    return rows;
}

QString WorkbookText::summary() const
{
    QString sheet = QStringLiteral("<Worksheet ss:Name='Summary'>\r\n<Table>\r\n"
                                   "<Column ss:AutoFitWidth='0' ss:Width='140'/>\r\n");
    sheet += headerRow();
    for (qsizetype k = 0; k < mostAnswers(); ++k) {
        sheet += u"<Row>\r\n<Cell ss:StyleID='s45'><Data ss:Type='String'>Answer " +
                 QString::number(k + 1) + u"</Data></Cell>\r\n";
        for (qsizetype q = 0; q < m_questions.size(); ++q) {
            if (k < m_questions[q].answers.size())
                sheet += u"<Cell ss:Index='" + QString::number(q + 2) +
                         u"'><Data ss:Type='Number'>" +
                         QString::number(m_questions[q].answers[k].count) + u"</Data></Cell>";
        }
        sheet += u"</Row>\r\n";
    }
    return sheet + u"</Table>\r\n</Worksheet>\r\n";
}

QString WorkbookText::text() const
{
    return head() + responses() + m_rows + totals() + u"</Table>" + End + u"</Worksheet>" + End +
           summary() + u"\r\n</Workbook>\r\n\t";
}
