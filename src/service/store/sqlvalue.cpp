// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/sqlvalue.h"

#include "service/store/storabletext.h"

#include <stdexcept>

namespace Zel {

namespace {

/// What the drivers have to be given so that `text` comes back. They bind a null QString as NULL,
/// and each takes one byte order mark off the beginning of a text, SQLite when it stores it and
/// PostgreSQL's when it reads it.
QString bindable(const QString &text)
{
    if (text.isNull())
        return QString::fromLatin1("");
    return text.startsWith(QChar::ByteOrderMark) ? QChar(QChar::ByteOrderMark) + text : text;
}

} // namespace

SqlValue::SqlValue(const QString &text)
    : m_value(bindable(text))
{
    if (!isStorableText(text))
        throw std::invalid_argument("this text cannot be stored");
}

SqlValue::SqlValue(const QByteArray &bytes)
    : m_value(bytes.isNull() ? QByteArray("") : bytes)
{
}

} // namespace Zel
