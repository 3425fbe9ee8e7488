// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QStringView>

#include <string>
#include <vector>

namespace ZelDataVisualization {

/// Keeps texts one behind the other and every text once; a text is known by its number.
class ZEL_EXPORT TextPool
{
public:
    /// The number of a text, a new one for a text that is not here yet.
    quint32 add(QStringView text);

    QStringView at(quint32 number) const
    {
        const size_t from = number == 0 ? 0 : m_ends[number - 1];
        return QStringView(m_characters.data() + from, qsizetype(m_ends[number] - from));
    }

    size_t size() const { return m_ends.size(); }

private:
    void grow();

    std::u16string m_characters;
    std::vector<size_t> m_ends;
    std::vector<quint32> m_hashes;
    std::vector<quint32> m_places; ///< number + 1 of the text at home here, 0 for none
};

} // namespace ZelDataVisualization
