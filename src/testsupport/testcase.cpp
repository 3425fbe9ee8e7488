// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "testsupport/testcase.h"

#include "testsupport/announcedwarnings.h"

#include <QApplication>
#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <cstdio>
#include <memory>

namespace ZelTest {

namespace {

/// A fresh home, so that no test sees or leaves a file of the person who runs it.
void useHome(const QString &home)
{
    const auto set = [&home](const char *name, const char *folder) {
        const QString path = home + QLatin1String(folder);
        QDir().mkpath(path);
        qputenv(name, path.toLocal8Bit());
    };
    set("HOME", "");
    set("XDG_CONFIG_HOME", "/.config");
    set("XDG_DATA_HOME", "/.local/share");
    set("XDG_CACHE_HOME", "/.cache");
    set("XDG_STATE_HOME", "/.local/state");
    set("XDG_RUNTIME_DIR", "/run");
    QFile::setPermissions(home + QLatin1String("/run"),
                          QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

/// Whether a program only says which tests it has.
bool isListing(const QStringList &arguments)
{
    return arguments.contains(QLatin1String("-functions")) ||
           arguments.contains(QLatin1String("-datatags"));
}

} // namespace

void TestCase::initTestCase()
{
    QTest::failOnWarning(unannouncedWarnings());
}

void TestCase::init()
{
    m_armed = true;
    QTest::failOnWarning(unannouncedWarnings());
}

int runTest(int argc, char **argv, TestCase *(*create)())
{
    QTemporaryDir home;
    if (!home.isValid()) {
        std::fprintf(stderr, "no temporary folder: %s\n", qPrintable(home.errorString()));
        return 1;
    }
    useHome(home.path());
    QApplication app(argc, argv);
    const std::unique_ptr<TestCase> test(create());
    const int failures = QTest::qExec(test.get(), argc, argv);
    if (!test->isArmed() && !isListing(app.arguments())) {
        std::fprintf(stderr, "%s hides init() without calling TestCase::init()\n",
                     test->metaObject()->className());
        return 1;
    }
    return failures;
}

} // namespace ZelTest
