// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/pictures/jpegstructure.h"

#include "platform/pictures/bytereader.h"
#include "platform/pictures/picturetexts.h"

#include <cstring>

namespace Zel {

namespace {

constexpr quint8 EndOfImage = 0xD9;
constexpr quint8 StartOfScan = 0xDA;
// Photo programs write about ten scans; the most pixels a picture may have, ten times, is the most
// work one is worth.
constexpr int MostScans = 500;
constexpr qint64 Rounds = 10;

bool standsAlone(quint8 marker)
{
    return marker == 0x01 || (marker >= 0xD0 && marker <= 0xD8);
}

bool startsFrame(quint8 marker)
{
    return marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
}

class JpegWalk
{
public:
    JpegWalk(const QByteArray &bytes, const PictureLimits &limits)
        : m_in(bytes)
        , m_bytes(bytes)
        , m_limits(limits)
    {
    }

    QString problem()
    {
        m_in.skip(2);
        while (m_in.isGood()) {
            const quint8 marker = nextMarker();
            if (!m_in.isGood())
                break;
            if (marker == EndOfImage)
                return m_scans > 0 ? QString() : PictureTexts::cutOff();
            if (standsAlone(marker))
                continue;
            readSegment(marker);
            if (m_scans > MostScans || m_pixels * m_scans > m_limits.pixels * Rounds)
                return PictureTexts::tooIntricate();
        }
        return PictureTexts::cutOff();
    }

private:
    /// Marks begin with FF, any number of them; FF 00 is a pixel value in a scan.
    quint8 nextMarker()
    {
        for (;;) {
            const void *found =
                std::memchr(m_bytes.constData() + m_in.position(), 0xFF, size_t(m_in.left()));
            if (!found) {
                m_in.seek(-1);
                return 0;
            }
            m_in.seek(static_cast<const char *>(found) - m_bytes.constData());
            quint8 byte = 0xFF;
            while (byte == 0xFF && m_in.isGood())
                byte = m_in.u8();
            if (byte != 0 || !m_in.isGood())
                return byte;
        }
    }

    void readSegment(quint8 marker)
    {
        const qint64 length = m_in.big<quint16>();
        const qsizetype content = m_in.position();
        if (startsFrame(marker)) {
            m_in.skip(1);
            const qint64 height = m_in.big<quint16>();
            m_pixels = height * m_in.big<quint16>();
            m_in.seek(content);
        }
        if (marker == StartOfScan)
            ++m_scans;
        m_in.skip(std::max<qint64>(length - 2, 0));
    }

    ByteReader m_in;
    const QByteArray &m_bytes;
    const PictureLimits &m_limits;
    qint64 m_pixels = 0;
    qint64 m_scans = 0;
};

} // namespace

QString jpegProblem(const QByteArray &bytes, const PictureLimits &limits)
{
    return JpegWalk(bytes, limits).problem();
}

} // namespace Zel
