// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/assetreasons.h"

#include "platform/widgets/listview.h"
#include "platform/widgets/treeview.h"
#include "studio/textlabel.h"

#include <QEvent>
#include <QListWidget>
#include <QPushButton>

namespace Studio {

namespace {

constexpr qsizetype QuotedName = 60;

} // namespace

AssetReasons::AssetReasons(const AssetControls &controls, QObject *parent)
    : QObject(parent)
    , m_controls(controls)
{
    for (QPushButton *button : {m_controls.newFolder, m_controls.deleteFolder, m_controls.newAsset,
                                m_controls.deleteAsset, m_controls.singleSave, m_controls.batchSave,
                                m_controls.removeBatch}) {
        m_toolTips.insert(button, button->toolTip());
        button->installEventFilter(this);
    }
    connect(m_controls.tree, &Zel::TreeView::selectionChangedTo, this, &AssetReasons::refresh);
    connect(m_controls.list, &Zel::ListView::selectionChanged, this, &AssetReasons::refresh);
    connect(m_controls.list->model(), &QAbstractItemModel::modelReset, this,
            &AssetReasons::refresh);
    refresh();
}

bool AssetReasons::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::EnabledChange)
        refresh();
    return QObject::eventFilter(watched, event);
}

bool AssetReasons::has(char right) const
{
    const QString folder = m_controls.tree->selectedNode();
    return !folder.isEmpty() &&
           m_controls.tree->tag(folder).toString().contains(QLatin1Char(right));
}

QString AssetReasons::folderName() const
{
    return shortened(m_controls.tree->text(m_controls.tree->selectedNode()), QuotedName);
}

QString AssetReasons::againstAdding() const
{
    if (m_controls.tree->selectedNode().isEmpty())
        return tr("Select a folder first");
    return has('W') ? QString()
                    : tr("You may not add anything to \"%1\": the right to write (W) is missing")
                          .arg(folderName());
}

QString AssetReasons::againstListing() const
{
    if (m_controls.tree->selectedNode().isEmpty())
        return tr("Select a folder to see its assets");
    return has('R') ? QString()
                    : tr("You may not see the assets of \"%1\": the right to read (R) is missing")
                          .arg(folderName());
}

QString AssetReasons::againstDeleting() const
{
    return has('D')
               ? QString()
               : tr("You may not delete anything in \"%1\": the right to delete (D) is missing")
                     .arg(folderName());
}

QString AssetReasons::againstDeletingFolder() const
{
    const Zel::TreeView &tree = *m_controls.tree;
    const QString folder = tree.selectedNode();
    if (folder.isEmpty())
        return tr("Select a folder first");
    if (tree.parentKey(folder).isEmpty())
        return tr("The root folder cannot be deleted");
    if (!has('D'))
        return againstDeleting();
    if (tree.childCount(folder) > 0)
        return tr("\"%1\" is not empty: it holds other folders").arg(folderName());
    if (m_controls.list->count() > 0)
        return tr("\"%1\" is not empty: delete its assets first").arg(folderName());
    return {};
}

QString AssetReasons::againstDeletingAssets() const
{
    if (m_controls.tree->selectedNode().isEmpty())
        return tr("Select a folder first");
    if (!has('D'))
        return againstDeleting();
    return m_controls.list->selectedCount() > 0 ? QString() : tr("Select the assets to delete");
}

void AssetReasons::explain(QPushButton *button, const QString &reason)
{
    const bool isExplained = !button->isEnabled() && !reason.isEmpty();
    button->setToolTip(isExplained ? reason : m_toolTips.value(button));
    button->setAccessibleDescription(isExplained ? reason : QString());
}

void AssetReasons::refresh()
{
    explain(m_controls.newFolder, againstAdding());
    explain(m_controls.newAsset, againstAdding());
    explain(m_controls.deleteFolder, againstDeletingFolder());
    explain(m_controls.deleteAsset, againstDeletingAssets());
    explain(m_controls.singleSave, tr("Enter a name and choose a file first"));
    explain(m_controls.batchSave, tr("Add files first"));
    explain(m_controls.removeBatch, tr("Select a file of the list first"));
}

} // namespace Studio
