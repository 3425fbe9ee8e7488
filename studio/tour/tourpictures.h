// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>

namespace Studio {

/// Draws a few pictures, large enough for their upload to be seen, into a folder and returns their
/// paths.
QStringList drawTourPictures(const QString &folder);

} // namespace Studio
