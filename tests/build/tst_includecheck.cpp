// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
// What the checks of the source files report, shown on trees made for it.

#include "sourcetree.h"
#include "testsupport/testcase.h"

#include <QTest>

class TestIncludeCheck : public ZelTest::TestCase
{
    Q_OBJECT

    static SourceTree::Answer check(const SourceTree &tree, const char *script)
    {
        return SourceTree::cmake(
            {QStringLiteral("-DROOT=") + tree.path(), QStringLiteral("-P"),
             QStringLiteral(ZEL_SOURCE_DIR "/cmake/") + QString::fromLatin1(script)});
    }

private slots:

    void includesOnlyGoDown_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("include");
        QTest::addColumn<QString>("problem");
        const auto row = [](const char *name, const char *file, const char *include,
                            const char *problem) {
            QTest::newRow(name) << QString::fromLatin1(file) << QString::fromLatin1(include)
                                << QString::fromLatin1(problem);
        };
        row("down", "src/login/a.cpp", "#include \"platform/core/base.h\"", "");
        row("in its own folder", "src/login/a.cpp", "#include \"login/login.h\"", "");
        row("beside it", "src/login/a.cpp", "#include \"login.h\"", "");
        row("a wanted edge of one floor", "src/records/a.cpp", "#include \"assets/assets.h\"", "");
        row("anything, from the top", "studio/a.cpp", "#include \"login/login.h\"", "");
        row("a header of a library", "src/platform/core/a.cpp", "#include <QString>", "");
        row("up", "src/platform/core/a.cpp", "#include \"login/login.h\"",
            "src/platform/core/a.cpp (layer 0) includes src/login/login.h (layer 4)");
        row("up, in a header", "src/platform/core/a.h", "  #  include \"login/login.h\"",
            "src/platform/core/a.h (layer 0) includes src/login/login.h (layer 4)");
        row("up, in angle brackets", "src/common/a.cpp", "#include <login/login.h>",
            "src/common/a.cpp (layer 2) includes src/login/login.h (layer 4)");
        row("up, by a relative path", "src/common/a.cpp", "#include \"../login/login.h\"",
            "src/common/a.cpp (layer 2) includes src/login/login.h (layer 4)");
        row("to the top", "src/login/a.cpp", "#include \"studio/window.h\"",
            "src/login/a.cpp (layer 4) includes studio/window.h (layer 6)");
        row("sideways", "src/login/a.cpp", "#include \"assets/assets.h\"",
            "src/login/a.cpp (layer 4) includes src/assets/assets.h (layer 4)");
        row("a wanted edge the other way", "src/assets/a.cpp", "#include \"records/records.h\"",
            "src/assets/a.cpp (layer 4) includes src/records/records.h (layer 4)");
        row("from a folder without a floor", "src/attic/a.cpp", "#include \"platform/core/base.h\"",
            "src/attic/a.cpp (layer ) includes src/platform/core/base.h (layer 0)");
    }

    void includesOnlyGoDown()
    {
        QFETCH(QString, file);
        QFETCH(QString, include);
        QFETCH(QString, problem);
        const SourceTree tree;
        for (const char *header :
             {"src/platform/core/base.h", "src/login/login.h", "studio/window.h",
              "src/assets/assets.h", "src/records/records.h"})
            tree.write(QString::fromLatin1(header), QStringLiteral("#pragma once\n"));
        tree.write(file, QStringLiteral("// first\n") + include + QLatin1Char('\n'));
        const SourceTree::Answer answer = check(tree, "CheckIncludes.cmake");
        QVERIFY2(answer.succeeded == problem.isEmpty(), qPrintable(answer.text));
        QVERIFY2(answer.text.contains(problem), qPrintable(answer.text));
    }

    void aFileOfMoreThan800LinesIsReported()
    {
        const SourceTree tree;
        tree.write(QStringLiteral("src/login/a.cpp"), QString(800, QLatin1Char('\n')));
        QVERIFY(check(tree, "CheckIncludes.cmake").succeeded);
        tree.write(QStringLiteral("src/login/a.cpp"), QString(801, QLatin1Char('\n')));
        const SourceTree::Answer answer = check(tree, "CheckIncludes.cmake");
        QVERIFY(!answer.succeeded);
        QVERIFY2(answer.text.contains(QStringLiteral("src/login/a.cpp has 801 lines")),
                 qPrintable(answer.text));
    }

    void aFileWithoutLicenceLinesIsReported()
    {
        const SourceTree tree;
        const QString lines =
            QStringLiteral("%1 SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors\n"
                           "%1 SPDX-License-Identifier: GPL-3.0-or-later\n");
        tree.write(QStringLiteral("src/a.cpp"), lines.arg(QStringLiteral("//")));
        tree.write(QStringLiteral("src/CMakeLists.txt"), lines.arg(QLatin1Char('#')));
        tree.write(QStringLiteral("test"),
                   QStringLiteral("#!/bin/sh\n") + lines.arg(QLatin1Char('#')));
        const SourceTree::Answer good = check(tree, "CheckLicenceLines.cmake");
        QVERIFY2(good.succeeded, qPrintable(good.text));
        QVERIFY2(good.text.contains(QStringLiteral("3 files")), qPrintable(good.text));

        tree.write(QStringLiteral("src/deep/b.h"), QStringLiteral("#pragma once\n"));
        tree.write(QStringLiteral("src/CMakeLists.txt"), QStringLiteral("#SPDX - x\n"));
        const SourceTree::Answer bad = check(tree, "CheckLicenceLines.cmake");
        QVERIFY(!bad.succeeded);
        QVERIFY2(bad.text.contains(QStringLiteral("src/deep/b.h")), qPrintable(bad.text));
        QVERIFY2(bad.text.contains(QStringLiteral("src/CMakeLists.txt")), qPrintable(bad.text));
        QVERIFY2(!bad.text.contains(QStringLiteral("a.cpp")), qPrintable(bad.text));
    }
};

ZEL_TEST_MAIN(TestIncludeCheck)
#include "tst_includecheck.moc"
