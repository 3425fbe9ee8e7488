// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "pagetesting.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QMutexLocker>
#include <QPointer>
#include <QTimer>

#include <optional>
#include <unistd.h>

namespace {

constexpr int Limit = 10'000; // milliseconds; only a failure takes so long

QByteArray content(const QString &name)
{
    QFile file(QStringLiteral(ZEL_FIXTURES "/componentpages/") + name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

void PageTest::prepareEngine()
{
    if (geteuid() == 0)
        qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");
}

PageTest::PageTest()
    : m_server([this](const Request &request) { return answer(request); })
{
}

PageTest::~PageTest() = default;

void PageTest::initTestCase()
{
    TestCase::initTestCase();
    // Nothing but the dialog is shown: without this its end would be that of every event loop.
    QApplication::setQuitOnLastWindowClosed(false);
    m_browser = std::make_unique<ZelWebServiceControls::CustomWidgetBrowser>();
}

void PageTest::init()
{
    TestCase::init();
    m_boxes = std::make_unique<ZelTest::MessageBoxDriver>();
    const QMutexLocker lock(&m_mutex);
    m_answers.clear();
}

void PageTest::cleanup()
{
    QStringList texts;
    for (const ZelTest::MessageBoxDriver::Shown &box : m_boxes->shown())
        texts << box.text;
    QVERIFY2(m_boxes->unexpected() == 0, qPrintable(texts.join(u'\n')));
    m_boxes.reset();
}

void PageTest::cleanupTestCase()
{
    m_browser.reset();
}

QWebEngineView *PageTest::view() const
{
    return m_browser->findChild<QWebEngineView *>(QStringLiteral("WebBrowser1"));
}

PictureServer::Answer PageTest::answer(const Request &request)
{
    const QMutexLocker lock(&m_mutex);
    const QByteArray path = request.path.split('?').constFirst();
    if (m_answers.contains(path))
        return m_answers.value(path);
    Answer given;
    given.body = content(QString::fromUtf8(path.mid(1)));
    if (given.body.isEmpty()) {
        given.status = 404;
        given.body = "nothing here";
    } else if (path.endsWith(".xml")) {
        given.headers << "Content-Type: text/xml";
    } else {
        given.headers << "Content-Type: text/html; charset=utf-8";
    }
    return given;
}

void PageTest::serve(const QString &path, const Answer &answer)
{
    const QMutexLocker lock(&m_mutex);
    m_answers.insert(path.toUtf8(), answer);
}

QStringList PageTest::requests() const
{
    QStringList asked;
    for (const Request &request : m_server.requests())
        asked << QString::fromUtf8(request.method + ' ' + request.path);
    return asked;
}

void PageTest::prepare(const QString &page, const QString &value, const QString &dependencies)
{
    const QString url = page.contains(QLatin1String(":")) ? page : address(page);
    browser().ShowModalDialog(&m_client, url, QStringLiteral("Colours"), value, dependencies);
    browser().resize(600, 400);
}

void PageTest::show(const Step &steps)
{
    bool isOverdue = false;
    QTimer watchdog;
    watchdog.setInterval(2 * Limit);
    connect(&watchdog, &QTimer::timeout, this, [&] {
        isOverdue = true;
        if (QWidget *modal = QApplication::activeModalWidget())
            modal->close();
    });
    watchdog.start();
    bool stepsAreDone = !steps;
    if (steps) {
        QTimer::singleShot(0, m_browser.get(), [&] {
            steps();
            stepsAreDone = true;
            if (QTest::currentTestFailed())
                browser().close();
        });
    }
    browser().showModal(nullptr);
    QVERIFY2(!isOverdue, "the dialog did not end");
    QVERIFY(stepsAreDone);
}

bool PageTest::waitUntil(const std::function<bool()> &condition)
{
    QEventLoop loop;
    QTimer poll;
    QTimer limit;
    connect(&poll, &QTimer::timeout, &loop, [&] {
        if (condition())
            loop.quit();
    });
    connect(&limit, &QTimer::timeout, &loop, &QEventLoop::quit);
    poll.start(2);
    limit.start(Limit);
    if (!condition())
        loop.exec();
    return condition();
}

QVariant PageTest::read(const QString &script)
{
    struct Reading
    {
        std::optional<QVariant> value;
        QPointer<QEventLoop> loop;
    };

    const auto reading = std::make_shared<Reading>();
    QEventLoop loop;
    reading->loop = &loop;
    view()->page()->runJavaScript(script, [reading](const QVariant &value) {
        reading->value = value;
        if (reading->loop)
            reading->loop->quit();
    });
    QTimer::singleShot(Limit, &loop, &QEventLoop::quit);
    if (!reading->value)
        loop.exec();
    if (!reading->value)
        QTest::qFail("the page does not answer", __FILE__, __LINE__);
    return reading->value.value_or(QVariant());
}

void PageTest::run(const QString &script)
{
    view()->page()->runJavaScript(script);
}

void PageTest::waitForPage(const QString &page)
{
    // A new page begins as an empty document, which is complete too.
    waitFor(QStringLiteral("location.href.includes('%1') && document.readyState === 'complete'")
                .arg(page),
            true);
}

void PageTest::waitForValue()
{
    waitFor(QStringLiteral("typeof window.calls === 'object' && calls.length > 0"), true);
}

void PageTest::waitFor(const QString &script, const QVariant &expected)
{
    QVariant last;
    QElapsedTimer timer;
    timer.start();
    do {
        last = read(script);
    } while (last != expected && !timer.hasExpired(Limit));
    if (last != expected)
        QTest::qFail(qPrintable(QStringLiteral("%1 is %2").arg(script, last.toString())), __FILE__,
                     __LINE__);
}

void PageTest::waitForFrames()
{
    run(QStringLiteral("window.isPainted = false; requestAnimationFrame(function () {"
                       "  requestAnimationFrame(function () { window.isPainted = true; }); })"));
    waitFor(QStringLiteral("window.isPainted"), true);
}

void PageTest::click(const QString &id)
{
    const QString script =
        QStringLiteral("(function () {"
                       "  const box = document.getElementById('%1').getBoundingClientRect();"
                       "  return [box.x + box.width / 2, box.y + box.height / 2];"
                       "})()")
            .arg(id);
    waitFor(QStringLiteral("document.readyState === 'complete' && "
                           "document.getElementById('%1') !== null")
                .arg(id),
            true);
    waitForFrames(); // the engine drops clicks on a page that it has not painted yet
    const QVariantList place = read(script).toList();
    QCOMPARE(place.size(), 2);
    QVERIFY(waitUntil([this] { return view()->focusProxy() != nullptr; }));
    const QPoint point = QPointF(place[0].toDouble(), place[1].toDouble()).toPoint();
    QTest::mouseMove(view()->focusProxy(), point);
    QTest::mouseClick(view()->focusProxy(), Qt::LeftButton, {}, point);
}

QList<QStringList> PageTest::table(const QString &name)
{
    QList<QStringList> rows;
    const QStringList lines = QString::fromUtf8(content(name)).split(u'\n', Qt::SkipEmptyParts);
    for (const QString &line : lines) {
        if (line.startsWith(QLatin1String("# ")))
            continue;
        QStringList cells = line.split(u'|');
        for (QString &cell : cells)
            cell = cell.trimmed();
        rows << cells;
    }
    if (rows.isEmpty())
        qFatal("no table %s", qPrintable(name));
    return rows;
}
