// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/pictures/svgpicture.h"

#include "platform/pictures/picturesize.h"
#include "platform/pictures/picturetexts.h"
#include "platform/pictures/svgcleaner.h"

#include <QPainter>
#include <QSvgRenderer>

#include <cmath>

namespace Zel {

namespace {

/// The most pixels that all elements together may paint were each to cover everything: a few
/// seconds of work. What has more elements is drawn smaller.
constexpr double MostWork = 10e9;

QSize affordable(const QSize &size, int elements)
{
    const double work = double(size.width()) * size.height() * std::max(elements, 1);
    if (work <= MostWork)
        return size;
    const double scale = std::sqrt(MostWork / work);
    return {std::max(1, int(size.width() * scale)), std::max(1, int(size.height() * scale))};
}

} // namespace

Picture loadSvg(const QByteArray &bytes, const PictureLimits &limits, const QSize &target)
{
    const CleanSvg clean = cleanSvg(bytes, limits);
    if (!clean.problem.isEmpty())
        return {QImage(), clean.problem};
    QSvgRenderer renderer;
    if (!renderer.load(clean.document) || !renderer.isValid())
        return {QImage(), PictureTexts::damaged()};
    const QSize size = affordable(canvasSize(clean.size, target, limits), clean.drawn);
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    if (image.isNull())
        return {QImage(), PictureTexts::outOfMemory()};
    image.fill(Qt::transparent);
    QPainter painter(&image);
    renderer.render(&painter, QRectF(QPointF(), QSizeF(size)));
    return {image, QString()};
}

PictureInfo probeSvg(const QByteArray &bytes, const PictureLimits &limits)
{
    const CleanSvg clean = cleanSvg(bytes, limits);
    PictureInfo info;
    info.problem = clean.problem;
    if (clean.problem.isEmpty()) {
        info.format = "svg";
        info.size = canvasSize(clean.size, {}, limits);
    }
    return info;
}

} // namespace Zel
