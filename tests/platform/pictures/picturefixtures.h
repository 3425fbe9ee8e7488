// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>
#include <QDirIterator>
#include <QFile>
#include <QImage>
#include <QLoggingCategory>
#include <QStringList>

namespace PictureFixtures {

inline QString folder(const QString &name)
{
    return QStringLiteral(ZEL_FIXTURES "/pictures/") + name;
}

/// Every picture below a folder, sorted; what is expected of one is not a picture.
inline QStringList files(const QString &name)
{
    QStringList found;
    for (QDirIterator it(folder(name), QDir::Files, QDirIterator::Subdirectories); it.hasNext();) {
        const QString path = it.next();
        if (!path.endsWith(QLatin1String(".expected")))
            found << path;
    }
    found.sort();
    return found;
}

inline QByteArray bytesOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Whether a pixel has a colour, each part of it within `off`.
inline bool isNear(QRgb pixel, QRgb color, int off)
{
    return std::abs(qRed(pixel) - qRed(color)) <= off &&
           std::abs(qGreen(pixel) - qGreen(color)) <= off &&
           std::abs(qBlue(pixel) - qBlue(color)) <= off;
}

/// Qt's readers say in their log what they find in damaged files; here they are all damaged.
class QuietReaders
{
public:
    QuietReaders()
    {
        QLoggingCategory::setFilterRules(
            QStringLiteral("qt.gui.imageio*=false\nqt.svg*=false\nqt.imageformats*=false"));
    }

    ~QuietReaders() { QLoggingCategory::setFilterRules(QString()); }

    Q_DISABLE_COPY_MOVE(QuietReaders)
};

} // namespace PictureFixtures
