// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/contract/serviceclient.h"
#include "common/contract/studioservice.h"
#include "studio/page.h"

#include <memory>

class QLabel;
class QToolButton;

namespace ZelWebServiceControls {
class AssetManager;
}

namespace Zel {
class RuntimeError;
}

namespace Studio {

struct AssetControls;
class AssetCommands;
class AssetReasons;
class AssetUploads;
class DropHint;
class ErrorCenter;
class Settings;

/// The assets of the account: the asset manager, files dropped from the desktop, and the keys and
/// menus people expect around it.
///
/// The folders are loaded when the page is first shown; F5 lists the folder again, in the tree or
/// without a folder the folders, too. When listing a folder fails the list is emptied, so that it
/// never shows the assets of another folder than the one selected.
class AssetsPage : public Page
{
    Q_OBJECT

public:
    AssetsPage(QXSC::ServiceClient &client, QXSC::StudioService &service, ErrorCenter &errors,
               Settings &settings, QWidget *parent = nullptr);
    ~AssetsPage() override;

    QString title() const override;
    QString icon() const override;
    void open() override;
    void leave() override;
    void remember() override;

protected:
    void changeEvent(QEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragLeaveEvent(QDragLeaveEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    void build();
    QWidget *makeHeader();
    void prepareControls();
    void alignFolders();
    void connectParts();
    void connectList();
    void load(const QString &folder);
    void refresh();
    void listAgain();
    void folderListed();
    void controlFailed(const Zel::RuntimeError &error);
    void singleFailed(const Zel::RuntimeError &error);
    QString folderToShow(const QString &wanted) const;
    void showEmptyText();
    void showCount();
    void fit();
    void applyColors();

    QXSC::ServiceClient &m_client;
    ErrorCenter &m_errors;
    Settings &m_settings;
    ZelWebServiceControls::AssetManager *m_manager;
    std::unique_ptr<AssetControls> m_controls;
    AssetReasons *m_reasons;
    AssetUploads *m_uploads;
    AssetCommands *m_commands;
    QToolButton *m_refresh;
    QLabel *m_folders;
    QLabel *m_noFolders;
    QLabel *m_count;
    DropHint *m_hint;
    /// The folder whose assets are shown.
    QString m_listed;
    bool m_isLoaded = false;
    /// The widths Studio gave the columns itself.
    QList<double> m_fittedWidths;
};

} // namespace Studio
