// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/widgets/twipsgeometry.h"

#include "platform/widgets/twips.h"

#include <QCoreApplication>
#include <QResizeEvent>
#include <QWidget>

#include <algorithm>

namespace Zel {

namespace {

int edge(double twips, int dpi)
{
    // Beyond what a widget can be, so that nonsense does not overflow.
    const double limit = twipsFromPixels(QWIDGETSIZE_MAX, dpi);
    return pixelsFromTwips(std::clamp(twips, -limit, limit), dpi);
}

QRect pixelRect(const TwipsRect &rect, int dpi)
{
    const int left = edge(rect.left, dpi);
    const int top = edge(rect.top, dpi);
    const int right = edge(rect.left + rect.width, dpi);
    const int bottom = edge(rect.top + rect.height, dpi);
    return QRect(left, top, right - left, bottom - top);
}

TwipsRect twipsRect(const QRect &pixels, int dpi)
{
    return {twipsFromPixels(pixels.x(), dpi), twipsFromPixels(pixels.y(), dpi),
            twipsFromPixels(pixels.width(), dpi), twipsFromPixels(pixels.height(), dpi)};
}

/// The twips one widget was placed at and the pixels drawn from them, kept as a child of it.
class Keeper : public QObject
{
public:
    explicit Keeper(QWidget *widget)
        : QObject(widget)
    {
    }

    TwipsRect twips;
    QRect pixels;
};

Keeper *keeperOf(const QWidget *widget)
{
    for (QObject *child : widget->children()) {
        if (auto *keeper = dynamic_cast<Keeper *>(child))
            return keeper;
    }
    return nullptr;
}

} // namespace

TwipsRect twipsGeometry(const QWidget *widget)
{
    const QRect now = widget->geometry();
    TwipsRect rect = twipsRect(now, logicalDpi(widget));
    const Keeper *keeper = keeperOf(widget);
    if (!keeper)
        return rect;
    // Each figure is exact for as long as the widget has the pixels drawn from it.
    if (now.x() == keeper->pixels.x())
        rect.left = keeper->twips.left;
    if (now.y() == keeper->pixels.y())
        rect.top = keeper->twips.top;
    if (now.width() == keeper->pixels.width())
        rect.width = keeper->twips.width;
    if (now.height() == keeper->pixels.height())
        rect.height = keeper->twips.height;
    return rect;
}

void setTwipsGeometry(QWidget *widget, const TwipsRect &rect)
{
    const TwipsRect former = twipsGeometry(widget);
    const QSize formerSize = widget->size();
    Keeper *keeper = keeperOf(widget);
    if (!keeper)
        keeper = new Keeper(widget);
    keeper->twips = {rect.left, rect.top, std::max(0.0, rect.width), std::max(0.0, rect.height)};
    keeper->pixels = pixelRect(keeper->twips, logicalDpi(widget));
    widget->setGeometry(keeper->pixels);

    const TwipsRect place = twipsGeometry(widget);
    const bool resized = place.width != former.width || place.height != former.height;
    const bool told = widget->isVisible() && widget->size() != formerSize;
    if (resized && !told) {
        // Qt tells a hidden widget only when it is shown. A widget placed by code is laid out at
        // once, or that late event would undo what the code sets next.
        QResizeEvent event(widget->size(), formerSize);
        QCoreApplication::sendEvent(widget, &event);
    }
}

void setTwipsTop(QWidget *widget, double top)
{
    TwipsRect rect = twipsGeometry(widget);
    rect.top = top;
    setTwipsGeometry(widget, rect);
}

} // namespace Zel
