// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "records/fieldparts.h"

#include "platform/core/rounding.h"
#include "platform/widgets/twips.h"
#include "platform/widgets/twipsgeometry.h"
#include "records/captionlabel.h"

#include <QLineEdit>
#include <QSize>

#include <cmath>
#include <limits>

namespace ZelWebServiceControls::FieldParts {

namespace {

/// What a box has around its lines of text: frame and margins.
constexpr int Padding = 120;

} // namespace

double lineHeight(const QWidget *widget)
{
    return Zel::textHeightTwips(widget);
}

double fieldHeight(const QWidget *field, int lines, double height)
{
    const double needed = lines * lineHeight(field) + Padding + 2 * Inset;
    if (needed <= height)
        return height;
    // Whole pixels, so that fields that stand on one another are alike.
    const int dpi = Zel::logicalDpi(field);
    return Zel::twipsFromPixels(Zel::pixelsFromTwips(needed, dpi) + 1, dpi);
}

QSize sizeHint(const QWidget *field, double height)
{
    const int dpi = Zel::logicalDpi(field);
    return QSize(Zel::pixelsFromTwips(Width, dpi), Zel::pixelsFromTwips(height, dpi));
}

void setFirstSize(QWidget *field, double height, QWidget *value, double valueWidth)
{
    field->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    // In this order: a widget with a proxy would hand the policy on to it. With a policy of its own
    // a field takes part in a host's tab order, and a click on its label goes to the value.
    field->setFocusPolicy(Qt::StrongFocus);
    field->setFocusProxy(value);
    Zel::setTwipsGeometry(value, {0, Inset, valueWidth, height - 2 * Inset});
    Zel::setTwipsGeometry(field, {0, 0, Width, height});
}

QLabel *makeLabel(QWidget *field)
{
    auto *label = new CaptionLabel(field);
    label->setObjectName(QStringLiteral("widgetLabel"));
    return label;
}

QLineEdit *makeTextBox(QWidget *field)
{
    auto *box = new QLineEdit(field);
    box->setObjectName(QStringLiteral("widgetValue"));
    // A value comes back whole, however long it is.
    box->setMaxLength(std::numeric_limits<int>::max());
    return box;
}

void showText(QLineEdit *box, const QString &text)
{
    box->setText(text);
    box->setCursorPosition(0);
}

void setCaption(QLabel *label, QWidget *value, const QString &text)
{
    label->setText(text);
    value->setAccessibleName(text);
}

void centreLabel(QLabel *label, const QWidget *value)
{
    const Zel::TwipsRect box = Zel::twipsGeometry(value);
    placeLabel(label, box.top + (box.height - lineHeight(label->parentWidget())) / 2);
}

void placeLabel(QLabel *label, double top)
{
    // At a whole pixel: rounding both edges must not take a pixel from the line.
    const int dpi = Zel::logicalDpi(label);
    Zel::TwipsRect rect = Zel::twipsGeometry(label);
    rect.top = Zel::twipsFromPixels(std::ceil(top * dpi / Zel::TwipsPerInch), dpi);
    rect.height = lineHeight(label->parentWidget());
    Zel::setTwipsGeometry(label, rect);
}

qint16 usualLabelWidth(const QWidget *field)
{
    return Zel::roundToInt16(Zel::twipsGeometry(field).width * 0.4).value();
}

void setLabelSize(QWidget *field, QLabel *label, qint16 width)
{
    Zel::TwipsRect rect = Zel::twipsGeometry(label);
    rect.height = lineHeight(field);
    if (width >= 1)
        rect.width = width;
    Zel::setTwipsGeometry(label, rect);
}

void setLabelWidth(QLabel *label, qint16 width)
{
    if (width < 1)
        return;
    Zel::TwipsRect rect = Zel::twipsGeometry(label);
    rect.width = width;
    Zel::setTwipsGeometry(label, rect);
}

double valueLeft(qint16 labelWidth)
{
    return (Zel::Int16(labelWidth) + Zel::Int16(Gap)).value();
}

void spanValue(QWidget *value, double left, double right)
{
    Zel::TwipsRect rect = Zel::twipsGeometry(value);
    rect.left = left;
    rect.width = right - left;
    Zel::setTwipsGeometry(value, rect);
}

} // namespace ZelWebServiceControls::FieldParts
