// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
//
// bench_upload [mebibytes]
// How long a large file takes through the client and a real service, beside copying the same file
// on the same disk with cp and writing it out, and how much memory the two processes take for it.
#include "largeupload.h"
#include "tests/contract/serviceprocess.h"

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <vector>

#include <unistd.h>

using namespace QXSC;
using Bench::fail;
using Bench::makeFile;

namespace {

constexpr int runs = 3;
constexpr double timeGoal = 2.0;
constexpr double memoryGoal = 64; // MiB

/// What a process takes: memory in mebibytes, what it has idle and the most it had since `begin`,
/// and seconds of processors.
class Usage
{
public:
    explicit Usage(qint64 pid)
        : m_folder(QStringLiteral("/proc/%1/").arg(pid))
    {
    }

    void begin()
    {
        QFile file(m_folder + QLatin1String("clear_refs"));
        if (!file.open(QIODevice::WriteOnly) || file.write("5") != 1)
            fail(QStringLiteral("the peak of memory cannot be reset"));
        m_idle = memory("VmRSS:");
        m_processorBefore = processorSeconds();
    }

    double peakAboveIdle() const { return memory("VmHWM:") - m_idle; }

    double idle() const { return m_idle; }

    double processors() const { return processorSeconds() - m_processorBefore; }

private:
    QByteArray content(const char *name) const
    {
        QFile file(m_folder + QLatin1String(name));
        if (!file.open(QIODevice::ReadOnly))
            fail(QStringLiteral("no process to measure"));
        return file.readAll();
    }

    double memory(const char *name) const
    {
        const QByteArray status = content("status");
        const QByteArray line = status.mid(status.indexOf(name) + qsizetype(qstrlen(name)));
        return line.trimmed().split(' ').first().toDouble() / 1024;
    }

    double processorSeconds() const
    {
        const QByteArray stat = content("stat");
        // What follows the name of the program, which may hold anything.
        const QByteArrayList fields = stat.mid(stat.lastIndexOf(')') + 2).split(' ');
        return (fields.at(11).toDouble() + fields.at(12).toDouble()) / double(sysconf(_SC_CLK_TCK));
    }

    QString m_folder;
    double m_idle = 0;
    double m_processorBefore = 0;
};

void signIn(HttpServiceClient &client, const QString &address)
{
    bool ok = false;
    client.authenticate(address, QStringLiteral("maja"), QStringLiteral("sample-maja"),
                        QStringLiteral("bench_upload"), QString(), false, true, ok);
    if (ok)
        client.setActiveAccount(QStringLiteral("1002"), ok);
    if (!ok)
        fail(QStringLiteral("the sample's author may not sign in"));
}

void print(const char *process, const Usage &usage)
{
    std::printf("       %-8s %.2f s of processors, %.1f MiB above idle (%.1f)\n", process,
                usage.processors(), usage.peakAboveIdle(), usage.idle());
}

void measure(qint64 mebibytes)
{
    QTemporaryDir folder;
    const QString source = folder.filePath(QStringLiteral("source.bin"));
    makeFile(source, mebibytes);
    ZelTest::ServiceProcess service;
    service.files = folder.filePath(QStringLiteral("files"));
    if (!service.start())
        fail(service.error());
    HttpServiceClient client;
    signIn(client, service.address());

    Usage ours(QCoreApplication::applicationPid());
    Usage theirs(service.processId());
    std::vector<double> copies;
    std::vector<double> uploads;
    double clientPeak = 0;
    double servicePeak = 0;
    std::printf("%lld MiB, median of %d runs\n\n", static_cast<long long>(mebibytes), runs);
    for (int run = 0; run < runs; ++run) {
        copies.push_back(Bench::copySeconds(source, folder.filePath(QStringLiteral("copy.bin"))));
        ours.begin();
        theirs.begin();
        uploads.push_back(Bench::uploadSeconds(client, source));
        clientPeak = std::max(clientPeak, ours.peakAboveIdle());
        servicePeak = std::max(servicePeak, theirs.peakAboveIdle());
        std::printf("run %d: cp and fsync %.2f s, upload %.2f s\n", run + 1, copies.back(),
                    uploads.back());
        print("client", ours);
        print("service", theirs);
        service.runCommand(
            {QStringLiteral("trash"), QStringLiteral("purge"), QStringLiteral("--all")});
    }
    std::printf("\n");
    Bench::printGoal("time", Bench::medianOf(uploads), Bench::medianOf(copies), "cp and fsync",
                     timeGoal);
    Bench::printGoal("memory of the client above idle", clientPeak, memoryGoal, "64 MiB", 1);
    Bench::printGoal("memory of the service above idle", servicePeak, memoryGoal, "64 MiB", 1);
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication app(argc, argv);
    return Bench::runWithSize("bench_upload", argc, argv, measure);
}
