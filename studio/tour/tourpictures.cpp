// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/tour/tourpictures.h"

#include "studio/tour/touractor.h"

#include <QImage>
#include <QLinearGradient>
#include <QPainter>

#include <array>

namespace Studio {

namespace {

constexpr QSize Size(1200, 800);

struct Scene
{
    const char *name;
    QColor sky;
    QColor ground;
    QColor sun;
};

QImage draw(const Scene &scene, int number)
{
    QImage image(Size, QImage::Format_RGB888);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    QLinearGradient sky(0, 0, 0, Size.height());
    sky.setColorAt(0, scene.sky.darker(130));
    sky.setColorAt(0.7, scene.sky.lighter(125));
    painter.fillRect(image.rect(), sky);
    painter.setPen(Qt::NoPen);
    painter.setBrush(scene.sun);
    painter.drawEllipse(QPointF(170 + 150 * number, 230), 90, 90);
    for (int hill = 0; hill < 3; ++hill) {
        painter.setBrush(scene.ground.darker(100 + 35 * hill));
        painter.drawEllipse(QPointF(150 + 450 * hill + 60 * number, 880 + 20 * hill), 520, 330);
    }
    return image;
}

} // namespace

QStringList drawTourPictures(const QString &folder)
{
    const std::array scenes{
        Scene{"Dawn over the hills.bmp", QColor(232, 170, 140), QColor(112, 92, 128), Qt::white},
        Scene{"Morning.bmp", QColor(150, 196, 232), QColor(96, 150, 96), QColor(255, 240, 190)},
        Scene{"Noon.bmp", QColor(90, 160, 226), QColor(132, 172, 84), QColor(255, 228, 120)},
        Scene{"Sunset.bmp", QColor(226, 120, 84), QColor(92, 70, 92), QColor(255, 200, 110)},
        Scene{"The blue hour.bmp", QColor(70, 92, 160), QColor(40, 48, 84), QColor(240, 220, 190)},
        Scene{"Then night.bmp", QColor(24, 28, 56), QColor(34, 38, 60), QColor(230, 232, 240)}};
    QStringList paths;
    for (const Scene &scene : scenes) {
        const QString path = folder + QLatin1Char('/') + QLatin1String(scene.name);
        TourActor::expect(draw(scene, static_cast<int>(paths.size())).save(path),
                          QStringLiteral("to write the picture %1").arg(path));
        paths << path;
    }
    return paths;
}

} // namespace Studio
