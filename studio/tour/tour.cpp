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
#include <memory>
#include <vector>

#include <unistd.h>

namespace Studio {

namespace {

constexpr std::array scales{"1", "1.5"};
constexpr int PartLimit = 420000; // milliseconds

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

/// Nothing of the person's who starts the tour: a home of its own, a fixed zone, a plain language
/// and a screen of its own, so that pictures differ only when Studio does.
QProcessEnvironment environmentFor(const QString &home, const char *scale)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    const QStringList names = environment.keys();
    for (const QString &name : names) {
        if (name.startsWith(QLatin1String("QT_")) || name.startsWith(QLatin1String("XDG_")))
            environment.remove(name);
    }
    environment.insert(QStringLiteral("HOME"), home);
    environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), home);
    environment.insert(QStringLiteral("TZ"), QStringLiteral("UTC"));
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
    environment.insert(QStringLiteral("QT_SCALE_FACTOR"), QLatin1String(scale));
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), offscreenPlatform(home));
    // The browser engine refuses to run as root with its sandbox; a tour shows our own pages alone.
    if (::geteuid() == 0)
        environment.insert(QStringLiteral("QTWEBENGINE_DISABLE_SANDBOX"), QStringLiteral("1"));
    return environment;
}

/// One process of the tour and its home.
class Part
{
public:
    Part(const QString &folder, const QString &serviceProgram, const char *scale)
        : m_scale(scale)
    {
        m_process.setProcessChannelMode(QProcess::ForwardedChannels);
        m_process.setProcessEnvironment(environmentFor(m_home.path(), scale));
        m_process.start(QCoreApplication::applicationFilePath(),
                        {QStringLiteral("--tour-part"), folder, QStringLiteral("--service-program"),
                         serviceProgram});
    }

    bool succeeds()
    {
        if (m_process.state() != QProcess::NotRunning && !m_process.waitForFinished(PartLimit)) {
            std::fprintf(stderr, "tour: the part at scale %s did not end\n", m_scale);
            m_process.kill();
            m_process.waitForFinished();
            return false;
        }
        return m_process.error() == QProcess::UnknownError &&
               m_process.exitStatus() == QProcess::NormalExit && m_process.exitCode() == 0;
    }

private:
    const char *m_scale;
    QTemporaryDir m_home;
    QProcess m_process;
};

} // namespace

int runTour(const QString &folder, const QString &serviceProgram)
{
    const QString target = QDir().absoluteFilePath(folder);
    if (!QDir().mkpath(target)) {
        std::fprintf(stderr, "tour: cannot make the folder %s\n", qPrintable(target));
        return 1;
    }
    clearTourFolder(target);
    std::vector<std::unique_ptr<Part>> parts;
    for (const char *scale : scales)
        parts.push_back(std::make_unique<Part>(target, serviceProgram, scale));
    bool fine = true;
    for (const auto &part : parts)
        fine = part->succeeds() && fine;
    const int pictures = writeTourIndex(target);
    std::printf("tour: %d pictures in %s\n", pictures, qPrintable(target));
    return fine && pictures > 0 ? 0 : 1;
}

} // namespace Studio
