// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "pictureservice.h"

#include "service/daemon/filesection.h"
#include "service/daemon/httpserver.h"
#include "service/store/bytesource.h"

#include <QCoreApplication>
#include <QDir>

#include <cstdio>

using namespace Zel::Service;

PictureService::PictureService(const QString &folder)
{
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start(QCoreApplication::applicationFilePath(),
                    {QString::fromLatin1(serveOption), folder});
    while (!m_process.canReadLine()) {
        if (!m_process.waitForReadyRead())
            qFatal("The server of the pictures did not start.");
    }
    m_address = QString::fromLatin1(m_process.readLine().trimmed());
}

PictureService::~PictureService()
{
    m_process.closeWriteChannel();
    m_process.waitForFinished();
}

int PictureService::serve(const QString &folder)
{
    HttpServerOptions options;
    options.plan = [folder](const HttpRequest &) {
        HttpPlan plan;
        plan.lane = Lane::Worker;
        plan.handler = [folder](const HttpRequest &request) {
            const QByteArray name = request.target.mid(request.target.lastIndexOf('/') + 1);
            return fileResponse(
                request, Zel::FileSource::open(QDir(folder).filePath(QString::fromLatin1(name))),
                request.target, "image/png");
        };
        return plan;
    };
    HttpServer server(options);
    server.start();
    std::printf("http://127.0.0.1:%d\n", int(server.port()));
    std::fflush(stdout);
    while (std::getchar() != EOF) {
    }
    server.stop();
    return 0;
}
