// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/pictures/iconentries.h"

#include "platform/pictures/bytereader.h"
#include "platform/pictures/dib.h"
#include "platform/pictures/picturesize.h"
#include "platform/pictures/picturestructure.h"
#include "platform/pictures/picturetexts.h"

#include <tuple>

namespace Zel {

namespace {

/// Zero stands for 256, which does not fit into a byte.
int edge(quint8 byte)
{
    return byte == 0 ? 256 : byte;
}

QSize pngSize(QByteArrayView picture)
{
    ByteReader in(picture);
    in.skip(16);
    const auto width = in.big<qint32>();
    return {width, in.big<qint32>()};
}

} // namespace

IconEntries::IconEntries(const QByteArray &bytes)
    : m_bytes(bytes)
{
    ByteReader in(bytes);
    in.skip(2);
    m_isCursor = in.u16() == 2;
    m_count = in.u16();
    for (int i = 0; i < m_count && in.isGood(); ++i) {
        Entry entry;
        const int width = edge(in.u8());
        entry.size = {width, edge(in.u8())};
        in.skip(4);
        entry.depth = m_isCursor ? 0 : in.u16();
        in.skip(m_isCursor ? 2 : 0); // where a pointer points
        entry.length = in.u32();
        entry.offset = in.u32();
        if (in.isGood())
            m_entries << entry;
    }
}

QString IconEntries::problem(const PictureLimits &limits) const
{
    if (m_entries.isEmpty() || m_entries.size() < m_count)
        return PictureTexts::cutOff();
    for (const Entry &entry : m_entries) {
        const QString problem = problemOf(entry, limits);
        if (!problem.isEmpty())
            return problem;
    }
    return {};
}

QString IconEntries::problemOf(const Entry &entry, const PictureLimits &limits) const
{
    if (entry.offset + entry.length > m_bytes.size())
        return PictureTexts::cutOff();
    const QByteArray picture = m_bytes.mid(entry.offset, entry.length);
    if (formOf(picture) == PictureForm::Png) {
        const QSize size = pngSize(picture);
        return isWithin(size, limits) ? structureProblem(PictureForm::Png, picture, limits)
                                      : PictureTexts::tooManyPixels(size);
    }
    const DibHeader dib(picture);
    if (!dib.size().isEmpty() && !isWithin(dib.size(), limits))
        return PictureTexts::tooManyPixels(dib.size());
    if (!dib.isSound(limits) || dib.compression() != DibHeader::Plain)
        return PictureTexts::damaged();
    // The height counts the rows of the picture and of the one-bit mask below it.
    const qint64 rows = dib.size().height() / 2;
    const bool whole =
        dib.pixelOffset() + dib.rowBytes(rows) + dib.rowBytes(rows, 1) <= picture.size();
    return whole ? QString() : PictureTexts::cutOff();
}

int IconEntries::best(const QSize &target) const
{
    const auto rank = [&](const Entry &entry) {
        const bool fills = !target.isEmpty() && entry.size.width() >= target.width() &&
                           entry.size.height() >= target.height();
        const int area = entry.size.width() * entry.size.height();
        return std::tuple(fills, fills ? -area : area, entry.depth);
    };
    int best = 0;
    for (int i = 1; i < m_entries.size(); ++i) {
        if (rank(m_entries[i]) > rank(m_entries[best]))
            best = i;
    }
    return best;
}

} // namespace Zel
