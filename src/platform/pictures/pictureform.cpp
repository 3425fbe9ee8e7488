// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/pictures/pictureform.h"

#include <QXmlStreamReader>
#include <QtEndian>

namespace Zel {

namespace {

template <typename Number>
Number numberAt(const QByteArray &bytes, qsizetype at)
{
    return at + qsizetype(sizeof(Number)) <= bytes.size()
               ? qFromLittleEndian<Number>(bytes.constData() + at)
               : Number(0);
}

bool isIcon(const QByteArray &bytes)
{
    const auto kind = numberAt<quint16>(bytes, 2);
    // The ninth byte of the first entry is always 0 or 255; it keeps other files of zeros out.
    return bytes.size() >= 22 && numberAt<quint16>(bytes, 0) == 0 && (kind == 1 || kind == 2) &&
           numberAt<quint16>(bytes, 4) > 0 && (bytes[9] == 0 || bytes[9] == char(0xFF));
}

bool isWmf(const QByteArray &bytes)
{
    if (numberAt<quint32>(bytes, 0) == 0x9AC6CDD7)
        return true;
    const auto kind = numberAt<quint16>(bytes, 0);
    const auto version = numberAt<quint16>(bytes, 4);
    return (kind == 1 || kind == 2) && numberAt<quint16>(bytes, 2) == 9 &&
           (version == 0x0100 || version == 0x0300);
}

bool isEmf(const QByteArray &bytes)
{
    return numberAt<quint32>(bytes, 0) == 1 && numberAt<quint32>(bytes, 40) == 0x464D4520;
}

/// An XML document whose first element is `svg`, in any encoding.
bool isSvg(const QByteArray &bytes)
{
    const QByteArray start =
        bytes.left(2).contains('\0') ? bytes.left(4) : bytes.left(64).trimmed();
    const bool mayBe = start.startsWith('<') || start.startsWith("\xEF\xBB\xBF") ||
                       start.startsWith("\xFF\xFE") || start.startsWith("\xFE\xFF") ||
                       start.startsWith(QByteArray("\0<", 2));
    if (!mayBe)
        return false;
    QXmlStreamReader xml(bytes.left(1024 * 1024));
    while (!xml.atEnd()) {
        if (xml.readNext() == QXmlStreamReader::StartElement)
            return xml.name() == QLatin1String("svg");
    }
    return false;
}

} // namespace

PictureForm formOf(const QByteArray &bytes)
{
    if (bytes.startsWith("\x89PNG\r\n\x1a\n"))
        return PictureForm::Png;
    if (bytes.startsWith("\xFF\xD8\xFF"))
        return PictureForm::Jpeg;
    if (bytes.startsWith("GIF87a") || bytes.startsWith("GIF89a"))
        return PictureForm::Gif;
    if (bytes.startsWith("BM"))
        return PictureForm::Bmp;
    if (bytes.startsWith("\x1F\x8B"))
        return PictureForm::Packed;
    if (isEmf(bytes))
        return PictureForm::Emf;
    if (isWmf(bytes))
        return PictureForm::Wmf;
    if (isIcon(bytes))
        return PictureForm::Icon;
    return isSvg(bytes) ? PictureForm::Svg : PictureForm::Other;
}

} // namespace Zel
