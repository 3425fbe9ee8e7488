// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/pictures/pictureloader.h"

#include <QCoreApplication>

#include <cstdio>

/// Reads the pictures named, in a program without windows, and prints their sizes.
int main(int argc, char **argv)
{
    const QCoreApplication app(argc, argv);
    for (int i = 1; i < argc; ++i) {
        const Zel::Picture picture = Zel::PictureLoader().loadFile(QString::fromLocal8Bit(argv[i]));
        if (picture.isNull())
            std::printf("%s\n", qPrintable(picture.problem));
        else
            std::printf("%dx%d\n", picture.image.width(), picture.image.height());
    }
    return 0;
}
