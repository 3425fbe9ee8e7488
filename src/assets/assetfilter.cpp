// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "assets/assetfilter.h"

#include <QStringList>

#include <array>

namespace ZelWebServiceControls {

namespace {

struct Format
{
    const char *extension;
    const char *description;
};

constexpr std::array formats{
    Format{"jpg", "JPEG"},
    Format{"bmp", "Bitmap"},
    Format{"avi", "Microsoft AVI"},
    Format{"wmv", "Windows Media Video"},
    Format{"wma", "Windows Media Audio"},
    Format{"asf", "Advanced Streaming Format"},
    Format{"mov", "Quicktime"},
    Format{"ppt", "Microsoft PPT"},
};

/// Extensions compare exactly: "JPG" is none of the table.
QString descriptionOf(const QString &extension)
{
    for (const Format &format : formats) {
        if (extension == QLatin1String(format.extension))
            return QString::fromLatin1(format.description);
    }
    return extension.toUpper();
}

} // namespace

QString assetFilterText(const QString &allowedFormats)
{
    QString each;
    QStringList all;
    if (!allowedFormats.isEmpty()) {
        const QStringList parts = allowedFormats.split(QLatin1Char(','));
        for (const QString &part : parts) {
            const QString extension = part.trimmed();
            const QString pattern = QStringLiteral("*.") + extension;
            each += descriptionOf(extension) + QStringLiteral(" (.") + extension +
                    QStringLiteral(")|") + pattern + QLatin1Char('|');
            all << pattern;
        }
    }
    return QStringLiteral("All Formats|") + all.join(QLatin1Char(';')) + QLatin1Char('|') + each +
           QStringLiteral("All (*.*)|*.*|");
}

} // namespace ZelWebServiceControls
