// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/rowline.h"

#include "service/store/databaseerror.h"
#include "service/store/sqlrow.h"
#include "service/store/storabletext.h"
#include "service/store/tableschema.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace Zel {

namespace {

constexpr char byteOrderMark[] = "\xef\xbb\xbf";

void appendEscape(QByteArray &line, quint32 code)
{
    line += "\\u" + QByteArray::number(code, 16).rightJustified(4, '0');
}

void appendText(QByteArray &line, const QString &text)
{
    const QByteArray utf8 = text.toUtf8();
    line += '"';
    qsizetype plainFrom = 0;
    const auto flush = [&](qsizetype to) {
        line.append(utf8.constData() + plainFrom, to - plainFrom);
    };
    for (qsizetype at = 0; at < utf8.size(); ++at) {
        const char byte = utf8.at(at);
        if (byte == '"' || byte == '\\') {
            flush(at);
            line += '\\';
            plainFrom = at;
        } else if (static_cast<unsigned char>(byte) < 0x20) {
            flush(at);
            appendEscape(line, static_cast<unsigned char>(byte));
            plainFrom = at + 1;
        } else if (byte == byteOrderMark[0] && utf8.mid(at, 3) == byteOrderMark) {
            flush(at);
            appendEscape(line, 0xfeff); // readers take it off the beginning of a text
            plainFrom = at + 3;
            at += 2;
        }
    }
    flush(utf8.size());
    line += '"';
}

void appendValue(QByteArray &line, ColumnKind kind, const SqlRow &row, int column)
{
    if (row.isNull(column)) {
        line += "null";
        return;
    }
    switch (kind) {
    case ColumnKind::Integer:
        line += QByteArray::number(row.integer(column));
        break;
    case ColumnKind::Boolean:
        line += row.boolean(column) ? '1' : '0';
        break;
    case ColumnKind::Text:
        appendText(line, row.text(column));
        break;
    case ColumnKind::Bytes:
        line += '"' + row.bytes(column).toBase64() + '"';
        break;
    }
}

[[noreturn]] void refuse(const TableInfo &table)
{
    throw DatabaseError(DatabaseError::Kind::Corrupt,
                        QStringLiteral("A row of the table %1 cannot be read.").arg(table.name));
}

SqlValue integerValue(const TableInfo &table, const QJsonValue &value)
{
    // Whatever is no whole number of 64 bits comes back as one of two different defaults.
    const qint64 number = value.toInteger(0);
    if (!value.isDouble() || number != value.toInteger(1))
        refuse(table);
    return number;
}

SqlValue bytesValue(const TableInfo &table, const QJsonValue &value)
{
    const auto decoded = QByteArray::fromBase64Encoding(value.toString().toLatin1(),
                                                        QByteArray::AbortOnBase64DecodingErrors);
    if (!value.isString() || !decoded)
        refuse(table);
    return *decoded;
}

SqlValue valueOf(const TableInfo &table, ColumnKind kind, const QJsonValue &value)
{
    if (value.isNull())
        return std::nullopt;
    switch (kind) {
    case ColumnKind::Integer:
        return integerValue(table, value);
    case ColumnKind::Boolean:
        return integerValue(table, value).variant().toLongLong() != 0;
    case ColumnKind::Text:
        if (!value.isString() || !isStorableText(value.toString()))
            refuse(table);
        return value.toString();
    case ColumnKind::Bytes:
        break;
    }
    return bytesValue(table, value);
}

} // namespace

QByteArray rowLine(const TableInfo &table, const SqlRow &row)
{
    QByteArray line = "[";
    for (int column = 0; column < table.columns.size(); ++column) {
        if (column > 0)
            line += ',';
        appendValue(line, table.columns.at(column).kind, row, column);
    }
    return line + "]\n";
}

SqlValues rowValues(const TableInfo &table, const QByteArray &line)
{
    const QJsonDocument document = QJsonDocument::fromJson(line);
    const QJsonArray row = document.array();
    if (!document.isArray() || row.size() != table.columns.size())
        refuse(table);
    SqlValues values;
    values.reserve(row.size());
    for (qsizetype column = 0; column < row.size(); ++column)
        values << valueOf(table, table.columns.at(column).kind, row.at(column));
    return values;
}

} // namespace Zel
