// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QIcon>
#include <QList>

namespace ZelWebServiceControls::AssetIcons {

/// The words for kinds of assets that have an icon of their own, in the order of the small images.
/// "Other" stands for every kind that is none of these, "Broken" for a picture that fails to load.
const QStringList &types();

/// The icon of a kind of assets; that of "Other" for a word that is none of `types`.
QIcon icon(const QString &type);

/// The icons in the order of `types`.
QList<QIcon> all();

/// The 1-based place of a kind's icon in `all`. Words compare exactly.
int indexOf(const QString &type);

/// The pictures of the folder tree: a closed and an open folder.
QList<QIcon> folders();

} // namespace ZelWebServiceControls::AssetIcons
