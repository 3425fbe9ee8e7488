// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "datavisualization/graphmarks.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QTextLayout>

#include <cmath>

namespace ZelDataVisualization {

namespace {

constexpr double Gap = 4;

/// Draws a text upwards, from the bottom of a rectangle or to its top.
void drawUpright(QPainter *painter, const QRectF &rect, const QString &text, bool fromBottom)
{
    painter->save();
    painter->translate(rect.left(), rect.bottom());
    painter->rotate(-90);
    const QRectF lying(0, 0, rect.height(), rect.width());
    painter->drawText(
        lying,
        Qt::TextSingleLine | Qt::AlignVCenter | (fromBottom ? Qt::AlignLeft : Qt::AlignRight),
        painter->fontMetrics().elidedText(text, Qt::ElideRight, static_cast<int>(lying.width())));
    painter->restore();
}

/// Draws a text in as many lines as there is room for; the last one says that there is more.
void drawLines(QPainter *painter, const QRectF &rect, int alignment, const QString &text)
{
    constexpr qsizetype Enough = 1'000;
    QTextLayout layout(text.left(Enough).simplified(), painter->font());
    const double height = QFontMetricsF(painter->font()).height();
    const int most = std::max(1, static_cast<int>(rect.height() / height + 0.01));
    QStringList lines;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(rect.width());
        const bool isLast = lines.size() + 1 == most;
        const QString rest = layout.text().mid(line.textStart());
        lines << (isLast ? rest : rest.left(line.textLength()).trimmed());
        if (isLast)
            break;
    }
    layout.endLayout();
    const double used = height * static_cast<double>(lines.size());
    double y = alignment & Qt::AlignVCenter ? rect.center().y() - used / 2 : rect.top();
    for (const QString &line : std::as_const(lines)) {
        painter->drawText(QRectF(rect.left(), y, rect.width(), height),
                          Qt::TextSingleLine | (alignment & Qt::AlignHorizontal_Mask),
                          painter->fontMetrics().elidedText(line, Qt::ElideRight,
                                                            static_cast<int>(rect.width())));
        y += height;
    }
}

} // namespace

GraphMarks::GraphMarks(const GraphContent &content, const GraphPlaces &places,
                       const GraphLook &look, const QSizeF &size)
    : m_content(content)
    , m_places(places)
    , m_look(look)
    , m_size(size)
{
    setZValue(100); // above the bars
}

void GraphMarks::setLook(const GraphLook &look, const QSizeF &size)
{
    prepareGeometryChange();
    m_look = look;
    m_size = size;
    update();
}

void GraphMarks::paint(QPainter *painter, const QStyleOptionGraphicsItem *, QWidget *)
{
    painter->setFont(m_look.font);
    painter->setPen(m_look.text);
    for (size_t i = 0; i < m_content.bars.size(); ++i) {
        const GraphBar &bar = m_content.bars[i];
        if (bar.isCorrect)
            paintHatching(painter, m_places.bar(i, bar.value.value_or(0)), chartColor(bar.color));
        paintValue(painter, i);
    }
    paintLabels(painter);
    paintCurrent(painter);
    paintTitle(painter);
}

void GraphMarks::paintTitle(QPainter *painter) const
{
    if (!m_content.note.isEmpty())
        drawLines(painter, m_places.note, Qt::AlignLeft, m_content.note);
    if (m_content.title.isEmpty())
        return;
    QFont bold = m_look.font;
    bold.setBold(true);
    painter->setFont(bold);
    drawLines(painter, m_places.title, Qt::AlignLeft, m_content.title);
}

/// Lines instead of a patterned brush: they look the same in every kind of file.
void GraphMarks::paintHatching(QPainter *painter, const QRectF &outline, const QColor &ground) const
{
    constexpr double Distance = 7;
    constexpr int DarkGround = 100; // of 255
    const QRectF bar = outline.adjusted(1, 1, -1, -1);
    if (bar.width() <= 0 || bar.height() <= 0)
        return;
    painter->save();
    painter->setPen(QPen(qGray(ground.rgb()) < DarkGround ? Qt::white : Qt::black, 1.5));
    for (double at = Distance; at < bar.width() + bar.height(); at += Distance) {
        // From the left or lower edge up to the upper or right one.
        const double right = std::min(at, bar.width());
        const double down = std::min(at, bar.height());
        painter->drawLine(QPointF(bar.left() + at - down, bar.top() + down),
                          QPointF(bar.left() + right, bar.top() + at - right));
    }
    painter->restore();
}

void GraphMarks::paintLabels(QPainter *painter) const
{
    const double line = QFontMetricsF(m_look.font).height();
    const QRectF first = m_places.slot(0);
    const double room = m_places.isRotated ? first.height() : first.width();
    // Where the names stand too close only some of them are written.
    const auto step = static_cast<size_t>(std::max(1.0, std::ceil(line / std::max(1.0, room))));
    for (size_t i = 0; i < m_content.bars.size(); i += step) {
        QRectF slot = m_places.slot(i);
        if (m_places.isRotated) {
            slot.setLeft(m_places.labels.left());
            slot.setRight(m_places.labels.right() - Gap);
            if (slot.height() < line)
                slot.setHeight(line);
            paintLyingLabel(painter, slot, m_content.bars[i].label);
        } else {
            slot.setTop(m_places.labels.top());
            slot.setBottom(m_places.labels.bottom());
            paintStandingLabel(painter, slot, m_content.bars[i].label);
        }
    }
}

void GraphMarks::paintLyingLabel(QPainter *painter, const QRectF &slot, const QString &label) const
{
    drawLines(painter, slot, Qt::AlignRight | Qt::AlignVCenter, label);
}

void GraphMarks::paintStandingLabel(QPainter *painter, const QRectF &slot,
                                    const QString &label) const
{
    const QFontMetricsF metrics(m_look.font);
    const double room = slot.width() - Gap;
    constexpr qsizetype Enough = 60;
    if (room < std::min(metrics.horizontalAdvance(label.left(Enough)), 6 * metrics.height() - Gap))
        drawUpright(painter, slot, label, false);
    else
        drawLines(painter, slot.adjusted(Gap / 2, 0, -Gap / 2, 0), Qt::AlignHCenter, label);
}

void GraphMarks::paintValue(QPainter *painter, size_t index) const
{
    const GraphBar &bar = m_content.bars[index];
    const QString text = valueLabel(bar);
    const QRectF rect = m_places.bar(index, bar.value.value_or(0));
    const QRectF slot = m_places.slot(index);
    const QFontMetricsF metrics(m_look.font);
    const double width = metrics.horizontalAdvance(text);
    if (m_places.isRotated) {
        if (slot.height() >= metrics.height() * 0.8)
            painter->drawText(QPointF(rect.right() + Gap, rect.center().y() + metrics.ascent() / 2 -
                                                              metrics.descent() / 2),
                              text);
    } else if (width + Gap <= slot.width()) {
        painter->drawText(
            QRectF(slot.left(), rect.top() - metrics.height() - 2, slot.width(), metrics.height()),
            Qt::TextSingleLine | Qt::AlignCenter, text);
    } else if (slot.width() >= metrics.height() * 0.8) {
        drawUpright(painter,
                    QRectF(slot.left(), rect.top() - Gap - width - 2, slot.width(), width + 2),
                    text, true);
    }
}

void GraphMarks::paintCurrent(QPainter *painter) const
{
    if (m_content.current < 0 || m_content.current >= qsizetype(m_content.bars.size()))
        return;
    painter->save();
    painter->setPen(QPen(m_look.current, 2));
    painter->setBrush(Qt::NoBrush);
    // With the value beside the bar.
    QRectF frame = m_places.slot(static_cast<size_t>(m_content.current));
    if (m_places.isRotated)
        frame.setRight(m_size.width() - Gap);
    else
        frame.setTop(frame.top() - QFontMetricsF(m_look.font).height() - Gap);
    painter->drawRoundedRect(frame, 3, 3);
    painter->restore();
}

} // namespace ZelDataVisualization
