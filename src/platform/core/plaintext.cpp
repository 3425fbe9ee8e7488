// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/core/plaintext.h"

namespace Zel {

namespace {

bool isDirectionMark(char32_t c)
{
    return c == 0x200E || c == 0x200F || c == 0x061C || c == 0xFEFF ||
           (c >= 0x202A && c <= 0x202E) || (c >= 0x2066 && c <= 0x2069);
}

char32_t plainCharacter(char32_t c)
{
    constexpr char32_t minusSign = 0x2212;
    constexpr char32_t typographicApostrophe = 0x2019;
    if (c == minusSign)
        return U'-';
    if (c == typographicApostrophe)
        return U'\'';
    if (QChar::isSpace(c))
        return U' ';
    if (QChar::category(c) == QChar::Number_DecimalDigit)
        return U'0' + char32_t(QChar::digitValue(c));
    return QChar::toCaseFolded(c);
}

char16_t plainAscii(char16_t c)
{
    if (c >= u'A' && c <= u'Z')
        return char16_t(c - u'A' + u'a');
    return c >= u'\t' && c <= u'\r' ? u' ' : c;
}

} // namespace

PlainText plainText(QStringView text)
{
    PlainText plain;
    plain.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        char32_t c = text[i].unicode();
        if (c < 0x80) {
            plain.append(plainAscii(char16_t(c)));
            continue;
        }
        if (QChar::isHighSurrogate(c) && i + 1 < text.size() && text[i + 1].isLowSurrogate())
            c = QChar::surrogateToUcs4(char16_t(c), text[++i].unicode());
        if (isDirectionMark(c))
            continue;
        for (const char16_t unit : QChar::fromUcs4(plainCharacter(c)))
            plain.append(unit);
    }
    return plain;
}

} // namespace Zel
