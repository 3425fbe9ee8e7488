// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
//
// bench_componentpage [runs]
// The time from the click on a page field's button to the loaded component page, the first and the
// second time in a program, beside a program that has a bare QWebEngineView load the same page. As
// the first time includes loading the engine, each run is a process of its own.
#include "componentpageserver.h"
#include "measuring.h"

#include "records/componentdialog.h"

#include <QApplication>
#include <QProcess>
#include <QTimer>

#include <unistd.h>

using namespace Bench;

namespace {

constexpr int uses = 3;

void use(ComponentPageServer &server)
{
    server.begin();
    auto &dialog = ZelWebServiceControls::componentDialog();
    dialog.ShowModalDialog(nullptr, server.url(), QStringLiteral("Field"), QStringLiteral("value"),
                           QString());
    dialog.resize(800, 600);
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &dialog, [&] {
        if (server.time("/value") > 0)
            dialog.close();
    });
    poll.start(1);
    dialog.showModal(nullptr);
    std::printf("%f %f ", server.time("/loaded"), server.time("/value"));
}

/// A host with one field: prints what `uses` uses took.
int runHost()
{
    const double memory = residentBytes() / 1e6;
    ComponentPageServer server;
    QTimer::singleShot(0, qApp, [&] {
        std::printf("%f ", memory);
        for (int i = 0; i < uses; ++i)
            use(server);
        QCoreApplication::quit();
    });
    return QApplication::exec();
}

/// The figures a program prints, and before them how long it took to begin and to end.
std::vector<double> figures(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(program, arguments);
    process.waitForFinished(60'000);
    std::vector<double> values;
    for (const QByteArray &word : process.readAllStandardOutput().simplified().split(' '))
        values.push_back(word.toDouble());
    return values;
}

std::vector<double> medians(const QString &program, const QStringList &arguments, int runs)
{
    std::vector<std::vector<double>> all;
    for (int run = 0; run < runs; ++run)
        all.push_back(figures(program, arguments));
    std::vector<double> result;
    for (std::size_t i = 0; i < all[0].size(); ++i) {
        std::vector<double> column;
        for (const auto &one : all)
            column.push_back(i < one.size() ? one[i] : 0);
        result.push_back(medianOf(column));
    }
    return result;
}

} // namespace

int main(int argc, char **argv)
{
    if (geteuid() == 0)
        qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");
    QApplication app(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    if (argc > 1 && qstrcmp(argv[1], "--host") == 0)
        return runHost();
    const int runs = argc > 1 ? std::max(1, std::atoi(argv[1])) : 5;
    const std::vector<double> ours =
        medians(QCoreApplication::applicationFilePath(), {QStringLiteral("--host")}, runs);
    const std::vector<double> bare = medians(
        QCoreApplication::applicationDirPath() + QStringLiteral("/bench_barepage"), {}, runs);
    if (ours.size() < 1 + 2 * uses || bare.size() < 1 + uses) {
        std::fprintf(stderr, "A program did not get its page; is there an X server?\n");
        return 1;
    }
    std::printf("Milliseconds from the click, median of %d runs; memory at start in MB\n\n", runs);
    std::printf("%-32s %10s %10s %10s %10s\n", "", "at start", "first", "second", "third");
    std::printf("%-32s %10.0f %10.1f %10.1f %10.1f\n", "component page, loaded", ours[0], ours[1],
                ours[3], ours[5]);
    std::printf("%-32s %10s %10.1f %10.1f %10.1f\n", "component page, has its value", "", ours[2],
                ours[4], ours[6]);
    std::printf("%-32s %10.0f %10.1f %10.1f %10.1f\n\n", "bare QWebEngineView, loaded", bare[0],
                bare[1], bare[2], bare[3]);
    printGoal("first, loaded", ours[1], bare[1], "the bare view's", 1.5);
    printGoal("second, loaded", ours[3], bare[2], "the bare view's", 1.5);
    return 0;
}
