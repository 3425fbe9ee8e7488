// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "testsupport/testcase.h"

#include "testsupport/announcedwarnings.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QTest>

namespace {

struct Run
{
    int exitCode;
    QString output;
};

/// Runs one of the test programs beside this one.
Run run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(QCoreApplication::applicationDirPath() + QLatin1Char('/') + program, arguments);
    const bool ended = process.waitForFinished(60000);
    const bool normally = ended && process.exitStatus() == QProcess::NormalExit;
    return {normally ? process.exitCode() : -1, QString::fromUtf8(process.readAll())};
}

Run warnings(const QString &function)
{
    return run(QStringLiteral("test_warnings"), {function});
}

} // namespace

class TestTestCase : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void anUnannouncedWarningFailsTheProgram_data()
    {
        QTest::addColumn<QString>("function");
        for (const char *function : {"warns", "warnsAtTheSecondTime", "warnsOfSomethingLikeIt"})
            QTest::newRow(function) << QString::fromLatin1(function);
    }

    void anUnannouncedWarningFailsTheProgram()
    {
        QFETCH(QString, function);
        const Run result = warnings(function);
        QVERIFY2(result.exitCode > 0, qPrintable(result.output));
        QVERIFY2(result.output.contains(QStringLiteral("FAIL!")), qPrintable(result.output));
    }

    void anAnnouncedWarningDoesNot_data()
    {
        QTest::addColumn<QString>("function");
        for (const char *function :
             {"warnsWithAnAnnouncement", "warnsOfWhatEveryTestMaySay", "isQuiet"})
            QTest::newRow(function) << QString::fromLatin1(function);
    }

    void anAnnouncedWarningDoesNot()
    {
        QFETCH(QString, function);
        const Run result = warnings(function);
        QVERIFY2(result.exitCode == 0, qPrintable(result.output));
        QVERIFY2(result.output.contains(QStringLiteral("PASS   : Warnings::") + function),
                 qPrintable(result.output));
    }

    void aTestThatHidesInitFailsItsProgram()
    {
        const Run result = run(QStringLiteral("test_hiddeninit"), {});
        QVERIFY2(result.exitCode > 0, qPrintable(result.output));
        QVERIFY(result.output.contains(QStringLiteral("HiddenInit hides init()")));
        QVERIFY(result.output.contains(QStringLiteral("3 passed, 0 failed")));
    }

    void listingTheTestsIsNoFailure()
    {
        const Run result = run(QStringLiteral("test_warnings"), {QStringLiteral("-functions")});
        QVERIFY2(result.exitCode == 0, qPrintable(result.output));
        QVERIFY(result.output.contains(QStringLiteral("isQuiet()")));
    }

    void everyProgramHasAHomeOfItsOwn()
    {
        QVERIFY(QDir::homePath().startsWith(QDir::tempPath()));
        for (const auto location :
             {QStandardPaths::HomeLocation, QStandardPaths::ConfigLocation,
              QStandardPaths::GenericDataLocation, QStandardPaths::GenericCacheLocation,
              QStandardPaths::RuntimeLocation}) {
            const QString folder = QStandardPaths::writableLocation(location);
            QVERIFY2(folder.startsWith(QDir::homePath()), qPrintable(folder));
        }
    }

    void theHomeGoesWithTheProgram()
    {
        const Run result = warnings(QStringLiteral("leavesFilesAtHome"));
        QVERIFY2(result.exitCode == 0, qPrintable(result.output));
        const QStringList lines = result.output.split(QLatin1Char('\n'));
        int traces = 0;
        for (const QString &line : lines) {
            const qsizetype at = line.indexOf(QLatin1String(" trace /"));
            if (at < 0)
                continue;
            ++traces;
            QVERIFY2(!QFileInfo::exists(line.mid(at + 7)), qPrintable(line));
        }
        QCOMPARE(traces, 3);
    }

    void theListOfAnnouncedWarningsMatchesFromTheStart()
    {
        const QRegularExpression others = ZelTest::unannouncedWarnings();
        QVERIFY(others.isValid());
        QVERIFY(others.match(QStringLiteral("anything")).hasMatch());
        QVERIFY(others.match(QStringLiteral("two\nlines")).hasMatch());
        QVERIFY(!others.match(QStringLiteral("This plugin does not support raise()")).hasMatch());
        QVERIFY(others.match(QStringLiteral("This plugin does not support tea")).hasMatch());
    }
};

ZEL_TEST_MAIN(TestTestCase)
#include "tst_testcase.moc"
