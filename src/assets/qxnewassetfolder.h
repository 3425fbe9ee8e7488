// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/widgets/form.h"

class QLineEdit;
class QPushButton;

namespace ZelWebServiceControls {

/// Asks for the name of a new folder. A name of blanks is a name.
///
///     auto &form = Zel::sharedForm<QXNewAssetFolder>();
///     form.showModal(this);
///     if (form.dialogResult() == 1)
///         make(form.folderName());
class ZEL_EXPORT QXNewAssetFolder : public Zel::Form
{
    Q_OBJECT
    /// 1 when confirmed with OK, else 0.
    Q_PROPERTY(qint16 dialogResult READ dialogResult)
    /// The name typed; empty unless confirmed with OK.
    Q_PROPERTY(QString folderName READ folderName)

public:
    explicit QXNewAssetFolder(QWidget *parent = nullptr);
    ~QXNewAssetFolder() override;

    qint16 dialogResult() const { return m_dialogResult; }

    QString folderName() const { return m_folderName; }

protected:
    void load() override;

private:
    void build();
    void confirm();
    void cancel();

    qint16 m_dialogResult = 0;
    QString m_folderName;
    QLineEdit *m_name;
    QPushButton *m_ok;
    QPushButton *m_cancel;
};

} // namespace ZelWebServiceControls
