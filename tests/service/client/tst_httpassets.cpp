// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "scriptedserver.h"
#include "testsupport/errornumber.h"
#include "testsupport/testcase.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace QXSC;
using namespace ZelTest;

namespace {

const QByteArray folderColumns =
    R"("columns":["folderId","parentId","hasParent","folderName","permissions"])";
const QByteArray assetColumns = R"("columns":["guid","name","detail","date","thumbnail","type"])";

QByteArray foldersWith(const QByteArray &row)
{
    return R"({"folders":{)" + folderColumns + R"(,"rows":[)" + row + "]}}";
}

QByteArray assetsWith(const QByteArray &row)
{
    return R"({"assets":{)" + assetColumns + R"(,"rows":[)" + row + "]}}";
}

AssetCollectionPtr assetsOf(HttpServiceClient &client)
{
    AssetCollectionPtr assets;
    client.GetFolderAssets(1, QString(), QString(), 0, 0, assets);
    return assets;
}

} // namespace

/// What the client asks for and how it reads the answers about assets; a scripted server plays the
/// service.
class TestHttpAssets : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void init()
    {
        TestCase::init();
        QFile file(path());
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write("text") == 4);
    }

    void escapesWhatItAsksFor()
    {
        SignedIn there(respond(http(200, R"({"assets":null})")));
        AssetCollectionPtr assets;
        there.client.GetFolderAssets(7, QStringLiteral("a&b=\u00fc +"), QStringLiteral("jpg,.png"),
                                     3, 4, assets);
        QCOMPARE(there.lastRequest().target,
                 "/v1/asset-folders/7/assets?formats=jpg%2C.png&name=a%26b%3D%C3%BC%20%2B&first=3&"
                 "count=4");
        errorOf([&] { there.client.DeleteAsset(QStringLiteral("a/../b?c")); });
        QCOMPARE(there.lastRequest().target, "/v1/assets/a%2F..%2Fb%3Fc");
        QCOMPARE(there.lastRequest().method, "DELETE");
    }

    void nothingAndAnEmptyListDiffer()
    {
        SignedIn nothing(respond(http(200, R"({"folders":null,"assets":null})")));
        QVERIFY(!nothing.client.GetAssetFolders(0));
        QVERIFY(!assetsOf(nothing.client));
        SignedIn empty(respond(http(200, foldersWith(""))));
        QVERIFY(empty.client.GetAssetFolders(0));
        QCOMPARE(empty.client.GetAssetFolders(0)->count(), 0);
        SignedIn noAssets(respond(http(200, assetsWith(""))));
        QVERIFY(assetsOf(noAssets.client));
        QCOMPARE(assetsOf(noAssets.client)->count(), 0);
    }

    void readsEveryField()
    {
        SignedIn folders(respond(http(200, foldersWith(R"([32767,-32768,true,"N","RW"])"))));
        const auto folder = folders.client.GetAssetFolders(0)->item(1);
        QCOMPARE(folder->folderId, qint16(32767));
        QCOMPARE(folder->parentId, qint16(-32768));
        QVERIFY(folder->hasParent);
        QCOMPARE(folder->folderName, QStringLiteral("N"));
        QCOMPARE(folder->permissions, QStringLiteral("RW"));
        SignedIn assets(respond(http(200, assetsWith(R"(["g","n","d",1000,"/t/g","Image"])"))));
        const auto asset = assetsOf(assets.client)->item(1);
        QCOMPARE(asset->guid, QStringLiteral("g"));
        QCOMPARE(asset->assetName, QStringLiteral("n"));
        QCOMPARE(asset->assetDetail, QStringLiteral("d"));
        QCOMPARE(asset->assetDate, QDateTime::fromMSecsSinceEpoch(1000));
        QCOMPARE(asset->thumbnailUrl, QStringLiteral("/t/g"));
        QCOMPARE(asset->assetType, QStringLiteral("Image"));
    }

    void aNumberPastSixteenBitsIsAnOverflow_data()
    {
        QTest::addColumn<QByteArray>("number");
        for (const char *number : {"32768", "-32769", "4294967296", "9007199254740993"})
            QTest::newRow(number) << QByteArray(number);
    }

    void aNumberPastSixteenBitsIsAnOverflow()
    {
        QFETCH(QByteArray, number);
        SignedIn made(respond(http(201, R"({"folderId":)" + number + "}")));
        QCOMPARE(errorNumber([&] { made.client.CreateAssetFolder(0, QStringLiteral("x")); }), 6);
        SignedIn listed(respond(http(200, foldersWith("[" + number + R"(,0,false,"N","RW"])"))));
        QCOMPARE(errorNumber([&] { listed.client.GetAssetFolders(0); }), 6);
        SignedIn parent(respond(http(200, foldersWith("[1," + number + R"(,true,"N","RW"])"))));
        QCOMPARE(errorNumber([&] { parent.client.GetAssetFolders(0); }), 6);
    }

    void answersThatAreNoneAreErrors_data()
    {
        QTest::addColumn<QByteArray>("folders");
        QTest::addColumn<QByteArray>("assets");
        const auto row = [](const char *name, const QByteArray &folders, const QByteArray &assets) {
            QTest::newRow(name) << folders << assets;
        };
        row("empty", "", "");
        row("an empty object", "{}", "{}");
        row("a text", R"({"folders":"x"})", R"({"assets":"x"})");
        row("columns null", R"({"folders":{"columns":null,"rows":[]}})",
            R"({"assets":{"columns":null,"rows":[]}})");
        row("rows null", R"({"folders":{)" + folderColumns + R"(,"rows":null}})",
            R"({"assets":{)" + assetColumns + R"(,"rows":null}})");
        row("a column short", R"({"folders":{"columns":["folderId"],"rows":[]}})",
            R"({"assets":{"columns":["guid"],"rows":[]}})");
        row("a value short", foldersWith(R"([1,0,false,"N"])"),
            assetsWith(R"(["g","n","d",0,""])"));
        row("values null", foldersWith("[null,null,null,null,null]"),
            assetsWith("[null,null,null,null,null,null]"));
        row("a name null", foldersWith(R"([1,0,false,null,"R"])"),
            assetsWith(R"(["g",null,"d",0,"","Image"])"));
        row("a fraction", foldersWith(R"([1.5,0,false,"N","R"])"),
            assetsWith(R"(["g","n","d",0.5,"","Image"])"));
        row("numbers as texts", foldersWith(R"(["1","0",false,"N","R"])"),
            assetsWith(R"(["g","n","d","0","","Image"])"));
    }

    void answersThatAreNoneAreErrors()
    {
        QFETCH(QByteArray, folders);
        QFETCH(QByteArray, assets);
        SignedIn there([&](const SeenRequest &request, Wire &wire) {
            wire.write(http(200, request.target.contains("/assets") ? assets : folders));
        });
        for (const auto &call : std::initializer_list<std::function<void()>>{
                 [&] { there.client.GetAssetFolders(0); }, [&] { assetsOf(there.client); }}) {
            const auto error = errorOf(call);
            QVERIFY(error);
            QCOMPARE(error->kind(), ServiceError::Kind::BadAnswer);
        }
    }

    void anAnswerWithoutItsOneValueIsAnError_data()
    {
        QTest::addColumn<QByteArray>("answer");
        for (const char *answer :
             {"{}", R"({"folderId":null,"permissions":null,"value":null})",
              R"({"folderId":"1","permissions":1,"value":{}})", R"({"folderId":[1]})", "[]"})
            QTest::newRow(answer) << QByteArray(answer);
    }

    void anAnswerWithoutItsOneValueIsAnError()
    {
        QFETCH(QByteArray, answer);
        SignedIn there(respond(http(200, answer)));
        HttpServiceClient &client = there.client;
        for (const auto &call : std::initializer_list<std::function<void()>>{
                 [&] { client.CreateAssetFolder(0, QStringLiteral("x")); },
                 [&] { client.GetFolderPermissions(1); },
                 [&] { client.GetAssetValue(QStringLiteral("g")); },
                 [&] { client.assetAddress(QStringLiteral("g")); },
                 [&] { client.DeleteAsset(QStringLiteral("g")); },
                 [&] { client.DeleteAssetFolder(1); }}) {
            const auto error = errorOf(call);
            QVERIFY(error);
            QCOMPARE(error->kind(), ServiceError::Kind::BadAnswer);
        }
    }

    void aTicketThatIsNoneSendsNothing_data()
    {
        QTest::addColumn<QByteArray>("ticket");
        const auto row = [](const char *name, const QByteArray &ticket) {
            QTest::newRow(name) << ticket;
        };
        row("no chunk", R"({"uploadId":"u1"})");
        row("pieces of nothing", R"({"uploadId":"u1","chunk":0})");
        row("pieces of less", R"({"uploadId":"u1","chunk":-1})");
        row("pieces of 65 MiB", R"({"uploadId":"u1","chunk":68157440})");
        row("a chunk of text", R"({"uploadId":"u1","chunk":"1"})");
        row("no id", R"({"chunk":1000})");
        row("an empty id", R"({"uploadId":"","chunk":1000})");
        row("an id null", R"({"uploadId":null,"chunk":1000})");
        row("an id that leads elsewhere", R"({"uploadId":"a/b","chunk":1000})");
        row("an id above", R"({"uploadId":"..","chunk":1000})");
        row("an id with a question", R"({"uploadId":"a?b","chunk":1000})");
        row("an id of two lines", R"({"uploadId":"a\r\nb","chunk":1000})");
    }

    void aTicketThatIsNoneSendsNothing()
    {
        QFETCH(QByteArray, ticket);
        SignedIn there(respond(http(201, ticket)));
        const auto error = errorOf([&] { upload(there.client); });
        QVERIFY(error);
        QCOMPARE(error->kind(), ServiceError::Kind::BadAnswer);
        QCOMPARE(there.calls(), 1);
    }

    void whatItSaysToHaveMustBeSo_data()
    {
        QTest::addColumn<QByteArray>("received");
        QTest::newRow("past the end") << QByteArray("5");
        QTest::newRow("less than nothing") << QByteArray("-1");
        QTest::newRow("null") << QByteArray("null");
        QTest::newRow("a text") << QByteArray(R"("4")");
        QTest::newRow("a fraction") << QByteArray("3.5");
    }

    void whatItSaysToHaveMustBeSo()
    {
        QFETCH(QByteArray, received);
        SignedIn there([&](const SeenRequest &request, Wire &wire) {
            if (request.method == "POST")
                wire.write(http(201, R"({"uploadId":"u1","chunk":1000})"));
            else
                wire.write(http(200, R"({"received":)" + received + "}"));
        });
        NetworkPolicy policy;
        policy.retryLimit = std::chrono::milliseconds(0);
        there.client.setNetworkPolicy(policy);
        const auto error = errorOf([&] { upload(there.client); });
        QVERIFY(error);
        QCOMPARE(error->kind(), ServiceError::Kind::BadAnswer);
        const QList<SeenRequest> requests = there.server.requests();
        QVERIFY(std::none_of(requests.begin(), requests.end(), [](const SeenRequest &one) {
            return one.target.endsWith("/commit");
        }));
    }

private:
    QString path() const { return m_folder.filePath(QStringLiteral("small.txt")); }

    QString upload(HttpServiceClient &client) const
    {
        auto files = std::make_shared<AssetFileCollection>();
        files->add(std::make_shared<AssetFileEntry>(AssetFileEntry{path()}));
        return client.CreateAsset(QStringLiteral("Small"), QString(), 0, files, QString(),
                                  QString(), nullptr);
    }

    QTemporaryDir m_folder;
};

ZEL_TEST_MAIN(TestHttpAssets)
#include "tst_httpassets.moc"
