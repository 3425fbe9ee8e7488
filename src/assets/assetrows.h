// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/contract/assetrecord.h"
#include "platform/widgets/listrowprovider.h"

namespace ZelWebServiceControls {

/// The lines of an asset list, read from the records when they are seen or sorted.
class AssetRows : public Zel::ListRowProvider
{
public:
    /// The columns in their fixed order.
    enum Column
    {
        Name,
        Description,
        Created
    };

    explicit AssetRows(QXSC::AssetCollectionPtr assets);

    qsizetype rowCount() const override;
    QString text(qsizetype row, int column) const override;
    QVariant tag(qsizetype row) const override;
    int smallIcon(qsizetype row) const override;
    int largeIcon(qsizetype row) const override;
    bool sortValues(int column, std::span<qint64> out) const override;

private:
    const QXSC::AssetRecord &asset(qsizetype row) const { return *m_assets->item(row + 1); }

    QXSC::AssetCollectionPtr m_assets;
};

} // namespace ZelWebServiceControls
