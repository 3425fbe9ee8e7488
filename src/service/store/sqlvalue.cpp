// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/sqlvalue.h"

#include "service/store/storabletext.h"

#include <stdexcept>

namespace Zel {

// The drivers bind a null QString or QByteArray as NULL; here both mean "empty".

SqlValue::SqlValue(const QString &text)
    : m_value(text.isNull() ? QString::fromLatin1("") : text)
{
    if (!isStorableText(text))
        throw std::invalid_argument("a text with U+0000 or half a surrogate pair cannot be stored");
}

SqlValue::SqlValue(const QByteArray &bytes)
    : m_value(bytes.isNull() ? QByteArray("") : bytes)
{
}

} // namespace Zel
