// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/pictures/wmffile.h"

#include "platform/pictures/bytereader.h"
#include "platform/pictures/picturesize.h"
#include "platform/pictures/picturetexts.h"
#include "platform/pictures/wmffunctions.h"

#include <uwmf.h>

namespace Zel {

namespace {

constexpr quint32 PlaceableKey = 0x9AC6CDD7;
constexpr qsizetype PlaceableBytes = 22;
constexpr qsizetype HeaderBytes = 18;
constexpr qsizetype RecordHeaderBytes = 6;
constexpr double DotsPerInch = 96;

} // namespace

WmfFile::WmfFile(const QByteArray &bytes)
    : m_bytes(bytes)
{
    m_problem = readPlaceable();
    if (m_problem.isEmpty())
        m_problem = checkRecords();
    if (!m_problem.isEmpty())
        return;
    takeWindow();
    if (m_window.isEmpty() || m_size.isEmpty())
        m_problem = PictureTexts::noSize();
    else if (!isPlausible(m_size))
        m_problem = PictureTexts::tooManyPixels(m_size.toSize());
}

QString WmfFile::readPlaceable()
{
    ByteReader in(m_bytes);
    m_isPlaceable = in.u32() == PlaceableKey;
    if (m_isPlaceable) {
        in.skip(2);
        const double left = in.s16();
        const double top = in.s16();
        const double right = in.s16();
        m_window = QRectF(QPointF(left, top), QPointF(right, in.s16())).normalized();
        const double unitsPerInch = in.u16();
        if (unitsPerInch > 0)
            m_size = m_window.size() / unitsPerInch * DotsPerInch;
    }
    m_start = (m_isPlaceable ? PlaceableBytes : 0) + HeaderBytes;
    return in.isGood() && m_bytes.size() > m_start ? QString() : PictureTexts::cutOff();
}

QString WmfFile::checkRecords()
{
    const char *const end = m_bytes.constData() + m_bytes.size();
    qsizetype at = m_start;
    while (m_bytes.size() - at >= RecordHeaderBytes) {
        ByteReader in(QByteArrayView(m_bytes).sliced(at));
        const qint64 length = qint64(in.u32()) * 2;
        if (length > m_bytes.size() - at)
            return PictureTexts::cutOff();
        const auto safe = qint64(U_WMRRECSAFE_get(m_bytes.constData() + at, end));
        if (length < RecordHeaderBytes || safe != length)
            return PictureTexts::damaged();
        if (in.u16() == WmfEnd)
            return {};
        at += length;
    }
    return PictureTexts::cutOff();
}

/// Records name the window they draw in. Without a placeable header that is all there is to know of
/// the picture's size: a unit is taken for a pixel, as far as the picture remains one for a screen.
void WmfFile::takeWindow()
{
    constexpr QSize Screen(1024, 1024);
    if (m_isPlaceable)
        return;
    QPointF origin;
    QSizeF extent;
    each([&](quint16 function, QByteArrayView record) {
        ByteReader in(record);
        const double y = in.s16();
        const double x = in.s16();
        if (function == WmfSetWindowOrigin)
            origin = {x, y};
        else if (function == WmfSetWindowExtent)
            extent = {x, y};
        return extent.isNull() || origin.isNull();
    });
    m_window = QRectF(origin, extent).normalized();
    m_size = m_window.size();
    if (m_size.width() > Screen.width() || m_size.height() > Screen.height())
        m_size = fittedSize(m_size, Screen);
}

void WmfFile::each(const std::function<bool(quint16, QByteArrayView)> &take) const
{
    qsizetype at = m_start;
    while (m_bytes.size() - at >= RecordHeaderBytes) {
        ByteReader in(QByteArrayView(m_bytes).sliced(at));
        const qint64 length = qint64(in.u32()) * 2;
        const quint16 function = in.u16();
        const QByteArrayView record =
            QByteArrayView(m_bytes).sliced(at + RecordHeaderBytes, length - RecordHeaderBytes);
        if (function == WmfEnd || !take(function, record))
            return;
        at += length;
    }
}

} // namespace Zel
