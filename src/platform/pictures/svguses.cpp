// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/pictures/svguses.h"

#include <algorithm>

namespace Zel {

void SvgUses::enter(const QString &id, const QString &used)
{
    const int element = int(m_elements.size());
    if (!m_open.isEmpty())
        m_elements[m_open.last()].children << element;
    m_elements.append(Element{{}, used});
    m_open << element;
    if (!id.isEmpty())
        m_ids.insert(id, element);
}

void SvgUses::leave()
{
    if (!m_open.isEmpty())
        m_open.removeLast();
}

bool SvgUses::measure(int mostElements, int mostDepth)
{
    m_mostElements = mostElements;
    m_mostDepth = mostDepth;
    if (m_elements.isEmpty() || !measureElement(0, 1))
        return false;
    m_drawn = m_elements.first().drawn;
    return true;
}

bool SvgUses::measureElement(int element, int depthSoFar)
{
    Element &self = m_elements[element];
    if (self.isOpen)
        return false; // it draws itself
    if (self.isDone)
        return depthSoFar + self.depth <= m_mostDepth;
    if (depthSoFar > m_mostDepth)
        return false;
    self.isOpen = true;
    QList<int> parts = self.children;
    const auto used = m_ids.constFind(self.used);
    if (!self.used.isEmpty() && used != m_ids.cend())
        parts << *used;
    self.drawn = 1;
    for (const int part : std::as_const(parts)) {
        if (!measureElement(part, depthSoFar + 1))
            return false;
        self.drawn += m_elements[part].drawn;
        self.depth = std::max(self.depth, m_elements[part].depth + 1);
        if (self.drawn > m_mostElements)
            return false;
    }
    self.isOpen = false;
    self.isDone = true;
    return true;
}

} // namespace Zel
