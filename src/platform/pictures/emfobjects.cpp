// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/pictures/emfplayer.h"
#include "platform/pictures/metafilepens.h"
#include "platform/pictures/metafilereading.h"

#include <uemf.h>

#include <array>

namespace Zel {

namespace {

constexpr quint32 Stock = 0x80000000;
constexpr quint32 UserStyle = 7;
constexpr quint32 Geometric = 0x00010000;

} // namespace

bool EmfPlayer::playObjects(quint32 type, ByteReader &in)
{
    switch (type) {
    case U_EMR_SELECTOBJECT:
        select(in.u32());
        return true;
    case U_EMR_DELETEOBJECT:
        m_objects.remove(in.u32());
        return true;
    case U_EMR_CREATEPEN: {
        const quint32 handle = in.u32();
        const quint32 style = in.u32();
        const double width = std::abs(double(in.s32()));
        in.skip(4);
        m_objects.insert(handle, penOf(style, width, readColor(in)));
        return true;
    }
    case U_EMR_EXTCREATEPEN:
        makeExtendedPen(in);
        return true;
    case U_EMR_CREATEBRUSHINDIRECT: {
        const quint32 handle = in.u32();
        const quint32 style = in.u32();
        const QColor color = readColor(in);
        m_objects.insert(handle, Zel::brushOf(style, color, in.u32()));
        return true;
    }
    case U_EMR_CREATEMONOBRUSH:
    case U_EMR_CREATEDIBPATTERNBRUSHPT:
        makePatternBrush(in);
        return true;
    case U_EMR_EXTCREATEFONTINDIRECTW:
        makeFont(in);
        return true;
    default:
        return false;
    }
}

void EmfPlayer::select(quint32 handle)
{
    if (handle & Stock) {
        selectStock(handle & ~Stock);
        return;
    }
    const MetafileObject object = m_objects.value(handle);
    if (const auto *pen = std::get_if<MetafilePen>(&object))
        state().pen = *pen;
    else if (const auto *brush = std::get_if<QBrush>(&object))
        state().brush = *brush;
    else if (const auto *font = std::get_if<MetafileFont>(&object))
        state().font = *font;
}

void EmfPlayer::selectStock(quint32 handle)
{
    constexpr std::array greys{255, 192, 128, 64, 0};
    constexpr quint32 NullBrush = 5;
    constexpr quint32 WhitePen = 6;
    constexpr quint32 BlackPen = 7;
    constexpr quint32 NullPen = 8;
    if (handle < greys.size())
        state().brush = QColor(greys[handle], greys[handle], greys[handle]);
    else if (handle == NullBrush)
        state().brush = Qt::NoBrush;
    else if (handle == WhitePen || handle == BlackPen)
        state().pen = penOf(0, 0, handle == WhitePen ? Qt::white : Qt::black);
    else if (handle == NullPen)
        state().pen = penOf(5, 0, Qt::black);
    else if (handle >= 10 && handle <= 17)
        state().font = MetafileFont();
}

QBrush EmfPlayer::brushOf(quint32 handle) const
{
    const MetafileObject object = m_objects.value(handle);
    const auto *brush = std::get_if<QBrush>(&object);
    return brush ? *brush : QBrush(Qt::NoBrush);
}

void EmfPlayer::makeExtendedPen(ByteReader &in)
{
    const quint32 handle = in.u32();
    in.skip(16);
    const quint32 style = in.u32();
    const double width = in.u32();
    const quint32 brushStyle = in.u32();
    MetafilePen pen = penOf(style, width, readColor(in));
    in.skip(4);
    pen.isCosmetic = !(style & Geometric);
    if (brushStyle == 1)
        pen.style = Qt::NoPen;
    if ((style & 0x0F) == UserStyle) {
        const quint32 count = std::min(in.u32(), 16U);
        // Qt counts dashes in widths of the line, in pairs.
        for (quint32 i = 0; i < count / 2 * 2; ++i)
            pen.dashes << std::max(in.u32() / std::max(pen.width, 1.0), 0.1);
        if (!pen.dashes.isEmpty())
            pen.style = Qt::CustomDashLine;
    }
    m_objects.insert(handle, pen);
}

void EmfPlayer::makePatternBrush(ByteReader &in)
{
    const quint32 handle = in.u32();
    in.skip(4);
    const QImage pattern = readImage(in);
    m_objects.insert(handle, pattern.isNull() ? QBrush(Qt::NoBrush) : QBrush(pattern));
}

void EmfPlayer::makeFont(ByteReader &in)
{
    const quint32 handle = in.u32();
    MetafileFont font;
    font.height = in.s32();
    in.skip(4);
    font.angle = in.s32() / 10.0;
    in.skip(4);
    font.weight = in.s32();
    font.italic = in.u8();
    font.underline = in.u8();
    font.strikeOut = in.u8();
    font.charset = in.u8();
    in.skip(4);
    for (int i = 0; i < 32; ++i) {
        const char16_t unit = in.u16();
        if (unit == 0)
            break;
        font.face += QChar(unit);
    }
    m_objects.insert(handle, font);
}

} // namespace Zel
