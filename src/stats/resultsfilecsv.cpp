// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
// Results as comma-separated values.
#include "platform/core/numbertext.h"
#include "stats/resultsfilewriters.h"
#include "stats/workbooklayout.h"
#include "stats/workbooksink.h"

#include <QIODevice>

namespace ZelWebServiceControls {

namespace {

/// Whether a spreadsheet program would compute with the text instead of showing it.
bool looksLikeFormula(const QString &text)
{
    return !text.isEmpty() && QStringView(u"=+-@\t\n").contains(text.front()) && !plainNumber(text);
}

/// A field, quoted where it has to be.
QString field(const QString &text)
{
    QString value = printableText(text);
    if (looksLikeFormula(value))
        value.prepend(u'\'');
    const bool special = value.contains(u'"') || value.contains(u',') || value.contains(u'\n') ||
                         value.startsWith(u' ') || value.endsWith(u' ');
    if (!special)
        return value;
    return u'"' + value.replace(u'"', QStringLiteral("\"\"")) + u'"';
}

class CsvLines
{
public:
    explicit CsvLines(QIODevice &device)
        : m_device(device)
    {
        append(QByteArrayLiteral("\xEF\xBB\xBF"));
    }

    void write(const QStringList &fields)
    {
        append(fields.join(u',').toUtf8());
        append(QByteArrayLiteral("\r\n"));
    }

    bool hasError() const { return m_failed; }

private:
    void append(const QByteArray &bytes)
    {
        m_failed = m_failed || m_device.write(bytes) != bytes.size();
    }

    QIODevice &m_device;
    bool m_failed = false;
};

void writeRows(CsvLines &lines, const SurveyModels &models)
{
    models.users.forEachRow([&lines](const SurveyUsers::Row &row) {
        QStringList fields{field(row.guid)};
        for (const SurveyUsers::Cell &cell : row.cells)
            fields.append(field(cell.text.value_or(QStringLiteral("(skipped)"))));
        fields.append(QString::number(row.score));
        fields.append(row.cells.isEmpty()
                          ? QString()
                          : Zel::invariantNumberText(double(row.score) / double(row.cells.size())));
        lines.write(fields);
    });
}

void writeRows(CsvLines &lines, const PollModels &models)
{
    models.users.forEachRow(*models.polls, [&lines](const PollUsers::Row &row) {
        QStringList fields{field(row.guid)};
        for (const QString &cell : row.cells)
            fields.append(field(cell));
        lines.write(fields);
    });
}

} // namespace

bool writeCsvResults(const ResultsModels &models, const WorkbookLayout &layout, QIODevice &device)
{
    CsvLines lines(device);
    QStringList headings{QStringLiteral("User ID")};
    for (const WorkbookQuestion &question : layout.questions)
        headings.append(field(question.text));
    if (layout.scored)
        headings.append({QStringLiteral("Correct"), QStringLiteral("Percent Correct")});
    lines.write(headings);
    std::visit([&lines](const auto &of) { writeRows(lines, of); }, models);
    return !lines.hasError();
}

} // namespace ZelWebServiceControls
