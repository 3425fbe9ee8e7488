// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/service/uploadsfixture.h"

#include <QBuffer>
#include <QImage>
#include <QRandomGenerator>
#include <QUrl>

using namespace ZelTest;

/// The addresses of what uploads become.
class FileAddressesTest : public UploadsFixture
{
    Q_OBJECT

private slots:

    void initTestCase_data() { addKinds(); }

    void init() { begin(); }

    void cleanupTestCase() { end(); }

    void answersTagsAndRanges_data();
    void answersTagsAndRanges();
    void answersAnyRangeOfALongFile();
    void sendsFilesAsNothingThatActs();
    void endsAddressesOfThumbnailsOnly();
    void addressesLeadNowhereElse_data();
    void addressesLeadNowhereElse();
};

void FileAddressesTest::answersTagsAndRanges_data()
{
    QTest::addColumn<QByteArrayList>("headers");
    QTest::addColumn<int>("status");
    QTest::addColumn<QByteArray>("body");
    const QByteArray whole = "0123456789";
    const auto row = [](const char *name, const QByteArrayList &headers, int status,
                        const QByteArray &body) {
        QTest::newRow(name) << headers << status << body;
    };
    row("no header", {}, 200, whole);
    row("the tag", {"If-None-Match: TAG"}, 304, {});
    row("among others", {"If-None-Match: \"x\", TAG"}, 304, {});
    row("weak", {"If-None-Match: W/TAG"}, 304, {});
    row("any", {"If-None-Match: *"}, 304, {});
    row("another tag", {"If-None-Match: \"x\""}, 200, whole);
    row("beginning", {"Range: bytes=0-3"}, 206, "0123");
    row("one byte", {"Range: bytes=9-9"}, 206, "9");
    row("to the end", {"Range: bytes=7-"}, 206, "789");
    row("beyond the end", {"Range: bytes=7-99999999999999"}, 206, "789");
    row("the last ones", {"Range: bytes=-2"}, 206, "89");
    row("more than there are", {"Range: bytes=-99"}, 206, whole);
    row("behind the end", {"Range: bytes=10-"}, 416, {});
    row("none of the last", {"Range: bytes=-0"}, 416, {});
    row("backwards", {"Range: bytes=5-3"}, 416, {});
    row("no number", {"Range: bytes=a-b"}, 200, whole);
    row("half a number", {"Range: bytes=a-3"}, 200, whole);
    row("no end at all", {"Range: bytes=-"}, 200, whole);
    row("a number too large", {"Range: bytes=99999999999999999999-"}, 416, {});
    row("signs", {"Range: bytes=+1-3"}, 200, whole);
    row("two ranges", {"Range: bytes=0-1,3-4"}, 200, whole);
    row("other units", {"Range: lines=0-1"}, 200, whole);
    row("if it is the same", {"Range: bytes=0-1", "If-Range: TAG"}, 206, "01");
    row("if it is another", {"Range: bytes=0-1", "If-Range: \"x\""}, 200, whole);
    row("if it is weakly the same", {"Range: bytes=0-1", "If-Range: W/TAG"}, 200, whole);
    row("tag before range", {"Range: bytes=0-1", "If-None-Match: TAG"}, 304, {});
}

void FileAddressesTest::answersTagsAndRanges()
{
    QFETCH(QByteArrayList, headers);
    QFETCH(int, status);
    QFETCH(QByteArray, body);
    const QByteArray whole = "0123456789";
    const QByteArray address = addressOf(newAsset(whole));
    const QByteArray tag = '"' + sha(whole) + '"';
    for (QByteArray &header : headers)
        header.replace("TAG", tag);
    const HttpReply reply = m_api->request("GET", address, QByteArray(), headers);
    QCOMPARE(reply.status, status);
    if (status == 416) {
        QCOMPARE(reply.headers.value("content-range"), QByteArray("bytes */10"));
        return;
    }
    QCOMPARE(reply.body, body);
    QCOMPARE(reply.headers.value("etag"), tag);
    const HttpReply head = m_api->request("HEAD", address, QByteArray(), headers);
    QCOMPARE(head.status, status);
    QCOMPARE(head.headers.value("content-length"), reply.headers.value("content-length"));
}

void FileAddressesTest::answersAnyRangeOfALongFile()
{
    QByteArray bytes(5'000'001, Qt::Uninitialized);
    QRandomGenerator random(20261121);
    for (char &byte : bytes)
        byte = static_cast<char>(random.generate());
    const QByteArray address = addressOf(newAsset(bytes));
    const auto range = [&](qint64 first, qint64 last) {
        return HttpProbe::request(
            m_api->port(), "GET", address, QByteArray(),
            {"Range: bytes=" + QByteArray::number(first) + '-' + QByteArray::number(last)});
    };
    constexpr qint64 border = Zel::DatabaseBlobs::chunkBytes;
    QCOMPARE(range(border - 2, border + 1).body, bytes.mid(border - 2, 4));
    for (int i = 0; i < 100; ++i) {
        const qint64 first = random.bounded(bytes.size());
        const qint64 last = random.bounded(first, bytes.size());
        const HttpReply reply = range(first, last);
        QCOMPARE(reply.status, 206);
        QVERIFY(reply.body == bytes.mid(first, last - first + 1));
    }
    QVERIFY(m_api->call("GET", address, QString()).body == bytes);
}

void FileAddressesTest::sendsFilesAsNothingThatActs()
{
    const QByteArray address = addressOf(newAsset("<html><script>alert(1)</script></html>"));
    const HttpReply reply = m_api->call("GET", address, QString());
    QCOMPARE(reply.status, 200);
    QCOMPARE(reply.headers.value("x-content-type-options"), QByteArray("nosniff"));
    QCOMPARE(reply.headers.value("content-security-policy"),
             QByteArray("default-src 'none'; sandbox"));
    QCOMPARE(reply.headers.value("accept-ranges"), QByteArray("bytes"));
}

void FileAddressesTest::endsAddressesOfThumbnailsOnly()
{
    QImage picture(300, 300, QImage::Format_RGB32);
    picture.fill(Qt::blue);
    QBuffer buffer;
    QVERIFY(buffer.open(QIODevice::WriteOnly) && picture.save(&buffer, "PNG"));
    const QByteArray address = addressOf(newAsset(buffer.data()));
    QVERIFY2(address.startsWith("/a/"), address.constData());
    const QString whole = listed().at(0).toArray().at(4).toString();
    const QByteArray thumbnail = QUrl(whole).toEncoded(QUrl::RemoveScheme | QUrl::RemoveAuthority);
    const auto status = [this](const QByteArray &target) {
        return m_api->call("GET", target, QString()).status;
    };
    QCOMPARE(status(thumbnail), 200);
    // The same address for a while, so that it can be kept in a cache.
    QCOMPARE(listed().at(0).toArray().at(4).toString(), whole);
    constexpr qint64 hour = 60LL * 60 * 1000;
    m_api->advance(24 * hour);
    QCOMPARE(status(thumbnail), 200);
    m_api->advance(hour + 1);
    const HttpReply ended = m_api->call("GET", thumbnail, QString());
    QCOMPARE(ended.status, 403);
    QCOMPARE(ended.code(), QStringLiteral("expired-address"));
    m_api->advance(20LL * 365 * 24 * hour);
    QCOMPARE(status(address), 200);
}

void FileAddressesTest::addressesLeadNowhereElse_data()
{
    QTest::addColumn<QByteArray>("path");
    const auto row = [](const char *path) { QTest::newRow(path) << QByteArray(path); };
    for (const char *path :
         {"/a/../../../etc/passwd", "/a/%2e%2e/%2e%2e/%2e%2e/etc/passwd",
          "/a/%2e%2e%2f%2e%2e%2f%2e%2e%2fetc%2fpasswd/x", "/a/..%2f..%2fworkspace.db/x?s=1002.x",
          "/a/..\\..\\workspace.db/x", "/a//etc/passwd", "/a/{guid}/../../../etc/passwd",
          "/a/{guid}/%2e%2e%2f0/x", "/a/{guid}/..%2f..%2fuploads/x", "/a/%00/x", "/a/{guid}%00/x",
          "/a/.../x", "/a/./x"})
        row(path);
    for (const char *path : {"/t/../../../etc/passwd", "/t/{guid}/../256", "/t/{guid}/%2e%2e%2f256",
                             "/t/{guid}/256%2f..%2f..", "/t/..%2f..%2fworkspace.db/256",
                             "/t/{guid}/../../../etc/passwd"})
        row(path);
    for (const char *path :
         {"/p/../../../etc/passwd", "/p/{guid}/../../workspace.db", "/p/..%2f..%2fworkspace.db/1",
          "/p/{guid}/%2e%2e%2f%2e%2e%2fetc%2fpasswd"})
        row(path);
}

void FileAddressesTest::addressesLeadNowhereElse()
{
    QFETCH(QByteArray, path);
    const QByteArray guid = newAsset("what is asked for");
    const QByteArray address = addressOf(guid);
    QCOMPARE(HttpProbe::request(m_api->port(), "GET", address).body,
             QByteArray("what is asked for"));
    path.replace("{guid}", guid);
    // With the signature of an asset, too.
    for (const QByteArray &signature : {QByteArray(), address.mid(address.indexOf('?'))}) {
        const HttpReply reply =
            HttpProbe::request(m_api->port(), "GET", path.contains('?') ? path : path + signature);
        QVERIFY2(reply.status >= 400 && reply.status < 500, reply.body.constData());
        QVERIFY2(!reply.code().isEmpty(), reply.body.constData());
    }
}

ZEL_TEST_MAIN(FileAddressesTest)
#include "tst_fileaddresses.moc"
