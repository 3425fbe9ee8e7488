// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/widgets/kepttext.h"

#include <algorithm>

namespace Zel {

namespace {

// What the editor shows as one character: a pair of CR and LF, or any other code unit.
qsizetype unitLength(QStringView text, qsizetype at)
{
    return text[at] == u'\r' && at + 1 < text.size() && text[at + 1] == u'\n' ? 2 : 1;
}

/// How long the part of `text` is that the editor shows as `count` characters; -1 when there are
/// fewer.
qsizetype lengthOf(QStringView text, qsizetype count)
{
    qsizetype at = 0;
    for (; count > 0; --count) {
        if (at >= text.size())
            return -1;
        at += unitLength(text, at);
    }
    return at;
}

QString firstBreak(QStringView text)
{
    for (qsizetype at = 0; at < text.size(); ++at) {
        const QChar c = text[at];
        if (c == u'\r' || c == u'\n' || c == KeptText::Break)
            return text.sliced(at, unitLength(text, at)).toString();
    }
    return QStringLiteral("\n");
}

} // namespace

void KeptText::set(const QString &text, const QString &shown)
{
    m_text = m_first = text;
    m_shown = m_firstShown = shown;
}

bool KeptText::isWhole() const
{
    return lengthOf(m_text, m_shown.size()) == m_text.size();
}

QString KeptText::typed(QStringView shown) const
{
    return shown.toString().replace(Break, firstBreak(m_text));
}

void KeptText::edit(const QString &shown)
{
    if (shown == m_firstShown) { // everything is undone
        set(m_first, m_firstShown);
        return;
    }
    const qsizetype shorter = std::min(shown.size(), m_shown.size());
    const qsizetype before =
        std::mismatch(shown.begin(), shown.begin() + shorter, m_shown.begin()).first -
        shown.begin();
    const qsizetype rest = shorter - before;
    const qsizetype behind =
        std::mismatch(shown.rbegin(), shown.rbegin() + rest, m_shown.rbegin()).first -
        shown.rbegin();
    if (isWhole()) {
        const qsizetype from = lengthOf(m_text, before);
        const qsizetype to = lengthOf(m_text, m_shown.size() - behind);
        const QStringView middle =
            QStringView(shown).sliced(before, shown.size() - before - behind);
        m_text = m_text.left(from) + typed(middle) + m_text.mid(to);
        m_shown = shown;
    }
    // Two breaks of different kinds may have come together as one.
    if (m_shown != shown || !isWhole()) {
        m_text = shown;
        m_text.replace(Break, u'\n');
        m_shown = shown;
    }
}

} // namespace Zel
