// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/studiostyle.h"

#include "studio/appearance.h"

#include <QPainter>
#include <QStyleOption>

namespace Studio {

namespace {

// Device-independent pixels.
constexpr qreal Radius = 5;
constexpr int MoreHeight = 6;
constexpr int MoreWidth = 12;
constexpr int TextInset = 4;

// Shares of the text colour in the ground's.
constexpr double BoxEdge = 0.5; // 3 : 1 against the ground: a box is known by its edge
constexpr double ButtonEdge = 0.22;
constexpr double RadioEdge = 0.5;
constexpr double FrameEdge = 0.16;
constexpr double Hover = 0.06;
constexpr double Pressed = 0.12;
/// Share of the accent in what is switched on.
constexpr double Checked = 0.16;

QColor shade(const QPalette &palette, double share)
{
    return mixed(palette.color(QPalette::Window), palette.color(QPalette::WindowText), share);
}

bool showsFocus(const QStyleOption &option)
{
    return option.state.testFlag(QStyle::State_HasFocus) &&
           option.state.testFlag(QStyle::State_Enabled);
}

bool isPrimary(const QStyleOption *option)
{
    const auto *button = qstyleoption_cast<const QStyleOptionButton *>(option);
    return button && button->features.testFlag(QStyleOptionButton::DefaultButton) &&
           button->state.testFlag(QStyle::State_Enabled);
}

void drawBox(QPainter *painter, const QRect &rect, const QColor &fill, const QColor &edge)
{
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(edge);
    painter->setBrush(fill);
    painter->drawRoundedRect(QRectF(rect).adjusted(0.5, 0.5, -0.5, -0.5), Radius, Radius);
    painter->restore();
}

/// A ring inside the edge that is told from the fill by its colour and its width.
void drawFocusRing(QPainter *painter, const QRect &rect, const QColor &color)
{
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(QPen(color, 2));
    painter->setBrush(Qt::NoBrush);
    painter->drawRoundedRect(QRectF(rect).adjusted(1, 1, -1, -1), Radius, Radius);
    painter->restore();
}

void drawLineEdit(const QStyleOption &option, QPainter *painter)
{
    const QPalette &palette = option.palette;
    drawBox(painter, option.rect, palette.color(QPalette::Base), shade(palette, BoxEdge));
    if (showsFocus(option))
        drawFocusRing(painter, option.rect, palette.color(QPalette::Highlight));
}

QColor buttonFill(const QStyleOption &option)
{
    const QPalette &palette = option.palette;
    QColor fill = palette.color(QPalette::Button);
    if (isPrimary(&option))
        fill = palette.color(QPalette::Highlight);
    else if (option.state.testFlag(QStyle::State_On))
        fill = mixed(fill, palette.color(QPalette::Highlight), Checked);
    const QColor text =
        palette.color(isPrimary(&option) ? QPalette::HighlightedText : QPalette::ButtonText);
    if (option.state.testFlag(QStyle::State_Sunken))
        return mixed(fill, text, Pressed);
    const bool isHovered = option.state.testFlag(QStyle::State_MouseOver) &&
                           option.state.testFlag(QStyle::State_Enabled);
    return isHovered ? mixed(fill, text, Hover) : fill;
}

void drawButton(const QStyleOption &option, QPainter *painter)
{
    const QPalette &palette = option.palette;
    const QColor fill = buttonFill(option);
    drawBox(painter, option.rect, fill, isPrimary(&option) ? fill : shade(palette, ButtonEdge));
    if (!showsFocus(option))
        return;
    if (isPrimary(&option)) // the ring's colour is the button's own
        drawFocusRing(painter, option.rect.adjusted(2, 2, -2, -2),
                      palette.color(QPalette::HighlightedText));
    else
        drawFocusRing(painter, option.rect, palette.color(QPalette::Highlight));
}

void drawFrame(const QStyleOption &option, QPainter *painter)
{
    // Filled edges: between the pixels of a screen a drawn line may fall below what lies inside.
    const QRect &rect = option.rect;
    const QColor color = shade(option.palette, FrameEdge);
    painter->fillRect(rect.left(), rect.top(), rect.width(), 1, color);
    painter->fillRect(rect.left(), rect.bottom(), rect.width(), 1, color);
    painter->fillRect(rect.left(), rect.top(), 1, rect.height(), color);
    painter->fillRect(rect.right(), rect.top(), 1, rect.height(), color);
}

/// Nothing to fill a groove with is what a bar shows that only says "busy".
const QStyleOptionProgressBar *measuredBar(const QStyleOption *option)
{
    const auto *bar = qstyleoption_cast<const QStyleOptionProgressBar *>(option);
    return bar && bar->maximum > bar->minimum ? bar : nullptr;
}

void drawProgress(const QStyleOptionProgressBar &bar, QPainter *painter)
{
    const double share = double(bar.progress - bar.minimum) / (bar.maximum - bar.minimum);
    QRect done = bar.rect;
    done.setWidth(qRound(bar.rect.width() * qBound(0.0, share, 1.0)));
    if (bar.direction == Qt::RightToLeft)
        done.moveRight(bar.rect.right());
    painter->save();
    painter->setClipRect(done);
    const QColor fill = bar.palette.color(QPalette::Highlight);
    drawBox(painter, bar.rect, fill, fill);
    painter->restore();
}

bool isFlatGroup(const QStyleOption *option)
{
    const auto *frame = qstyleoption_cast<const QStyleOptionFrame *>(option);
    return frame && frame->features.testFlag(QStyleOptionFrame::Flat);
}

bool hasTextBesideIcon(const QStyleOption *option)
{
    const auto *tool = qstyleoption_cast<const QStyleOptionToolButton *>(option);
    return tool && tool->toolButtonStyle == Qt::ToolButtonTextBesideIcon;
}

/// Round, with an edge that can be seen on every ground.
void drawRadioMark(const QStyleOption &option, QPainter *painter)
{
    const QPalette &palette = option.palette;
    const bool isOn = option.state.testFlag(QStyle::State_On);
    const bool isEnabled = option.state.testFlag(QStyle::State_Enabled);
    const QColor accent =
        isEnabled ? palette.color(QPalette::Highlight) : shade(palette, RadioEdge);
    QRectF circle = QRectF(option.rect).adjusted(1, 1, -1, -1);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    if (showsFocus(option)) {
        painter->setPen(QPen(palette.color(QPalette::Highlight), 1.5));
        painter->setBrush(Qt::NoBrush);
        painter->drawEllipse(circle);
        circle.adjust(2.5, 2.5, -2.5, -2.5);
    }
    painter->setPen(QPen(isOn ? accent : shade(palette, RadioEdge), 1));
    painter->setBrush(isOn ? accent : palette.color(QPalette::Base));
    painter->drawEllipse(circle);
    if (isOn) {
        painter->setPen(Qt::NoPen);
        painter->setBrush(palette.color(QPalette::HighlightedText));
        const double inset = circle.width() * 0.3;
        painter->drawEllipse(circle.adjusted(inset, inset, -inset, -inset));
    }
    painter->restore();
}

/// What date pickers are drawn as.
const QStyleOptionComboBox *editableBox(const QStyleOption *option)
{
    const auto *box = qstyleoption_cast<const QStyleOptionComboBox *>(option);
    return box && box->editable && box->frame ? box : nullptr;
}

bool hasFrame(const QStyleOption *option)
{
    const auto *frame = qstyleoption_cast<const QStyleOptionFrame *>(option);
    return frame && frame->lineWidth > 0;
}

} // namespace

StudioStyle::StudioStyle()
    : QProxyStyle(QStringLiteral("Fusion"))
{
    setObjectName(QStringLiteral("studio"));
}

void StudioStyle::drawPrimitive(PrimitiveElement element, const QStyleOption *option,
                                QPainter *painter, const QWidget *widget) const
{
    switch (element) {
    case PE_PanelLineEdit:
        if (!hasFrame(option))
            break;
        drawLineEdit(*option, painter);
        return;
    case PE_PanelButtonCommand:
        drawButton(*option, painter);
        return;
    case PE_IndicatorRadioButton:
        drawRadioMark(*option, painter);
        return;
    case PE_PanelMenu:
        painter->fillRect(option->rect, option->palette.color(QPalette::Base));
        drawFrame(*option, painter);
        return;
    case PE_FrameGroupBox:
        if (!isFlatGroup(option))
            break;
        return;
    case PE_Frame:
    case PE_FrameMenu:
        drawFrame(*option, painter);
        return;
    case PE_FrameFocusRect:
        if (!qstyleoption_cast<const QStyleOptionFocusRect *>(option) || !widget ||
            !widget->inherits("QAbstractButton"))
            break;
        return; // the ring says it
    default:
        break;
    }
    QProxyStyle::drawPrimitive(element, option, painter, widget);
}

void StudioStyle::drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                              const QWidget *widget) const
{
    if (element == CE_PushButtonLabel && isPrimary(option)) {
        QStyleOptionButton label = *static_cast<const QStyleOptionButton *>(option);
        label.palette.setColor(QPalette::ButtonText,
                               label.palette.color(QPalette::HighlightedText));
        QProxyStyle::drawControl(element, &label, painter, widget);
        return;
    }
    if (element == CE_ProgressBarGroove) {
        drawBox(painter, option->rect, option->palette.color(QPalette::Base),
                shade(option->palette, ButtonEdge));
        return;
    }
    if (const auto *bar = measuredBar(option); bar && element == CE_ProgressBarContents) {
        drawProgress(*bar, painter);
        return;
    }
    if (element == CE_ToolButtonLabel && hasTextBesideIcon(option)) {
        // It would begin at the edge.
        QStyleOptionToolButton label = *static_cast<const QStyleOptionToolButton *>(option);
        label.rect.adjust(MoreWidth / 2, 0, 0, 0);
        QProxyStyle::drawControl(element, &label, painter, widget);
        return;
    }
    QProxyStyle::drawControl(element, option, painter, widget);
}

void StudioStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex *option,
                                     QPainter *painter, const QWidget *widget) const
{
    const QStyleOptionComboBox *box = editableBox(option);
    if (control != CC_ComboBox || !box) {
        QProxyStyle::drawComplexControl(control, option, painter, widget);
        return;
    }
    drawLineEdit(*box, painter);
    QStyleOption arrow(*box);
    arrow.rect = subControlRect(control, box, SC_ComboBoxArrow, widget).adjusted(4, 4, -4, -4);
    proxy()->drawPrimitive(PE_IndicatorArrowDown, &arrow, painter, widget);
}

QSize StudioStyle::sizeFromContents(ContentsType type, const QStyleOption *option,
                                    const QSize &contents, const QWidget *widget) const
{
    const QSize size = QProxyStyle::sizeFromContents(type, option, contents, widget);
    switch (type) {
    case CT_ToolButton:
        return size + QSize(hasTextBesideIcon(option) ? MoreWidth : 0, MoreHeight);
    case CT_LineEdit:
    case CT_PushButton:
    case CT_ComboBox:
        return size + QSize(MoreWidth, MoreHeight);
    case CT_MenuItem:
        return size + QSize(MoreWidth, MoreHeight / 2);
    default:
        return size;
    }
}

QRect StudioStyle::subControlRect(ComplexControl control, const QStyleOptionComplex *option,
                                  SubControl part, const QWidget *widget) const
{
    QRect rect = QProxyStyle::subControlRect(control, option, part, widget);
    const auto *group = qstyleoption_cast<const QStyleOptionGroupBox *>(option);
    if (group && group->features.testFlag(QStyleOptionFrame::Flat) && part == SC_GroupBoxContents) {
        // No frame, no room beside it.
        rect.setLeft(group->rect.left());
        rect.setRight(group->rect.right());
        rect.setBottom(group->rect.bottom());
        return rect;
    }
    return part == SC_ComboBoxEditField && control == CC_ComboBox
               ? rect.adjusted(TextInset, 0, 0, 0)
               : rect;
}

QIcon StudioStyle::standardIcon(StandardPixmap standardIcon, const QStyleOption *option,
                                const QWidget *widget) const
{
    switch (standardIcon) {
    case SP_MessageBoxQuestion:
        return QIcon(QStringLiteral(":/studio/icons/question.svg"));
    case SP_MessageBoxInformation:
        return QIcon(QStringLiteral(":/studio/icons/information.svg"));
    case SP_MessageBoxWarning:
    case SP_MessageBoxCritical:
        return QIcon(QStringLiteral(":/studio/icons/alarm.svg"));
    default:
        return QProxyStyle::standardIcon(standardIcon, option, widget);
    }
}

QRect StudioStyle::subElementRect(SubElement element, const QStyleOption *option,
                                  const QWidget *widget) const
{
    const QRect rect = QProxyStyle::subElementRect(element, option, widget);
    return element == SE_LineEditContents ? rect.adjusted(TextInset, 0, -TextInset, 0) : rect;
}

} // namespace Studio
