// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "datavisualization/graphview.h"

#include "datavisualization/graphaccessible.h"
#include "datavisualization/visualizationtexts.h"

#include <QHelpEvent>
#include <QKeyEvent>
#include <QLocale>
#include <QToolTip>

#include <algorithm>

namespace ZelDataVisualization {

GraphView::GraphView(QWidget *parent)
    : QGraphicsView(parent)
    , m_figures(noFigures(QString()))
{
    announceGraphs();
    setScene(&m_scene);
    setFrameShape(QFrame::StyledPanel);
    setRenderHint(QPainter::Antialiasing);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setAlignment(Qt::AlignLeft | Qt::AlignTop);
    setFocusPolicy(Qt::StrongFocus);
    setViewportUpdateMode(QGraphicsView::FullViewportUpdate);
}

GraphView::~GraphView()
{
    setScene(nullptr); // goes before this
}

QSize GraphView::sizeHint() const
{
    return {560, 320};
}

QSize GraphView::minimumSizeHint() const
{
    return {160, 100};
}

void GraphView::setFigures(const FiguresPtr &figures)
{
    m_figures = figures;
    m_window = GraphWindow(figures->count(), figures->canBeGrouped());
    m_current = figures->count() > 0 ? 0 : -1;
    m_isZoomed = false;
    fitWindow();
    setAccessibleName(figures->name());
    setAccessibleDescription(figures->note());
    draw();
    emit windowChanged();
    if (hasFocus())
        announce();
}

void GraphView::setRotated(bool isRotated)
{
    if (m_isRotated == isRotated)
        return;
    m_isRotated = isRotated;
    fitWindow();
    draw();
    emit windowChanged();
}

GraphContent GraphView::contentOf() const
{
    GraphContent content;
    content.title = m_figures->title();
    content.note = m_figures->note();
    if (m_window.group() > 1)
        content.note = VisualizationTexts::tr("Each bar is the average of %1.")
                           .arg(QLocale().toString(m_window.group()));
    content.bars = barsOf(*m_figures, m_window);
    content.isShare = m_figures->isShare();
    content.isRotated = m_isRotated;
    return content;
}

GraphContent GraphView::picture() const
{
    return contentOf();
}

void GraphView::draw()
{
    GraphContent content = contentOf();
    if (hasFocus() && m_current >= 0)
        content.current = m_window.barOf(m_current);
    m_scene.show(std::move(content), GraphLook::onScreen(palette(), font()),
                 QSizeF(viewport()->size()));
}

void GraphView::setCurrent(qsizetype figure)
{
    if (figure < 0 || figure >= m_figures->count() || figure == m_current)
        return;
    goTo(figure);
}

void GraphView::goTo(qsizetype figure)
{
    m_current = figure;
    const qsizetype first = m_window.first();
    m_window.reveal(figure);
    if (m_window.first() != first) {
        draw();
        emit windowChanged();
    } else if (hasFocus()) {
        m_scene.setCurrent(m_window.barOf(figure));
    }
    announce();
    emit currentChanged(figure);
}

void GraphView::announce()
{
    if (hasFocus() && m_current >= 0)
        announceBar(*this, m_window.barOf(m_current));
}

void GraphView::scrollTo(qsizetype first)
{
    const qsizetype before = m_window.first();
    m_window.scrollTo(first);
    if (m_window.first() == before)
        return;
    // The current bar is always one of those that are seen.
    const qsizetype last = m_window.first() + m_window.shown() - 1;
    const qsizetype current = std::clamp(m_current, m_window.first(), last);
    draw();
    emit windowChanged();
    setCurrent(current);
}

/// As many bars as have room for their names, until a person zooms.
void GraphView::fitWindow()
{
    if (m_isZoomed)
        return;
    const double line = fontMetrics().height() * 1.3;
    const double room = m_isRotated ? viewport()->height() - 4 * line : viewport()->width();
    m_window.fit(static_cast<qsizetype>(room / line));
    m_window.reveal(m_current);
}

void GraphView::zoomed()
{
    m_isZoomed = true;
    draw();
    emit windowChanged();
}

void GraphView::zoomIn()
{
    m_window.zoomIn(m_current);
    zoomed();
}

void GraphView::zoomOut()
{
    m_window.zoomOut(m_current);
    zoomed();
}

void GraphView::showAll()
{
    m_window.showAll();
    m_window.reveal(m_current);
    zoomed();
}

qsizetype GraphView::barAt(const QPoint &position) const
{
    const GraphPlaces &places = m_scene.places();
    const QPointF point = mapToScene(position);
    for (size_t i = 0; i < places.bars; ++i) {
        QRectF slot = places.slot(i);
        // With its name.
        if (places.isRotated)
            slot.setLeft(places.labels.left());
        else
            slot.setBottom(places.labels.bottom());
        if (slot.contains(point))
            return static_cast<qsizetype>(i);
    }
    return -1;
}

QRect GraphView::rectOfBar(qsizetype bar) const
{
    return mapFromScene(m_scene.places().slot(static_cast<size_t>(bar))).boundingRect();
}

bool GraphView::move(int key)
{
    const qsizetype last = m_figures->count() - 1;
    const bool isForward = key == Qt::Key_Right || key == Qt::Key_Down;
    const bool isBack = key == Qt::Key_Left || key == Qt::Key_Up;
    qsizetype to = m_current;
    if (isForward || isBack) {
        // From bar to bar, also where one stands for many.
        const qsizetype bar = m_window.first() + m_window.barOf(m_current) * m_window.group();
        to = bar + (isForward ? m_window.group() : -m_window.group());
    } else if (key == Qt::Key_Home) {
        to = 0;
    } else if (key == Qt::Key_End) {
        to = last;
    } else if (key == Qt::Key_PageDown) {
        to = m_current + m_window.shown();
    } else if (key == Qt::Key_PageUp) {
        to = m_current - m_window.shown();
    } else {
        return false;
    }
    if (last >= 0)
        setCurrent(std::clamp<qsizetype>(to, 0, last));
    return true;
}

void GraphView::keyPressEvent(QKeyEvent *event)
{
    if (event->modifiers() & (Qt::ControlModifier | Qt::AltModifier)) {
        event->ignore();
        return;
    }
    const int key = event->key();
    if (move(key))
        return;
    if (key == Qt::Key_Plus)
        zoomIn();
    else if (key == Qt::Key_Minus)
        zoomOut();
    else if (key == Qt::Key_0)
        showAll();
    else
        event->ignore();
}

void GraphView::mousePressEvent(QMouseEvent *event)
{
    const qsizetype bar = barAt(event->position().toPoint());
    if (event->button() == Qt::LeftButton && bar >= 0)
        setCurrent(m_scene.content().bars[static_cast<size_t>(bar)].figure);
    event->accept();
}

void GraphView::wheelEvent(QWheelEvent *event)
{
    const QPoint delta = event->angleDelta();
    const int turned = delta.y() != 0 ? delta.y() : delta.x();
    if (turned == 0)
        return;
    if (event->modifiers() & Qt::ControlModifier) {
        if (turned > 0)
            zoomIn();
        else
            zoomOut();
    } else {
        const qsizetype step = std::max<qsizetype>(1, m_window.shown() / 10);
        scrollTo(m_window.first() + (turned < 0 ? step : -step));
    }
    event->accept();
}

bool GraphView::viewportEvent(QEvent *event)
{
    if (event->type() != QEvent::ToolTip)
        return QGraphicsView::viewportEvent(event);
    const auto *help = static_cast<QHelpEvent *>(event);
    const qsizetype bar = barAt(help->pos());
    if (bar < 0) {
        QToolTip::hideText();
        return true;
    }
    // Never as markup, whatever an author wrote.
    const QString text = m_scene.content().bars[static_cast<size_t>(bar)].spoken.toHtmlEscaped();
    QToolTip::showText(help->globalPos(), QStringLiteral("<p>%1</p>").arg(text), this,
                       rectOfBar(bar));
    return true;
}

void GraphView::resizeEvent(QResizeEvent *event)
{
    QGraphicsView::resizeEvent(event);
    fitWindow();
    draw();
    emit windowChanged();
}

void GraphView::focusInEvent(QFocusEvent *event)
{
    QGraphicsView::focusInEvent(event);
    m_scene.setCurrent(m_current < 0 ? -1 : m_window.barOf(m_current));
    announce();
}

void GraphView::focusOutEvent(QFocusEvent *event)
{
    QGraphicsView::focusOutEvent(event);
    m_scene.setCurrent(-1);
}

void GraphView::changeEvent(QEvent *event)
{
    QGraphicsView::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange ||
        event->type() == QEvent::StyleChange)
        draw();
}

} // namespace ZelDataVisualization
