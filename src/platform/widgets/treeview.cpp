// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/widgets/treeview.h"

#include "platform/core/runtimeerror.h"

#include <QHeaderView>
#include <QMetaMethod>
#include <QStyledItemDelegate>

namespace Zel {

namespace {

/// Lines as high as a list's.
class TreeDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        const QSize size = QStyledItemDelegate::sizeHint(option, index);
        return {size.width(), ListLooks::lineHeight(option, option.decorationSize.height(), 0)};
    }
};

} // namespace

TreeView::TreeView(QWidget *parent)
    : ListSurface(parent)
{
    setColumnCount(1);
    setHeaderHidden(true);
    setUniformRowHeights(true);
    setEditTriggers(NoEditTriggers);
    setSelectionMode(SingleSelection);
    header()->setStretchLastSection(false);
    header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    setItemDelegate(new TreeDelegate(this));
    input()->setClearsOnGround(false);
    connect(input(), &ListInput::clicked, this,
            [this](const QModelIndex &line) { emit nodeClicked(keyOf(line)); });
    connect(input(), &ListInput::doubleClicked, this,
            [this](const QModelIndex &line) { emit nodeDoubleClicked(keyOf(line)); });
    input()->setMenuHandler([this](const QModelIndex &line, const QPoint &position) {
        if (!isSignalConnected(QMetaMethod::fromSignal(&TreeView::contextMenuRequested)))
            return false;
        emit contextMenuRequested(keyOf(line), position);
        return true;
    });
    connect(this, &QTreeWidget::itemExpanded, this,
            [this](QTreeWidgetItem *item) { noteExpansion(item, true); });
    connect(this, &QTreeWidget::itemCollapsed, this,
            [this](QTreeWidgetItem *item) { noteExpansion(item, false); });
    connect(this, &QTreeWidget::itemSelectionChanged, this,
            [this] { emit selectionChangedTo(selectedNode()); });
}

TreeView::~TreeView() = default;

void TreeView::resizeEvent(QResizeEvent *event)
{
    // The one column is as wide as its longest text and at least as the view, so that a node can be
    // clicked anywhere on its line.
    header()->setMinimumSectionSize(viewport()->width());
    ListSurface::resizeEvent(event);
}

QTreeWidgetItem *TreeView::node(const QString &key) const
{
    QTreeWidgetItem *found = m_nodes.value(key);
    if (!found)
        throw RuntimeError(RuntimeError::ElementNotFound);
    return found;
}

QString TreeView::keyOf(const QModelIndex &index) const
{
    return index.data(NodeKeyRole).toString();
}

void TreeView::setImages(const QList<QIcon> &images)
{
    m_images = images;
    for (QTreeWidgetItem *item : std::as_const(m_nodes))
        showImage(item);
}

void TreeView::showImage(QTreeWidgetItem *item)
{
    const int expandedImage = item->data(0, NodeExpandedImageRole).toInt();
    const int image = item->data(0, NodeExpandedRole).toBool() && expandedImage > 0
                          ? expandedImage
                          : item->data(0, NodeImageRole).toInt();
    item->setIcon(0, m_images.value(image - 1));
}

void TreeView::addNode(const QString &parentKey, const QString &key, const QString &text, int image)
{
    QTreeWidgetItem *parent = parentKey.isEmpty() ? invisibleRootItem() : node(parentKey);
    if (key.isEmpty())
        throw RuntimeError(RuntimeError::InvalidProcedureCall);
    if (contains(key))
        throw RuntimeError(RuntimeError::KeyNotUnique);
    auto *item = new QTreeWidgetItem;
    item->setText(0, text);
    item->setData(0, NodeKeyRole, key);
    item->setData(0, NodeImageRole, image);
    item->setData(0, NodeExpandedRole, false);
    parent->addChild(item);
    m_nodes.insert(key, item);
    m_lastAdded = key;
    showImage(item);
    if (parent->childCount() == 1 && parent->data(0, NodeExpandedRole).toBool())
        parent->setExpanded(true);
}

void TreeView::forget(QTreeWidgetItem *item)
{
    for (int i = 0; i < item->childCount(); ++i)
        forget(item->child(i));
    const QString key = item->data(0, NodeKeyRole).toString();
    m_nodes.remove(key);
    if (key == m_lastAdded)
        m_lastAdded.clear();
}

void TreeView::removeNode(const QString &key)
{
    QTreeWidgetItem *item = node(key);
    forget(item);
    delete item;
}

void TreeView::clear()
{
    m_nodes.clear();
    m_lastAdded.clear();
    QTreeWidget::clear();
}

QString TreeView::text(const QString &key) const
{
    return node(key)->text(0);
}

void TreeView::setText(const QString &key, const QString &text)
{
    node(key)->setText(0, text);
}

QVariant TreeView::tag(const QString &key) const
{
    return node(key)->data(0, NodeTagRole);
}

void TreeView::setTag(const QString &key, const QVariant &tag)
{
    node(key)->setData(0, NodeTagRole, tag);
}

int TreeView::image(const QString &key) const
{
    return node(key)->data(0, NodeImageRole).toInt();
}

void TreeView::setImage(const QString &key, int image)
{
    node(key)->setData(0, NodeImageRole, image);
    showImage(node(key));
}

int TreeView::expandedImage(const QString &key) const
{
    return node(key)->data(0, NodeExpandedImageRole).toInt();
}

void TreeView::setExpandedImage(const QString &key, int image)
{
    node(key)->setData(0, NodeExpandedImageRole, image);
    showImage(node(key));
}

QString TreeView::parentKey(const QString &key) const
{
    const QTreeWidgetItem *parent = node(key)->parent();
    return parent ? parent->data(0, NodeKeyRole).toString() : QString();
}

QStringList TreeView::childKeys(const QString &key) const
{
    const QTreeWidgetItem *item = key.isEmpty() ? invisibleRootItem() : node(key);
    QStringList keys;
    for (int i = 0; i < item->childCount(); ++i)
        keys.append(item->child(i)->data(0, NodeKeyRole).toString());
    return keys;
}

int TreeView::childCount(const QString &key) const
{
    return node(key)->childCount();
}

QStringList TreeView::topKeys() const
{
    return childKeys({});
}

bool TreeView::isExpanded(const QString &key) const
{
    return node(key)->data(0, NodeExpandedRole).toBool();
}

void TreeView::setExpanded(const QString &key, bool expanded)
{
    QTreeWidgetItem *item = node(key);
    noteExpansion(item, expanded);
    // Qt would take the left arrow key on an expanded node without children as collapsing it.
    item->setExpanded(expanded && item->childCount() > 0);
}

void TreeView::noteExpansion(QTreeWidgetItem *item, bool expanded)
{
    item->setData(0, NodeExpandedRole, expanded);
    showImage(item);
}

QString TreeView::selectedNode() const
{
    const QList<QTreeWidgetItem *> selected = selectedItems();
    return selected.isEmpty() ? QString() : selected.first()->data(0, NodeKeyRole).toString();
}

void TreeView::selectNode(const QString &key)
{
    if (key.isEmpty())
        QTreeWidget::clearSelection();
    else
        setCurrentItem(node(key), 0, QItemSelectionModel::ClearAndSelect);
}

void TreeView::ensureVisible(const QString &key)
{
    scrollToItem(node(key));
}

QRect TreeView::nodeRect(const QString &key) const
{
    return visualItemRect(node(key));
}

} // namespace Zel
