// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "../../webcontrols/pictureserver.h"

#include "records/web/customwidgetbrowser.h"
#include "testsupport/messageboxdriver.h"
#include "testsupport/recordingclient.h"
#include "testsupport/testcase.h"

#include <QTest>
#include <QVariant>
#include <QWebEngineView>

#include <functional>
#include <memory>

/// What the tests of component pages share: the dialog, a server for the pages of the fixtures, and
/// what a person does.
class PageTest : public ZelTest::TestCase
{
    Q_OBJECT

public:
    /// Before the engine is loaded: its sandbox ends a process of root.
    static void prepareEngine();

protected:
    using Answer = PictureServer::Answer;
    using Request = PictureServer::Request;
    using Step = std::function<void()>;

    PageTest();
    ~PageTest() override;

    ZelWebServiceControls::CustomWidgetBrowser &browser() { return *m_browser; }

    QWebEngineView *view() const;

    ZelTest::RecordingClient &client() { return m_client; }

    ZelTest::MessageBoxDriver &boxes() { return *m_boxes; }

    QString address(const QString &path) const { return m_server.url(path); }

    quint16 port() const { return m_server.port(); }

    /// What the server was asked, as "GET /path", oldest first.
    QStringList requests() const;

    /// Has the server answer a path ("/gone") in its own way.
    void serve(const QString &path, const Answer &answer);

    /// Prepares a use without showing it: the page of that name, "old value" and "old
    /// dependencies".
    void prepare(const QString &page, const QString &value = QStringLiteral("old value"),
                 const QString &dependencies = QStringLiteral("old dependencies"));
    /// Shows what was prepared, does `steps` while it is shown and returns when it has ended.
    void show(const Step &steps = {});

    /// Both.
    void use(const QString &page, const Step &steps = {})
    {
        prepare(page);
        show(steps);
    }

    /// The value of a script in the page; waits for it.
    QVariant read(const QString &script);
    /// Starts a script in the page.
    void run(const QString &script);
    /// Waits until the page of that name is complete.
    void waitForPage(const QString &page);
    /// Waits until a page that keeps its values was handed one.
    void waitForValue();
    /// Waits until a script's value is this.
    void waitFor(const QString &script, const QVariant &expected);
    /// Waits until the page was laid out and painted anew.
    void waitForFrames();
    /// Clicks an element as a person does.
    void click(const QString &id);
    /// Waits until a condition holds; whether it came to that. (QTest's own waiting sleeps between
    /// events, of which the engine needs many for one step.)
    static bool waitUntil(const std::function<bool()> &condition);

    /// The rows of a table of the fixtures, cells trimmed; "#" begins a remark.
    static QList<QStringList> table(const QString &name);

protected slots:
    void initTestCase();
    void init();
    void cleanup();
    void cleanupTestCase();

private:
    Answer answer(const Request &request);

    mutable QMutex m_mutex;
    QHash<QByteArray, Answer> m_answers;
    PictureServer m_server;
    ZelTest::RecordingClient m_client;
    std::unique_ptr<ZelTest::MessageBoxDriver> m_boxes;
    std::unique_ptr<ZelWebServiceControls::CustomWidgetBrowser> m_browser;
};

/// The main function of a test of pages.
#define ZEL_PAGE_TEST_MAIN(TestClass)                                                              \
    int main(int argc, char **argv)                                                                \
    {                                                                                              \
        PageTest::prepareEngine();                                                                 \
        return ZelTest::runTest(argc, argv,                                                        \
                                []() -> ZelTest::TestCase * { return new TestClass; });            \
    }
