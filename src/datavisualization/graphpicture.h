// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "datavisualization/graphscene.h"

#include <QImage>

class QPagedPaintDevice;

namespace ZelDataVisualization {

/// A graph on paper: black on white, in the size it has on the screen or as large as a page.
class GraphPicture
{
public:
    GraphPicture(GraphContent content, const QFont &font, const QSizeF &size);

    /// Twice the resolution of the screen.
    QImage image() const;
    /// Fits the page in its proportions.
    void printOn(QPagedPaintDevice &device) const;

    /// Writes a picture in the form that the ending of its name says: .svg, .pdf, otherwise PNG.
    /// The file that was there stays until the new one is whole. False when it cannot be written.
    bool save(const QString &path) const;

private:
    void paint(QPainter &painter, const QRectF &target) const;
    bool write(QIODevice &device, const QString &suffix) const;

    GraphContent m_content;
    QFont m_font;
    QSizeF m_size;
};

} // namespace ZelDataVisualization
