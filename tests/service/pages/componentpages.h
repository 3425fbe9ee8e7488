// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tests/service/apifixture.h"
#include "tests/service/testdatabases.h"
#include "testsupport/testcase.h"

#include <QJsonValue>
#include <QTest>
#include <QWebEngineView>

#include <functional>
#include <memory>

/// Base of the tests of component pages: the service in this process, a browser view, and what the
/// dialog around a page does, in few words: hands a value in, answers the request for an asset,
/// takes the result when the page closes. Everything else is done by mouse and keyboard.
class ComponentPagesTest : public ZelTest::TestCase
{
    Q_OBJECT

public:
    /// Before the engine is loaded: its sandbox ends a process of root.
    static void prepareEngine();

protected:
    ComponentPagesTest();
    ~ComponentPagesTest() override;

    ZelTest::ApiFixture &api() { return *m_api; }

    QString address(const QString &path) const;

    /// Opens a page ("colour/page.html") and hands it a value.
    void open(const QString &page, const QString &value, const QSize &size = QSize(800, 580));

    /// The value of an expression in the page.
    QJsonValue read(const QString &expression);
    /// The same until it is as expected; whether it came to that.
    bool becomes(const QString &expression, const QJsonValue &expected);
    /// What a screen reader is told last, without the blanks that make it new.
    bool says(const QString &sentence);

    /// Where the middle of the first element that a selector finds lies in the view.
    QPoint placeOf(const QString &selector);
    void click(const QString &selector);
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    void type(const QString &text);
    /// Presses at one place, moves in steps, releases at another.
    void drag(const QPoint &from, const QPoint &to);

    /// Whether the page has closed its window.
    bool hasClosed();
    /// What the page left as `window.returnValue` when it closed; undefined for none.
    QJsonValue result();

    /// What an asset chosen next has as value and guid; empty for a picker that is cancelled.
    std::pair<QString, QString> asset;
    int pickerRequests = 0;

    /// What the page wrote to the console: there must be nothing.
    QStringList console;

protected slots:
    void initTestCase();
    void init();
    void cleanup();
    void cleanupTestCase();

private:
    static bool waitUntil(const std::function<bool()> &condition);
    void answerPicker();

    ZelTest::TestDatabases m_databases;
    std::unique_ptr<ZelTest::ApiFixture> m_api;
    std::unique_ptr<QWebEngineProfile> m_profile;
    std::unique_ptr<QWebEngineView> m_view;
    bool m_closed = false;
};

/// The main function of a test of pages.
#define ZEL_COMPONENT_PAGES_MAIN(TestClass)                                                        \
    int main(int argc, char **argv)                                                                \
    {                                                                                              \
        ComponentPagesTest::prepareEngine();                                                       \
        return ZelTest::runTest(argc, argv,                                                        \
                                []() -> ZelTest::TestCase * { return new TestClass; });            \
    }
