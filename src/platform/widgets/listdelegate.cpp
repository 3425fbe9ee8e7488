// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/widgets/listdelegate.h"

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

QColor blend(const QColor &over, const QColor &under, double share)
{
    const auto mix = [share](int a, int b) { return qRound(a * share + b * (1 - share)); };
    return QColor(mix(over.red(), under.red()), mix(over.green(), under.green()),
                  mix(over.blue(), under.blue()));
}

/// Muted, and still at least 4.5 : 1 against the ground in light and dark palettes.
QColor ghostText(const QPalette &palette)
{
    return blend(palette.color(QPalette::Text), palette.color(QPalette::Base), 0.58);
}

const QWidget *widgetOf(const QStyleOptionViewItem &option)
{
    return option.widget;
}

const QStyle *styleOf(const QStyleOptionViewItem &option)
{
    return option.widget ? option.widget->style() : QApplication::style();
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
                                                                         &option, widgetOf(option))
                                          : 0;
    return {0, std::max({option.fontMetrics.height() + 8, icon + 6, box + 6})};
}

int ListDelegate::fittingWidth(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    return QStyledItemDelegate::sizeHint(option, index).width() + 4;
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
        option->palette.setColor(QPalette::Text, ghostText(option->palette));
}

void ListDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                         const QModelIndex &index) const
{
    QStyledItemDelegate::paint(painter, option, index);
}

bool ListDelegate::isShortened(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    return fittingWidth(option, index) - 4 > option.rect.width();
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

QSize ListIconDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &) const
{
    const int line = option.fontMetrics.height();
    const int width =
        std::max(option.decorationSize.width() + 24, option.fontMetrics.averageCharWidth() * 16);
    return {width, option.decorationSize.height() + 2 * line + 16};
}

void ListIconDelegate::initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const
{
    const QSize iconSize = option->decorationSize;
    ListDelegate::initStyleOption(option, index);
    option->icon = model()->largeImage(model()->rowOf(index));
    option->features |= QStyleOptionViewItem::HasDecoration | QStyleOptionViewItem::WrapText;
    option->decorationSize = iconSize;
    option->decorationPosition = QStyleOptionViewItem::Top;
    option->decorationAlignment = Qt::AlignCenter;
    option->displayAlignment = Qt::AlignHCenter | Qt::AlignTop;
}

bool ListIconDelegate::isShortened(const QStyleOptionViewItem &option,
                                   const QModelIndex &index) const
{
    const QString text = shownOnOneLine(index.data().toString());
    const QRect room(0, 0, option.rect.width() - 8, 10000);
    const QRect needed = option.fontMetrics.boundingRect(room, Qt::TextWordWrap, text);
    return needed.height() > 2 * option.fontMetrics.height() + 2 || needed.width() > room.width();
}

} // namespace Zel
