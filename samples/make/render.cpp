// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
// Draws an SVG into a picture of pixels; used by themes.py only, not part of the build.
//     render IN.svg OUT.png|jpg|webp

#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

int main(int argc, char *argv[])
{
    QGuiApplication application(argc, argv);
    if (argc != 3)
        return 2;
    QSvgRenderer drawing(QString::fromLocal8Bit(argv[1]));
    QImage image(drawing.defaultSize(), QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    drawing.render(&painter);
    painter.end();
    constexpr int quality = 82;
    const QString out = QString::fromLocal8Bit(argv[2]);
    return image.save(out, nullptr, out.endsWith(QLatin1String(".png")) ? -1 : quality) ? 0 : 1;
}
