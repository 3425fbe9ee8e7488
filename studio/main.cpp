// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/settings.h"
#include "studio/studioapp.h"
#include "studio/tour/tour.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QFileInfo>

#include <algorithm>
#include <cstdio>

namespace {

constexpr int UsageError = 2;

QString tr(const char *text)
{
    return QCoreApplication::translate("main", text);
}

/// A tour brings a screen of its own, --help and --version need none.
void doWithoutScreen(int argc, char **argv)
{
    const bool needsNone = std::any_of(argv + 1, argv + argc, [](const char *argument) {
        const QByteArrayView option(argument);
        return option.startsWith("--tour") || option == "--help" || option == "-h" ||
               option == "--version" || option == "-v";
    });
    if (needsNone && !qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
}

void describeProgram()
{
    QApplication::setApplicationName(QStringLiteral("zel-studio"));
    QApplication::setApplicationDisplayName(QStringLiteral("Studio"));
    QApplication::setApplicationVersion(QStringLiteral(ZEL_VERSION));
    QApplication::setDesktopFileName(QStringLiteral("zel-studio"));
}

/// What people say on the command line.
class CommandLine
{
public:
    explicit CommandLine(const QCoreApplication &app)
    {
        m_parser.setApplicationDescription(
            tr("Works on the projects of a web-media and event service."));
        m_parser.addHelpOption();
        m_parser.addVersionOption();
        m_tourPart.setFlags(QCommandLineOption::HiddenFromHelp);
        m_parser.addOptions(
            {m_server, m_workspace, m_program, m_timeLimit, m_reset, m_tour, m_tourPart});
        m_parser.process(app);
    }

    /// What is wrong with it; empty when nothing is.
    QString problem() const
    {
        if (!m_parser.positionalArguments().isEmpty())
            return tr("Studio takes no \"%1\"; see studio --help.")
                .arg(m_parser.positionalArguments().constFirst());
        if (m_parser.value(m_timeLimit).toInt() <= 0)
            return tr("--time-limit takes a number of seconds above 0.");
        return {};
    }

    Studio::Options options() const
    {
        Studio::Options options;
        options.server = m_parser.value(m_server);
        options.workspace = m_parser.value(m_workspace);
        options.serviceProgram =
            m_parser.isSet(m_program)
                ? QFileInfo(m_parser.value(m_program)).absoluteFilePath()
                : QCoreApplication::applicationDirPath() + QStringLiteral("/zel-service");
        options.timeLimit = std::chrono::seconds(m_parser.value(m_timeLimit).toInt());
        return options;
    }

    bool resets() const { return m_parser.isSet(m_reset); }

    /// The folder of a tour; empty for none.
    QString tour() const { return m_parser.value(m_tour); }

    QString tourPart() const { return m_parser.value(m_tourPart); }

private:
    QCommandLineParser m_parser;
    QCommandLineOption m_server{
        QStringLiteral("server"),
        tr("The service to work with; without it Studio starts one on this computer."),
        tr("address")};
    QCommandLineOption m_workspace{QStringLiteral("workspace"),
                                   tr("The workspace file of the service on this computer; without "
                                      "it the sample workspace is used."),
                                   tr("file")};
    QCommandLineOption m_program{QStringLiteral("service-program"),
                                 tr("The zel-service to start; default: the one beside Studio."),
                                 tr("path")};
    QCommandLineOption m_timeLimit{
        QStringLiteral("time-limit"),
        tr("How long a call of the service may stay without any answer; default: 30."),
        tr("seconds"), QStringLiteral("30")};
    QCommandLineOption m_reset{QStringLiteral("reset"),
                               tr("Forget window, columns, server and user name first.")};
    QCommandLineOption m_tour{QStringLiteral("tour"),
                              tr("Walk through every page by itself and write pictures."),
                              tr("folder")};
    QCommandLineOption m_tourPart{
        QStringLiteral("tour-part"),
        QStringLiteral("One part of a tour, at the scale of this process."),
        QStringLiteral("folder")};
};

} // namespace

int main(int argc, char **argv)
{
    doWithoutScreen(argc, argv);
    QApplication app(argc, argv);
    describeProgram();
    const CommandLine commandLine(app);
    if (const QString problem = commandLine.problem(); !problem.isEmpty()) {
        std::fprintf(stderr, "%s\n", qPrintable(problem));
        return UsageError;
    }
    const Studio::Options options = commandLine.options();
    if (!commandLine.tour().isEmpty())
        return Studio::runTour(commandLine.tour(), options.serviceProgram);
    if (!commandLine.tourPart().isEmpty())
        return Studio::runTourPart(commandLine.tourPart(), options);
    if (commandLine.resets())
        Studio::Settings().reset();
    Studio::applyFont();
    Studio::StudioApp studio(options);
    studio.start();
    return QApplication::exec();
}
