// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/widgets/twipsgeometry.h"

#include "platform/widgets/twips.h"

#include <QEvent>
#include <QWidget>

namespace Zel {

namespace {

QRect pixelRect(const TwipsRect &rect, int dpi)
{
    const int left = pixelsFromTwips(rect.left, dpi);
    const int top = pixelsFromTwips(rect.top, dpi);
    const int right = pixelsFromTwips(rect.left + rect.width, dpi);
    const int bottom = pixelsFromTwips(rect.top + rect.height, dpi);
    return QRect(left, top, right - left, bottom - top);
}

TwipsRect twipsRect(const QRect &pixels, int dpi)
{
    return {twipsFromPixels(pixels.x(), dpi), twipsFromPixels(pixels.y(), dpi),
            twipsFromPixels(pixels.width(), dpi), twipsFromPixels(pixels.height(), dpi)};
}

/// The exact twips of one widget, kept as a child of it while its pixels are the ones drawn from
/// them.
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
    const Keeper *keeper = keeperOf(widget);
    const QRect pixels = widget->geometry();
    if (keeper && keeper->pixels == pixels)
        return keeper->twips;
    TwipsRect rect = twipsRect(pixels, logicalDpi(widget));
    if (keeper && keeper->pixels.topLeft() == pixels.topLeft()) {
        rect.left = keeper->twips.left;
        rect.top = keeper->twips.top;
    }
    return rect;
}

void setTwipsGeometry(QWidget *widget, const TwipsRect &rect)
{
    Keeper *keeper = keeperOf(widget);
    if (!keeper)
        keeper = new Keeper(widget);
    keeper->twips = rect;
    widget->setGeometry(pixelRect(rect, logicalDpi(widget)));
    // What the widget became: a minimum size may not let it be what was asked for.
    keeper->pixels = widget->geometry();
}

void setTwipsTop(QWidget *widget, double top)
{
    TwipsRect rect = twipsGeometry(widget);
    rect.top = top;
    setTwipsGeometry(widget, rect);
}

} // namespace Zel
