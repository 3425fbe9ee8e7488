// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/pictures/emfplayer.h"
#include "platform/pictures/metafilecharset.h"
#include "platform/pictures/metafilereading.h"
#include "platform/pictures/metafileshapes.h"

#include <uemf.h>

namespace Zel {

namespace {

enum Option
{
    Opaque = 0x02,
    Clipped = 0x04,
    GlyphNumbers = 0x10,
    NoRectangle = 0x100,
    SmallCharacters = 0x200
};

QString readWide(ByteReader &in, quint32 count)
{
    QString text;
    for (qsizetype i = std::min<qsizetype>(count, in.left() / 2); i > 0; --i)
        text += QChar(in.u16());
    return text;
}

QString readNarrow(ByteReader &in, quint32 count, quint8 charset)
{
    return textOfCharset(in.bytes(std::min<qint64>(count, in.left())), charset);
}

} // namespace

bool EmfPlayer::playText(quint32 type, ByteReader &in)
{
    switch (type) {
    case U_EMR_EXTTEXTOUTA:
    case U_EMR_EXTTEXTOUTW:
        playTextOut(in, type == U_EMR_EXTTEXTOUTW);
        return true;
    case U_EMR_SMALLTEXTOUT:
        playSmallText(in);
        return true;
    default:
        return false;
    }
}

void EmfPlayer::playTextOut(ByteReader &in, bool wide)
{
    in.skip(28);
    const QPointF at = readPoint(in);
    const quint32 count = in.u32();
    const quint32 textOffset = in.u32();
    const quint32 options = in.u32();
    const QRectF box = readRectangle(in);
    const quint32 widthsOffset = in.u32();
    if (options & Opaque)
        m_canvas.fillOnScreen(m_canvas.map(rectangleShape(box)), state().background);
    if (options & GlyphNumbers)
        return; // numbers of letters in a font that is not here
    ByteReader text(m_record);
    text.seek(textOffset);
    const QString words =
        wide ? readWide(text, count) : readNarrow(text, count, state().font.charset);
    double width = 0;
    if (widthsOffset > 0) {
        ByteReader widths(m_record);
        widths.seek(widthsOffset);
        for (qsizetype i = std::min<qsizetype>(count, widths.left() / 4); i > 0; --i)
            width += widths.u32();
    }
    m_canvas.save();
    if (options & Clipped)
        m_canvas.clip(m_canvas.map(rectangleShape(box)));
    m_canvas.drawText(at, words, width);
    const QPointF position = state().position;
    m_canvas.restore(-1);
    state().position = position;
}

void EmfPlayer::playSmallText(ByteReader &in)
{
    const QPointF at = readPoint(in);
    const quint32 count = in.u32();
    const quint32 options = in.u32();
    in.skip(12);
    if (!(options & NoRectangle))
        in.skip(16);
    if (options & GlyphNumbers)
        return;
    const QString words =
        options & SmallCharacters ? readNarrow(in, count, 0) : readWide(in, count);
    m_canvas.drawText(at, words, 0);
}

} // namespace Zel
