// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/settings.h"
#include "studio/studioapp.h"
#include "studio/tour/tour.h"

#include <QApplication>
#include <QCommandLineParser>

#include <algorithm>
#include <cstdio>

namespace {

QString tr(const char *text)
{
    return QCoreApplication::translate("main", text);
}

/// A tour, --help and --version need no screen; everything else says so when there is none.
void doWithoutScreen(int argc, char **argv)
{
    const bool hasScreen =
        qEnvironmentVariableIsSet("DISPLAY") || qEnvironmentVariableIsSet("WAYLAND_DISPLAY");
    const bool isTalk = std::any_of(argv + 1, argv + argc, [](const char *argument) {
        const QByteArrayView option(argument);
        return option.startsWith("--tour") || option == "--help" || option == "-h" ||
               option == "--version" || option == "-v";
    });
    if (isTalk && !hasScreen && !qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
}

} // namespace

int main(int argc, char **argv)
{
    doWithoutScreen(argc, argv);
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("zel-studio"));
    QApplication::setApplicationDisplayName(QStringLiteral("Studio"));
    QApplication::setApplicationVersion(QStringLiteral(ZEL_VERSION));
    QApplication::setDesktopFileName(QStringLiteral("zel-studio"));

    QCommandLineParser parser;
    parser.setApplicationDescription(tr("Works on the projects of a web-media and event service."));
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption server(QStringLiteral("server"),
                                    tr("The service to work with; without it Studio starts one on "
                                       "this computer."),
                                    tr("address"));
    const QCommandLineOption workspace(QStringLiteral("workspace"),
                                       tr("The workspace file of the service on this computer; "
                                          "without it the sample workspace is used."),
                                       tr("file"));
    const QCommandLineOption program(
        QStringLiteral("service-program"),
        tr("The zel-service to start; default: the one beside Studio."), tr("path"));
    const QCommandLineOption timeLimit(
        QStringLiteral("time-limit"),
        tr("How long a call of the service may stay without any answer; default: 30."),
        tr("seconds"), QStringLiteral("30"));
    const QCommandLineOption reset(QStringLiteral("reset"),
                                   tr("Forget window, columns, server and user name first."));
    const QCommandLineOption tour(QStringLiteral("tour"),
                                  tr("Walk through every page by itself and write pictures."),
                                  tr("folder"));
    const QCommandLineOption tourPart(QStringLiteral("tour-part"),
                                      tr("One part of a tour, at the scale of this process."),
                                      tr("folder"));
    QCommandLineOption hidden = tourPart;
    hidden.setFlags(QCommandLineOption::HiddenFromHelp);
    parser.addOptions({server, workspace, program, timeLimit, reset, tour, hidden});
    parser.process(app);

    Studio::Options options;
    options.server = parser.value(server);
    options.workspace = parser.value(workspace);
    options.serviceProgram = parser.isSet(program) ? parser.value(program)
                                                   : QCoreApplication::applicationDirPath() +
                                                         QStringLiteral("/zel-service");
    options.timeLimit = std::chrono::seconds(parser.value(timeLimit).toInt());
    if (options.timeLimit <= std::chrono::seconds::zero()) {
        std::fprintf(stderr, "%s\n",
                     qPrintable(tr("--time-limit takes a number of seconds above 0.")));
        return 2;
    }
    if (parser.isSet(tour))
        return Studio::runTour(parser.value(tour), options.serviceProgram);
    if (parser.isSet(hidden))
        return Studio::runTourPart(parser.value(hidden), options);
    if (parser.isSet(reset))
        Studio::Settings().reset();
    Studio::applyFont();
    Studio::StudioApp studio(options);
    studio.start();
    return QApplication::exec();
}
