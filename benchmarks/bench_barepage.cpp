// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
//
// bench_barepage
// A program that loads the page of bench_componentpage in a bare QWebEngineView, again and again
// with a fresh page, and prints its memory at start and the milliseconds each took.
#include "componentpageserver.h"
#include "measuring.h"

#include <QApplication>
#include <QTimer>
#include <QWebEnginePage>
#include <QWebEngineProfile>
#include <QWebEngineView>

#include <memory>
#include <unistd.h>

int main(int argc, char **argv)
{
    if (geteuid() == 0)
        qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    QApplication app(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    const double memory = Bench::residentBytes() / 1e6;
    ComponentPageServer server;
    std::unique_ptr<QWebEngineProfile> profile;
    std::unique_ptr<QWebEngineView> view;
    int left = 3;
    const auto load = [&] {
        server.begin();
        if (!view) {
            profile = std::make_unique<QWebEngineProfile>();
            view = std::make_unique<QWebEngineView>();
        }
        auto *page = new QWebEnginePage(profile.get(), view.get());
        view->setPage(page);
        view->resize(800, 600);
        page->load(QUrl(server.url()));
        view->show();
    };
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &app, [&] {
        if (server.time("/loaded") <= 0)
            return;
        std::printf("%f ", server.time("/loaded"));
        delete view->page();
        view->hide();
        if (--left > 0)
            load();
        else
            QCoreApplication::quit();
    });
    QTimer::singleShot(0, &app, [&] {
        std::printf("%f ", memory);
        load();
        poll.start(1);
    });
    const int code = QApplication::exec();
    view.reset();
    profile.reset();
    return code;
}
