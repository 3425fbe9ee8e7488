// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/contract/assetrecord.h"
#include "platform/widgets/listrowprovider.h"

#include <vector>

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

    /// Gives every line the large icon that `indexOf` answers for it; before, no line has one.
    template <typename IndexOf>
    void attachLargeIcons(const IndexOf &indexOf)
    {
        m_largeIcons.reserve(static_cast<size_t>(rowCount()));
        for (qsizetype row = 0; row < rowCount(); ++row)
            m_largeIcons.push_back(indexOf(row));
    }

    qsizetype rowCount() const override;
    QString text(qsizetype row, int column) const override;
    QVariant tag(qsizetype row) const override;
    int smallIcon(qsizetype row) const override;
    int largeIcon(qsizetype row) const override;
    bool sortValues(int column, std::span<qint64> out) const override;

private:
    const QXSC::AssetRecord &asset(qsizetype row) const { return *m_assets->item(row + 1); }

    QXSC::AssetCollectionPtr m_assets;
    std::vector<int> m_largeIcons;
};

} // namespace ZelWebServiceControls
