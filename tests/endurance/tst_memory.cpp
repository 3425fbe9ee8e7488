// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/endurance/connectionstate.h"
#include "tests/endurance/rawsession.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

#include <cstdio>
#include <cstring>
#include <functional>
#include <memory>
#include <vector>

#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>

using namespace QXSC;
using namespace ZelTest;

namespace {

constexpr int clients = 4;
constexpr qint64 fileBytes = 500'000'000;
constexpr double mostMebibytes = 64;

#if defined(__SANITIZE_ADDRESS__)
/// The sanitizer keeps back what was freed, and shadows all of it.
constexpr double sanitizerMebibytes = 1024;
#else
constexpr double sanitizerMebibytes = 0;
#endif

void inThreads(const std::function<void(int)> &work)
{
    std::vector<std::unique_ptr<QThread>> threads;
    for (int number = 0; number < clients; ++number) {
        threads.emplace_back(QThread::create([&work, number] { work(number); }));
        threads.back()->start();
    }
    for (const auto &thread : threads)
        thread->wait();
}

/// A file without a disk full of bytes: it begins with its number, the rest is zeros.
bool makeFile(const QString &path, int number)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(QByteArray::number(number)) == 1 &&
           file.resize(fileBytes);
}

/// Reads an answer and keeps nothing of it. Returns how many bytes of a file with that number came;
/// -1 for anything else.
qint64 download(quint16 port, const QByteArray &address, int number)
{
    const int handle = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in server = {};
    server.sin_family = AF_INET;
    server.sin_port = htons(port);
    server.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    const QByteArray request = "GET " + address +
                               " HTTP/1.1\r\nHost: 127.0.0.1:" + QByteArray::number(port) +
                               "\r\nConnection: close\r\n\r\n";
    qint64 received = -1;
    if (::connect(handle, reinterpret_cast<sockaddr *>(&server), sizeof server) == 0 &&
        ::send(handle, request.constData(), static_cast<std::size_t>(request.size()),
               MSG_NOSIGNAL) == request.size()) {
        std::vector<char> piece(256 * 1024);
        const std::vector<char> zeros(piece.size());
        QByteArray head;
        ssize_t count = 0;
        while ((count = ::recv(handle, piece.data(), piece.size(), 0)) > 0) {
            if (received >= 0) {
                received += count;
                if (std::memcmp(piece.data(), zeros.data(), static_cast<std::size_t>(count)) != 0)
                    break;
                continue;
            }
            head.append(piece.data(), count);
            const qsizetype end = head.indexOf("\r\n\r\n");
            if (end < 0 || head.size() < end + 5)
                continue;
            if (!head.startsWith("HTTP/1.1 200") || head.mid(end + 4, 1).toInt() != number)
                break;
            received = head.size() - end - 4;
        }
    }
    ::close(handle);
    return received;
}

} // namespace

/// What the service takes of memory does not grow with what passes through it. Signing in does: the
/// hash of a password takes 64 MiB by itself, but not in tests.
class MemoryTest : public ContractTest
{
    Q_OBJECT

private slots:
    void staysSmallUnderFourUploads();
    void staysSmallUnderFourDownloads();

private:
    void expectSmall()
    {
        const double peak = peakMebibytes(service().processId());
        std::printf("at most %.1f MiB\n", peak);
        QVERIFY2(peak < mostMebibytes + sanitizerMebibytes,
                 qPrintable(QStringLiteral("%1 MiB").arg(peak)));
    }

    QString m_guids[clients];
};

void MemoryTest::staysSmallUnderFourUploads()
{
    QTemporaryDir folder;
    for (int number = 0; number < clients; ++number)
        QVERIFY(makeFile(folder.filePath(QString::number(number)), number));
    QString failures[clients];
    inThreads([&](int number) {
        failures[number] = failureOf([&] {
            Client client;
            authenticate(client, service().address(), nora().user, nora().password);
            chooseAccount(client, QString::number(contractStudio));
            auto files = std::make_shared<AssetFileCollection>();
            files->add(std::make_shared<AssetFileEntry>(
                AssetFileEntry{folder.filePath(QString::number(number))}));
            m_guids[number] = client.CreateAsset(QStringLiteral("Large %1").arg(number), QString(),
                                                 0, files, QString(), QString(), nullptr);
        });
    });
    for (const QString &failure : failures)
        QCOMPARE(failure, QStringLiteral("none"));
    expectSmall();
}

void MemoryTest::staysSmallUnderFourDownloads()
{
    const RawSession session(service().port(), nora(), contractStudio);
    QByteArrayList addresses;
    for (const QString &guid : m_guids) {
        QVERIFY(!guid.isEmpty());
        addresses << session.addressesOf(guid).value(0);
    }
    qint64 received[clients] = {};
    inThreads([&](int number) {
        received[number] = download(service().port(), addresses.at(number), number);
    });
    for (const qint64 count : received)
        QCOMPARE(count, fileBytes);
    expectSmall();
}

ZEL_TEST_MAIN(MemoryTest)
#include "tst_memory.moc"
