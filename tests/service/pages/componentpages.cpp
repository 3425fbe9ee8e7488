// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "componentpages.h"

#include <QApplication>
#include <QEventLoop>
#include <QJsonArray>
#include <QJsonDocument>
#include <QPointer>
#include <QTimer>
#include <QWebEngineLoadingInfo>
#include <QWebEngineNewWindowRequest>
#include <QWebEnginePage>
#include <QWebEngineProfile>

#include <optional>
#include <unistd.h>

namespace {

constexpr int limit = 15'000; // milliseconds; only a failure takes so long

/// A page that keeps what it writes to the console.
class ListenedPage : public QWebEnginePage
{
public:
    ListenedPage(QWebEngineProfile *profile, QStringList &console, QObject *parent)
        : QWebEnginePage(profile, parent)
        , m_console(console)
    {
    }

protected:
    void javaScriptConsoleMessage(JavaScriptConsoleMessageLevel, const QString &message, int line,
                                  const QString &source) override
    {
        m_console << QStringLiteral("%1:%2 %3").arg(source).arg(line).arg(message);
    }

private:
    QStringList &m_console;
};

QString literal(const QString &text)
{
    const QByteArray list = QJsonDocument(QJsonArray{text}).toJson(QJsonDocument::Compact);
    return QString::fromUtf8(list.mid(1, list.size() - 2));
}

} // namespace

void ComponentPagesTest::prepareEngine()
{
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    if (geteuid() == 0)
        qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");
}

ComponentPagesTest::ComponentPagesTest() = default;
ComponentPagesTest::~ComponentPagesTest() = default;

void ComponentPagesTest::initTestCase()
{
    TestCase::initTestCase();
    QApplication::setQuitOnLastWindowClosed(false);
    m_api = std::make_unique<ZelTest::ApiFixture>(m_databases.filled(false));
    m_profile = std::make_unique<QWebEngineProfile>();
    m_view = std::make_unique<QWebEngineView>();
}

void ComponentPagesTest::init()
{
    TestCase::init();
    console.clear();
    asset = {};
    pickerRequests = 0;
}

void ComponentPagesTest::cleanup()
{
    QCOMPARE(console, QStringList());
}

void ComponentPagesTest::cleanupTestCase()
{
    m_view.reset(); // before the profile
    m_profile.reset();
    m_api.reset();
}

QString ComponentPagesTest::address(const QString &path) const
{
    return QStringLiteral("http://127.0.0.1:%1/nexo/tools_v2/Components/%2")
        .arg(m_api->port())
        .arg(path);
}

bool ComponentPagesTest::waitUntil(const std::function<bool()> &condition)
{
    QEventLoop loop;
    QTimer poll;
    QTimer end;
    connect(&poll, &QTimer::timeout, &loop, [&] {
        if (condition())
            loop.quit();
    });
    connect(&end, &QTimer::timeout, &loop, &QEventLoop::quit);
    poll.start(2);
    end.start(limit);
    if (!condition())
        loop.exec();
    return condition();
}

void ComponentPagesTest::open(const QString &page, const QString &value, const QSize &size)
{
    auto *fresh = new ListenedPage(m_profile.get(), console, m_view.get());
    const QPointer<QWebEnginePage> former = m_view->page(); // the view deletes only its own first
    m_view->setPage(fresh);
    delete former;
    m_closed = false;
    int ended = -1;
    connect(fresh, &QWebEnginePage::loadingChanged, this, [&](const QWebEngineLoadingInfo &info) {
        if (info.status() != QWebEngineLoadingInfo::LoadStartedStatus)
            ended = info.status();
    });
    m_view->resize(size);
    m_view->show();
    fresh->load(QUrl(address(page) + QStringLiteral("?stylesheet=studio.css")));
    QVERIFY(waitUntil([&] { return ended >= 0; }));
    fresh->disconnect(this);
    connect(fresh, &QWebEnginePage::windowCloseRequested, this, [this] { m_closed = true; });
    connect(fresh, &QWebEnginePage::newWindowRequested, this,
            [this](const QWebEngineNewWindowRequest &) {
                ++pickerRequests;
                QTimer::singleShot(0, this, [this] { answerPicker(); });
            });
    QCOMPARE(ended, int(QWebEngineLoadingInfo::LoadSucceededStatus));
    QCOMPARE(read(QStringLiteral("typeof external_load")), QJsonValue(QStringLiteral("function")));
    read(QStringLiteral("external_load(%1)").arg(literal(value)));
    // Laid out and painted, and as large as it is to be.
    QVERIFY(becomes(QStringLiteral("innerWidth"), size.width()));
    fresh->runJavaScript(QStringLiteral(
        "requestAnimationFrame(() => requestAnimationFrame(() => { document.title = 'shown'; }))"));
    QVERIFY(becomes(QStringLiteral("document.title"), QStringLiteral("shown")));
    m_view->focusProxy()->setFocus();
    m_view->activateWindow();
}

void ComponentPagesTest::answerPicker()
{
    if (read(QStringLiteral("childWindowType")) != QJsonValue(0) || asset.first.isEmpty())
        return;
    m_view->page()->runJavaScript(QStringLiteral("doSelectAssetCallback(%1, %2)")
                                      .arg(literal(asset.first), literal(asset.second)));
}

QJsonValue ComponentPagesTest::read(const QString &expression)
{
    // Shared, because an answer may come after a failed test has gone on.
    const auto answer = std::make_shared<std::optional<QString>>();
    m_view->page()->runJavaScript(QStringLiteral("'' + JSON.stringify([%1])").arg(expression),
                                  [answer](const QVariant &value) { *answer = value.toString(); });
    if (!waitUntil([&] { return answer->has_value(); }))
        return QStringLiteral("no answer");
    const QJsonArray list = QJsonDocument::fromJson((*answer)->toUtf8()).array();
    return list.isEmpty() ? QJsonValue(QJsonValue::Undefined) : list.first();
}

bool ComponentPagesTest::becomes(const QString &expression, const QJsonValue &expected)
{
    QJsonValue seen;
    const bool came = waitUntil([&] {
        seen = read(expression);
        return seen == expected;
    });
    if (!came)
        qInfo() << expression << "is" << seen << "and not" << expected;
    return came;
}

bool ComponentPagesTest::says(const QString &sentence)
{
    return becomes(QStringLiteral("document.getElementById('spoken').textContent.trim()"),
                   sentence);
}

QPoint ComponentPagesTest::placeOf(const QString &selector)
{
    const QJsonArray box =
        read(QStringLiteral("(() => { const e = document.querySelector(%1); "
                            "e.scrollIntoView({block: 'nearest'}); "
                            "const b = e.getBoundingClientRect(); "
                            "return [b.left + b.width / 2, b.top + b.height / 2]; })()")
                 .arg(literal(selector)))
            .toArray();
    if (box.size() != 2)
        throw std::runtime_error(qPrintable(QLatin1String("there is no ") + selector));
    return QPointF(box.at(0).toDouble(), box.at(1).toDouble()).toPoint();
}

void ComponentPagesTest::click(const QString &selector)
{
    const QPoint place = placeOf(selector);
    QWidget *input = m_view->focusProxy();
    QTest::mouseMove(input, place);
    QTest::mouseClick(input, Qt::LeftButton, Qt::NoModifier, place);
    read(QStringLiteral("0")); // behind the click
}

void ComponentPagesTest::press(Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    QTest::keyClick(m_view->focusProxy(), key, modifiers);
    read(QStringLiteral("0"));
}

void ComponentPagesTest::type(const QString &text)
{
    QTest::keyClicks(m_view->focusProxy(), text);
    read(QStringLiteral("0"));
}

void ComponentPagesTest::drag(const QPoint &from, const QPoint &to)
{
    QWidget *input = m_view->focusProxy();
    QTest::mouseMove(input, from);
    QTest::mousePress(input, Qt::LeftButton, Qt::NoModifier, from);
    constexpr int steps = 12;
    for (int step = 1; step <= steps; ++step) {
        QTest::mouseMove(input, from + (to - from) * step / steps);
        read(QStringLiteral("0"));
    }
    QTest::mouseRelease(input, Qt::LeftButton, Qt::NoModifier, to);
    read(QStringLiteral("0"));
}

bool ComponentPagesTest::hasClosed()
{
    return waitUntil([this] { return m_closed; });
}

QJsonValue ComponentPagesTest::result()
{
    if (!hasClosed())
        return QStringLiteral("not closed");
    const QJsonArray found =
        read(QStringLiteral("typeof returnValue === 'undefined' ? [] : [returnValue]")).toArray();
    return found.isEmpty() ? QJsonValue(QJsonValue::Undefined) : found.first();
}
