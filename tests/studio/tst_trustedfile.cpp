// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/errorcenter.h"
#include "studio/mainwindow.h"
#include "studio/settings.h"
#include "studio/signinpage.h"
#include "studio/studioapp.h"
#include "tests/service/client/scriptedserver.h"
#include "tests/studio/studiotesting.h"
#include "testsupport/filedialogdriver.h"
#include "testsupport/testcase.h"

#include <QFile>
#include <QLabel>
#include <QPushButton>
#include <QSslKey>
#include <QTemporaryDir>
#include <QTest>

using namespace StudioTesting;
using namespace ZelTest;
using Studio::Settings;

namespace {

QString certificate(const char *name)
{
    return QStringLiteral(ZEL_SOURCE_DIR "/tests/service/client/certificates/") +
           QLatin1String(name);
}

QSslConfiguration serverTls()
{
    QFile key(certificate("server.key"));
    if (!key.open(QIODevice::ReadOnly))
        qFatal("no key for the test server");
    QSslConfiguration tls = QSslConfiguration::defaultConfiguration();
    tls.setLocalCertificateChain(QSslCertificate::fromPath(certificate("server.pem")));
    tls.setPrivateKey(QSslKey(&key, QSsl::Ec));
    tls.setPeerVerifyMode(QSslSocket::VerifyNone);
    return tls;
}

/// Lets everybody in, who then has no account.
void letIn(const SeenRequest &request, Wire &wire)
{
    if (request.method == "POST")
        wire.write(http(201, R"({"token":"t","expiresAt":1})"));
    else
        wire.write(http(200, R"({"accounts":[]})"));
}

/// Studio with its window, over a service elsewhere.
struct Running
{
    explicit Running(const QString &server = QString())
        : app({server, {}, {}, std::chrono::seconds(30)})
    {
        if (server.isEmpty())
            app.window().signInPage()->open(&app.client());
        else
            app.start();
        page = app.window().signInPage();
        StudioTesting::show(app.window());
    }

    bool isShown(const char *name) const { return child(*page, name)->isVisible(); }

    QString trusted() const { return app.client().networkPolicy().caFile; }

    mutable Studio::StudioApp app;
    Studio::SignInPage *page;
};

} // namespace

/// Trusting a service whose certificate a company has issued itself.
class TestTrustedFile : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void init()
    {
        TestCase::init();
        Settings().reset();
    }

    void isOfferedForAServiceElsewhereOnly()
    {
        Running f;
        QVERIFY(!f.isShown("trustedFileButton"));
        type(*f.page, "qxUrl", QStringLiteral("https://media.example.org"));
        QVERIFY(f.isShown("trustedFileButton"));
        QVERIFY(!f.isShown("trustedFileName"));
        type(*f.page, "qxUrl", QString());
        QVERIFY(!f.isShown("trustedFileButton"));
    }

    void aServiceWithACertificateOfItsOwnCanBeSignedInTo()
    {
        ScriptedServer server(letIn, ScriptedServer::Ask::WholeRequest, serverTls());
        Running f(QLatin1String("https://") + server.address());
        const auto signIn = [&] {
            type(*f.page, "qxUserName", QStringLiteral("maja"));
            type(*f.page, "qxPassword", QStringLiteral("secret"));
            click(*f.page, "login");
        };
        signIn();
        QVERIFY(f.app.errors().problem().what.contains(QLatin1String("not certain")));
        QVERIFY(server.requests().isEmpty()); // nothing was sent

        FileDialogDriver dialogs;
        dialogs.choose({certificate("authority.pem")});
        click(*f.page, "trustedFileButton");
        QCOMPARE(dialogs.shown().size(), 1);
        QCOMPARE(child<QLabel>(*f.page, "trustedFileName")->text(),
                 QStringLiteral("Also trusted: authority.pem"));
        QCOMPARE(f.trusted(), certificate("authority.pem"));
        signIn();
        QCOMPARE(child<QLabel>(*f.page, "signInTitle")->text(), QStringLiteral("No account yet"));
        QVERIFY(!f.isShown("trustedFileButton"));
        click(*f.page, "signInBack");
        QVERIFY(f.isShown("trustedFileButton"));
    }

    void isRememberedUntilItIsDropped()
    {
        Settings().setCaFile(certificate("authority.pem"));
        {
            Running f;
            QCOMPARE(f.trusted(), certificate("authority.pem"));
            QVERIFY(f.isShown("trustedFileName")); // also without a server, or nobody could drop it
            click(*f.page, "trustedFileButton");
            QVERIFY(f.trusted().isEmpty());
            QVERIFY(!f.isShown("trustedFileName"));
        }
        Running again;
        QVERIFY(again.trusted().isEmpty());
    }

    void takesNoFileWithoutCertificates()
    {
        QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("notes.pem"));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write("no certificate") > 0);
        file.close();
        Running f(QStringLiteral("https://media.example.org"));
        FileDialogDriver dialogs;
        dialogs.choose({path});
        click(*f.page, "trustedFileButton");
        QVERIFY(f.trusted().isEmpty());
        QVERIFY(Settings().caFile().isEmpty());
        auto *message = child<QLabel>(*f.page, "signInMessage");
        QVERIFY(message->isVisible());
        QVERIFY2(message->text().startsWith(QLatin1String("The file notes.pem holds no")),
                 qPrintable(message->text()));
    }

    void aDialogThatIsCancelledChangesNothing()
    {
        Running f(QStringLiteral("https://media.example.org"));
        FileDialogDriver dialogs;
        dialogs.cancel();
        click(*f.page, "trustedFileButton");
        QCOMPARE(dialogs.shown().size(), 1);
        QVERIFY(f.trusted().isEmpty());
        QVERIFY(!f.isShown("trustedFileName"));
    }
};

ZEL_TEST_MAIN(TestTrustedFile)
#include "tst_trustedfile.moc"
