// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/assetcommands.h"

#include "common/contract/assetrecord.h"
#include "platform/widgets/hourglass.h"
#include "platform/widgets/listview.h"
#include "platform/widgets/treeview.h"
#include "studio/errorcenter.h"

#include <QApplication>
#include <QClipboard>
#include <QListWidget>
#include <QMenu>
#include <QMimeData>
#include <QPushButton>
#include <QShortcut>
#include <QToolTip>
#include <QUrl>

namespace Studio {

namespace {

/// A key for a button that is disabled says why instead.
void press(QPushButton *button)
{
    if (button->isEnabled())
        button->click();
    else
        QToolTip::showText(button->mapToGlobal(button->rect().center()), button->toolTip(), button);
}

void popUp(QMenu *menu, const QPoint &position)
{
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->setToolTipsVisible(true);
    menu->popup(position);
}

} // namespace

AssetCommands::AssetCommands(const AssetControls &controls, const AssetReasons &reasons,
                             QXSC::StudioService &service, ErrorCenter &errors, QObject *parent)
    : QObject(parent)
    , m_controls(controls)
    , m_reasons(reasons)
    , m_service(service)
    , m_errors(errors)
{
    makeKeys();
    connect(m_controls.list, &Zel::ListView::contextMenuRequested, this,
            [this](qsizetype row, const QPoint &position) { showListMenu(row >= 0, position); });
    connect(m_controls.tree, &Zel::TreeView::contextMenuRequested, this,
            &AssetCommands::showTreeMenu);
}

void AssetCommands::makeKey(QWidget *widget, const QKeySequence &key,
                            const std::function<void()> &action)
{
    auto *shortcut = new QShortcut(key, widget);
    shortcut->setContext(Qt::WidgetWithChildrenShortcut);
    connect(shortcut, &QShortcut::activated, this, action);
}

void AssetCommands::makeKeys()
{
    const QKeySequence erase(Qt::Key_Delete);
    makeKey(m_controls.list, QKeySequence(QKeySequence::Copy), [this] { copyAddresses(); });
    makeKey(m_controls.list, erase, [this] { press(m_controls.deleteAsset); });
    makeKey(m_controls.tree, erase, [this] { press(m_controls.deleteFolder); });
    makeKey(m_controls.batchList, erase, [this] { press(m_controls.removeBatch); });
}

QStringList AssetCommands::selectedGuids() const
{
    QStringList guids;
    for (const qsizetype row : m_controls.list->selectedRows())
        guids << m_controls.list->tag(row).value<QXSC::AssetRecordPtr>()->guid;
    return guids;
}

void AssetCommands::copyAddresses()
{
    const QStringList guids = selectedGuids();
    if (guids.isEmpty())
        return;
    m_errors.attempt([this, guids] {
        const Zel::Hourglass hourglass(m_controls.list);
        QStringList addresses;
        QList<QUrl> urls;
        for (const QString &guid : guids) {
            addresses << m_service.assetAddress(guid);
            urls << QUrl(addresses.constLast());
        }
        auto *data = new QMimeData;
        data->setText(addresses.join(QLatin1Char('\n')));
        data->setUrls(urls);
        QApplication::clipboard()->setMimeData(data);
    });
}

void AssetCommands::addButton(QMenu &menu, const QString &text, QPushButton *button,
                              const QKeySequence &key)
{
    QAction *action = menu.addAction(text, button, [button] { button->click(); });
    action->setObjectName(button->objectName());
    action->setEnabled(button->isEnabled());
    action->setToolTip(button->toolTip());
    action->setShortcut(key); // shown; the key works by itself
}

void AssetCommands::addRefresh(QMenu &menu)
{
    QAction *refresh = menu.addAction(tr("&Refresh"), this, &AssetCommands::refreshAsked);
    refresh->setObjectName(QStringLiteral("refresh"));
    refresh->setShortcut(QKeySequence(Qt::Key_F5));
}

void AssetCommands::showListMenu(bool isOnLine, const QPoint &position)
{
    auto *menu = new QMenu(m_controls.list);
    menu->setObjectName(QStringLiteral("assetMenu"));
    if (isOnLine) {
        const bool isOne = m_controls.list->selectedCount() == 1;
        QAction *copy = menu->addAction(isOne ? tr("&Copy Address") : tr("&Copy Addresses"), this,
                                        &AssetCommands::copyAddresses);
        copy->setObjectName(QStringLiteral("copyAddress"));
        copy->setShortcut(QKeySequence(QKeySequence::Copy));
        QAction *text =
            menu->addAction(tr("Copy as &Text"), m_controls.list, &Zel::ListView::copySelection);
        text->setObjectName(QStringLiteral("copyText"));
        addButton(*menu, tr("&Delete"), m_controls.deleteAsset, QKeySequence(Qt::Key_Delete));
        menu->addSeparator();
    }
    addButton(*menu, tr("New &Asset…"), m_controls.newAsset);
    menu->addSeparator();
    QAction *all = menu->addAction(tr("&Select All"), m_controls.list,
                                   [this] { m_controls.list->view()->selectAll(); });
    all->setObjectName(QStringLiteral("selectAll"));
    all->setShortcut(QKeySequence(QKeySequence::SelectAll));
    all->setEnabled(m_controls.list->count() > 0);
    addRefresh(*menu);
    popUp(menu, position);
}

void AssetCommands::showTreeMenu(const QString &folder, const QPoint &position)
{
    auto *menu = new QMenu(m_controls.tree);
    menu->setObjectName(QStringLiteral("folderMenu"));
    if (!folder.isEmpty()) {
        addButton(*menu, tr("New &Folder…"), m_controls.newFolder);
        addButton(*menu, tr("New &Asset…"), m_controls.newAsset);
        addButton(*menu, tr("&Delete Folder"), m_controls.deleteFolder,
                  QKeySequence(Qt::Key_Delete));
        menu->addSeparator();
    }
    addRefresh(*menu);
    popUp(menu, position);
}

} // namespace Studio
