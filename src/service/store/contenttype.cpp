// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/contenttype.h"

#include "service/store/bytesource.h"

#include <QMimeDatabase>

#include <array>

namespace Zel {

namespace {

struct Rule
{
    QLatin1String beginning; ///< of the MIME type
    QLatin1String assetType;
};

/// The first rule that fits decides.
constexpr std::array rules{
    Rule{QLatin1String("application/vnd.adobe.flash"), QLatin1String("Animation")},
    Rule{QLatin1String("application/x-shockwave"), QLatin1String("Animation")},
    Rule{QLatin1String("image/"), QLatin1String("Image")},
    Rule{QLatin1String("audio/"), QLatin1String("Audio")},
    Rule{QLatin1String("video/"), QLatin1String("Video")},
    Rule{QLatin1String("application/ogg"), QLatin1String("Video")},
    Rule{QLatin1String("application/pdf"), QLatin1String("pdf")},
    Rule{QLatin1String("application/xml"), QLatin1String("XML")},
    Rule{QLatin1String("text/xml"), QLatin1String("XML")},
    Rule{QLatin1String("application/vnd.ms-powerpoint"), QLatin1String("Presentation")},
    Rule{QLatin1String("application/vnd.openxmlformats-officedocument.presentationml"),
         QLatin1String("Presentation")},
    Rule{QLatin1String("application/vnd.oasis.opendocument.presentation"),
         QLatin1String("Presentation")},
    Rule{QLatin1String("application/vnd.openxmlformats-officedocument"), QLatin1String("Document")},
    Rule{QLatin1String("application/vnd.oasis.opendocument"), QLatin1String("Document")},
    Rule{QLatin1String("application/vnd.ms-"), QLatin1String("Document")},
    Rule{QLatin1String("application/msword"), QLatin1String("Document")},
    Rule{QLatin1String("application/rtf"), QLatin1String("Document")},
    Rule{QLatin1String("text/rtf"), QLatin1String("Document")},
    Rule{QLatin1String("text/"), QLatin1String("Text")},
};

QLatin1String assetTypeOf(const QMimeType &type)
{
    const QString name = type.name();
    for (const Rule &rule : rules) {
        if (name.startsWith(rule.beginning))
            return rule.assetType;
    }
    if (type.inherits(QStringLiteral("application/xml")))
        return QLatin1String("XML");
    if (type.inherits(QStringLiteral("text/plain")))
        return QLatin1String("Text");
    return QLatin1String("Other");
}

} // namespace

QString extensionOf(const QString &fileName)
{
    const qsizetype dot = fileName.lastIndexOf(QLatin1Char('.'));
    return dot <= 0 ? QString() : fileName.mid(dot + 1).toLower();
}

ContentType contentTypeOf(ByteSource &bytes, const QString &fileName)
{
    // As many as the rules of the MIME database look at.
    constexpr qint64 beginning = 16 * 1024;
    const QMimeDatabase database;
    QMimeType type = database.mimeTypeForData(bytes.read(0, beginning));
    if (!type.isValid() || bytes.size() == 0)
        type = database.mimeTypeForName(QStringLiteral("application/octet-stream"));
    // Every type is some kind of "any bytes", so a name says nothing where the bytes say nothing.
    const QMimeType named = database.mimeTypeForFile(fileName, QMimeDatabase::MatchExtension);
    if (!type.isDefault() && named.inherits(type.name()))
        type = named;
    return {type.name(), assetTypeOf(type)};
}

} // namespace Zel
