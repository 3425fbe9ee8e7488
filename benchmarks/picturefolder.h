// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDir>
#include <QFile>
#include <QImage>
#include <QString>

#include <algorithm>
#include <cmath>
#include <random>

/// A folder of pictures as large as the thumbnails of the service.
namespace PictureFolder {

constexpr int differentPictures = 250;

inline QString name(int number)
{
    return QStringLiteral("picture%1.png").arg(number, 5, 10, QLatin1Char('0'));
}

/// Colours that flow into one another, with the grain of a photograph.
inline QImage picture(unsigned seed)
{
    std::mt19937 random(seed);
    const double phase = random() % 628 / 100.0;
    QImage image(256, 170, QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const auto channel = [&](double speed) {
                const double wave = std::sin(phase + x * speed + y * 0.013) * 90 + 128;
                return std::clamp(static_cast<int>(wave) + static_cast<int>(random() % 12), 0, 255);
            };
            line[x] = qRgb(channel(0.021), channel(0.034), channel(0.008));
        }
    }
    return image;
}

inline void fill(const QString &folder, int count)
{
    const QDir dir(folder);
    for (int i = 0; i < count; ++i) {
        const QString path = dir.filePath(name(i));
        if (i < differentPictures)
            picture(static_cast<unsigned>(i)).save(path);
        else
            QFile::copy(dir.filePath(name(i % differentPictures)), path);
    }
}

} // namespace PictureFolder
