// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "datavisualization/graphscene.h"

#include <QGraphicsView>

namespace ZelDataVisualization {

/// Shows a graph and lets a person walk through its bars: the arrows go from bar to bar, Page Up
/// and Page Down by what is shown, Home and End to both ends; the bar that is reached is announced.
/// Plus, minus and the wheel with Ctrl zoom, the wheel alone scrolls.
class ZEL_EXPORT GraphView : public QGraphicsView
{
    Q_OBJECT

public:
    explicit GraphView(QWidget *parent = nullptr);
    ~GraphView() override;

    void setFigures(const FiguresPtr &figures);
    void setRotated(bool isRotated);

    bool isRotated() const { return m_isRotated; }

    const GraphWindow &extent() const { return m_window; }

    /// The figure a person is at, -1 for none.
    qsizetype current() const { return m_current; }

    /// Goes to a figure and shows it.
    void setCurrent(qsizetype figure);
    void scrollTo(qsizetype first);
    void zoomIn();
    void zoomOut();
    void showAll();

    /// What is shown, without a current bar: for pictures that leave the screen.
    GraphContent picture() const;

    const GraphContent &content() const { return m_scene.content(); }

    /// The bar at a place of the viewport, -1 for none.
    qsizetype barAt(const QPoint &position) const;
    /// Where a bar is, in the viewport.
    QRect rectOfBar(qsizetype bar) const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

signals:
    void currentChanged(qsizetype figure);
    /// Another part of the figures is shown, or more or fewer.
    void windowChanged();

protected:
    bool viewportEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void draw();
    void fitWindow();
    void zoomed();
    void goTo(qsizetype figure);
    bool move(int key);
    void announce();
    GraphContent contentOf() const;

    GraphScene m_scene;
    FiguresPtr m_figures;
    GraphWindow m_window;
    qsizetype m_current = -1;
    bool m_isRotated = false;
    bool m_isZoomed = false; ///< a person has said how much is to be seen
};

} // namespace ZelDataVisualization
