// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "records/textassetwidget.h"

#include "assets/assetpicker.h"
#include "platform/widgets/messageboxes.h"
#include "platform/widgets/twipsgeometry.h"
#include "records/fieldparts.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace ZelWebServiceControls {

namespace {

// Twips.
constexpr int ButtonWidth = 450;
constexpr int ButtonGap = 30;

} // namespace

TextAssetWidget::TextAssetWidget(QWidget *parent)
    : Control(parent)
    , m_label(FieldParts::makeLabel(this))
    , m_value(FieldParts::makeTextBox(this))
    , m_button(new QPushButton(tr("…"), this))
{
    m_button->setObjectName(QStringLiteral("Command1"));
    m_button->setToolTip(tr("Choose an asset"));
    m_button->setAutoDefault(false);
    const double height = FieldParts::fieldHeight(this);
    Zel::setTwipsGeometry(m_button,
                          {0, FieldParts::Inset, ButtonWidth, height - 2 * FieldParts::Inset});
    FieldParts::setFirstSize(this, height, m_value, FieldParts::Width);
    FieldParts::centreLabel(m_label, m_value);
    connect(m_value, &QLineEdit::textChanged, this, [this](const QString &text) {
        if (text.isEmpty())
            m_guid.clear();
    });
    connect(m_value, &QLineEdit::textEdited, this, [this] { tellEdited(); });
    onUser(m_button, &QPushButton::clicked, &TextAssetWidget::ShowAssetPicker);
}

TextAssetWidget::~TextAssetWidget() = default;

QString TextAssetWidget::getGuid() const
{
    return m_guid;
}

void TextAssetWidget::setQXS(QXSC::ServiceClient *qxs)
{
    m_client = qxs;
}

void TextAssetWidget::setGuid(const QString &val)
{
    m_guid = val;
}

void TextAssetWidget::SetLabel(const QString &val)
{
    FieldParts::setCaption(m_label, m_value, val);
    m_button->setAccessibleName(tr("Choose an asset for %1").arg(val));
}

void TextAssetWidget::setValue(const QString &val)
{
    FieldParts::showText(m_value, val);
}

void TextAssetWidget::setExt(const QString &val)
{
    m_ext = val;
}

void TextAssetWidget::setRestrictedFolders(const FolderNamesPtr &val)
{
    m_restrictedFolders = val;
}

QString TextAssetWidget::GetLabel() const
{
    return m_label->text();
}

QString TextAssetWidget::GetValue() const
{
    return m_value->text();
}

void TextAssetWidget::ShowAssetPicker()
{
    const QPointer<TextAssetWidget> self(this);
    if (!m_client) {
        Zel::informUser(this, tr("qxs not supplied"));
        if (!self)
            return;
    }
    const QPointer<AssetPicker> picker(&Zel::sharedForm<AssetPicker>());
    // A use that has not ended is not begun anew.
    if (picker->isVisible())
        return;
    begin(*picker);
    picker->showModal(this);
    if (!self || !picker || picker->returnValue() != 1)
        return;
    // The value last: an empty one drops the guid.
    setGuid(picker->guid());
    setValue(picker->value());
    tellEdited();
}

void TextAssetWidget::begin(AssetPicker &picker) const
{
    try {
        picker.Init(m_client, m_ext, m_restrictedFolders);
    } catch (const Zel::RuntimeError &error) {
        // That there is no client was said already: the picker opens all the same, without folders.
        if (m_client || error.number() != Zel::RuntimeError::ObjectNotSet)
            throw;
    }
}

void TextAssetWidget::SetLabelWidth(qint16 w)
{
    FieldParts::setLabelSize(this, m_label, w);
    if (w < 1)
        return;
    const double left = FieldParts::valueLeft(w);
    Zel::TwipsRect button = Zel::twipsGeometry(m_button);
    button.left = Zel::twipsGeometry(this).width - button.width;
    Zel::setTwipsGeometry(m_button, button);
    FieldParts::spanValue(m_value, left, button.left - ButtonGap);
}

QSize TextAssetWidget::sizeHint() const
{
    return FieldParts::sizeHint(this, FieldParts::fieldHeight(this));
}

void TextAssetWidget::resized()
{
    SetLabelWidth(FieldParts::usualLabelWidth(this));
}

void TextAssetWidget::appearanceChanged()
{
    FieldParts::centreLabel(m_label, m_value);
}

} // namespace ZelWebServiceControls
