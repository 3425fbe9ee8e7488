// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/tour/tour.h"

#include "studio/tour/tourindex.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>

#include <array>
#include <cstdio>

namespace Studio {

namespace {

constexpr std::array scales{"1", "1.5"};
constexpr int PartLimit = 240000; // milliseconds

/// The platform without a screen, with room for the window and its menus.
QString offscreenPlatform(const QString &home)
{
    const QString path = home + QStringLiteral("/screens.json");
    QFile file(path);
    if (file.open(QIODevice::WriteOnly))
        file.write(R"({"screens": [{"name": "tour", "x": 0, "y": 0, "width": 3840, "height": 2400,
            "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1}]})");
    return QStringLiteral("offscreen:configfile=") + path;
}

/// A home of its own, a fixed zone and a plain language, so that pictures differ only when Studio
/// does.
QProcessEnvironment environmentFor(const QString &home, const char *scale)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char *name : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_STATE_HOME",
                             "XDG_CURRENT_DESKTOP"})
        environment.remove(QLatin1String(name));
    environment.insert(QStringLiteral("HOME"), home);
    environment.insert(QStringLiteral("TZ"), QStringLiteral("UTC"));
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
    environment.insert(QStringLiteral("QT_SCALE_FACTOR"), QLatin1String(scale));
    const bool hasDisplay = environment.contains(QStringLiteral("DISPLAY")) ||
                            environment.contains(QStringLiteral("WAYLAND_DISPLAY"));
    environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), home);
    if (!hasDisplay)
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), offscreenPlatform(home));
    return environment;
}

bool runPart(const QString &folder, const QString &serviceProgram, const char *scale)
{
    const QTemporaryDir home;
    QProcess part;
    part.setProcessChannelMode(QProcess::ForwardedChannels);
    part.setProcessEnvironment(environmentFor(home.path(), scale));
    part.start(QCoreApplication::applicationFilePath(),
               {QStringLiteral("--tour-part"), folder, QStringLiteral("--service-program"),
                serviceProgram});
    if (!part.waitForFinished(PartLimit)) {
        std::fprintf(stderr, "tour: the part at scale %s did not end\n", scale);
        part.kill();
        part.waitForFinished();
        return false;
    }
    return part.exitStatus() == QProcess::NormalExit && part.exitCode() == 0;
}

} // namespace

int runTour(const QString &folder, const QString &serviceProgram)
{
    const QString target = QDir().absoluteFilePath(folder);
    if (!QDir().mkpath(target)) {
        std::fprintf(stderr, "tour: cannot make the folder %s\n", qPrintable(target));
        return 1;
    }
    clearTourFolder(target);
    bool fine = true;
    for (const char *scale : scales)
        fine = runPart(target, serviceProgram, scale) && fine;
    const int pictures = writeTourIndex(target);
    std::printf("tour: %d pictures in %s\n", pictures, qPrintable(target));
    return fine && pictures > 0 ? 0 : 1;
}

} // namespace Studio
