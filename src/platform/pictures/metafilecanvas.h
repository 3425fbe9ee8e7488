// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/pictures/metafilestate.h"

#include <QImage>
#include <QPainter>

namespace Zel {

/// The paper on which the records of a metafile draw; it knows the state they set and nothing of
/// their layout. Coordinates are those of the records unless it says otherwise.
class MetafileCanvas
{
public:
    /// @param frame the section of the screen that is the picture, in its pixels
    MetafileCanvas(QImage *image, const QRectF &frame);

    MetafileState &state() { return m_state; }

    /// The section of the screen that is the picture.
    QRectF frame() const { return m_frame; }

    /// Whether any record has drawn anything.
    bool hasDrawn() const { return m_drawn; }

    void save();
    /// @param count below zero: how many states back; above: the number of the state, from 1
    void restore(int count);

    QPointF map(const QPointF &point) const;
    QPainterPath map(const QPainterPath &path) const;

    /// Draws a shape, or adds it to the path that is being built.
    void draw(const QPainterPath &shape, bool fill, bool stroke);
    /// Draws a shape given in pixels of the screen with the selected brush.
    void fillOnScreen(const QPainterPath &shape);
    void fillOnScreen(const QPainterPath &shape, const QBrush &brush);
    void moveTo(const QPointF &point);
    /// Draws from the present position to the shape's end, which becomes the position.
    void drawFromPosition(const QPainterPath &shape);
    void setPixel(const QPointF &point, const QColor &color);

    void beginPath();

    void endPath() { m_isBuilding = false; }

    void abortPath();
    void closeFigure();
    /// Draws the path that was built, and forgets it.
    void drawPath(bool fill, bool stroke);
    void clipToPath();

    /// Clips in pixels of the screen.
    void clip(const QPainterPath &area);
    void exclude(const QRectF &area);
    void resetClip();

    /// Draws a section of an image into a rectangle; negative extents mirror.
    void drawImage(const QRectF &to, const QImage &image, const QRectF &from, quint32 operation,
                   double opacity = 1);
    /// Fills a rectangle with the brush, black, white or the inverse of what is there.
    void fillRectangle(const QRectF &rectangle, quint32 operation);

    /// @param width of the whole text, 0 for that of the font
    void drawText(const QPointF &at, const QString &text, double width);

private:
    void applyClip();
    void applyOperation();
    QPen penOnScreen() const;
    double unit() const;
    QPainterPath textShape(const QString &text, double width, QPointF *advance) const;

    QPainter m_painter;
    QRectF m_frame;
    QTransform m_paper; // pixels of the screen to pixels of the image
    MetafileState m_state;
    QList<MetafileState> m_saved;
    QPainterPath m_path; // on the screen
    bool m_isBuilding = false;
    bool m_drawn = false;
};

} // namespace Zel
