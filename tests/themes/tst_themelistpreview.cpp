// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "testsupport/testcase.h"
#include "themelistfixture.h"

#include <QBuffer>
#include <QFile>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>

namespace {

/// A server on loopback that hears every request and answers it with a picture, or never.
class PictureHost
{
public:
    explicit PictureHost(bool answers)
    {
        m_server.listen(QHostAddress::LocalHost);
        QObject::connect(&m_server, &QTcpServer::newConnection, &m_server, [this, answers] {
            QTcpSocket *socket = m_server.nextPendingConnection();
            QObject::connect(socket, &QTcpSocket::readyRead, socket, [this, socket, answers] {
                requests << QString::fromLatin1(socket->readAll()).section(u' ', 1, 1);
                if (answers)
                    socket->write(picture());
            });
        });
    }

    QString url(const char *name) const
    {
        return QStringLiteral("http://127.0.0.1:%1/%2")
            .arg(m_server.serverPort())
            .arg(QLatin1String(name));
    }

    QStringList requests;

private:
    static QByteArray picture()
    {
        QImage image(64, 48, QImage::Format_RGB32);
        image.fill(Qt::red);
        QBuffer file;
        file.open(QBuffer::WriteOnly);
        image.save(&file, "PNG");
        return "HTTP/1.1 200 OK\r\nContent-Type: image/png\r\nContent-Length: " +
               QByteArray::number(file.data().size()) + "\r\n\r\n" + file.data();
    }

    QTcpServer m_server;
};

QXSC::ThemeRecord withPreview(const char *name, const QString &url)
{
    QXSC::ThemeRecord record = theme(name);
    record.previewUrl = url;
    return record;
}

} // namespace

/// The preview of the chosen theme, also one that does not come.
class tst_ThemeListPreview : public ZelTest::TestCase
{
    Q_OBJECT

private slots:
    void showsThePictureOfTheChosenTheme();
    void takesItAwayForAThemeWithoutOne();
    void staysWhenTheListIsLoadedAgain();
    void oneThatNeverArrivesHoldsNothingUp();
    void oneThatCannotBeHadIsNoErrorOfTheClick();
    void isNotFetchedBeforeAClick();
};

void tst_ThemeListPreview::showsThePictureOfTheChosenTheme()
{
    PictureHost host(true);
    ThemeListFixture f;
    f.load({theme("Plain"), withPreview("Red", host.url("red.png"))});
    QSignalSpy arrived(&f.preview(), &ZelWebControls::WebImage::Arrived);
    ListTesting::click(f.list(), 1);
    QCOMPARE(f.trail, QStringList{QStringLiteral("ThemeSelected Red")}); // it waits for nothing
    QVERIFY(arrived.wait());
    QCOMPARE(host.requests, QStringList{QStringLiteral("/red.png")});
    const QImage shown = f.preview().grab().toImage();
    QCOMPARE(shown.pixelColor(shown.rect().center()), QColor(Qt::red));
}

void tst_ThemeListPreview::takesItAwayForAThemeWithoutOne()
{
    PictureHost host(true);
    ThemeListFixture f;
    f.load({theme("Plain"), withPreview("Red", host.url("red.png"))});
    QSignalSpy arrived(&f.preview(), &ZelWebControls::WebImage::Arrived);
    ListTesting::click(f.list(), 1);
    QVERIFY(arrived.wait());
    ListTesting::click(f.list(), 0);
    QCOMPARE(f.preview().Url(), QString());
    const QImage shown = f.preview().grab().toImage();
    QVERIFY(shown.pixelColor(shown.rect().center()) != QColor(Qt::red));
}

void tst_ThemeListPreview::staysWhenTheListIsLoadedAgain()
{
    PictureHost host(false);
    ThemeListFixture f;
    f.load({withPreview("Red", host.url("red.png"))});
    ListTesting::click(f.list(), 0);
    f.load({theme("Plain")});
    QCOMPARE(f.preview().Url(), host.url("red.png"));
}

void tst_ThemeListPreview::oneThatNeverArrivesHoldsNothingUp()
{
    PictureHost host(false);
    ThemeListFixture f;
    f.addTemplates({"Home"});
    QXSC::ThemeRecord red = withPreview("Red", host.url("red.png"));
    red.templates = ZelTest::themeTemplates({entry("Home")});
    f.load({red, withPreview("Blue", host.url("blue.png")), theme("Plain")});
    ListTesting::click(f.list(), 0);
    QCOMPARE(f.takeTrail().constLast(), QStringLiteral("ThemeSelected Red"));
    QCOMPARE(f.templates().count(), 1);
    QTRY_COMPARE(host.requests.size(), 1);
    QVERIFY(f.preview().isLoading());
    // Meanwhile everything goes on.
    ListTesting::click(f.list(), 1);
    QTRY_COMPARE(host.requests.size(), 2);
    f.clickOption("userOption");
    f.clickOption("allOption");
    f.clickTab(1);
    ListTesting::click(f.list(), 2);
    QCOMPARE(f.selected(), QStringLiteral("Plain"));
    QVERIFY(!f.preview().isLoading());
    ListTesting::click(f.list(), 0);
    delete f.themes;
}

void tst_ThemeListPreview::oneThatCannotBeHadIsNoErrorOfTheClick()
{
    ThemeListFixture f;
    f.load({withPreview("File", QStringLiteral("file:///etc/hostname")),
            withPreview("Nobody", QStringLiteral("http://127.0.0.1:1/none.png"))});
    ListTesting::click(f.list(), 0);
    QVERIFY(!f.preview().problem().isEmpty());
    QSignalSpy failed(&f.preview(), &ZelWebControls::WebImage::Failed);
    ListTesting::click(f.list(), 1);
    QVERIFY(!failed.isEmpty() || failed.wait());
    QCOMPARE(f.trail, (QStringList{QStringLiteral("ThemeSelected File"),
                                   QStringLiteral("ThemeSelected Nobody")}));
    QCOMPARE(f.boxes.shown().size(), 0);
}

void tst_ThemeListPreview::isNotFetchedBeforeAClick()
{
    PictureHost host(false);
    ThemeListFixture f;
    f.load({withPreview("Red", host.url("red.png"))});
    QTest::qWait(50);
    QCOMPARE(host.requests, QStringList());
}

ZEL_TEST_MAIN(tst_ThemeListPreview)
#include "tst_themelistpreview.moc"
