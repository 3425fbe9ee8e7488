// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/pictures/picturesize.h"

#include <cmath>

namespace Zel {

QSize fittedSize(const QSizeF &size, const QSize &room)
{
    const double scale = std::min(room.width() / size.width(), room.height() / size.height());
    const auto edge = [scale](double length, int most) {
        return std::clamp(int(std::lround(length * scale)), 1, most);
    };
    return {edge(size.width(), room.width()), edge(size.height(), room.height())};
}

bool isWithin(const QSize &size, const PictureLimits &limits)
{
    return size.width() <= limits.edge && size.height() <= limits.edge &&
           qint64(size.width()) * size.height() <= limits.pixels;
}

bool isPlausible(const QSizeF &size)
{
    constexpr double Most = 100'000;
    return size.width() > 0 && size.height() > 0 && size.width() <= Most && size.height() <= Most;
}

QSize canvasSize(const QSizeF &size, const QSize &target, const PictureLimits &limits)
{
    if (!target.isEmpty())
        return fittedSize(size, target.boundedTo({limits.edge, limits.edge}));
    const int edge = std::min(limits.canvas, limits.edge);
    const QSize own(int(std::ceil(size.width())), int(std::ceil(size.height())));
    return own.width() <= edge && own.height() <= edge ? own : fittedSize(size, {edge, edge});
}

} // namespace Zel
