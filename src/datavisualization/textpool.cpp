// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "datavisualization/textpool.h"

#include <QHashFunctions>

namespace ZelDataVisualization {

namespace {

quint32 hashOf(QStringView text)
{
    // Seeded, so that nobody can write a workbook whose texts all have one place.
    return static_cast<quint32>(qHash(text, QHashSeed::globalSeed()));
}

} // namespace

quint32 TextPool::add(QStringView text)
{
    if (m_ends.size() * 2 >= m_places.size())
        grow();
    const quint32 hash = hashOf(text);
    const size_t mask = m_places.size() - 1;
    size_t place = hash & mask;
    for (; m_places[place] != 0; place = (place + 1) & mask) {
        const quint32 number = m_places[place] - 1;
        if (m_hashes[number] == hash && at(number) == text)
            return number;
    }
    m_characters.append(text.utf16(), static_cast<size_t>(text.size()));
    m_ends.push_back(m_characters.size());
    m_hashes.push_back(hash);
    m_places[place] = static_cast<quint32>(m_ends.size());
    return m_places[place] - 1;
}

void TextPool::grow()
{
    constexpr size_t Least = 64;
    m_places.assign(std::max(Least, m_places.size() * 2), 0);
    const size_t mask = m_places.size() - 1;
    for (size_t number = 0; number < m_hashes.size(); ++number) {
        size_t place = m_hashes[number] & mask;
        while (m_places[place] != 0)
            place = (place + 1) & mask;
        m_places[place] = static_cast<quint32>(number + 1);
    }
}

} // namespace ZelDataVisualization
