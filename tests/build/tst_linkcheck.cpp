// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
// That a link which climbs stops configure, shown on a small project that uses the same check.

#include "sourcetree.h"
#include "testsupport/testcase.h"

#include <QTest>

class TestLinkCheck : public ZelTest::TestCase
{
    Q_OBJECT

    /// Configures a project of four libraries in which `links` says who links whom.
    static SourceTree::Answer configure(const QString &links)
    {
        const SourceTree tree;
        QString project = QStringLiteral("cmake_minimum_required(VERSION 3.25)\n"
                                         "project(Small LANGUAGES CXX)\n"
                                         "include(\"" ZEL_SOURCE_DIR "/cmake/Layers.cmake\")\n");
        for (const char *folder : {"src/platform/core", "src/common", "src/login", "src/attic"}) {
            const QString path = QString::fromLatin1(folder);
            const QString name = path.section(QLatin1Char('/'), -1);
            project += QStringLiteral("add_subdirectory(%1)\n").arg(path);
            if (name == QLatin1String("attic") && !links.contains(name)) {
                tree.write(path + QStringLiteral("/CMakeLists.txt"), QString());
                continue;
            }
            tree.write(path + QStringLiteral("/a.cpp"), QString());
            tree.write(path + QStringLiteral("/CMakeLists.txt"),
                       QStringLiteral("add_library(%1 STATIC a.cpp)\nadd_library(X::%1 ALIAS %1)\n")
                           .arg(name));
        }
        project += links + QStringLiteral("\nzel_check_layers()\n");
        tree.write(QStringLiteral("CMakeLists.txt"), project);
        return SourceTree::cmake({QStringLiteral("-G"), QStringLiteral("Ninja"),
                                  QStringLiteral("-S"), tree.path(), QStringLiteral("-B"),
                                  tree.path() + QStringLiteral("/build")});
    }

private slots:

    void linksThatGoDownConfigure()
    {
        const SourceTree::Answer answer =
            configure(QStringLiteral("target_link_libraries(login PUBLIC X::common PRIVATE core)\n"
                                     "target_link_libraries(common INTERFACE core)\n"
                                     "target_link_libraries(core PRIVATE m)"));
        QVERIFY2(answer.succeeded, qPrintable(answer.text));
    }

    void aLinkThatClimbsStopsConfigure_data()
    {
        QTest::addColumn<QString>("link");
        QTest::newRow("private") << QStringLiteral("target_link_libraries(core PRIVATE login)");
        QTest::newRow("public") << QStringLiteral("target_link_libraries(core PUBLIC login)");
        QTest::newRow("interface") << QStringLiteral("target_link_libraries(core INTERFACE login)");
        QTest::newRow("by another name")
            << QStringLiteral("target_link_libraries(core PRIVATE X::login)");
        QTest::newRow("in an expression")
            << QStringLiteral("target_link_libraries(core PRIVATE $<$<BOOL:ON>:X::login>)");
    }

    void aLinkThatClimbsStopsConfigure()
    {
        QFETCH(QString, link);
        const SourceTree::Answer answer = configure(link);
        QVERIFY(!answer.succeeded);
        QVERIFY2(answer.text.contains(
                     QStringLiteral("core (src/platform/core, layer 0) must not link login "
                                    "(src/login, layer 4): links only go down.")),
                 qPrintable(answer.text));
    }

    void aLibraryWithoutAFloorStopsConfigure()
    {
        const SourceTree::Answer answer =
            configure(QStringLiteral("target_link_libraries(attic PRIVATE login)"));
        QVERIFY(!answer.succeeded);
        QVERIFY2(answer.text.contains(QStringLiteral("attic: src/attic has no floor")),
                 qPrintable(answer.text));
    }
};

ZEL_TEST_MAIN(TestLinkCheck)
#include "tst_linkcheck.moc"
