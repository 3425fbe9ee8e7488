// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "records/textwidget.h"

#include "platform/widgets/twipsgeometry.h"
#include "records/fieldparts.h"

#include <QLabel>
#include <QLineEdit>

namespace ZelWebServiceControls {

TextWidget::TextWidget(QWidget *parent)
    : Control(parent)
    , m_label(FieldParts::makeLabel(this))
    , m_value(FieldParts::makeTextBox(this))
{
    FieldParts::setFirstSize(this, FieldParts::fieldHeight(this), m_value, FieldParts::Width);
    FieldParts::centreLabel(m_label, m_value);
    connect(m_value, &QLineEdit::textEdited, this, [this] { tellEdited(); });
}

TextWidget::~TextWidget() = default;

void TextWidget::SetLabel(const QString &val)
{
    FieldParts::setCaption(m_label, m_value, val);
}

void TextWidget::setValue(const QString &val)
{
    FieldParts::showText(m_value, val);
}

QString TextWidget::GetLabel() const
{
    return m_label->text();
}

QString TextWidget::GetValue() const
{
    return m_value->text();
}

void TextWidget::SetLabelWidth(qint16 w)
{
    FieldParts::setLabelSize(this, m_label, w);
    if (w < 1)
        return;
    FieldParts::spanValue(m_value, FieldParts::valueLeft(w), Zel::twipsGeometry(this).width);
}

QSize TextWidget::sizeHint() const
{
    return FieldParts::sizeHint(this, FieldParts::fieldHeight(this));
}

void TextWidget::resized()
{
    SetLabelWidth(FieldParts::usualLabelWidth(this));
}

void TextWidget::appearanceChanged()
{
    FieldParts::centreLabel(m_label, m_value);
}

} // namespace ZelWebServiceControls
