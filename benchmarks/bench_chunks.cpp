// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
//
// bench_chunks [mebibytes]
// How long a large file takes into and out of a real service that keeps files in PostgreSQL, beside
// psql that puts the same file into a large object of the same server and takes it out again.
#include "largefile.h"
#include "measuring.h"
#include "service/client/httpserviceclient.h"
#include "tests/contract/postgresserver.h"
#include "tests/contract/serviceprocess.h"

#include <QCoreApplication>
#include <QHostAddress>
#include <QProcess>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QUrl>

#include <cstdio>

using namespace QXSC;
using Bench::fail;

namespace {

constexpr int runs = 3;

template <typename Work>
double seconds(const Work &work)
{
    return Bench::milliseconds(work) / 1000;
}

/// Runs one of psql's commands; returns what it says.
QByteArray psql(const QString &database, const QString &command)
{
    QProcess process;
    process.start(QStringLiteral("psql"), {QStringLiteral("-X"), QStringLiteral("-d"), database,
                                           QStringLiteral("-c"), command});
    if (!process.waitForFinished(-1) || process.exitCode() != 0)
        fail(QStringLiteral("psql failed: ") + QString::fromUtf8(process.readAllStandardError()));
    return process.readAllStandardOutput();
}

/// Reads an answer and lets go of it.
void download(const QUrl &address, qint64 size)
{
    QTcpSocket socket;
    socket.connectToHost(QHostAddress(QHostAddress::LocalHost), quint16(address.port()));
    if (!socket.waitForConnected())
        fail(QStringLiteral("the service cannot be reached"));
    socket.write("GET " + address.toEncoded(QUrl::RemoveScheme | QUrl::RemoveAuthority) +
                 " HTTP/1.1\r\nHost: 127.0.0.1:" + QByteArray::number(address.port()) +
                 "\r\nConnection: close\r\n\r\n");
    qint64 got = 0;
    while (socket.bytesAvailable() > 0 || socket.waitForReadyRead())
        got += socket.readAll().size();
    if (got < size)
        fail(QStringLiteral("the download broke off"));
}

QString upload(HttpServiceClient &client, const QString &path)
{
    auto files = std::make_shared<AssetFileCollection>();
    files->add(std::make_shared<AssetFileEntry>(AssetFileEntry{path}));
    return client.CreateAsset(QStringLiteral("Large"), QString(), 0, files, QString(), QString(),
                              nullptr);
}

void signIn(HttpServiceClient &client, const QString &address)
{
    bool ok = false;
    client.authenticate(address, QStringLiteral("maja"), QStringLiteral("sample-maja"),
                        QStringLiteral("bench_chunks"), QString(), false, true, ok);
    if (ok)
        client.setActiveAccount(QStringLiteral("1002"), ok);
    if (!ok)
        fail(QStringLiteral("the sample's author may not sign in"));
}

double residentMebibytes(qint64 pid, const char *name)
{
    QFile file(QStringLiteral("/proc/%1/status").arg(pid));
    if (!file.open(QIODevice::ReadOnly))
        fail(QStringLiteral("no process to measure"));
    const QByteArray status = file.readAll();
    const QByteArray line = status.mid(status.indexOf(name) + qsizetype(qstrlen(name)));
    return line.trimmed().split(' ').first().toDouble() / 1024;
}

void report(const char *what, const std::vector<double> &times, const std::vector<double> &peers,
            const char *peer, qint64 mebibytes)
{
    const double time = Bench::medianOf(times);
    const double peerTime = Bench::medianOf(peers);
    std::printf("%s: %.2f s, %.0f MiB/s; %s: %.2f s, %.0f MiB/s; ratio %.2f\n", what, time,
                double(mebibytes) / time, peer, peerTime, double(mebibytes) / peerTime,
                time / peerTime);
}

void measure(qint64 mebibytes)
{
    QTemporaryDir folder;
    const QString source = folder.filePath(QStringLiteral("source.bin"));
    const QString target = folder.filePath(QStringLiteral("target.bin"));
    Bench::makeFile(source, mebibytes);
    ZelTest::PostgresServer server;
    if (!server.start())
        fail(server.error());
    ZelTest::ServiceProcess service;
    service.database = server.newDatabase();
    service.blobs = QStringLiteral("database");
    if (!service.start())
        fail(service.error());
    HttpServiceClient client;
    signIn(client, service.address());

    const double idle = residentMebibytes(service.processId(), "VmRSS:");
    std::vector<double> uploads;
    std::vector<double> imports;
    std::vector<double> downloads;
    std::vector<double> exports;
    for (int run = 0; run < runs; ++run) {
        QByteArray said;
        imports.push_back(seconds(
            [&] { said = psql(service.database, QStringLiteral("\\lo_import ") + source); }));
        const QString number = QString::fromLatin1(said.simplified().split(' ').last());
        exports.push_back(seconds([&] {
            psql(service.database, QStringLiteral("\\lo_export %1 %2").arg(number, target));
        }));
        psql(service.database, QStringLiteral("\\lo_unlink ") + number);
        QString guid;
        uploads.push_back(seconds([&] { guid = upload(client, source); }));
        downloads.push_back(seconds(
            [&] { download(QUrl(client.assetAddress(guid)), mebibytes * Bench::mebibyte); }));
        client.DeleteAsset(guid);
        service.runCommand(
            {QStringLiteral("trash"), QStringLiteral("purge"), QStringLiteral("--all")});
        std::printf("run %d: lo_import %.2f s, lo_export %.2f s, upload %.2f s, download %.2f s\n",
                    run + 1, imports.back(), exports.back(), uploads.back(), downloads.back());
    }
    std::printf("\n%lld MiB, median of %d runs; the server does not wait for its disk\n",
                static_cast<long long>(mebibytes), runs);
    report("upload", uploads, imports, "psql \\lo_import", mebibytes);
    report("download", downloads, exports, "psql \\lo_export", mebibytes);
    std::printf("memory of the service: %.1f MiB above idle (%.1f)\n",
                residentMebibytes(service.processId(), "VmHWM:") - idle, idle);
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication app(argc, argv);
    return Bench::runWithSize("bench_chunks", argc, argv, measure);
}
