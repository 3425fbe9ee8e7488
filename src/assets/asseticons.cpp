// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "assets/asseticons.h"

#include <QStringList>

namespace ZelWebServiceControls::AssetIcons {

namespace {

constexpr QLatin1String other("Other");

QIcon named(const QString &name)
{
    return QIcon(QStringLiteral(":/zel/assets/icons/%1.svg").arg(name));
}

} // namespace

const QStringList &types()
{
    static const QStringList words{QStringLiteral("Image"),     QStringLiteral("Audio"),
                                   QStringLiteral("Video"),     QStringLiteral("XML"),
                                   QStringLiteral("Text"),      QStringLiteral("pdf"),
                                   QStringLiteral("Document"),  QStringLiteral("Presentation"),
                                   QStringLiteral("Animation"), other,
                                   QStringLiteral("Broken")};
    return words;
}

int indexOf(const QString &type)
{
    const qsizetype at = types().indexOf(type);
    return static_cast<int>(at < 0 ? types().indexOf(other) : at) + 1;
}

QIcon icon(const QString &type)
{
    return named(types().at(indexOf(type) - 1));
}

QList<QIcon> all()
{
    QList<QIcon> icons;
    for (const QString &type : types())
        icons << icon(type);
    return icons;
}

QList<QIcon> folders()
{
    return {named(QStringLiteral("folder-closed")), named(QStringLiteral("folder-open"))};
}

} // namespace ZelWebServiceControls::AssetIcons
