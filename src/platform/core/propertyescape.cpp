// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/core/propertyescape.h"

namespace Zel::PropertyValue {

namespace {

constexpr QChar escape = u'\\';
constexpr int hexDigits = 4;

/// Whether the code unit at `at` is one that XML cannot hold there.
bool isForeign(QStringView text, qsizetype at)
{
    const QChar c = text[at];
    if (c.isHighSurrogate())
        return at + 1 == text.size() || !text[at + 1].isLowSurrogate();
    if (c.isLowSurrogate())
        return at == 0 || !text[at - 1].isHighSurrogate();
    const bool blank = c == u'\t' || c == u'\n' || c == u'\r';
    return (c < u' ' && !blank) || c >= u'\uFFFE';
}

/// The code unit that four hexadecimal digits name, -1 when they are none.
int unitOf(QStringView digits)
{
    if (digits.size() < hexDigits)
        return -1;
    int unit = 0;
    for (const QChar digit : digits.first(hexDigits)) {
        const int value = QStringView(u"0123456789ABCDEF").indexOf(digit.toUpper());
        if (value < 0)
            return -1;
        unit = unit * 16 + value;
    }
    return unit;
}

} // namespace

bool needsEscape(QStringView text)
{
    for (qsizetype at = 0; at < text.size(); ++at) {
        if (isForeign(text, at))
            return true;
    }
    return false;
}

QString escaped(QStringView text)
{
    QString out;
    out.reserve(text.size());
    for (qsizetype at = 0; at < text.size(); ++at) {
        if (text[at] == escape)
            out += QStringLiteral("\\\\");
        else if (isForeign(text, at))
            out += QStringLiteral("\\u%1").arg(text[at].unicode(), hexDigits, 16, QLatin1Char('0'));
        else
            out += text[at];
    }
    return out;
}

std::optional<QString> unescaped(QStringView text)
{
    QString out;
    out.reserve(text.size());
    for (qsizetype at = 0; at < text.size(); ++at) {
        if (text[at] != escape) {
            out += text[at];
            continue;
        }
        const QStringView rest = text.sliced(at + 1);
        const int unit = rest.startsWith(u'u') ? unitOf(rest.sliced(1)) : -1;
        if (rest.startsWith(escape)) {
            out += escape;
            at += 1;
        } else if (unit >= 0) {
            out += QChar(unit);
            at += 1 + hexDigits;
        } else {
            return std::nullopt;
        }
    }
    return out;
}

} // namespace Zel::PropertyValue
