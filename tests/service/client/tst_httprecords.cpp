// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "scriptedserver.h"
#include "testsupport/testcase.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

using namespace QXSC;
using namespace ZelTest;

namespace {

const QString theme = QStringLiteral("g-1");

QByteArray entry()
{
    return R"({"label":"L","type":"TEXT","text":"t","guid":"g","assetDependencies":"a,b",)"
           R"("ext":"png","hidden":false,"source":"s/p.html","buttonText":"B","width":640,)"
           R"("height":-1})";
}

QByteArray recordWith(const QByteArray &entries, const QByteArray &version = "7")
{
    return R"({"version":)" + version + R"(,"entries":)" + entries + "}";
}

QByteArray answerWith(const QByteArray &record)
{
    return http(200, R"({"record":)" + record + "}");
}

/// An entry with one piece of it replaced.
QByteArray entryWith(const QByteArray &from, const QByteArray &to)
{
    QByteArray text = entry();
    if (!text.contains(from))
        throw std::logic_error("the entry has nothing to replace");
    return text.replace(from, to);
}

DataRecord oneValue()
{
    auto entries = std::make_shared<DataRecordEntryCollection>();
    auto one = std::make_shared<DataRecordEntry>();
    one->label = QStringLiteral("not sent");
    one->value = {QChar(0xfeff) + QString::fromUtf8("t\r\n\u2028😀\""), QStringLiteral("g"),
                  QStringLiteral("d")};
    entries->add(one);
    DataRecord record;
    record.version = 9'007'199'254'740'993; // no double
    record.entries = entries;
    return record;
}

} // namespace

/// What the client asks for and how it reads the answers; a scripted server plays the service.
class TestHttpRecords : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void asksForTheRecordOfATheme()
    {
        SignedIn there(respond(answerWith("null")));
        QVERIFY(!there.client.GetThemeDataRecord(QStringLiteral("a/b c?d#e%ü")));
        QCOMPARE(there.calls(), 1);
        QCOMPARE(there.lastRequest().method, "GET");
        QCOMPARE(there.lastRequest().target, "/v1/themes/a%2Fb%20c%3Fd%23e%25%C3%BC/data-record");
        QCOMPARE(there.lastRequest().header("authorization"),
                 QByteArray("Bearer ") + SignedIn::token);
    }

    void readsEveryField()
    {
        SignedIn there(respond(answerWith(recordWith(
            "[" + entry() + "," +
            entryWith(R"("hidden":false)", R"("hidden":true,"laterField":[1])") + "]"))));
        const DataRecordPtr record = there.client.GetThemeDataRecord(theme);
        QVERIFY(record);
        QCOMPARE(record->version, 7);
        QCOMPARE(record->entries->count(), 2);
        const DataRecordEntry &first = *record->entries->item(1);
        QCOMPARE(first.label, QStringLiteral("L"));
        QCOMPARE(first.type, QStringLiteral("TEXT"));
        QCOMPARE(first.value.text, QStringLiteral("t"));
        QCOMPARE(first.value.guid, QStringLiteral("g"));
        QCOMPARE(first.value.assetDependencies, QStringLiteral("a,b"));
        QCOMPARE(first.ext, QStringLiteral("png"));
        QCOMPARE(first.source, QStringLiteral("s/p.html"));
        QCOMPARE(first.buttonText, QStringLiteral("B"));
        QCOMPARE(first.width, qint16(640));
        QCOMPARE(first.height, qint16(-1));
        QVERIFY(!first.hidden);
        QVERIFY(record->entries->item(2)->hidden);
    }

    void anEmptyListIsARecord()
    {
        SignedIn there(respond(answerWith(recordWith("[]"))));
        const DataRecordPtr record = there.client.GetThemeDataRecord(theme);
        QVERIFY(record && record->entries);
        QCOMPARE(record->entries->count(), 0);
    }

    void anAnswerThatIsNoRecordIsAnError_data()
    {
        QTest::addColumn<QByteArray>("body");
        const auto record = [](const char *name, const QByteArray &body) {
            QTest::newRow(name) << QByteArray(R"({"record":)" + body + "}");
        };
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("no object") << QByteArray("[]");
        QTest::newRow("no record") << QByteArray("{}");
        record("a number", "7");
        record("no version", R"({"entries":[]})");
        record("a version in words", recordWith("[]", R"("7")"));
        record("half a version", recordWith("[]", "7.5"));
        record("no entries", R"({"version":7})");
        record("entries that are no list", recordWith("{}"));
        record("an entry that is none", recordWith("[null]"));
        for (const char *name : {"label", "type", "text", "guid", "assetDependencies", "ext",
                                 "source", "buttonText", "hidden", "width", "height"}) {
            const QByteArray key = '"' + QByteArray(name) + "\":";
            record(qPrintable(QLatin1String("no ") + QLatin1String(name)),
                   recordWith("[" + entryWith(key, "\"other\":") + "]"));
            record(qPrintable(QLatin1String("null as ") + QLatin1String(name)),
                   recordWith("[" + entryWith(key, key + "null,\"other\":") + "]"));
        }
        record("too wide", recordWith("[" + entryWith("640", "32768") + "]"));
        record("too high", recordWith("[" + entryWith("-1", "-32769") + "]"));
    }

    void anAnswerThatIsNoRecordIsAnError()
    {
        QFETCH(QByteArray, body);
        SignedIn there(respond(http(200, body)));
        const auto error = errorOf([&] { there.client.GetThemeDataRecord(theme); });
        QVERIFY(error);
        QCOMPARE(error->kind(), ServiceError::Kind::BadAnswer);
        QVERIFY(there.client.isSignedIn());
    }

    void sendsVersionAndValuesAndNothingElse()
    {
        SignedIn there(respond(http(200, R"({"version":9007199254740994})")));
        const DataRecord record = oneValue();
        const DataRecordSave save = there.client.saveThemeDataRecord(theme, record);
        QVERIFY(save.isSaved);
        QCOMPARE(save.version, 9'007'199'254'740'994);
        QVERIFY(!save.newer);
        QCOMPARE(there.lastRequest().method, "PUT");
        QCOMPARE(there.lastRequest().target, "/v1/themes/g-1/data-record");
        QByteArray body = there.lastRequest().body;
        QVERIFY(body.contains(R"("version":9007199254740993)"));
        // Qt drops a byte order mark at the beginning of a text it reads, so that is looked for.
        QVERIFY(body.contains("\"\xef\xbb\xbft\\r\\n\xe2\x80\xa8\xf0\x9f\x98\x80\\\"\""));
        const QJsonObject sent = QJsonDocument::fromJson(body).object();
        QCOMPARE(sent.keys(), (QStringList{QStringLiteral("values"), QStringLiteral("version")}));
        const QJsonArray values = sent.value(QLatin1String("values")).toArray();
        QCOMPARE(values.size(), 1);
        QCOMPARE(values.at(0).toObject().keys(),
                 (QStringList{QStringLiteral("assetDependencies"), QStringLiteral("guid"),
                              QStringLiteral("text")}));
        QCOMPARE(values.at(0).toObject().value(QLatin1String("assetDependencies")).toString(),
                 QStringLiteral("d"));
    }

    void aRefusedSaveIsAnAnswer()
    {
        SignedIn there(respond(
            http(409,
                 R"({"code":"version-conflict","detail":"d","requestId":"r","yourVersion":3,)"
                 R"("version":7,"record":)" +
                     recordWith("[" + entry() + "]") + "}",
                 "application/problem+json")));
        const DataRecordSave save = there.client.saveThemeDataRecord(theme, oneValue());
        QVERIFY(!save.isSaved);
        QCOMPARE(save.version, 7);
        QVERIFY(save.newer);
        QCOMPARE(save.newer->version, 7);
        QCOMPARE(save.newer->entries->item(1)->value.text, QStringLiteral("t"));
        QVERIFY(there.client.isSignedIn());
    }

    void aRefusalWithoutTheRecordIsAnError_data()
    {
        QTest::addColumn<QByteArray>("members");
        QTest::newRow("neither") << QByteArray();
        QTest::newRow("no record") << QByteArray(R"(,"version":7)");
        QTest::newRow("no version") << QByteArray(R"(,"record":{"version":7,"entries":[]})");
        QTest::newRow("no record but null") << QByteArray(R"(,"version":7,"record":null)");
    }

    void aRefusalWithoutTheRecordIsAnError()
    {
        QFETCH(QByteArray, members);
        SignedIn there(respond(http(409, R"({"code":"version-conflict")" + members + "}",
                                    "application/problem+json")));
        const auto error = errorOf([&] { there.client.saveThemeDataRecord(theme, oneValue()); });
        QVERIFY(error);
        QCOMPARE(error->kind(), ServiceError::Kind::BadAnswer);
    }

    void anotherConflictIsAnError()
    {
        SignedIn there(respond(http(409, R"({"code":"conflict","detail":"Something else."})",
                                    "application/problem+json")));
        const auto error = errorOf([&] { there.client.saveThemeDataRecord(theme, oneValue()); });
        QVERIFY(error);
        QCOMPARE(error->kind(), ServiceError::Kind::Conflict);
        QCOMPARE(error->description(), QStringLiteral("Something else."));
    }

    void anAnswerToASaveMustNameTheVersion()
    {
        SignedIn there(respond(http(200, "{}")));
        const auto error = errorOf([&] { there.client.saveThemeDataRecord(theme, oneValue()); });
        QVERIFY(error);
        QCOMPARE(error->kind(), ServiceError::Kind::BadAnswer);
    }

    void doesNotSendWhatCannotBeTaken()
    {
        SignedIn there(respond(http(200, R"({"version":2})")));
        DataRecord record = oneValue();
        record.entries->item(1)->value.text = QString(37 * 1024 * 1024, QLatin1Char('x'));
        const auto error = errorOf([&] { there.client.saveThemeDataRecord(theme, record); });
        QVERIFY(error);
        QCOMPARE(error->kind(), ServiceError::Kind::Invalid);
        QCOMPARE(error->code(), QStringLiteral("too-large"));
        QVERIFY(error->description().contains(QLatin1String("16 MiB")));
        for (const char *guid : {"", ".", ".."}) {
            const auto other = errorOf(
                [&] { there.client.saveThemeDataRecord(QString::fromLatin1(guid), oneValue()); });
            QVERIFY(other);
            QCOMPARE(other->kind(), ServiceError::Kind::NotFound);
            QVERIFY(!there.client.GetThemeDataRecord(QString::fromLatin1(guid)));
        }
        QCOMPARE(there.calls(), 0);
    }

    void namesTheServerWhileThereIsASession()
    {
        SignedIn there(respond(
            http(401, R"({"code":"signed-out","detail":"d"})", "application/problem+json")));
        const QString address = there.client.serverUrl();
        QVERIFY2(address.startsWith(QLatin1String("http://127.0.0.1:")), qPrintable(address));
        QVERIFY(!address.endsWith(QLatin1Char('/')));
        QVERIFY(errorOf([&] { there.client.GetThemeDataRecord(theme); }));
        QCOMPARE(there.client.serverUrl(), QString());
        HttpServiceClient stranger;
        QCOMPARE(stranger.serverUrl(), QString());
    }
};

ZEL_TEST_MAIN(TestHttpRecords)
#include "tst_httprecords.moc"
