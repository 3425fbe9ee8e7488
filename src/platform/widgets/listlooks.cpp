// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/widgets/listlooks.h"

#include <QPainter>
#include <QStyle>
#include <QStyleOptionViewItem>
#include <QWidget>

#include <algorithm>

namespace Zel::ListLooks {

int textMargin(const QWidget *widget)
{
    return widget->style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, widget) + 3;
}

int lineHeight(const QStyleOptionViewItem &option, int iconHeight, int boxHeight)
{
    return std::max({option.fontMetrics.height() + 8, iconHeight + 6, boxHeight + 6});
}

bool isDark(const QPalette &palette)
{
    return palette.color(QPalette::Base).lightness() < palette.color(QPalette::Text).lightness();
}

QColor blend(const QColor &over, const QColor &under, double share)
{
    const auto mix = [share](int a, int b) { return qRound(a * share + b * (1 - share)); };
    return QColor(mix(over.red(), under.red()), mix(over.green(), under.green()),
                  mix(over.blue(), under.blue()));
}

QColor ghostText(const QPalette &palette)
{
    return blend(palette.color(QPalette::Text), palette.color(QPalette::Base), 0.58);
}

void muteInactiveSelection(QPalette &palette)
{
    const QColor active = palette.color(QPalette::Active, QPalette::Highlight);
    if (palette.color(QPalette::Inactive, QPalette::Highlight) != active)
        return;
    const QColor ground = palette.color(QPalette::Active, QPalette::Base);
    palette.setColor(QPalette::Inactive, QPalette::Highlight, blend(active, ground, 0.3));
    palette.setColor(QPalette::Inactive, QPalette::HighlightedText,
                     palette.color(QPalette::Active, QPalette::Text));
}

void paintFocusFrame(QPainter *painter, const QRect &rect, const QStyleOptionViewItem &option)
{
    const bool selected = option.state & QStyle::State_Selected;
    const QColor colour = option.palette.color(selected ? QPalette::Text : QPalette::Highlight);
    // Filled, because a pen's line lies between the pixels on a scaled screen.
    painter->fillRect(rect.left(), rect.top(), rect.width(), 1, colour);
    painter->fillRect(rect.left(), rect.bottom(), rect.width(), 1, colour);
    painter->fillRect(rect.left(), rect.top(), 1, rect.height(), colour);
    painter->fillRect(rect.right(), rect.top(), 1, rect.height(), colour);
}

void outlineCheckBoxes(QPalette &palette)
{
    if (!isDark(palette))
        return;
    // Styles draw the outline as a darker window colour, which on a dark ground is no outline.
    const QColor outline = blend(palette.color(QPalette::Text), palette.color(QPalette::Base), 0.5);
    palette.setColor(QPalette::Window, outline.lighter(140));
}

} // namespace Zel::ListLooks
