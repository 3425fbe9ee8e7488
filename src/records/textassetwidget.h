// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "assets/foldernames.h"
#include "common/contract/serviceclient.h"
#include "platform/widgets/control.h"

#include <QPointer>

class QLineEdit;

namespace ZelWebServiceControls {

/// A text box holding the name of an asset, and a button that opens the asset picker.
class ZEL_EXPORT TextAssetWidget : public Zel::Control
{
    Q_OBJECT

public:
    explicit TextAssetWidget(QWidget *parent = nullptr);
    ~TextAssetWidget() override;

    Q_INVOKABLE QString getGuid();
    Q_INVOKABLE void setQXS(QXSC::ServiceClient *qxs);
    Q_INVOKABLE void setGuid(const QString &val);
    Q_INVOKABLE void setValue(const QString &val);
    Q_INVOKABLE void setExt(const QString &val);
    Q_INVOKABLE void setRestrictedFolders(const ZelWebServiceControls::FolderNamesPtr &val);
    Q_INVOKABLE QString GetValue();
    Q_INVOKABLE void ShowAssetPicker();

private:
    QPointer<QXSC::ServiceClient> m_qxs;
    QString m_guid;
    QString m_ext;
    QString m_value;
    FolderNamesPtr m_folders;
};

} // namespace ZelWebServiceControls
