// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"
#include "platform/widgets/listsurface.h"

#include <QHash>
#include <QIcon>
#include <QTreeWidget>

namespace Zel {

/// A tree of nodes that are named by keys.
///
/// Keys are unique in the tree, not empty, and compare exactly. Adding a key twice is error 35602,
/// an empty one error 5; a function that is given a key the tree does not have raises error 35601.
///
/// Clicks follow ListInput: a mouse click on a node and a key that moves the current node raise
/// `nodeClicked` once; the expand mark and empty ground raise nothing and leave the selection
/// alone.
class ZEL_EXPORT TreeView : public ListSurface<QTreeWidget, QTreeView>
{
    Q_OBJECT

public:
    /// What the model answers beside Qt's own roles.
    enum NodeRole
    {
        NodeKeyRole = Qt::UserRole,
        NodeTagRole,
        /// int, 1-based index into the images, 0 for none.
        NodeImageRole,
        NodeExpandedImageRole,
        /// bool, also of a node that has no children yet.
        NodeExpandedRole,
    };

    explicit TreeView(QWidget *parent = nullptr);
    ~TreeView() override;

    /// The pictures nodes show by 1-based index.
    void setImages(const QList<QIcon> &images);

    /// Adds a node as the last child of another, or at the top for an empty parent key.
    void addNode(const QString &parentKey, const QString &key, const QString &text, int image = 0);
    /// Removes a node with all below it.
    void removeNode(const QString &key);
    void clear();

    bool contains(const QString &key) const { return m_nodes.contains(key); }

    int nodeCount() const { return static_cast<int>(m_nodes.size()); }

    /// The key of the node that was added last, empty when there is none or it was removed.
    QString lastAddedNode() const { return m_lastAdded; }

    QString text(const QString &key) const;
    void setText(const QString &key, const QString &text);
    QVariant tag(const QString &key) const;
    void setTag(const QString &key, const QVariant &tag);
    int image(const QString &key) const;
    void setImage(const QString &key, int image);
    /// Shown while the node is expanded; 0 shows the ordinary image then too.
    int expandedImage(const QString &key) const;
    void setExpandedImage(const QString &key, int image);

    /// Empty for a node at the top.
    QString parentKey(const QString &key) const;
    QStringList childKeys(const QString &key) const;
    int childCount(const QString &key) const;
    QStringList topKeys() const;

    /// Whether the node shows its children; what was set before it had any counts later.
    bool isExpanded(const QString &key) const;
    void setExpanded(const QString &key, bool expanded);

    /// The key of the selected node, empty when none is.
    QString selectedNode() const;
    /// Selects a node and makes it current, without a click; an empty key selects none.
    void selectNode(const QString &key);
    void ensureVisible(const QString &key);
    /// Where a node is painted, in coordinates of `viewport()`.
    QRect nodeRect(const QString &key) const;

signals:
    void nodeClicked(const QString &key);
    void nodeDoubleClicked(const QString &key);
    /// By a person or by code.
    void selectionChangedTo(const QString &key);
    /// On a node or, with an empty key, on the ground. While nothing is connected the widget's own
    /// contextMenuPolicy decides.
    void contextMenuRequested(const QString &key, const QPoint &globalPosition);

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    QTreeWidgetItem *node(const QString &key) const;
    QString keyOf(const QModelIndex &index) const;
    void showImage(QTreeWidgetItem *item);
    void noteExpansion(QTreeWidgetItem *item, bool expanded);
    void forget(QTreeWidgetItem *item);

    QHash<QString, QTreeWidgetItem *> m_nodes;
    QList<QIcon> m_images;
    QString m_lastAdded;
};

} // namespace Zel
