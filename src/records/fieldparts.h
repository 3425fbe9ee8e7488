// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

class QLabel;
class QLineEdit;
class QSize;
class QWidget;

/// What the field widgets have in common: a label on the left, and how wide it is. Lengths are
/// twips.
namespace ZelWebServiceControls::FieldParts {

constexpr int Width = 4800;
/// A field of one line. Higher where the font asks for it.
constexpr int Height = 375;
/// Between the label and the value.
constexpr int Gap = 150;
/// Above and below the value, so that fields without a gap between them do not touch.
constexpr int Inset = 15;

/// The height of one line of text in the widget's font.
double lineHeight(const QWidget *widget);

/// How high a field is at first: at least `height`, more where the font asks for it so that `lines`
/// lines fit.
double fieldHeight(const QWidget *field, int lines = 1, double height = Height);

/// The size of a field in a layout: its first one.
QSize sizeHint(const QWidget *field, double height);

/// Gives a new field and its value their first sizes.
void setFirstSize(QWidget *field, double height, QWidget *value, double valueWidth);

QLabel *makeLabel(QWidget *field);
QLineEdit *makeTextBox(QWidget *field);

/// Shows a text from its beginning.
void showText(QLineEdit *box, const QString &text);

/// The label and what people are told about the value beside it.
void setCaption(QLabel *label, QWidget *value, const QString &text);

/// Moves the label so that it stands at the middle of a value of one line.
void centreLabel(QLabel *label, const QWidget *value);

/// Moves the label's top to that place and makes it as high as a line of text. Its width stays.
void placeLabel(QLabel *label, double top);

/// 40 % of the field's width, rounded half to even. Error 6 when 16 bits do not hold it.
qint16 usualLabelWidth(const QWidget *field);

/// Makes the label as high as a line of text and, unless `width` is 0 or less, as wide as that.
void setLabelSize(QWidget *field, QLabel *label, qint16 width);

/// Makes the label as wide as `width` unless that is 0 or less.
void setLabelWidth(QLabel *label, qint16 width);

/// Where the value begins beside a label as wide as this. Error 6 when 16 bits do not hold it.
double valueLeft(qint16 labelWidth);

/// Moves the value to `left` and lets it end at `right`.
void spanValue(QWidget *value, double left, double right);

} // namespace ZelWebServiceControls::FieldParts
