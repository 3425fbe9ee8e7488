// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/program.h"

#include <QCoreApplication>

#include <csignal>

int main(int argc, char **argv)
{
    std::signal(SIGPIPE, SIG_IGN); // a client or log that went away must not end the service
    std::signal(SIGXFSZ, SIG_IGN); // a limit on the size of files is an error that can be told
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("zel-service"));
    QCoreApplication::setApplicationVersion(QStringLiteral(ZEL_VERSION));
    return Zel::Service::runProgram(QCoreApplication::arguments());
}
