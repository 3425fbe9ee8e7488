// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/pictures/emffile.h"

#include "platform/pictures/bytereader.h"
#include "platform/pictures/emfplayer.h"
#include "platform/pictures/picturesize.h"
#include "platform/pictures/picturetexts.h"

#include <uemf.h>
#include <uemf_safe.h>

namespace Zel {

namespace {

constexpr qsizetype HeaderBytes = 88;
constexpr qsizetype HeaderBytesWithMicrometres = 108;

QRectF rectangle(ByteReader &in)
{
    const double left = in.s32();
    const double top = in.s32();
    const double right = in.s32();
    return QRectF(QPointF(left, top), QPointF(right, in.s32()));
}

QSizeF pair(ByteReader &in)
{
    const double width = in.s32();
    return {width, double(in.s32())};
}

} // namespace

EmfFile::EmfFile(const QByteArray &bytes)
    : m_bytes(bytes)
{
    // libuemf looks at records in place, as numbers of four bytes.
    Q_ASSERT(quintptr(m_bytes.constData()) % 4 == 0);
    m_problem = readHeader();
    if (m_problem.isEmpty())
        m_problem = checkRecords();
}

QString EmfFile::readHeader()
{
    ByteReader in(m_bytes);
    in.skip(4);
    const qint64 headerBytes = in.u32();
    QRectF bounds = rectangle(in);
    const QRectF frame = rectangle(in); // in hundredths of a millimetre
    in.seek(72);
    m_pixels = pair(in);
    m_millimetres = pair(in);
    if (!in.isGood())
        return PictureTexts::cutOff();
    if (headerBytes < HeaderBytes || m_pixels.isEmpty() || m_millimetres.isEmpty())
        return PictureTexts::damaged();
    if (headerBytes >= HeaderBytesWithMicrometres) {
        in.seek(100);
        const QSizeF micrometres = pair(in);
        if (!micrometres.isEmpty())
            m_millimetres = micrometres / 1000;
    }
    const double x = m_pixels.width() / m_millimetres.width() / 100;
    const double y = m_pixels.height() / m_millimetres.height() / 100;
    m_frame = frame.isValid()
                  ? QRectF(frame.x() * x, frame.y() * y, frame.width() * x, frame.height() * y)
                  : bounds.adjusted(0, 0, 1, 1);
    if (!m_frame.isValid() || m_frame.isEmpty())
        return PictureTexts::noSize();
    constexpr double DotsPerMillimetre = 96 / 25.4;
    m_size = {m_frame.width() / x / 100 * DotsPerMillimetre,
              m_frame.height() / y / 100 * DotsPerMillimetre};
    return isPlausible(m_size) ? QString() : PictureTexts::tooManyPixels(m_size.toSize());
}

QString EmfFile::checkRecords() const
{
    qint64 at = 0;
    while (m_bytes.size() - at >= 8) {
        ByteReader in(QByteArrayView(m_bytes).sliced(at));
        const quint32 type = in.u32();
        const qint64 length = in.u32();
        if (length > m_bytes.size() - at)
            return PictureTexts::cutOff();
        if (length < 8 || length % 4 != 0)
            return PictureTexts::damaged();
        // Asked about a record it does not know, libuemf writes to the console.
        if (EmfPlayer::plays(type) && !U_emf_record_safe(m_bytes.constData() + at))
            return PictureTexts::damaged();
        if (type == U_EMR_EOF)
            return {};
        at += length;
    }
    return PictureTexts::cutOff();
}

void EmfFile::each(const std::function<bool(quint32, QByteArrayView)> &take) const
{
    qint64 at = 0;
    while (m_bytes.size() - at >= 8) {
        ByteReader in(QByteArrayView(m_bytes).sliced(at));
        const quint32 type = in.u32();
        const qint64 length = in.u32();
        if (type == U_EMR_EOF || !take(type, QByteArrayView(m_bytes).sliced(at, length)))
            return;
        at += length;
    }
}

} // namespace Zel
