// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "assets/assetrows.h"

#include "assets/asseticons.h"
#include "platform/core/datetext.h"

namespace ZelWebServiceControls {

namespace {

constexpr qint64 SecondsPerDay = 86400;

/// Orders dates by the second of the local clock that their text shows.
qint64 sortValue(const QDateTime &moment)
{
    const QDateTime local = moment.timeSpec() == Qt::LocalTime ? moment : moment.toLocalTime();
    if (!local.date().isValid() || !local.time().isValid())
        return Zel::ListRowProvider::NoSortValue;
    return local.date().toJulianDay() * SecondsPerDay + local.time().msecsSinceStartOfDay() / 1000;
}

} // namespace

AssetRows::AssetRows(QXSC::AssetCollectionPtr assets)
    : m_assets(std::move(assets))
{
}

qsizetype AssetRows::rowCount() const
{
    return m_assets->count();
}

QString AssetRows::text(qsizetype row, int column) const
{
    switch (column) {
    case Name:
        return asset(row).assetName;
    case Description:
        return asset(row).assetDetail;
    default:
        return Zel::generalDateText(asset(row).assetDate);
    }
}

QVariant AssetRows::tag(qsizetype row) const
{
    return QVariant::fromValue(m_assets->item(row + 1));
}

int AssetRows::smallIcon(qsizetype row) const
{
    return AssetIcons::indexOf(asset(row).assetType);
}

int AssetRows::largeIcon(qsizetype row) const
{
    return m_largeIcons.empty() ? 0 : m_largeIcons[static_cast<size_t>(row)];
}

bool AssetRows::sortValues(int column, std::span<qint64> out) const
{
    if (column != Created)
        return false;
    auto value = out.begin();
    for (const QXSC::AssetRecordPtr &record : *m_assets)
        *value++ = sortValue(record->assetDate);
    return true;
}

} // namespace ZelWebServiceControls
