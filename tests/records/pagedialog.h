// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "records/componentdialog.h"

#include <QTimer>

/// Plays the dialog for component pages: keeps what it is given, and ends each use with the answer
/// prepared for it.
class PageDialog : public ZelWebServiceControls::ComponentDialog
{
public:
    using ComponentDialog::ComponentDialog;

    void ShowModalDialog(QXSC::ServiceClient *qxs, const QString &URL, const QString &dialogLabel,
                         const QString &m_properties, const QString &m_assetDependencies) override
    {
        client = qxs;
        given = QStringList{URL, dialogLabel, m_properties, m_assetDependencies};
        if (failure)
            failure->raise();
    }

    qint16 returnCode() const override { return code; }

    QString GetValue() override { return value; }

    QString getAssetDependencies() override { return dependencies; }

    QXSC::ServiceClient *client = nullptr;
    QStringList given;
    std::shared_ptr<Zel::RuntimeError> failure;
    QList<QSize> sizes;
    qint16 code = 2;
    QString value;
    QString dependencies;
    std::function<void()> whenShown;

protected:
    void showEvent(QShowEvent *event) override
    {
        ComponentDialog::showEvent(event);
        sizes << size();
        QTimer::singleShot(0, this, [this] {
            if (whenShown)
                whenShown();
            else
                close();
        });
    }
};
