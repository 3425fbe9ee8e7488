// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/settings.h"

namespace Studio {

namespace {

constexpr double WidestColumn = 100000; // twips, wider than any screen

} // namespace

QString Settings::server() const
{
    return m_store.value(QStringLiteral("signIn/server")).toString();
}

void Settings::setServer(const QString &address)
{
    m_store.setValue(QStringLiteral("signIn/server"), address);
}

QString Settings::caFile() const
{
    return m_store.value(QStringLiteral("signIn/caFile")).toString();
}

void Settings::setCaFile(const QString &path)
{
    m_store.setValue(QStringLiteral("signIn/caFile"), path);
}

QString Settings::userName() const
{
    return m_store.value(QStringLiteral("signIn/userName")).toString();
}

void Settings::setUserName(const QString &name)
{
    m_store.setValue(QStringLiteral("signIn/userName"), name);
}

Appearance Settings::appearance() const
{
    return appearanceFromKey(m_store.value(QStringLiteral("window/appearance")).toString());
}

void Settings::setAppearance(Appearance appearance)
{
    m_store.setValue(QStringLiteral("window/appearance"), appearanceKey(appearance));
}

QByteArray Settings::windowGeometry() const
{
    return m_store.value(QStringLiteral("window/geometry")).toByteArray();
}

void Settings::setWindowGeometry(const QByteArray &geometry)
{
    m_store.setValue(QStringLiteral("window/geometry"), geometry);
}

std::optional<QString> Settings::projectListBag() const
{
    const QString key = QStringLiteral("projects/listBag");
    if (!m_store.contains(key))
        return std::nullopt;
    return m_store.value(key).toString();
}

void Settings::setProjectListBag(const QString &text)
{
    m_store.setValue(QStringLiteral("projects/listBag"), text);
}

QList<double> Settings::widths(const QString &key) const
{
    QList<double> twips;
    const QVariantList values = m_store.value(key).toList();
    for (const QVariant &value : values) {
        bool isNumber = false;
        const double width = value.toDouble(&isNumber);
        if (!isNumber || !(width >= 0 && width <= WidestColumn)) // no number at all fails, too
            return {};
        twips << width;
    }
    return twips;
}

void Settings::setWidths(const QString &key, const QList<double> &twips)
{
    QVariantList values;
    for (const double width : twips)
        values << width;
    m_store.setValue(key, values);
}

QList<double> Settings::projectColumnWidths() const
{
    return widths(QStringLiteral("projects/columnWidths"));
}

void Settings::setProjectColumnWidths(const QList<double> &twips)
{
    setWidths(QStringLiteral("projects/columnWidths"), twips);
}

QList<double> Settings::assetColumnWidths() const
{
    return widths(QStringLiteral("assets/columnWidths"));
}

void Settings::setAssetColumnWidths(const QList<double> &twips)
{
    setWidths(QStringLiteral("assets/columnWidths"), twips);
}

bool Settings::showsAssetTable() const
{
    return m_store.value(QStringLiteral("assets/table")).toBool();
}

void Settings::setShowsAssetTable(bool table)
{
    m_store.setValue(QStringLiteral("assets/table"), table);
}

QString Settings::projectType() const
{
    return m_store.value(QStringLiteral("projects/type")).toString();
}

void Settings::setProjectType(const QString &typeID)
{
    m_store.setValue(QStringLiteral("projects/type"), typeID);
}

void Settings::reset()
{
    m_store.clear();
}

} // namespace Studio
