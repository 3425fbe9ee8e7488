// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QVarLengthArray>

namespace Zel {

/// The characters of a typed or displayed text as the readers of numbers and dates compare them.
using PlainText = QVarLengthArray<char16_t, 96>;

/// `text` without what only matters to the eye: decimal digits of any script become ASCII digits,
/// every blank (tab, no-break and narrow no-break space, ...) a plain one, the minus sign "-", the
/// typographic apostrophe the plain one; direction marks vanish and letters are case-folded.
PlainText plainText(QStringView text);

inline QStringView view(const PlainText &text)
{
    return QStringView(text.constData(), text.size());
}

constexpr bool isAsciiDigit(QChar c)
{
    return c >= u'0' && c <= u'9';
}

} // namespace Zel
