// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/recordfile.h"

#include <QFile>
#include <QJsonDocument>
#include <QStringDecoder>

#include <optional>

namespace Zel {

namespace {

QByteArray readAll(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw WorkspaceFileError({path, 0},
                                 QStringLiteral("cannot be read: %1.").arg(file.errorString()));
    return file.readAll();
}

/// Qt drops a byte order mark at the beginning of every text; it keeps the escape of one. The mark
/// of the file itself goes.
QByteArray withMarksEscaped(QByteArray json)
{
    const QByteArray mark = "\xef\xbb\xbf";
    if (json.startsWith(mark))
        json.remove(0, mark.size());
    return json.replace(mark, "\\ufeff");
}

int lineAt(const QByteArray &text, qsizetype offset)
{
    return 1 + static_cast<int>(text.left(offset).count('\n'));
}

/// The lines at which the members of the outermost list begin. The text is known to be valid JSON.
QList<int> memberLines(const QByteArray &json)
{
    QList<int> lines;
    int line = 1;
    int depth = 0;
    bool quoted = false;
    for (qsizetype at = 0; at < json.size(); ++at) {
        const char c = json.at(at);
        if (c == '\n')
            ++line;
        else if (quoted && c == '\\')
            ++at;
        else if (c == '"')
            quoted = !quoted;
        else if (!quoted && (c == '{' || c == '[') && depth++ == 1)
            lines << line;
        else if (!quoted && (c == '}' || c == ']'))
            --depth;
    }
    return lines;
}

/// Cuts a CSV text into rows, one at a time; knows the line each row begins at.
class CsvRows
{
public:
    struct Row
    {
        int line = 1;
        QStringList cells;
    };

    CsvRows(const QString &path, const QString &text)
        : m_path(path)
        , m_text(text)
    {
    }

    /// The next row that is not blank; nothing at the end.
    std::optional<Row> next()
    {
        while (m_at < m_text.size()) {
            Row row = readRow();
            if (row.cells != QStringList{QString()})
                return row;
        }
        return std::nullopt;
    }

private:
    [[noreturn]] void refuse(const QString &sentence) const
    {
        throw WorkspaceFileError({m_path, m_line}, sentence);
    }

    bool at(char c) const { return m_at < m_text.size() && m_text.at(m_at) == QLatin1Char(c); }

    Row readRow()
    {
        Row row;
        row.line = m_line;
        row.cells << readCell();
        while (at(',')) {
            ++m_at;
            row.cells << readCell();
        }
        if (at('\r'))
            ++m_at;
        if (at('\n'))
            ++m_at;
        else if (m_at < m_text.size())
            refuse(
                QStringLiteral("a comma or the end of the line is missing after a quoted text."));
        ++m_line;
        return row;
    }

    QString readCell()
    {
        if (at('"'))
            return readQuoted();
        const qsizetype from = m_at;
        while (m_at < m_text.size() && !at(',') && !at('\n') && !at('\r'))
            ++m_at;
        return m_text.mid(from, m_at - from);
    }

    QString readQuoted()
    {
        QString cell;
        for (++m_at; m_at < m_text.size(); ++m_at) {
            if (at('"')) {
                ++m_at;
                if (!at('"'))
                    return cell;
            } else if (at('\n')) {
                ++m_line;
            }
            cell += m_text.at(m_at);
        }
        refuse(QStringLiteral("a quoted text does not end."));
    }

    QString m_path;
    QString m_text;
    qsizetype m_at = 0;
    int m_line = 1;
};

} // namespace

QList<FileRecord> readJsonRecords(const QString &path)
{
    const QByteArray json = withMarksEscaped(readAll(path));
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(json, &error);
    if (error.error != QJsonParseError::NoError)
        throw WorkspaceFileError({path, lineAt(json, error.offset)},
                                 QStringLiteral("is not valid JSON: %1.").arg(error.errorString()));
    if (!document.isArray())
        throw WorkspaceFileError({path, 1}, QStringLiteral("must hold a list."));
    QList<FileRecord> records;
    const QList<int> lines = memberLines(json);
    const QJsonArray members = document.array();
    for (const QJsonValue &member : members) {
        FileRecord record;
        record.place = {path, lines.value(records.size(), 1)};
        if (!member.isObject())
            record.refuse(QStringLiteral("every member of the list must be an object."));
        record.fields = member.toObject();
        records << record;
    }
    return records;
}

void visitJsonLines(const QString &path, const RecordVisitor &visit)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw WorkspaceFileError({path, 0},
                                 QStringLiteral("cannot be read: %1.").arg(file.errorString()));
    for (int number = 1; !file.atEnd(); ++number) {
        const QByteArray line = withMarksEscaped(file.readLine());
        if (line.trimmed().isEmpty())
            continue;
        FileRecord record;
        record.place = {path, number};
        QJsonParseError error;
        const QJsonDocument document = QJsonDocument::fromJson(line, &error);
        if (error.error != QJsonParseError::NoError)
            record.refuse(QStringLiteral("is not valid JSON: %1.").arg(error.errorString()));
        if (!document.isObject())
            record.refuse(QStringLiteral("must be an object."));
        record.fields = document.object();
        visit(record);
    }
}

void visitCsvRecords(const QString &path, const RecordVisitor &visit)
{
    QStringDecoder decoder(QStringDecoder::Utf8);
    const QString text = decoder(readAll(path));
    if (decoder.hasError())
        throw WorkspaceFileError({path, 0}, QStringLiteral("is not UTF-8."));
    CsvRows rows(path, text);
    const auto head = rows.next();
    if (!head)
        throw WorkspaceFileError({path, 1}, QStringLiteral("the line with the columns' names is "
                                                           "missing."));
    const QStringList &names = head->cells;
    while (const auto row = rows.next()) {
        FileRecord record;
        record.place = {path, row->line};
        if (row->cells.size() != names.size())
            record.refuse(QStringLiteral("the line has %1 cells instead of %2.")
                              .arg(row->cells.size())
                              .arg(names.size()));
        for (qsizetype i = 0; i < names.size(); ++i)
            record.fields.insert(names.at(i), row->cells.at(i));
        visit(record);
    }
}

QList<FileRecord> readCsvRecords(const QString &path)
{
    QList<FileRecord> records;
    visitCsvRecords(path, [&records](FileRecord &record) { records << record; });
    return records;
}

} // namespace Zel
