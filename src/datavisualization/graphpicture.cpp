// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "datavisualization/graphpicture.h"

#include "datavisualization/visualizationtexts.h"

#include <QFileInfo>
#include <QPageLayout>
#include <QPagedPaintDevice>
#include <QPainter>
#include <QPdfWriter>
#include <QSaveFile>
#include <QSvgGenerator>

namespace ZelDataVisualization {

namespace {

constexpr double Resolution = 2;
constexpr int DotsPerInch = 96;
/// Below that no graph can be read.
constexpr QSizeF Least(480, 320);

} // namespace

GraphPicture::GraphPicture(GraphContent content, const QFont &font, const QSizeF &size)
    : m_content(std::move(content))
    , m_font(font)
    , m_size(size.expandedTo(Least))
{
}

void GraphPicture::paint(QPainter &painter, const QRectF &target) const
{
    painter.setRenderHint(QPainter::Antialiasing);
    GraphScene scene;
    scene.show(m_content, GraphLook::onPaper(m_font), m_size);
    scene.render(&painter, target, QRectF(QPointF(), m_size), Qt::KeepAspectRatio);
}

QImage GraphPicture::image() const
{
    QImage image((m_size * Resolution).toSize(), QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    paint(painter, QRectF(QPointF(), m_size * Resolution));
    painter.end();
    image.setDevicePixelRatio(Resolution);
    return image;
}

void GraphPicture::printOn(QPagedPaintDevice &device) const
{
    QPainter painter(&device);
    paint(painter, QRectF(0, 0, device.width(), device.height()));
}

bool GraphPicture::write(QIODevice &device, const QString &suffix) const
{
    if (suffix == u"svg") {
        QSvgGenerator writer;
        writer.setOutputDevice(&device);
        writer.setSize(m_size.toSize());
        writer.setViewBox(QRectF(QPointF(), m_size));
        writer.setResolution(DotsPerInch);
        writer.setTitle(m_content.title.toHtmlEscaped()); // it is written as it stands
        QPainter painter(&writer);
        paint(painter, QRectF(QPointF(), m_size));
        return true;
    }
    if (suffix == u"pdf") {
        QPdfWriter writer(&device);
        writer.setPageSize(QPageSize(QPageSize::A4));
        writer.setPageOrientation(QPageLayout::Landscape);
        writer.setTitle(m_content.title);
        printOn(writer);
        return true;
    }
    return image().save(&device, "PNG");
}

bool GraphPicture::save(const QString &path) const
{
    QSaveFile file(path);
    return file.open(QSaveFile::WriteOnly) && write(file, QFileInfo(path).suffix().toLower()) &&
           file.commit();
}

} // namespace ZelDataVisualization
