// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/widgets/listdelegate.h"

#include "platform/widgets/listlooks.h"
#include "platform/widgets/listmodel.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>

namespace Zel {

namespace {

constexpr qsizetype mostShown = 300;
constexpr qsizetype mostInToolTip = 2000;

const QStyle *styleOf(const QStyleOptionViewItem &option)
{
    return option.widget ? option.widget->style() : QApplication::style();
}

/// What the contents of a cell keep from its edge beside the style's own focus margin and a pixel.
int insetOf(const QStyleOptionViewItem &option)
{
    const int own =
        styleOf(option)->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, option.widget);
    return ListLooks::textMargin(option.widget) - own - 1;
}

QIcon faded(const QIcon &icon, const QSize &size, const QWidget *widget)
{
    if (icon.isNull())
        return icon;
    const QPixmap whole = icon.pixmap(size, widget ? widget->devicePixelRatioF() : 1.0);
    QPixmap picture(whole.size());
    picture.setDevicePixelRatio(whole.devicePixelRatio());
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setOpacity(0.5);
    painter.drawPixmap(0, 0, whole);
    painter.end();
    return QIcon(picture);
}

void paintCheckBox(QPainter *painter, const QStyleOptionViewItem &cell)
{
    const QStyle *style = styleOf(cell);
    QStyleOptionViewItem box = cell;
    box.rect = style->subElementRect(QStyle::SE_ItemViewItemCheckIndicator, &cell, cell.widget);
    box.state |= cell.checkState == Qt::Checked ? QStyle::State_On : QStyle::State_Off;
    style->drawPrimitive(QStyle::PE_IndicatorItemViewItemCheck, &box, painter, cell.widget);
}

} // namespace

QString shownOnOneLine(const QString &text)
{
    QString line = text.size() > mostShown ? text.first(mostShown) + QChar(0x2026) : text;
    for (qsizetype i = 0; i < line.size(); ++i) {
        const QChar c = line.at(i);
        if (c.category() == QChar::Other_Control || c == QChar::LineSeparator ||
            c == QChar::ParagraphSeparator)
            line[i] = QLatin1Char(' ');
    }
    return line;
}

ListDelegate::ListDelegate(const ListModel *model, QObject *parent)
    : QStyledItemDelegate(parent)
    , m_model(model)
{
}

QString ListDelegate::displayText(const QVariant &value, const QLocale &) const
{
    return shownOnOneLine(value.toString());
}

QSize ListDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &) const
{
    const int icon = m_model->hasSmallImages() ? option.decorationSize.height() : 0;
    const int box = m_model->checkBoxes() ? styleOf(option)->pixelMetric(QStyle::PM_IndicatorHeight,
                                                                         &option, option.widget)
                                          : 0;
    return {0, ListLooks::lineHeight(option, icon, box)};
}

int ListDelegate::fittingWidth(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    return QStyledItemDelegate::sizeHint(option, index).width() + 2 * insetOf(option);
}

QRect ListDelegate::contents(const QStyleOptionViewItem &option) const
{
    const int inset = insetOf(option);
    return option.rect.adjusted(inset, 0, -inset, 0);
}

void ListDelegate::initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const
{
    const QSize iconSize = option->decorationSize;
    QStyledItemDelegate::initStyleOption(option, index);
    const bool first = index.column() == 0;
    if (first && m_model->hasSmallImages()) {
        // A line without an icon keeps the place of one, so that all texts begin at one edge.
        option->features |= QStyleOptionViewItem::HasDecoration;
        option->decorationSize = iconSize;
    }
    const qsizetype row = m_model->rowOf(index);
    if (index.data(GhostedRole).toBool() && !m_model->colour(row, index.column()).isValid())
        option->palette.setColor(QPalette::Text, ListLooks::ghostText(option->palette));
}

void ListDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                         const QModelIndex &index) const
{
    QStyleOptionViewItem cell = option;
    initStyleOption(&cell, index);
    const QStyle *style = styleOf(option);
    const bool selected = cell.state & QStyle::State_Selected;
    if ((cell.state & QStyle::State_MouseOver) && !selected) {
        QColor hover = cell.palette.color(QPalette::Highlight);
        hover.setAlpha(28);
        painter->fillRect(cell.rect, hover);
    }
    style->drawPrimitive(QStyle::PE_PanelItemViewItem, &cell, painter, option.widget);

    // The contents lie on the ground painted just now. To the style they are not selected: it would
    // paint the ground again, and tint the icons, which for thumbnails is wrong.
    ListLooks::outlineCheckBoxes(cell.palette);
    const QPalette unselected = cell.palette;
    if (selected) {
        const bool active = cell.state & QStyle::State_Active;
        const auto group = active ? QPalette::Active : QPalette::Inactive;
        const QColor text = cell.palette.color(group, QPalette::HighlightedText);
        cell.palette.setColor(QPalette::Text, text);
    }
    if (index.data(GhostedRole).toBool())
        cell.icon = faded(cell.icon, cell.decorationSize, cell.widget);
    cell.state &= ~(QStyle::State_Selected | QStyle::State_HasFocus | QStyle::State_MouseOver);
    cell.backgroundBrush = Qt::NoBrush;
    cell.rect = contents(option);
    style->drawControl(QStyle::CE_ItemViewItem, &cell, painter, option.widget);
    if (selected && (cell.features & QStyleOptionViewItem::HasCheckIndicator)) {
        // The mark in the box is drawn in the colour of the text, which was that of a selected one.
        cell.palette = unselected;
        paintCheckBox(painter, cell);
    }
}

bool ListDelegate::editorEvent(QEvent *event, QAbstractItemModel *model,
                               const QStyleOptionViewItem &option, const QModelIndex &index)
{
    QStyleOptionViewItem inner = option;
    inner.rect = contents(option);
    return QStyledItemDelegate::editorEvent(event, model, inner, index);
}

bool ListDelegate::isShortened(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    return fittingWidth(option, index) > option.rect.width();
}

bool ListDelegate::helpEvent(QHelpEvent *event, QAbstractItemView *view,
                             const QStyleOptionViewItem &option, const QModelIndex &index)
{
    if (event->type() != QEvent::ToolTip)
        return QStyledItemDelegate::helpEvent(event, view, option, index);
    const QString text = index.isValid() ? index.data().toString() : QString();
    if (text.isEmpty() || (text.size() <= mostShown && !isShortened(option, index))) {
        QToolTip::hideText();
        return false;
    }
    // As rich text the tool tip wraps; escaped, it shows the text as it stands.
    const QString most =
        text.size() > mostInToolTip ? text.first(mostInToolTip) + QChar(0x2026) : text;
    QToolTip::showText(
        event->globalPos(),
        QStringLiteral("<p style='white-space:pre-wrap'>%1</p>").arg(most.toHtmlEscaped()),
        view->viewport(), view->visualRect(index));
    return true;
}

} // namespace Zel
