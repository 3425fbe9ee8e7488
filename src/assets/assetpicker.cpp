// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "assets/assetpicker.h"

#include "assets/assetmanager.h"
#include "platform/widgets/listview.h"

#include <QBoxLayout>
#include <QPushButton>

namespace ZelWebServiceControls {

AssetPicker::AssetPicker(QWidget *parent)
    : Form(parent)
    , m_column(new QVBoxLayout(this))
    , m_ok(new QPushButton(tr("OK"), this))
    , m_cancel(new QPushButton(tr("Cancel"), this))
{
    setWindowTitle(tr("Select Asset"));
    m_ok->setObjectName(QStringLiteral("OKButton"));
    m_cancel->setObjectName(QStringLiteral("CancelButton"));
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    for (QPushButton *button : {m_ok, m_cancel}) {
        // The Enter key belongs to what has the focus: an asset, or a box of the upload panel.
        button->setAutoDefault(false);
        buttons->addWidget(button);
    }
    m_column->addLayout(buttons);
    begin();
    m_begun = false;
    onUser(m_ok, &QPushButton::clicked, &AssetPicker::pick);
    connect(m_cancel, &QPushButton::clicked, this, &QDialog::reject);
}

AssetPicker::~AssetPicker() = default;

void AssetPicker::begin()
{
    delete m_manager;
    m_manager = new AssetManager(this);
    m_manager->setObjectName(QStringLiteral("AssetManager1"));
    m_column->insertWidget(0, m_manager, 1);
    QWidget::setTabOrder(m_manager, m_ok);
    connect(m_manager, &AssetManager::AssetSelected, m_ok, [this] { m_ok->setEnabled(true); });
    auto *list = m_manager->findChild<Zel::ListView *>(QStringLiteral("assetList"));
    onUser(list, &Zel::ListView::lineDoubleClicked, &AssetPicker::pickFromList);
    m_ok->setEnabled(false);
    m_value.clear();
    m_begun = true;
}

void AssetPicker::Init(QXSC::ServiceClient *m_qxs, const QString &ext,
                       const FolderNamesPtr &restrictedFolders)
{
    begin();
    m_client = m_qxs;
    m_manager->Init(m_qxs, ext, restrictedFolders);
}

void AssetPicker::load()
{
    if (!m_begun)
        begin();
    m_begun = false;
    m_guid.clear();
    m_returnValue = 2;
}

void AssetPicker::pick()
{
    m_guid = m_manager->getSelectedAssetGuid().toString();
    if (!m_client)
        throw Zel::RuntimeError(Zel::RuntimeError::ObjectNotSet);
    const QPointer<AssetPicker> self(this);
    const QString value = m_client->GetAssetValue(m_guid);
    if (!self)
        return;
    m_value = value;
    m_returnValue = 1;
    accept();
}

void AssetPicker::pickFromList()
{
    if (m_ok->isEnabled())
        pick();
}

} // namespace ZelWebServiceControls
