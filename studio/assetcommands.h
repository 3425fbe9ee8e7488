// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/contract/studioservice.h"
#include "studio/assetcontrols.h"

#include <QObject>

#include <QKeySequence>

#include <functional>

class QMenu;
class QPoint;

namespace Studio {

class AssetReasons;
class ErrorCenter;

/// What keys and context menus do with assets and folders: copying addresses, deleting, making,
/// selecting all. There is no renaming, because the service has none.
class AssetCommands : public QObject
{
    Q_OBJECT

public:
    AssetCommands(const AssetControls &controls, const AssetReasons &reasons,
                  QXSC::StudioService &service, ErrorCenter &errors, QObject *parent = nullptr);

    /// Copies the addresses of the selected assets to the clipboard, one a line.
    void copyAddresses();

signals:
    void refreshAsked();

private:
    void makeKeys();
    void makeKey(QWidget *widget, const QKeySequence &key, const std::function<void()> &action);
    void showListMenu(bool isOnLine, const QPoint &position);
    void showTreeMenu(const QString &folder, const QPoint &position);
    void addButton(QMenu &menu, const QString &text, QPushButton *button,
                   const QKeySequence &key = {});
    void addRefresh(QMenu &menu);
    QStringList selectedGuids() const;

    AssetControls m_controls;
    const AssetReasons &m_reasons;
    QXSC::StudioService &m_service;
    ErrorCenter &m_errors;
};

} // namespace Studio
