// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QIcon>

namespace Studio {

/// One of Studio's own line icons ("projects", "refresh", ...), drawn in the palette's text colour
/// so that it is crisp at every scale and readable on light and dark. Checked it takes the accent
/// colour.
QIcon tintedIcon(const QString &name);

} // namespace Studio
