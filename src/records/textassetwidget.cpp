// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "records/textassetwidget.h"

#include "assets/assetpicker.h"
#include "platform/widgets/messageboxes.h"

namespace ZelWebServiceControls {

TextAssetWidget::TextAssetWidget(QWidget *parent)
    : Control(parent)
{
}

TextAssetWidget::~TextAssetWidget() = default;

QString TextAssetWidget::getGuid()
{
    return m_guid;
}

void TextAssetWidget::setQXS(QXSC::ServiceClient *qxs)
{
    m_qxs = qxs;
}

void TextAssetWidget::setGuid(const QString &val)
{
    m_guid = val;
}

void TextAssetWidget::setValue(const QString &val)
{
    m_value = val;
    if (val.isEmpty())
        m_guid.clear();
}

void TextAssetWidget::setExt(const QString &val)
{
    m_ext = val;
}

void TextAssetWidget::setRestrictedFolders(const FolderNamesPtr &val)
{
    m_folders = val;
}

QString TextAssetWidget::GetValue()
{
    return m_value;
}

void TextAssetWidget::ShowAssetPicker()
{
    const QPointer<TextAssetWidget> self(this);
    if (!m_qxs)
        Zel::informUser(this, tr("qxs not supplied"));
    if (!self)
        return;
    auto &picker = Zel::sharedForm<AssetPicker>();
    const QPointer<AssetPicker> alive(&picker);
    picker.Init(m_qxs, m_ext, m_folders);
    picker.showModal(this);
    if (!self || !alive || picker.returnValue() != 1)
        return;
    setGuid(picker.guid());
    setValue(picker.value());
}

} // namespace ZelWebServiceControls
