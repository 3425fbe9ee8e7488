// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"
#include "platform/widgets/listmodel.h"
#include "platform/widgets/listroles.h"
#include "platform/widgets/listsortkeys.h"
#include "platform/widgets/listtypeahead.h"

#include <QAbstractItemView>
#include <QWidget>

class QStackedLayout;

namespace Zel {

class ListIconView;
class ListInput;
class ListReportView;

/// A list of records as lines under column headers (report view) or as large icons (icon view).
///
/// The lines come from a ListRowProvider, so a list of a million records costs no more than what is
/// on the screen. Every line is named by the number of its record, 0 to `count() - 1`, wherever it
/// stands and in every function and signal; a record number outside that range is ignored by
/// setters and answered with an empty value by getters. What code sets on a line (text, icon,
/// check, colour,
/// ...) lies over what the provider says and is kept until `setRows`, `clear`.
///
/// Mouse and keyboard: see ListInput for what counts as a click. A press on empty ground clears the
/// selection. Space toggles check boxes, Ctrl+A selects all lines where several may be selected,
/// Ctrl+C copies, typing goes to the line that begins so.
class ZEL_EXPORT ListView : public QWidget
{
    Q_OBJECT

public:
    enum class ViewMode
    {
        Report,
        Icon
    };

    explicit ListView(QWidget *parent = nullptr);
    ~ListView() override;

    // The view

    /// The item view that is shown: a QTreeView in report view, a QListView in icon view.
    QAbstractItemView *view() const;
    QWidget *viewport() const;

    /// The model of both views, for reading; see ListRole.
    ListModel *model() const { return m_model; }

    ViewMode viewMode() const;
    void setViewMode(ViewMode mode);
    /// The accessible name of this widget and of its views.
    void setAccessibleName(const QString &name);
    /// Shown in the middle of the list, muted, while no line is shown.
    void setEmptyText(const QString &text);

    QString emptyText() const { return m_emptyText; }

    // Columns

    /// Adds a column and answers its number. A width of 0 hides it.
    int addColumn(const QString &caption, double widthTwips, const QString &tag = {},
                  Qt::Alignment alignment = Qt::AlignLeft);
    void clearColumns();
    int columnCount() const;
    QString columnCaption(int column) const;
    void setColumnCaption(int column, const QString &caption);
    /// Twips, exactly as set; after a person dragged the divider, from the pixels dragged to.
    double columnWidth(int column) const;
    void setColumnWidth(int column, double widthTwips);
    QString columnTag(int column) const;
    void setColumnTag(int column, const QString &tag);

    // Lines

    /// Shows the provider's records; null shows none. Selection, what code has set on lines and the
    /// scroll position are gone, sorting and filter apply to the new lines. Without sorting and
    /// filter no text is asked for.
    void setRows(std::shared_ptr<const ListRowProvider> rows);
    /// Takes in records the provider has got at its end since. All else stays.
    void rowsAppended();
    /// The provider's record has changed: shows it anew, without sorting or filtering again.
    void updateRow(qsizetype row);
    void clear();

    const ListRowProvider *rows() const;
    qsizetype count() const;

    QString text(qsizetype row, int column = 0) const;
    /// Does not sort again.
    void setText(qsizetype row, int column, const QString &text);
    QVariant tag(qsizetype row) const;
    QVariant cellTag(qsizetype row, int column) const;
    void setCellTag(qsizetype row, int column, const QVariant &tag);

    /// 1-based index into the small images, 0 for none.
    int smallIcon(qsizetype row) const;
    void setSmallIcon(qsizetype row, int index);
    /// 1-based index into the large images, 0 for none.
    int largeIcon(qsizetype row) const;
    void setLargeIcon(qsizetype row, int index);
    /// While small images are set every line keeps room for one.
    void setSmallImages(const QList<QIcon> &images);
    void setLargeImages(const QList<QIcon> &images);
    /// Size of the large icons in device-independent pixels; 48 x 48 unless set.
    void setLargeIconSize(const QSize &size);

    QSize largeIconSize() const { return m_largeIconSize; }

    bool checkBoxes() const;
    void setCheckBoxes(bool shown);
    bool isChecked(qsizetype row) const;
    /// Raises no signal.
    void setChecked(qsizetype row, bool checked);
    /// A ghosted line is drawn muted; it works like any other.
    bool isGhosted(qsizetype row) const;
    void setGhosted(qsizetype row, bool ghosted);
    /// The text colour set on the line or cell; invalid for the ordinary one. A cell's colour goes
    /// before the line's; an invalid colour takes it back.
    QColor colour(qsizetype row, int column = 0) const;
    void setLineColour(qsizetype row, const QColor &colour);
    void setCellColour(qsizetype row, int column, const QColor &colour);

    // Selection

    bool isMultiSelect() const;
    void setMultiSelect(bool multiSelect);
    /// The selected line, -1 for none. Of several: the current one, or else the topmost.
    qsizetype selectedRow() const;
    /// The selected lines from top to bottom.
    QList<qsizetype> selectedRows() const;
    int selectedCount() const;
    /// Selects a line alone and makes it current, without a click. -1 selects none; a line the
    /// filter hides cannot be selected and changes nothing.
    void selectRow(qsizetype row);
    void clearSelection();
    void ensureVisible(qsizetype row);

    // Sorting and filtering

    /// The column to sort by.
    int sortKey() const { return m_sortKey; }

    void setSortKey(int column);

    Qt::SortOrder sortOrder() const { return m_sortOrder; }

    void setSortOrder(Qt::SortOrder order);

    /// While on, the lines stand in the order of the sort column; off, in that of the records.
    /// Turning it on again sorts again.
    bool isSorted() const { return m_sorted; }

    void setSorted(bool sorted);
    /// Sets key and order and turns sorting on, with a single sort.
    void sortBy(int column, Qt::SortOrder order);

    /// Sorts columns of any tag by `ListRowProvider::sortValues` where it has them, instead of by
    /// their texts. Off unless set.
    bool sortsByValue() const { return m_sortsByValue; }

    void setSortByValue(bool byValue);
    /// How columns with the tag make sort keys from shown texts; an empty maker takes it away, and
    /// columns with that tag then sort like others.
    void setSortKeyMaker(const QString &columnTag, const ListSortKeyMaker &maker);

    /// Shows only the records the filter passes, in the order they have; an empty filter shows all.
    /// Lines it hides are deselected. An error the filter throws changes nothing and reaches the
    /// caller. Set it again when it would answer differently.
    void setRowFilter(const std::function<bool(qsizetype row)> &filter);
    /// How many lines are shown.
    qsizetype filteredCount() const;

    // Positions

    /// The record shown at a position from the top, -1 when there is none.
    qsizetype rowAt(qsizetype position) const;
    /// The position from the top at which a record is shown, -1 when it is not.
    qsizetype positionOf(qsizetype row) const;
    QModelIndex indexOf(qsizetype row, int column = 0) const;
    /// Where a cell is painted, in coordinates of `viewport()`.
    QRect cellRect(qsizetype row, int column = 0) const;

    /// The selected lines as the clipboard gets them: visible columns, tabs between cells, a line
    /// feed between lines; tabs and line breaks inside a cell are blanks.
    QString selectionAsText() const;
    void copySelection() const;

signals:
    void lineClicked(qsizetype row);
    void lineDoubleClicked(qsizetype row);
    void columnClicked(int column);
    /// A person has changed the column's width.
    void columnResized(int column);
    /// A person has checked or unchecked the line. A slot may change the lines, but not destroy the
    /// list.
    void lineCheckChanged(qsizetype row, bool checked);
    /// By a person or by code.
    void selectionChanged();
    /// On a line or, with -1, on the ground. While nothing is connected the widget's own
    /// contextMenuPolicy decides.
    void contextMenuRequested(qsizetype row, const QPoint &globalPosition);

protected:
    bool event(QEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    void adopt(QAbstractItemView *view, ListInput *input);
    void makeIconView();
    bool handleKey(QKeyEvent *event);
    void toggleChecks();
    void typeAhead(const QString &text);
    void headerClicked(int column);
    void headerResized(int column, int pixels);
    void showHeaderArrow();
    void applyColumnWidth(int column);
    void applyColumnWidths();
    void nameViews();
    void sort();
    ListOrder::Rows sortedRows() const;
    bool haveSortValues(std::span<qint64> values) const;
    void applyFilter();
    /// Does what makes the views forget the selection, and selects the same lines again as far as
    /// they are shown.
    void keepSelection(const std::function<void()> &change);
    QItemSelection linesSelection(const QList<qsizetype> &rows) const;

    ListModel *m_model;
    QItemSelectionModel *m_selection;
    ListReportView *m_report;
    ListIconView *m_icon = nullptr;
    QStackedLayout *m_stack;
    QString m_emptyText;
    QSize m_largeIconSize{48, 48};
    ListTypeAhead m_typeAhead;
    ListSortKeyMakers m_sortKeyMakers;
    std::function<bool(qsizetype)> m_filter;
    int m_sortKey = 0;
    Qt::SortOrder m_sortOrder = Qt::AscendingOrder;
    bool m_sorted = false;
    bool m_sortsByValue = false;
    bool m_settingWidths = false;
    bool m_movingSelection = false;
};

} // namespace Zel
