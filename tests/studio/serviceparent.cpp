// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
//
// serviceparent PROGRAM WORKSPACE: keeps an embedded service, prints the number of its process, and
// waits to be killed.
#include "studio/embeddedservice.h"

#include <QCoreApplication>

#include <cstdio>

int main(int argc, char **argv)
{
    const QCoreApplication app(argc, argv);
    Studio::EmbeddedService service(QString::fromLocal8Bit(argv[1]),
                                    QString::fromLocal8Bit(argv[2]));
    QObject::connect(&service, &Studio::EmbeddedService::ready, [&service] {
        std::printf("%lld\n", static_cast<long long>(service.processId()));
        std::fflush(stdout);
    });
    QObject::connect(&service, &Studio::EmbeddedService::failed, [] { QCoreApplication::exit(1); });
    service.start();
    return QCoreApplication::exec();
}
