// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/workspacecheck.h"

#include "service/daemon/exitcodes.h"
#include "service/store/migrations.h"
#include "tests/contract/serviceprocess.h"
#include "tests/service/steprows.h"
#include "tests/service/transferfixture.h"
#include "testsupport/testcase.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>

using namespace Zel;
using namespace Zel::Service;
using ZelTest::ServiceProcess;
using ZelTest::TransferSide;

namespace {

void write(const QString &path, const QByteArray &bytes)
{
    QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        throw std::runtime_error("the test file cannot be written");
}

} // namespace

/// What is wrong with a workspace is found, and nothing is changed by looking.
class WorkspaceCheckTest : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void findsNothingInASoundWorkspace_data() { bothEngines(); }

    void findsNothingInASoundWorkspace();
    void findsWhatLeadsNowhere_data();
    void findsWhatLeadsNowhere();
    void findsSumsThatAreWrong_data();
    void findsSumsThatAreWrong();
    void findsFilesThatAreGoneOrDamaged_data();
    void findsFilesThatAreGoneOrDamaged();

    void endsWithACodeForDamage_data() { bothEngines(); }

    void endsWithACodeForDamage();
    void makesNoFolder();

private:
    void bothEngines()
    {
        QTest::addColumn<bool>("postgres");
        QTest::newRow("sqlite") << false;
        QTest::newRow("postgres") << true;
    }

    /// A row for each statement on each database.
    void damages(const QList<std::pair<const char *, const char *>> &all)
    {
        QTest::addColumn<bool>("postgres");
        QTest::addColumn<QString>("damage");
        QTest::addColumn<QString>("word");
        for (const bool postgres : {false, true}) {
            for (const auto &[damage, word] : all)
                QTest::addRow("%s: %s", postgres ? "postgres" : "sqlite", damage)
                    << postgres << QString::fromLatin1(damage) << QString::fromLatin1(word);
        }
    }

    ZelTest::TestDatabases m_databases;
};

void WorkspaceCheckTest::findsNothingInASoundWorkspace()
{
    QFETCH(bool, postgres);
    TransferSide side(m_databases, postgres, postgres ? BlobKind::Database : BlobKind::Files);
    side.fill(Migrations::latestVersion());
    side.addPageViews(300);
    const QList<TableSum> before = ZelTest::sumsOf(side.database);
    QCOMPARE(ZelTest::faultsOf(side), QString());
    QCOMPARE(ZelTest::sumsOf(side.database), before);
}

void WorkspaceCheckTest::findsWhatLeadsNowhere_data()
{
    damages({
        {"UPDATE asset_folder SET parent_id = 77 WHERE folder_id = 3", "asset folders"},
        {"UPDATE asset SET folder_id = 77 WHERE guid = 'a-1'", "assets lie"},
        {"UPDATE folder_perm SET folder_id = 77 WHERE folder_id = 3", "rights"},
        {"DELETE FROM asset_file WHERE guid = 'a-1'", "have no file"},
        {"INSERT INTO data_record VALUES (1, 't-9', TRUE, 1, NULL)", "data records"},
        {"UPDATE audience_person SET dep_no = 99 WHERE person_no = -5", "page views are of nobody"},
        {"UPDATE audience_person SET dep_no = 99 WHERE person_no = -5", "registrants"},
        {"UPDATE audience_person SET dep_no = 99 WHERE person_no = -5", "questions are of nobody"},
        {"UPDATE audience_person SET dep_no = 99 WHERE person_no = -5", "1 people of an audience"},
        {"UPDATE view_profile SET dep_no = 99", "came from a browser"},
        {"UPDATE view_profile SET dep_no = 99", "1 browsers"},
        {"UPDATE poll_question SET dep_no = 99", "1 polls"},
        {"UPDATE poll_question SET dep_no = 99", "2 answers of polls"},
        {"DELETE FROM poll_answer WHERE answer_no = 2", "1 votes"},
        {"UPDATE survey SET dep_no = 99", "1 surveys"},
        {"UPDATE survey SET dep_no = 99", "1 questions of surveys"},
        {"DELETE FROM survey_question", "2 answers of surveys"},
        {"DELETE FROM survey_question", "1 responses"},
    });
}

void WorkspaceCheckTest::findsWhatLeadsNowhere()
{
    QFETCH(bool, postgres);
    QFETCH(QString, damage);
    QFETCH(QString, word);
    TransferSide side(m_databases, postgres, BlobKind::Files);
    side.fill(Migrations::latestVersion());
    side.database.tx([&] { side.database.runNative(damage); });
    WorkspaceCheck check(side.database, *side.blobs);
    const QString found = check.brokenReferences().join(QLatin1Char('\n'));
    QVERIFY2(found.contains(word), qPrintable(found));
    QCOMPARE(check.wrongTallies(), QStringList());
}

void WorkspaceCheckTest::findsSumsThatAreWrong_data()
{
    damages({
        {"UPDATE view_tally SET hits = hits + 1 WHERE hour_no = 1", "1 sums"},
        {"UPDATE view_tally SET seconds = seconds - 1 WHERE hour_no = 1", "1 sums"},
        {"UPDATE view_tally SET first_at = first_at - 1 WHERE hour_no = -1", "1 sums"},
        {"UPDATE view_tally SET last_at = last_at + 1", "2 sums"},
        {"UPDATE view_tally SET hour_no = 0 WHERE hour_no = -1", "1 sums"},
        {"UPDATE view_tally SET hour_no = 0 WHERE hour_no = -1", "1 page views are in no sum"},
        {"DELETE FROM view_tally", "3 page views"},
        {"DELETE FROM page_view WHERE person_no = -5", "1 sums"},
    });
}

void WorkspaceCheckTest::findsSumsThatAreWrong()
{
    QFETCH(bool, postgres);
    QFETCH(QString, damage);
    QFETCH(QString, word);
    TransferSide side(m_databases, postgres, BlobKind::Files);
    side.fill(Migrations::latestVersion());
    side.database.tx([&] { side.database.runNative(damage); });
    WorkspaceCheck check(side.database, *side.blobs);
    const QString found = check.wrongTallies().join(QLatin1Char('\n'));
    QVERIFY2(found.contains(word), qPrintable(found));
    QCOMPARE(check.brokenReferences(), QStringList());
}

void WorkspaceCheckTest::findsFilesThatAreGoneOrDamaged_data()
{
    bothEngines();
}

void WorkspaceCheckTest::findsFilesThatAreGoneOrDamaged()
{
    QFETCH(bool, postgres);
    TransferSide side(m_databases, postgres, postgres ? BlobKind::Database : BlobKind::Files);
    side.fill(Migrations::latestVersion());
    const auto damage = [&](const char *sql, const QByteArray &bytes) {
        if (postgres)
            side.database.tx([&] { side.database.runNative(QString::fromLatin1(sql)); });
        else
            write(side.filePath(), bytes);
    };
    const auto faults = [&](WorkspaceCheck::Depth depth) {
        return WorkspaceCheck(side.database, *side.blobs)
            .brokenFiles(depth)
            .join(QLatin1Char('\n'));
    };
    damage("UPDATE blob_chunk SET bytes = '\\x62'", "b");
    QCOMPARE(faults(WorkspaceCheck::Depth::Sizes), QString());
    QVERIFY(faults(WorkspaceCheck::Depth::Bytes).contains(QLatin1String("is damaged")));
    damage("UPDATE blob_content SET size = 2", "ab");
    QVERIFY(faults(WorkspaceCheck::Depth::Sizes).contains(QLatin1String("is damaged")));
    if (postgres)
        side.database.tx(
            [&] { side.database.runNative(QStringLiteral("DELETE FROM blob_content")); });
    else
        QVERIFY(QFile::remove(side.filePath()));
    QVERIFY(faults(WorkspaceCheck::Depth::Sizes).contains(QLatin1String("is not there")));
    QVERIFY(faults(WorkspaceCheck::Depth::Bytes).contains(QLatin1String("is not there")));
}

void WorkspaceCheckTest::endsWithACodeForDamage()
{
    QFETCH(bool, postgres);
    TransferSide side(m_databases, postgres, BlobKind::Files);
    side.fill(Migrations::latestVersion());
    ServiceProcess service;
    service.database = ZelTest::commandLineAddress(side.database.address());
    service.files = side.folder() + QLatin1String("/files");
    const QStringList doctor{QStringLiteral("doctor"), QStringLiteral("--deep")};
    QByteArray output;
    QCOMPARE(service.runCommand(doctor, &output), int(ExitFine));
    QVERIFY2(output.contains("All 1 files are there"), output.constData());
    side.database.tx([&] {
        side.database.runNative(QStringLiteral("UPDATE view_tally SET hits = 7 WHERE hour_no = 1"));
    });
    write(side.filePath(), "b");
    const QList<TableSum> before = ZelTest::sumsOf(side.database);
    QCOMPARE(service.runCommand(doctor, &output), int(ExitCorruptDatabase));
    QVERIFY2(output.contains("2 things are wrong") && output.contains("1 sums of page views") &&
                 output.contains("is damaged"),
             output.constData());
    QCOMPARE(ZelTest::sumsOf(side.database), before);
}

void WorkspaceCheckTest::makesNoFolder()
{
    TransferSide side(m_databases, false, BlobKind::Files);
    ZelTest::fillUpTo(side.database, 1);
    Migrations(side.database).migrate();
    ServiceProcess service;
    service.database = side.database.address().file;
    service.files = side.folder() + QLatin1String("/none");
    QByteArray output;
    QVERIFY2(service.runCommand({QStringLiteral("doctor")}, &output) == int(ExitFine),
             output.constData());
    QCOMPARE(service.runCommand({QStringLiteral("backup"), side.folder() + QLatin1String("/b")},
                                &output),
             int(ExitFine));
    QVERIFY(!QFileInfo::exists(service.files));
}

ZEL_TEST_MAIN(WorkspaceCheckTest)
#include "tst_workspacecheck.moc"
