// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/widgets/twips.h"

#include <QFontMetricsF>
#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

namespace Zel {

int logicalDpi(const QWidget *widget)
{
    if (widget)
        return widget->logicalDpiX();
    const QScreen *screen = QGuiApplication::primaryScreen();
    return screen ? qRound(screen->logicalDotsPerInchX()) : 96;
}

int pixelsFromTwips(double twips, int dpi)
{
    return qRound(twips * dpi / TwipsPerInch);
}

double twipsFromPixels(double pixels, int dpi)
{
    return pixels * TwipsPerInch / dpi;
}

double textWidthTwips(const QString &text, const QWidget *widget)
{
    const QFontMetricsF metrics(widget->font(), widget);
    return twipsFromPixels(metrics.horizontalAdvance(text), logicalDpi(widget));
}

double textHeightTwips(const QWidget *widget)
{
    const QFontMetricsF metrics(widget->font(), widget);
    return twipsFromPixels(metrics.height(), logicalDpi(widget));
}

} // namespace Zel
