// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/pictures/svgpicture.h"

#include "platform/pictures/paintmeter.h"
#include "platform/pictures/picturesize.h"
#include "platform/pictures/picturetexts.h"
#include "platform/pictures/svgcleaner.h"

#include <QPainter>
#include <QSvgRenderer>

#include <cmath>

namespace Zel {

namespace {

double costOf(QSvgRenderer &renderer, const QSize &size)
{
    PaintMeter meter(size);
    QPainter painter(&meter);
    renderer.render(&painter, QRectF(QPointF(), QSizeF(size)));
    painter.end();
    return meter.cost();
}

/// The size, or a smaller one, in which the drawing is done in a few seconds; nothing when that
/// would be a stamp.
QSize affordable(QSvgRenderer &renderer, const QSize &wanted)
{
    constexpr int Smallest = 64;
    QSize size = wanted;
    for (double cost = costOf(renderer, size); cost > PaintCost::Most;
         cost = costOf(renderer, size)) {
        // What a drawing costs goes with its area, or hardly with its size at all.
        const double scale = std::min(0.5, std::sqrt(PaintCost::Most / cost));
        size = fittedSize(wanted, size * scale);
        if (std::max(size.width(), size.height()) < Smallest)
            return {};
    }
    return size;
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
    const QSize size = affordable(renderer, canvasSize(clean.size, target, limits));
    if (size.isEmpty())
        return {QImage(), PictureTexts::tooIntricate()};
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
