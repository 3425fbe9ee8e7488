// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "assets/foldernames.h"
#include "common/contract/serviceclient.h"
#include "platform/widgets/form.h"

#include <QPointer>

class QPushButton;
class QVBoxLayout;

namespace ZelWebServiceControls {

class AssetManager;

/// Lets a person pick one asset.
///
///     auto &picker = Zel::sharedForm<AssetPicker>();
///     picker.Init(client, "jpg,png", restrictedFolders);
///     picker.showModal(this);
///     if (picker.returnValue() == 1)
///         use(picker.guid(), picker.value());
///
/// Every use begins with nothing picked and the folders as the service has them now. A double click
/// and the Enter key on an asset act as OK.
class ZEL_EXPORT AssetPicker : public Zel::Form
{
    Q_OBJECT
    /// What the service returns as the picked asset's value.
    Q_PROPERTY(QString value READ value)
    /// The picked asset's guid, empty when none was picked.
    Q_PROPERTY(QString guid READ guid)
    /// 1: an asset was picked with OK; 2: closed otherwise.
    Q_PROPERTY(qint16 returnValue READ returnValue)

public:
    explicit AssetPicker(QWidget *parent = nullptr);
    ~AssetPicker() override;

    /// Begins a use: hands all three to a fresh asset manager, see `AssetManager::Init`.
    Q_INVOKABLE void Init(QXSC::ServiceClient *m_qxs, const QString &ext,
                          const ZelWebServiceControls::FolderNamesPtr &restrictedFolders = {});

    QString value() const { return m_value; }

    QString guid() const { return m_guid; }

    qint16 returnValue() const { return m_returnValue; }

protected:
    void load() override;

private:
    void begin();
    void pick();
    void pickFromList();

    QPointer<QXSC::ServiceClient> m_client;
    QString m_value;
    QString m_guid;
    qint16 m_returnValue = 2;
    bool m_begun = false;
    QVBoxLayout *m_column;
    AssetManager *m_manager = nullptr;
    QPushButton *m_ok;
    QPushButton *m_cancel;
};

} // namespace ZelWebServiceControls
