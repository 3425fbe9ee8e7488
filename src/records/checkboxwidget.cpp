// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "records/checkboxwidget.h"

#include "platform/core/booleans.h"
#include "platform/widgets/twipsgeometry.h"
#include "records/fieldparts.h"

#include <QCheckBox>
#include <QLabel>

namespace ZelWebServiceControls {

namespace {

constexpr int BoxWidth = 375;

} // namespace

CheckboxWidget::CheckboxWidget(QWidget *parent)
    : Control(parent)
    , m_label(FieldParts::makeLabel(this))
    , m_value(new QCheckBox(this))
{
    m_value->setObjectName(QStringLiteral("widgetValue"));
    FieldParts::setFirstSize(this, FieldParts::fieldHeight(this), m_value, BoxWidth);
    FieldParts::centreLabel(m_label, m_value);
    connect(m_value, &QCheckBox::clicked, this, [this] { tellEdited(); });
}

CheckboxWidget::~CheckboxWidget() = default;

void CheckboxWidget::SetLabel(const QString &val)
{
    FieldParts::setCaption(m_label, m_value, val);
}

void CheckboxWidget::setValue(const QString &val)
{
    m_value->setChecked(val.toUpper() == QLatin1String("TRUE"));
}

QString CheckboxWidget::GetLabel() const
{
    return m_label->text();
}

QString CheckboxWidget::GetValue() const
{
    return Zel::booleanText(m_value->isChecked());
}

void CheckboxWidget::SetLabelWidth(qint16 w)
{
    FieldParts::setLabelSize(this, m_label, w);
    if (w < 1)
        return;
    Zel::TwipsRect rect = Zel::twipsGeometry(m_value);
    rect.left = FieldParts::valueLeft(w);
    Zel::setTwipsGeometry(m_value, rect);
}

QSize CheckboxWidget::sizeHint() const
{
    return FieldParts::sizeHint(this, FieldParts::fieldHeight(this));
}

void CheckboxWidget::resized()
{
    SetLabelWidth(FieldParts::usualLabelWidth(this));
}

void CheckboxWidget::appearanceChanged()
{
    FieldParts::centreLabel(m_label, m_value);
}

} // namespace ZelWebServiceControls
