// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
//
// bench_upload [mebibytes]
// How long a large file takes through the client and a real service, beside copying the same file
// on the same disk with cp and writing it out, and how much memory the two processes take for it.
#include "service/client/httpserviceclient.h"
#include "tests/contract/serviceprocess.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <random>
#include <stdexcept>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

using namespace QXSC;

namespace {

constexpr int runs = 3;
constexpr qint64 mebibyte = 1024 * 1024;
constexpr double timeGoal = 2.0;
constexpr double memoryGoal = 64;

[[noreturn]] void fail(const QString &what)
{
    throw std::runtime_error(what.toStdString());
}

void writeOut(const QString &path)
{
    const int handle = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
    if (handle < 0 || ::fsync(handle) != 0)
        fail(QStringLiteral("cannot write out ") + path);
    ::close(handle);
}

/// Bytes that no file system can store as less.
void makeFile(const QString &path, qint64 mebibytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        fail(QStringLiteral("cannot write ") + path);
    std::mt19937_64 random(20261121);
    std::vector<quint64> piece(mebibyte / sizeof(quint64));
    for (qint64 i = 0; i < mebibytes; ++i) {
        std::generate(piece.begin(), piece.end(), std::ref(random));
        if (file.write(reinterpret_cast<const char *>(piece.data()), mebibyte) != mebibyte)
            fail(QStringLiteral("no room for ") + path);
    }
    file.close();
    writeOut(path);
}

double secondsOf(const QElapsedTimer &timer)
{
    return double(timer.nsecsElapsed()) / 1e9;
}

double copy(const QString &from, const QString &to)
{
    QElapsedTimer timer;
    timer.start();
    if (QProcess::execute(QStringLiteral("cp"), {from, to}) != 0)
        fail(QStringLiteral("cp failed"));
    writeOut(to);
    const double seconds = secondsOf(timer);
    QFile::remove(to);
    return seconds;
}

/// The memory of a process in mebibytes: what it has, and the most it had since `resetPeak`.
class Memory
{
public:
    explicit Memory(qint64 pid)
        : m_folder(QStringLiteral("/proc/%1/").arg(pid))
    {
    }

    void resetPeak()
    {
        QFile file(m_folder + QLatin1String("clear_refs"));
        if (!file.open(QIODevice::WriteOnly) || file.write("5") != 1)
            fail(QStringLiteral("the peak of memory cannot be reset"));
        m_idle = value("VmRSS:");
    }

    double peakAboveIdle() const { return value("VmHWM:") - m_idle; }

    double idle() const { return m_idle; }

private:
    double value(const char *name) const
    {
        QFile file(m_folder + QLatin1String("status"));
        if (file.open(QIODevice::ReadOnly)) {
            const QByteArrayList lines = file.readAll().split('\n');
            for (const QByteArray &line : lines) {
                if (line.startsWith(name))
                    return line.mid(qstrlen(name)).trimmed().split(' ').first().toDouble() / 1024;
            }
        }
        fail(QStringLiteral("no process to measure"));
    }

    QString m_folder;
    double m_idle = 0;
};

double upload(HttpServiceClient &client, const QString &path)
{
    auto files = std::make_shared<AssetFileCollection>();
    files->add(std::make_shared<AssetFileEntry>(AssetFileEntry{path}));
    QElapsedTimer timer;
    timer.start();
    const QString guid = client.CreateAsset(QStringLiteral("Large"), QString(), 0, files, QString(),
                                            QString(), nullptr);
    const double seconds = secondsOf(timer);
    client.DeleteAsset(guid);
    return seconds;
}

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

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

void printGoal(const char *name, double value, const char *unit, double goal)
{
    std::printf("%-28s %8.2f %s, goal %.0f: %s\n", name, value, unit, goal,
                value <= goal ? "goal met" : "goal missed");
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

    Memory ours(QCoreApplication::applicationPid());
    Memory theirs(service.processId());
    std::vector<double> copies;
    std::vector<double> uploads;
    std::vector<double> clientPeaks;
    std::vector<double> servicePeaks;
    std::printf("%lld MiB, median of %d runs\n\n", static_cast<long long>(mebibytes), runs);
    for (int run = 0; run < runs; ++run) {
        copies.push_back(copy(source, folder.filePath(QStringLiteral("copy.bin"))));
        ours.resetPeak();
        theirs.resetPeak();
        uploads.push_back(upload(client, source));
        clientPeaks.push_back(ours.peakAboveIdle());
        servicePeaks.push_back(theirs.peakAboveIdle());
        std::printf("run %d: cp and fsync %.2f s, upload %.2f s; memory above idle: client %.1f of "
                    "%.1f MiB, service %.1f of %.1f MiB\n",
                    run + 1, copies.back(), uploads.back(), clientPeaks.back(), ours.idle(),
                    servicePeaks.back(), theirs.idle());
        service.runCommand(
            {QStringLiteral("trash"), QStringLiteral("purge"), QStringLiteral("--all")});
    }
    std::printf("\n");
    printGoal("time", median(uploads) / median(copies), "of cp and fsync", timeGoal);
    printGoal("memory of the client", *std::max_element(clientPeaks.begin(), clientPeaks.end()),
              "MiB above idle", memoryGoal);
    printGoal("memory of the service", *std::max_element(servicePeaks.begin(), servicePeaks.end()),
              "MiB above idle", memoryGoal);
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    try {
        measure(argc > 1 ? std::max(1, std::atoi(argv[1])) : 1024);
    } catch (const std::exception &error) {
        std::fprintf(stderr, "bench_upload: %s\n", error.what());
        return 1;
    }
    return 0;
}
