// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/textlabel.h"

#include <QTextBoundaryFinder>

namespace Studio {

namespace {

constexpr QChar Ellipsis(0x2026);
constexpr QChar BreakHere(0x200b); // zero width space
/// A word up to this length fits on a line of the narrowest panel.
constexpr qsizetype LongestWord = 24;
constexpr qsizetype PieceOfWord = 8;

QString broken(const QString &word)
{
    if (word.size() <= LongestWord)
        return word;
    QString result;
    QTextBoundaryFinder characters(QTextBoundaryFinder::Grapheme, word);
    qsizetype start = 0;
    for (qsizetype end = characters.toNextBoundary(); end >= 0; end = characters.toNextBoundary()) {
        if (end - start < PieceOfWord && end < word.size())
            continue;
        result += QStringView(word).mid(start, end - start);
        if (end < word.size())
            result += BreakHere;
        start = end;
    }
    return result;
}

} // namespace

TextLabel::TextLabel(const char *name, qsizetype longest, QWidget *parent)
    : QLabel(parent)
    , m_longest(longest)
{
    setObjectName(QLatin1String(name));
    setTextFormat(Qt::PlainText);
    setWordWrap(true);
    setTextInteractionFlags(Qt::TextSelectableByMouse);
}

void TextLabel::showText(const QString &text)
{
    setText(breakable(shortened(text, m_longest)));
}

QString shortened(const QString &text, qsizetype longest)
{
    if (text.size() <= longest)
        return text;
    const bool splitsPair = longest > 0 && text.at(longest - 1).isHighSurrogate();
    return text.left(splitsPair ? longest - 1 : longest) + Ellipsis;
}

QString breakable(const QString &text)
{
    QString result;
    qsizetype start = 0;
    for (qsizetype i = 0; i <= text.size(); ++i) {
        if (i < text.size() && !text.at(i).isSpace())
            continue;
        result += broken(text.mid(start, i - start));
        if (i < text.size())
            result += text.at(i);
        start = i + 1;
    }
    return result;
}

} // namespace Studio
