// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/pictures/picturelimits.h"

#include <QByteArray>
#include <QList>
#include <QSize>
#include <QString>

namespace Zel {

/// The directory of an icon or a mouse pointer: one picture in several sizes.
class IconEntries
{
public:
    explicit IconEntries(const QByteArray &bytes);

    int count() const { return m_count; }

    bool isCursor() const { return m_isCursor; }

    /// What is wrong with the directory or any of its pictures; empty when all is well.
    QString problem(const PictureLimits &limits) const;

    /// The position of the picture to show: the smallest that fills the target both ways, else the
    /// largest; of equals the one with most colours.
    int best(const QSize &target) const;

    QSize size(int position) const { return m_entries.value(position).size; }

private:
    struct Entry
    {
        QSize size;
        int depth = 0;
        qint64 offset = 0;
        qint64 length = 0;
    };

    QString problemOf(const Entry &entry, const PictureLimits &limits) const;

    QByteArray m_bytes;
    QList<Entry> m_entries;
    int m_count = 0;
    bool m_isCursor = false;
};

} // namespace Zel
