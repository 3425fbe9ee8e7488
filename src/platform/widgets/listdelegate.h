// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStyledItemDelegate>

namespace Zel {

class ListModel;

/// A cell's text as it is shown: on one line, line breaks and control characters as blanks, at most
/// a few hundred characters, so that a text of any length costs the same to paint.
QString shownOnOneLine(const QString &text);

/// Paints the lines of a report view; base of the icon view's delegate.
class ListDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    explicit ListDelegate(const ListModel *model, QObject *parent = nullptr);

    QString displayText(const QVariant &value, const QLocale &locale) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    bool editorEvent(QEvent *event, QAbstractItemModel *model, const QStyleOptionViewItem &option,
                     const QModelIndex &index) override;
    /// Shows the whole text of a cell that is painted shortened.
    bool helpEvent(QHelpEvent *event, QAbstractItemView *view, const QStyleOptionViewItem &option,
                   const QModelIndex &index) override;
    /// The width the cell needs to be seen whole.
    int fittingWidth(const QStyleOptionViewItem &option, const QModelIndex &index) const;

protected:
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override;
    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    virtual bool isShortened(const QStyleOptionViewItem &option, const QModelIndex &index) const;

    const ListModel *model() const { return m_model; }

    /// Where in the cell its contents lie.
    virtual QRect contents(const QStyleOptionViewItem &option) const;

private:
    const ListModel *m_model;
};

} // namespace Zel
