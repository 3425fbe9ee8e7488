// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "pagetesting.h"

#include <QApplication>
#include <QTcpServer>
#include <QTcpSocket>

#include <csignal>
#include <functional>

namespace {

/// Asks something at the moment a message box comes up.
class BoxWatch : public QObject
{
public:
    explicit BoxWatch(const std::function<bool()> &question)
        : m_question(question)
    {
        qApp->installEventFilter(this);
    }

    bool answer() const { return m_answer; }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Show && qobject_cast<QMessageBox *>(watched))
            m_answer = m_question();
        return QObject::eventFilter(watched, event);
    }

private:
    std::function<bool()> m_question;
    bool m_answer = false;
};

/// A server that hangs up on everybody.
class RudeServer
{
public:
    RudeServer()
    {
        m_server.listen(QHostAddress::LocalHost);
        QObject::connect(&m_server, &QTcpServer::newConnection, &m_server, [this] {
            while (QTcpSocket *socket = m_server.nextPendingConnection()) {
                socket->abort();
                socket->deleteLater();
            }
        });
    }

    QString url() const
    {
        return QStringLiteral("http://127.0.0.1:%1/page").arg(m_server.serverPort());
    }

private:
    QTcpServer m_server;
};

} // namespace

/// Pages that cannot be had, and pages that do harm.
class tst_PageFailures : public PageTest
{
    Q_OBJECT

    /// A use that ends with the message for a page that cannot be had.
    void expectFailure(const QString &page)
    {
        boxes().click(QMessageBox::Ok);
        prepare(page);
        BoxWatch watch([this] { return view()->isHidden() && browser().isVisible(); });
        show();
        QCOMPARE(boxes().shown().size(), 1);
        const ZelTest::MessageBoxDriver::Shown box = boxes().shown()[0];
        QCOMPARE(box.text, QStringLiteral("Unable to connect to the requested resource"));
        QCOMPARE(box.title, QStringLiteral("Connection error"));
        QCOMPARE(box.buttons, QMessageBox::StandardButtons(QMessageBox::Ok));
        QVERIFY(watch.answer());
        expectKept();
    }

    void expectKept()
    {
        QCOMPARE(browser().returnCode(), qint16(2));
        QCOMPARE(browser().GetValue(), QStringLiteral("old value"));
        QCOMPARE(browser().getAssetDependencies(), QStringLiteral("old dependencies"));
    }

    /// A use in which nothing is wrong.
    void expectGoodUse()
    {
        use(QStringLiteral("echo.html"), [this] {
            QVERIFY(view()->isVisible());
            waitForValue();
            run(QStringLiteral("returnValue = 'good'; close()"));
        });
        QCOMPARE(browser().returnCode(), qint16(1));
        QCOMPARE(browser().GetValue(), QStringLiteral("good"));
    }

    /// An address on this computer at which nobody listens.
    static QString silentPort()
    {
        QTcpServer server;
        server.listen(QHostAddress::LocalHost);
        return QStringLiteral("http://127.0.0.1:%1").arg(server.serverPort());
    }

    static Answer withStatus(int status, const QByteArray &body = "an answer")
    {
        Answer answer;
        answer.status = status;
        answer.headers << "Content-Type: text/html";
        answer.body = body;
        return answer;
    }

    static Answer withFrame(const QString &frame)
    {
        return withStatus(200, "<body><iframe src='" + frame.toUtf8() + "'></iframe></body>");
    }

    static Answer broken()
    {
        Answer answer;
        answer.body = "half of it is missing";
        answer.cutAfter = 3;
        return answer;
    }

    RudeServer m_rude;

private slots:

    void aPageThatCannotBeHadEndsWithAMessage_data()
    {
        QTest::addColumn<QString>("page");
        QTest::newRow("refused") << silentPort() + QStringLiteral("/page");
        QTest::newRow("unknown host") << QStringLiteral("http://no-such-host.invalid/page");
        for (const int status : {400, 401, 403, 404, 500, 503})
            QTest::addRow("%d", status) << QStringLiteral("status-%1").arg(status);
        QTest::newRow("500 without a body") << QStringLiteral("empty-500");
        QTest::newRow("cut off") << QStringLiteral("cut");
        QTest::newRow("hung up") << m_rude.url();
        QTest::newRow("redirected for ever") << QStringLiteral("loop");
        QTest::newRow("redirected to another server") << QStringLiteral("away");
        QTest::newRow("no address") << QStringLiteral(":");
        QTest::newRow("no host") << QStringLiteral("http://");
        QTest::newRow("a file") << QStringLiteral("file:///etc/hostname");
        QTest::newRow("a script") << QStringLiteral("javascript:alert(1)");
        QTest::newRow("an unknown scheme") << QStringLiteral("unknown://host/page");
    }

    void aPageThatCannotBeHadEndsWithAMessage()
    {
        for (const int status : {400, 401, 403, 404, 500, 503}) {
            Answer answer = withStatus(status);
            if (status == 401)
                answer.headers << "WWW-Authenticate: Basic realm=\"closed\"";
            serve(QStringLiteral("/status-%1").arg(status), answer);
        }
        serve(QStringLiteral("/empty-500"), withStatus(500, QByteArray()));
        serve(QStringLiteral("/cut"), broken());
        Answer loop = withStatus(302);
        loop.headers << "Location: /loop";
        serve(QStringLiteral("/loop"), loop);
        Answer away = withStatus(302);
        away.headers << "Location: http://localhost:" + QByteArray::number(port()) + "/echo.html";
        serve(QStringLiteral("/away"), away);
        QFETCH(QString, page);
        expectFailure(page);
        expectGoodUse();
    }

    void aFrameThatCannotBeHadEndsWithAMessage_data()
    {
        QTest::addColumn<QString>("frame");
        QTest::newRow("refused") << silentPort() + QStringLiteral("/page");
        QTest::newRow("unknown host") << QStringLiteral("http://no-such-host.invalid/page");
        QTest::newRow("hung up") << m_rude.url();
        QTest::newRow("not to be framed") << QStringLiteral("/unframed");
        QTest::newRow("404") << QStringLiteral("/status-404");
        QTest::newRow("500") << QStringLiteral("/status-500");
        QTest::newRow("404 of another server")
            << QStringLiteral("http://localhost:%1/status-404").arg(port());
        QTest::newRow("in a frame") << QStringLiteral("/framed-404");
    }

    void aFrameThatCannotBeHadEndsWithAMessage()
    {
        serve(QStringLiteral("/status-404"), withStatus(404));
        serve(QStringLiteral("/status-500"), withStatus(500));
        Answer unframed = withStatus(200);
        unframed.headers << "X-Frame-Options: DENY";
        serve(QStringLiteral("/unframed"), unframed);
        serve(QStringLiteral("/framed-404"), withFrame(QStringLiteral("/status-404")));
        QFETCH(QString, frame);
        serve(QStringLiteral("/framing"), withFrame(frame));
        expectFailure(QStringLiteral("framing"));
        expectGoodUse();
    }

    void aFrameThatFailsLaterCountsToo()
    {
        serve(QStringLiteral("/status-404"), withStatus(404));
        serve(QStringLiteral("/framing"), withFrame(QStringLiteral("/noload.html")));
        boxes().click(QMessageBox::Ok);
        use(QStringLiteral("framing"), [this] {
            waitFor(QStringLiteral("frames.length === 1 && "
                                   "frames[0].document.body.textContent.trim()"),
                    QStringLiteral("Nothing to see"));
            QVERIFY(browser().isVisible());
            QCOMPARE(boxes().shown().size(), 0);
            run(QStringLiteral("frames[0].location.href = '/status-404'"));
        });
        QCOMPARE(boxes().shown().size(), 1);
        expectKept();
    }

    void framesThatAreThereAreNoFailure_data()
    {
        QTest::addColumn<QString>("frame");
        QTest::newRow("a page") << QStringLiteral("/noload.html");
        QTest::newRow("of another server")
            << QStringLiteral("http://localhost:%1/noload.html").arg(port());
        QTest::newRow("nothing") << QStringLiteral("about:blank");
        QTest::newRow("written out") << QStringLiteral("data:text/html,hello");
        QTest::newRow("does not know the question") << QStringLiteral("/no-head");
        QTest::newRow("is never asked again") << QStringLiteral("/closed-off");
    }

    void framesThatAreThereAreNoFailure()
    {
        Answer closedOff = withStatus(200);
        closedOff.headers << "Content-Security-Policy: default-src 'none'";
        serve(QStringLiteral("/closed-off"), closedOff);
        Answer noHead = withStatus(405);
        serve(QStringLiteral("/no-head"), noHead);
        QFETCH(QString, frame);
        serve(QStringLiteral("/framing"), withFrame(frame));
        const qsizetype before = requests().size();
        use(QStringLiteral("framing"), [&] {
            waitForPage(QStringLiteral("framing"));
            if (frame.contains(QLatin1String("noload")))
                QVERIFY(
                    waitUntil([&] { return requests().mid(before).filter("HEAD").size() == 1; }));
            waitFor(QStringLiteral("1"), 1);
            QVERIFY(browser().isVisible());
            browser().close();
        });
        QCOMPARE(boxes().shown().size(), 0);
    }

    void partsOfAPageThatAreMissingAreNoFailure()
    {
        use(QStringLiteral("withresources.html"), [this] {
            waitFor(QStringLiteral("window.received"), QStringLiteral("old value"));
            run(QStringLiteral("returnValue = 'fine'; close()"));
        });
        QCOMPARE(browser().GetValue(), QStringLiteral("fine"));
        QCOMPARE(boxes().shown().size(), 0);
        QVERIFY(requests().contains(QStringLiteral("GET /gone.png")));
    }

    void anAnswerWithoutAPageIsNoFailure_data()
    {
        QTest::addColumn<int>("status");
        QTest::addColumn<QByteArray>("header");
        QTest::newRow("no content") << 204 << QByteArray("X-Nothing: here");
        QTest::newRow("a download")
            << 200 << QByteArray("Content-Disposition: attachment; filename=a.html");
    }

    void anAnswerWithoutAPageIsNoFailure()
    {
        QFETCH(int, status);
        QFETCH(QByteArray, header);
        Answer answer = withStatus(status, status == 204 ? QByteArray() : QByteArray("text"));
        answer.headers << header;
        serve(QStringLiteral("/nothing"), answer);
        const qsizetype before = requests().size();
        use(QStringLiteral("nothing"), [&] {
            QVERIFY(waitUntil([&] { return requests().size() > before; }));
            waitFor(QStringLiteral("document.readyState"), QStringLiteral("complete"));
            browser().close();
        });
        QCOMPARE(boxes().shown().size(), 0);
        expectKept();
    }

    void aPersonMayLeaveAServerThatNeverAnswers()
    {
        Answer silent;
        silent.isSilent = true;
        serve(QStringLiteral("/silent"), silent);
        const qsizetype before = requests().size();
        use(QStringLiteral("silent"), [&] {
            QVERIFY(waitUntil([&] { return requests().size() > before; }));
            browser().close();
        });
        QCOMPARE(boxes().shown().size(), 0);
        expectKept();
        expectGoodUse();
    }

    void aLoadedPageStaysWhenItLeadsElsewhere_data()
    {
        QTest::addColumn<QString>("target");
        QTest::newRow("another server")
            << QStringLiteral("http://localhost:%1/noload.html").arg(port());
        QTest::newRow("another port") << silentPort() + QStringLiteral("/page");
        QTest::newRow("a file") << QStringLiteral("file:///etc/hostname");
        QTest::newRow("data") << QStringLiteral("data:text/html,hello");
        QTest::newRow("mail") << QStringLiteral("mailto:nobody@example.org");
    }

    void aLoadedPageStaysWhenItLeadsElsewhere()
    {
        QFETCH(QString, target);
        use(QStringLiteral("echo.html"), [&] {
            waitForValue();
            QVERIFY(waitUntil([this] { return !view()->page()->isLoading(); }));
            run(QStringLiteral("location.href = '%1'").arg(target));
            waitFor(QStringLiteral("typeof external_load"), QStringLiteral("function"));
            run(QStringLiteral("returnValue = 'still here'; close()"));
        });
        QCOMPARE(boxes().shown().size(), 0);
        QCOMPARE(browser().GetValue(), QStringLiteral("still here"));
    }

    void anEmptyPageIsThePagesOwn()
    {
        use(QStringLiteral("echo.html"), [&] {
            waitForValue();
            run(QStringLiteral("location.href = 'about:blank'"));
            waitForPage(QStringLiteral("about:blank"));
            run(QStringLiteral("returnValue = 'from nothing'; close()"));
        });
        QCOMPARE(boxes().shown().size(), 0);
        QCOMPARE(browser().GetValue(), QStringLiteral("from nothing"));
    }

    void aPageWhoseProcessEndsIsCancelled_data()
    {
        QTest::addColumn<int>("signal");
        QTest::newRow("killed") << SIGKILL;
        QTest::newRow("crashed") << SIGSEGV;
    }

    void aPageWhoseProcessEndsIsCancelled()
    {
        QFETCH(int, signal);
        boxes().click(QMessageBox::Ok);
        use(QStringLiteral("echo.html"), [&] {
            waitForValue();
            run(QStringLiteral("returnValue = 'lost'"));
            waitFor(QStringLiteral("returnValue"), QStringLiteral("lost"));
            const qint64 process = view()->page()->renderProcessPid();
            QVERIFY(process > 1);
            QCOMPARE(::kill(pid_t(process), signal), 0);
        });
        QCOMPARE(boxes().shown().size(), 1);
        QCOMPARE(boxes().shown()[0].text,
                 QStringLiteral("The page has stopped working. The value is kept as it was."));
        expectKept();
        expectGoodUse();
    }

    void aPageThatNeverStopsTalkingIsClosedAllTheSame()
    {
        for (int i = 0; i < 3; ++i)
            boxes().click(QMessageBox::Ok);
        use(QStringLiteral("alerts.html"), [this] {
            waitFor(QStringLiteral("said > 20"), true);
            browser().close();
        });
        QCOMPARE(boxes().shown().size(), 3);
        QCOMPARE(boxes().shown()[0].text, QStringLiteral("message 1"));
        expectKept();
        expectGoodUse();
    }

    void aPageMayAskYesOrNo()
    {
        boxes().click(QMessageBox::Ok);
        boxes().click(QMessageBox::Cancel);
        use(QStringLiteral("echo.html"), [this] {
            waitForValue();
            run(QStringLiteral("var answers = [confirm('first?'), confirm('second?')].join()"));
            waitFor(QStringLiteral("window.answers"), QStringLiteral("true,false"));
            browser().close();
        });
        QCOMPARE(boxes().shown().size(), 2);
    }

    void aLongMessageIsCut()
    {
        boxes().click(QMessageBox::Ok);
        use(QStringLiteral("echo.html"), [this] {
            waitForValue();
            run(QStringLiteral("alert('x'.repeat(1000000)); close()"));
        });
        QCOMPARE(boxes().shown()[0].text, QString(1000, u'x'));
    }

    void filesOfThisComputerAreOutOfReach()
    {
        use(QStringLiteral("echo.html"), [this] {
            waitForValue();
            run(QStringLiteral(
                "fetch('file:///etc/hostname').then(function () { window.got = 1; },"
                "                                  function () { window.got = 2; })"));
            waitFor(QStringLiteral("window.got"), 2);
            browser().close();
        });
    }
};

ZEL_PAGE_TEST_MAIN(tst_PageFailures)
#include "tst_pagefailures.moc"
