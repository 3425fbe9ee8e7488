// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/pictures/picturelimits.h"

#include <QByteArray>
#include <QSizeF>
#include <QString>

namespace Zel {

/// An SVG document that is safe to be drawn.
struct CleanSvg
{
    QByteArray document;
    /// Size at 96 dots an inch.
    QSizeF size;
    /// Elements that are drawn, those that are used several times counted as often.
    int drawn = 0;
    /// Why the document is refused; empty when it is not.
    QString problem;
};

/// Copies a document, keeping the elements and attributes that draw.
///
/// Left out are scripts, animations, processing instructions, the document type, and whatever
/// refers to anything outside the document: Qt's renderer would open local files that a picture or
/// a style sheet names. Refused are documents that nest or repeat (`use`, entities) more than a
/// drawing does, and dash patterns so fine that they are meant to hurt. Pictures inside the
/// document have to be made of pixels and within the limits. Texts are left out where the program
/// has no QGuiApplication, without which there are no fonts.
CleanSvg cleanSvg(const QByteArray &bytes, const PictureLimits &limits);

} // namespace Zel
