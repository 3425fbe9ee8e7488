// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "datavisualization/formula.h"

#include <QRegularExpression>

namespace ZelDataVisualization {

namespace {

constexpr qint64 Most = 0x7FFFFFFF;

/// "R[-3]", "R5" or "R": the letter and what follows it.
std::optional<Coordinate> takeCoordinate(QStringView text, qsizetype &at, QChar letter)
{
    if (at >= text.size() || text[at].toUpper() != letter)
        return std::nullopt;
    qsizetype end = at + 1;
    const bool inBrackets = end < text.size() && text[end] == u'[';
    if (inBrackets)
        ++end;
    const qsizetype digits = end;
    if (inBrackets && end < text.size() && text[end] == u'-')
        ++end;
    while (end < text.size() && text[end] >= u'0' && text[end] <= u'9')
        ++end;
    const QStringView number = text.mid(digits, end - digits);
    Coordinate result;
    if (inBrackets && (end >= text.size() || text[end] != u']'))
        return std::nullopt;
    if (!number.isEmpty()) {
        bool isNumber = false;
        result.value = number.toLongLong(&isNumber);
        if (!isNumber || result.value > Most || result.value < -Most)
            return std::nullopt;
        result.isRelative = inBrackets;
    } else if (inBrackets) {
        return std::nullopt;
    }
    at = inBrackets ? end + 1 : end;
    return result;
}

bool isPartOfName(QStringView text, qsizetype at)
{
    return at < text.size() &&
           (text[at].isLetterOrNumber() || text[at] == u'_' || text[at] == u'(');
}

/// "RC", "R[-1]C[2]"; leaves `at` where it was when there is none.
bool takeCell(QStringView text, qsizetype &at, Coordinate &row, Coordinate &column)
{
    qsizetype end = at;
    const std::optional<Coordinate> itsRow = takeCoordinate(text, end, u'R');
    const std::optional<Coordinate> itsColumn =
        itsRow ? takeCoordinate(text, end, u'C') : std::nullopt;
    if (!itsColumn || isPartOfName(text, end))
        return false;
    row = *itsRow;
    column = *itsColumn;
    at = end;
    return true;
}

/// "Sheet1!" or "'My sheet'!"; empty for none.
QString takeSheet(QStringView text, qsizetype &at)
{
    static const QRegularExpression pattern(QStringLiteral("\\G(?:'((?:[^']|'')*)'|(\\w+))!"));
    const QRegularExpressionMatch match = pattern.match(text, at);
    if (!match.hasMatch())
        return QString();
    at = match.capturedEnd();
    QString name = match.captured(1) + match.captured(2);
    return name.replace(QStringLiteral("''"), QStringLiteral("'"));
}

/// "$B$5" from its parts.
std::optional<Coordinate> column(QStringView letters)
{
    qint64 value = 0;
    for (const QChar letter : letters) {
        value = value * 26 + (letter.toUpper().unicode() - u'A' + 1);
        if (value > Most)
            return std::nullopt;
    }
    return Coordinate{value, false};
}

std::optional<Coordinate> row(QStringView digits)
{
    bool isNumber = false;
    const qint64 value = digits.toLongLong(&isNumber);
    if (!isNumber || value < 1 || value > Most)
        return std::nullopt;
    return Coordinate{value, false};
}

} // namespace

std::optional<Reference> takeRowColumnReference(QStringView text, qsizetype &at)
{
    Reference result;
    qsizetype end = at;
    result.sheet = takeSheet(text, end);
    if (!takeCell(text, end, result.top, result.left))
        return std::nullopt;
    result.bottom = result.top;
    result.right = result.left;
    if (end < text.size() && text[end] == u':') {
        ++end;
        if (!takeCell(text, end, result.bottom, result.right))
            return std::nullopt;
        result.isRange = true;
    }
    at = end;
    return result;
}

std::optional<Reference> takeOpenReference(QStringView text, qsizetype &at)
{
    static const QRegularExpression pattern(
        QStringLiteral("\\G\\[\\$?(?:'((?:[^']|'')*)'|(\\w*))\\.\\$?([A-Za-z]{1,6})\\$?(\\d{1,10})"
                       "(?::(?:\\$?(?:'(?:[^']|'')*'|\\w*)\\.)?\\$?([A-Za-z]{1,6})\\$?(\\d{1,10}))?"
                       "\\]"));
    const QRegularExpressionMatch match = pattern.match(text, at);
    if (!match.hasMatch())
        return std::nullopt;
    Reference result;
    result.sheet = match.captured(1) + match.captured(2);
    result.sheet.replace(QStringLiteral("''"), QStringLiteral("'"));
    result.isRange = !match.captured(5).isEmpty();
    const int last = result.isRange ? 5 : 3;
    const auto left = column(match.capturedView(3));
    const auto top = row(match.capturedView(4));
    const auto right = column(match.capturedView(last));
    const auto bottom = row(match.capturedView(last + 1));
    if (!left || !top || !right || !bottom)
        return std::nullopt;
    result.top = *top;
    result.left = *left;
    result.bottom = *bottom;
    result.right = *right;
    at = match.capturedEnd();
    return result;
}

} // namespace ZelDataVisualization
