// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

namespace Zel {

/// The forms that need more than handing the bytes to one of Qt's readers.
enum class PictureForm
{
    Png,
    Jpeg,
    Gif,
    Bmp,
    Icon, ///< ICO and CUR
    Svg,
    Wmf,
    Emf,
    Packed, ///< a gzip stream around a drawing (SVGZ, WMZ, EMZ)
    Other   ///< for Qt to tell
};

/// Tells the form by the first bytes.
PictureForm formOf(const QByteArray &bytes);

} // namespace Zel
