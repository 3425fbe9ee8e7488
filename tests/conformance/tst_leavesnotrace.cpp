// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "testsupport/announcedwarnings.h"
#include "testsupport/testcase.h"

#include <QDirIterator>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

namespace {

/// Every file and folder below a folder with its size and age.
QStringList contents(const QString &folder)
{
    QStringList entries;
    QDirIterator all(folder, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                     QDirIterator::Subdirectories);
    while (all.hasNext()) {
        all.next();
        const QFileInfo entry = all.fileInfo();
        entries << QStringLiteral("%1 %2 %3")
                       .arg(entry.filePath())
                       .arg(entry.isDir() ? 0 : entry.size())
                       .arg(entry.lastModified().toString(Qt::ISODateWithMs));
    }
    entries.sort();
    return entries;
}

} // namespace

/// The controls keep no files and write no log; what they know is in the host's property bag.
class tst_LeavesNoTrace : public ZelTest::TestCase
{
    Q_OBJECT

private slots:
    void noFileAndNoLogLine();

private:
    struct Run
    {
        int exitCode;
        QStringList lines;
    };

    static Run run(const QStringList &arguments, const QString &folder);
};

tst_LeavesNoTrace::Run tst_LeavesNoTrace::run(const QStringList &arguments, const QString &folder)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.setWorkingDirectory(folder);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("TMPDIR"), folder);
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(EXERCISE_CONTROLS), arguments);
    if (!process.waitForFinished(120 * 1000))
        return {-1, {process.errorString()}};
    const QStringList lines = QString::fromUtf8(process.readAll()).split(u'\n', Qt::SkipEmptyParts);
    return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
            lines.filter(ZelTest::unannouncedWarnings())};
}

void tst_LeavesNoTrace::noFileAndNoLogLine()
{
    // The home of a test is fresh; the first run leaves there what Qt itself does.
    const QString home = QDir::homePath();
    const QTemporaryDir folder;
    QVERIFY(folder.isValid());
    const Run qtAlone = run({QStringLiteral("--without-controls")}, folder.path());
    QCOMPARE(qtAlone.exitCode, 0);
    const QStringList before = contents(home) + contents(folder.path());
    const Run controls = run({}, folder.path());
    QCOMPARE(controls.lines, QStringList());
    QCOMPARE(controls.exitCode, 0);
    QCOMPARE(contents(home) + contents(folder.path()), before);
}

ZEL_TEST_MAIN(tst_LeavesNoTrace)
#include "tst_leavesnotrace.moc"
