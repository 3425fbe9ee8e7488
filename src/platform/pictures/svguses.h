// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QHash>
#include <QList>
#include <QString>

namespace Zel {

/// Counts what a drawing comes to when each `use` draws the element it names again. Ten elements
/// that each use the one before ten times are ten thousand million.
class SvgUses
{
public:
    /// An element begins.
    /// @param id its name, empty for none
    /// @param used the name of the element that it draws again, empty for none
    void enter(const QString &id, const QString &used);
    void leave();

    /// Whether the drawing, with all repetitions, stays within these numbers and repeats nothing
    /// inside itself.
    bool measure(int mostElements, int mostDepth);

    /// The elements that are drawn; known after `measure`.
    int drawn() const { return int(m_drawn); }

private:
    struct Element
    {
        QList<int> children;
        QString used;
        qint64 drawn = 0; // with all that is in it
        int depth = 0;
        bool isOpen = false; // being measured
        bool isDone = false;
    };

    bool measureElement(int element, int depthSoFar);

    QList<Element> m_elements;
    QList<int> m_open;
    QHash<QString, int> m_ids;
    qint64 m_drawn = 0;
    int m_mostElements = 0;
    int m_mostDepth = 0;
};

} // namespace Zel
