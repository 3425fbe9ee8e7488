// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/pictures/picturestructure.h"

#include "platform/pictures/bytereader.h"
#include "platform/pictures/dib.h"
#include "platform/pictures/iconentries.h"
#include "platform/pictures/jpegstructure.h"
#include "platform/pictures/picturesize.h"
#include "platform/pictures/picturetexts.h"

namespace Zel {

namespace {

/// Chunks: length, name, content, checksum, up to the one that is called IEND.
QString pngProblem(const QByteArray &bytes)
{
    ByteReader in(bytes);
    in.skip(8);
    while (in.isGood()) {
        const auto length = in.big<quint32>();
        const QByteArrayView name = in.bytes(4);
        in.skip(qint64(length) + 4);
        if (in.isGood() && name == QByteArrayView("IEND"))
            return {};
    }
    return PictureTexts::cutOff();
}

/// Skips the colours announced in a packed field of a GIF.
void skipColors(ByteReader &in, quint8 packed)
{
    if (packed & 0x80)
        in.skip(qint64(3) << ((packed & 7) + 1));
}

void skipSubBlocks(ByteReader &in)
{
    while (const quint8 length = in.u8())
        in.skip(length);
}

QString gifProblem(const QByteArray &bytes, const PictureLimits &limits)
{
    constexpr quint8 Extension = 0x21;
    constexpr quint8 Frame = 0x2C;
    ByteReader in(bytes);
    in.skip(10);
    const quint8 packed = in.u8();
    in.skip(2);
    skipColors(in, packed);
    int frames = 0;
    while (in.isGood() && in.left() > 0) {
        const quint8 block = in.u8();
        if (block == Extension) {
            in.skip(1);
        } else if (block == Frame) {
            in.skip(4);
            const int width = in.u16();
            if (!isWithin({width, in.u16()}, limits))
                return PictureTexts::damaged();
            skipColors(in, in.u8());
            in.skip(1);
            if (++frames > limits.frames)
                return PictureTexts::tooManyFrames();
        } else {
            break; // the trailer, or what some programs put behind the last picture
        }
        skipSubBlocks(in);
    }
    return in.isGood() && frames > 0 ? QString() : PictureTexts::cutOff();
}

QString bmpProblem(const QByteArray &bytes, const PictureLimits &limits)
{
    ByteReader in(bytes);
    in.skip(10);
    const qint64 offset = in.u32();
    if (in.left() < 12)
        return PictureTexts::cutOff();
    const DibHeader dib(QByteArrayView(bytes).sliced(in.position()));
    if (!dib.size().isEmpty() && !isWithin(dib.size(), limits))
        return PictureTexts::tooManyPixels(dib.size());
    if (!dib.isSound(limits) || dib.compression() == DibHeader::Jpeg ||
        dib.compression() == DibHeader::Png)
        return PictureTexts::damaged();
    if (offset > bytes.size())
        return PictureTexts::cutOff();
    const QByteArrayView pixels = QByteArrayView(bytes).sliced(offset);
    const bool whole = dib.isRunLength()
                           ? runLengthEnds(pixels, dib.compression() == DibHeader::Rle4)
                           : dib.rowBytes(dib.size().height()) <= pixels.size();
    return whole ? QString() : PictureTexts::cutOff();
}

QString iconProblem(const QByteArray &bytes, const PictureLimits &limits)
{
    const IconEntries entries(bytes);
    if (entries.count() > limits.frames)
        return PictureTexts::tooManyFrames();
    return entries.problem(limits);
}

} // namespace

QString structureProblem(PictureForm form, const QByteArray &bytes, const PictureLimits &limits)
{
    switch (form) {
    case PictureForm::Png:
        return pngProblem(bytes);
    case PictureForm::Jpeg:
        return jpegProblem(bytes, limits);
    case PictureForm::Gif:
        return gifProblem(bytes, limits);
    case PictureForm::Bmp:
        return bmpProblem(bytes, limits);
    case PictureForm::Icon:
        return iconProblem(bytes, limits);
    default:
        return {};
    }
}

} // namespace Zel
