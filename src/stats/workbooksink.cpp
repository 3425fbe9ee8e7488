// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "stats/workbooksink.h"

#include <QStringList>

namespace ZelWebServiceControls {

namespace {

/// The most characters of a text in a formula.
constexpr qsizetype mostQuoted = 255;

/// A text as it stands in a formula.
QString quoted(const QString &text)
{
    QStringList parts;
    for (qsizetype at = 0; at < text.size() || at == 0; at += mostQuoted) {
        QString part = text.mid(at, mostQuoted);
        parts.append(u'"' + part.replace(u'"', QStringLiteral("\"\"")) + u'"');
    }
    return parts.join(u'&');
}

QString columnLetters(qsizetype column)
{
    QString letters;
    for (qsizetype rest = column + 1; rest > 0; rest = (rest - 1) / 26)
        letters.prepend(QChar(u'A' + char16_t((rest - 1) % 26)));
    return letters;
}

QString reference(qsizetype row, qsizetype column)
{
    return columnLetters(column) + QString::number(row + 1);
}

/// The formula over the range it reads.
QString over(const CellFormula &formula, const QString &range)
{
    switch (formula.kind) {
    case CellFormula::CountAbove:
        // Not COUNTIF: that takes "2", "02" and "2.0" for the same, and nothing for a match of an
        // empty text. Joined with an empty text numbers are texts, which EXACT compares in every
        // program.
        return QStringLiteral("=SUMPRODUCT(--EXACT(") + range + QStringLiteral("&\"\",") +
               quoted(formula.key) + QStringLiteral("))");
    case CellFormula::SumAbove:
        return QStringLiteral("=SUM(") + range + u')';
    case CellFormula::MeanAbove:
    case CellFormula::MeanLeft:
        return QStringLiteral("=AVERAGE(") + range + u')';
    case CellFormula::ShareOfAbove:
        break;
    }
    return QStringLiteral("=(") + range + u'/' + QString::number(formula.extent) + u')';
}

/// Whether an XML 1.0 document can hold the code unit at a place, and a cell shows it.
bool isPrintable(const QString &text, qsizetype at)
{
    const QChar c = text[at];
    if (c.isHighSurrogate())
        return at + 1 < text.size() && text[at + 1].isLowSurrogate();
    if (c.isLowSurrogate())
        return at > 0 && text[at - 1].isHighSurrogate();
    return (c >= u' ' && c != QChar(0x7f) && c < QChar(0xfffe)) || c == u'\t' || c == u'\n';
}

} // namespace

QString CellFormula::relativeText() const
{
    const QString extentText = QString::number(extent);
    if (kind == ShareOfAbove)
        return over(*this, QStringLiteral("R[-1]C"));
    if (kind == MeanLeft)
        return over(*this, QStringLiteral("RC[-") + extentText + QStringLiteral("]:RC[-1]"));
    return over(*this, QStringLiteral("R[-") + extentText + QStringLiteral("]C:R[-1]C"));
}

QString CellFormula::absoluteText(qsizetype row, qsizetype column) const
{
    if (kind == ShareOfAbove)
        return over(*this, reference(row - 1, column));
    if (kind == MeanLeft)
        return over(*this, reference(row, column - extent) + u':' + reference(row, column - 1));
    return over(*this, reference(row - extent, column) + u':' + reference(row - 1, column));
}

QString printableText(const QString &text)
{
    QString printable = text;
    printable.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    printable.replace(u'\r', u'\n');
    const QString before = printable;
    for (qsizetype at = 0; at < before.size(); ++at) {
        if (!isPrintable(before, at))
            printable[at] = QChar::ReplacementCharacter;
    }
    return printable;
}

QString cellText(const QString &text)
{
    QString shown = printableText(text);
    if (shown.size() > MostCellCharacters) {
        const bool splitsPair = shown[MostCellCharacters - 1].isHighSurrogate();
        shown.truncate(splitsPair ? MostCellCharacters - 1 : MostCellCharacters);
    }
    return shown;
}

} // namespace ZelWebServiceControls
