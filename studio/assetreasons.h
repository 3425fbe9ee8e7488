// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "studio/assetcontrols.h"

#include <QHash>
#include <QObject>

namespace Studio {

/// Tells why something cannot be done with the assets just now, and says so in the tool tips of the
/// buttons that are disabled: the right that is missing, the folder that is not empty, nothing
/// selected.
class AssetReasons : public QObject
{
    Q_OBJECT

public:
    explicit AssetReasons(const AssetControls &controls, QObject *parent = nullptr);

    // Each is empty while nothing is in the way.
    QString againstAdding() const;
    QString againstListing() const;
    QString againstDeletingFolder() const;
    QString againstDeletingAssets() const;

    /// Looks at every button anew.
    void refresh();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    bool has(char right) const;
    QString folderName() const;
    QString againstDeleting() const;
    void explain(QPushButton *button, const QString &reason);

    AssetControls m_controls;
    /// What the buttons say while they are enabled.
    QHash<QPushButton *, QString> m_toolTips;
};

} // namespace Studio
