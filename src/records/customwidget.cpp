// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "records/customwidget.h"

#include "platform/widgets/twips.h"
#include "platform/widgets/twipsgeometry.h"
#include "records/componentdialog.h"
#include "records/fieldparts.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace ZelWebServiceControls {

namespace {

/// What a button has beside its caption. Twips.
constexpr int ButtonPadding = 350;

} // namespace

CustomWidget::CustomWidget(QWidget *parent)
    : Control(parent)
    , m_label(FieldParts::makeLabel(this))
    , m_button(new QPushButton(this))
    , m_value(FieldParts::makeTextBox(this))
{
    m_button->setObjectName(QStringLiteral("widgetButton"));
    m_button->setAutoDefault(false);
    // What it holds is the page's own language and nothing for people to read.
    m_value->setVisible(false);
    setButtonText(tr("Edit…"));
    FieldParts::setFirstSize(this, FieldParts::fieldHeight(this), m_button, FieldParts::Width);
    FieldParts::centreLabel(m_label, m_button);
    onUser(m_button, &QPushButton::clicked, &CustomWidget::editInPage);
}

CustomWidget::~CustomWidget() = default;

void CustomWidget::SetLabel(const QString &val)
{
    m_label->setText(val);
    m_button->setAccessibleDescription(val);
}

void CustomWidget::setQXS(QXSC::ServiceClient *qxs)
{
    m_client = qxs;
}

void CustomWidget::setValue(const QString &val)
{
    m_value->setText(val);
    m_text = val;
}

void CustomWidget::setButtonText(const QString &val)
{
    m_caption = val;
    // Shown as it stands: a button would make a shortcut of what follows a single "&".
    m_button->setText(QString(val).replace(u'&', QLatin1String("&&")));
}

void CustomWidget::setSource(const QString &val)
{
    m_source = val;
}

void CustomWidget::setUrl(const QString &val)
{
    m_url = val;
}

void CustomWidget::SetDimensions(qint16 Width, qint16 height)
{
    m_width = Width == 0 ? 800 : Width;
    m_height = height == 0 ? 600 : height;
}

QString CustomWidget::GetLabel() const
{
    return m_label->text();
}

QString CustomWidget::GetValue() const
{
    return m_text;
}

QString CustomWidget::getAssetDependencies() const
{
    return m_assetDependencies;
}

void CustomWidget::SetAssetDependencies(const QString &val)
{
    m_assetDependencies = val;
}

void CustomWidget::SetLabelWidth(qint16 w)
{
    FieldParts::setLabelSize(this, m_label, w);
    if (w < 1)
        return;
    const double left = FieldParts::valueLeft(w);
    const double width = Zel::textWidthTwips(m_caption, this) + ButtonPadding;
    FieldParts::spanValue(m_button, left, left + width);
}

void CustomWidget::editInPage()
{
    const QPointer<CustomWidget> self(this);
    const QPointer<ComponentDialog> dialog(&componentDialog());
    // A use that has not ended is not begun anew.
    if (dialog->isVisible())
        return;
    dialog->ShowModalDialog(m_client, m_url, GetLabel(), m_text, m_assetDependencies);
    dialog->resize(m_width, m_height);
    dialog->showModal(this);
    if (!self || !dialog || dialog->returnCode() != 1)
        return;
    m_text = dialog->GetValue();
    m_assetDependencies = dialog->getAssetDependencies();
    tellEdited();
}

QSize CustomWidget::sizeHint() const
{
    return FieldParts::sizeHint(this, FieldParts::fieldHeight(this));
}

void CustomWidget::resized()
{
    SetLabelWidth(FieldParts::usualLabelWidth(this));
}

void CustomWidget::appearanceChanged()
{
    FieldParts::centreLabel(m_label, m_button);
}

} // namespace ZelWebServiceControls
