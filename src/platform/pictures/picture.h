// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QImage>
#include <QSize>
#include <QString>

namespace Zel {

/// A decoded picture, or a sentence for people that says why there is none.
struct Picture
{
    QImage image;
    QString problem;

    bool isNull() const { return image.isNull(); }
};

/// What a picture says about itself, before it is decoded.
struct PictureInfo
{
    /// Its form, in lower case: "png", "jpeg", "gif", "bmp", "ico", "cur", "svg", "wmf", "emf",
    /// "webp", "tiff" and what else Qt's plug-ins read. Empty when there is a problem.
    QByteArray format;
    /// Its size in pixels, as it is to be looked at (upright); of a drawing the size at 96 dots an
    /// inch, of an icon that of its largest picture.
    QSize size;
    QString problem;

    bool isNull() const { return format.isEmpty(); }
};

} // namespace Zel
