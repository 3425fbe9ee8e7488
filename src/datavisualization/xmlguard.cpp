// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "datavisualization/xmlguard.h"

namespace ZelDataVisualization {

namespace {

constexpr int MostInARun = 4'096;
constexpr int MostAttributes = 64;
constexpr int MostNamespaces = 64;

bool isBlank(QChar c)
{
    return c == u' ' || c == u'\t' || c == u'\r' || c == u'\n';
}

class Guard
{
public:
    explicit Guard(QStringView text)
        : m_text(text)
    {
    }

    bool isHostile()
    {
        while ((m_at = m_text.indexOf(u'<', m_at)) >= 0) {
            if (skip(u"<!--", u"-->") || skip(u"<![CDATA[", u"]]>"))
                continue;
            ++m_at;
            if (!isTagHarmless())
                return true;
        }
        return false;
    }

private:
    bool skip(QStringView begin, QStringView end)
    {
        if (!m_text.mid(m_at, begin.size()).startsWith(begin))
            return false;
        const qsizetype found = m_text.indexOf(end, m_at + begin.size());
        m_at = found < 0 ? m_text.size() : found + end.size();
        return true;
    }

    /// Goes to the end of the tag.
    bool isTagHarmless()
    {
        int attributes = 0;
        qsizetype runStart = m_at;
        for (; m_at < m_text.size() && m_text[m_at] != u'>' && m_text[m_at] != u'<'; ++m_at) {
            const QChar c = m_text[m_at];
            if (c == u'"' || c == u'\'') {
                const qsizetype closing = m_text.indexOf(c, m_at + 1);
                if (++attributes > MostAttributes || !countNamespace(runStart))
                    return false;
                m_at = closing < 0 ? m_text.size() - 1 : closing;
                runStart = m_at + 1;
            } else if (isBlank(c)) {
                runStart = m_at + 1;
            } else if (m_at - runStart >= MostInARun) {
                return false;
            }
        }
        return true;
    }

    bool countNamespace(qsizetype nameStart)
    {
        if (m_text.mid(nameStart, 5) == u"xmlns")
            ++m_namespaces;
        return m_namespaces <= MostNamespaces;
    }

    QStringView m_text;
    qsizetype m_at = 0;
    int m_namespaces = 0;
};

} // namespace

bool isHostileXml(QStringView text)
{
    return Guard(text).isHostile();
}

} // namespace ZelDataVisualization
