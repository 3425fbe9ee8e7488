// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/themesources.h"

#include "platform/pictures/pictureloader.h"
#include "service/store/storabletext.h"

#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>
#include <QStringConverter>

#include <array>

namespace Zel {

namespace {

[[noreturn]] void refuse(const FilePlace &place, const QString &path, const QString &sentence)
{
    throw WorkspaceFileError(place, QStringLiteral("the file %1 %2").arg(path, sentence));
}

/// All bytes of a file that has at most `most`; a larger one is not even opened.
QByteArray readBytes(const QString &path, const FilePlace &place, qint64 most)
{
    const QFileInfo info(path);
    QFile file(path);
    if (!info.isFile() || !file.open(QIODevice::ReadOnly))
        refuse(place, path, QStringLiteral("cannot be read."));
    const auto tooLarge = [&](qint64 size) {
        refuse(place, path,
               QStringLiteral("has %1 bytes; at most %2 (%3 MiB) are taken.")
                   .arg(size)
                   .arg(most)
                   .arg(most / (1024 * 1024)));
    };
    if (file.size() > most)
        tooLarge(file.size());
    const QByteArray bytes = file.read(most + 1); // it may have grown
    if (bytes.size() > most)
        tooLarge(file.size());
    if (file.error() != QFileDevice::NoError)
        refuse(place, path, QStringLiteral("cannot be read: %1.").arg(file.errorString()));
    return bytes;
}

struct Form
{
    const char *format; ///< as `PictureInfo` names it
    QLatin1String mime;
};

constexpr std::array forms{
    Form{"png", QLatin1String("image/png")},
    Form{"jpeg", QLatin1String("image/jpeg")},
    Form{"webp", QLatin1String("image/webp")},
    Form{"svg", QLatin1String("image/svg+xml")},
};

QString mimeOf(const QByteArray &format)
{
    for (const Form &form : forms) {
        if (format == form.format)
            return form.mime;
    }
    return QString();
}

} // namespace

QString readDefinition(const QString &path, const FilePlace &place)
{
    const QByteArray bytes = readBytes(path, place, Themes::largestDefinition);
    const auto marked = QStringConverter::encodingForData(bytes);
    const bool isUtf16 = marked == QStringConverter::Utf16LE || marked == QStringConverter::Utf16BE;
    QStringDecoder decoder(isUtf16 ? *marked : QStringConverter::Utf8,
                           QStringConverter::Flag::ConvertInitialBom);
    const QString text = decoder(bytes);
    if (decoder.hasError())
        refuse(place, path, QStringLiteral("is neither UTF-8 nor UTF-16 with its mark."));
    if (!isStorableText(text))
        refuse(place, path, QStringLiteral("has a character that cannot be stored."));
    const qsizetype size = isUtf16 ? text.toUtf8().size() : bytes.size();
    if (size > Themes::largestDefinition)
        refuse(place, path,
               QStringLiteral("has %1 bytes as UTF-8; at most %2 are taken.")
                   .arg(size)
                   .arg(Themes::largestDefinition));
    return text;
}

QByteArray readPreview(const QString &path, const FilePlace &place, ThemePreview &preview)
{
    const QByteArray bytes = readBytes(path, place, Themes::largestPreview);
    PictureLimits limits;
    limits.pixels = 25'000'000;
    limits.canvas = 1024;
    const PictureLoader loader(limits);
    const PictureInfo info = loader.probe(bytes);
    if (info.isNull())
        refuse(place, path, QStringLiteral("is no picture that can be read: %1").arg(info.problem));
    const QString mime = mimeOf(info.format);
    // A packed drawing would need a header of its own when it is sent.
    if (mime.isEmpty() || bytes.startsWith("\x1f\x8b"))
        refuse(place, path,
               QStringLiteral("is a picture, but neither PNG nor JPEG nor WebP nor plain SVG."));
    const Picture picture = loader.load(bytes);
    if (picture.isNull())
        refuse(place, path,
               QStringLiteral("is no picture that can be read: %1").arg(picture.problem));
    const QByteArray sha = QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex();
    preview = {QString::fromLatin1(sha), mime, bytes.size()};
    return bytes;
}

} // namespace Zel
