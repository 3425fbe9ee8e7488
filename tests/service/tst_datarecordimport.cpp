// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/migrations.h"
#include "service/store/store.h"
#include "service/store/workspaceimport.h"
#include "tests/service/testdatabases.h"
#include "testsupport/testcase.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace Zel;

namespace {

const QString themeGuid = QStringLiteral("00000000-0000-4000-8000-000000000001");
const QByteArray head =
    "account,theme,label,type,hidden,ext,source,buttonText,width,height,text,file,guid,"
    "assetDependencies\n";
const QByteArray row = "1,00000000-0000-4000-8000-000000000001,";

QString shaped(const ImportCount &count)
{
    return QStringLiteral("%1/%2/%3").arg(count.added).arg(count.changed).arg(count.unchanged);
}

} // namespace

/// Taking data records in from files, on SQLite.
class DataRecordImportTest : public ZelTest::TestCase
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void takesEveryColumnIn();
    void readsLongValuesFromFilesBeside();
    void storesAgainOnlyWhatDiffers();
    void namesThePlaceOfEveryFault_data();
    void namesThePlaceOfEveryFault();
    void keepsTheRecordWithinItsLimit();
    void storesNothingOfAFailedImport();

private:
    void write(const QString &name, const QByteArray &bytes)
    {
        QFile file(m_folder->filePath(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            throw std::runtime_error("the test file cannot be written");
    }

    void writeRecord(const QByteArray &lines)
    {
        write(QStringLiteral("data-records.csv"), head + lines);
    }

    QString take()
    {
        const QList<ImportCount> counts =
            importWorkspace(*m_store, WorkspaceFiles::read({m_folder->path()}));
        for (const ImportCount &count : counts) {
            if (count.kind == QLatin1String("data records"))
                return shaped(count);
        }
        return QStringLiteral("not counted");
    }

    /// What the import says is wrong; empty when it takes everything in.
    QString complaint()
    {
        try {
            take();
        } catch (const WorkspaceFileError &error) {
            return QString::fromUtf8(error.what());
        }
        return QString();
    }

    std::optional<StoredRecord> stored() { return m_store->dataRecords.imported(1, themeGuid); }

    ZelTest::TestDatabases m_databases;
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<QTemporaryDir> m_files;
    std::unique_ptr<Database> m_database;
    std::unique_ptr<Store> m_store;
};

void DataRecordImportTest::init()
{
    TestCase::init();
    m_folder = std::make_unique<QTemporaryDir>();
    m_files = std::make_unique<QTemporaryDir>();
    m_database = std::make_unique<Database>(m_databases.fresh(false), Database::Missing::Create);
    Migrations(*m_database).migrate();
    m_store = std::make_unique<Store>(*m_database, PasswordHasher::Cost::Minimal, systemClock(),
                                      m_files->path());
    QDir(m_folder->path()).mkdir(QStringLiteral("values"));
    write(QStringLiteral("accounts.json"),
          "[{\"account\": 1, \"name\": \"One\"}, {\"account\": 2, \"name\": \"Two\"}]");
    write(QStringLiteral("themes.csv"),
          "account,guid,owner,name,description,width,height,created,modified,definition,preview\n"
          "1,00000000-0000-4000-8000-000000000001,,Name,,1,1,2026-01-02T03:04:05Z,"
          "2026-01-03T03:04:05Z,,\n");
}

void DataRecordImportTest::cleanup()
{
    m_store.reset();
    m_database.reset();
    m_files.reset();
    m_folder.reset();
}

void DataRecordImportTest::takesEveryColumnIn()
{
    writeRecord(row +
                "\"A \"\"label\"\",\nlong\",CUSTOM,true,\"png,jpg\",a/b.html,Press,640,32767,"
                "\"text\r\n\",,guid,\"x,y\"\n" +
                row + "Same,Unknown,false,,,,0,0,,,,\n" + row + "Same,,false,,,,0,0,,,,\n");
    QCOMPARE(take(), QStringLiteral("1/0/0"));
    const auto record = stored();
    QVERIFY(record);
    QCOMPARE(record->version, 1);
    QCOMPARE(record->savedById, QString());
    QCOMPARE(record->entries.size(), 3);
    RecordEntry expected;
    expected.label = QStringLiteral("A \"label\",\nlong");
    expected.type = QStringLiteral("CUSTOM");
    expected.hidden = true;
    expected.ext = QStringLiteral("png,jpg");
    expected.source = QStringLiteral("a/b.html");
    expected.buttonText = QStringLiteral("Press");
    expected.width = 640;
    expected.height = 32767;
    expected.value = {QStringLiteral("text\r\n"), QStringLiteral("guid"), QStringLiteral("x,y")};
    QCOMPARE(record->entries.first(), expected);
    QCOMPARE(record->entries.at(1).type, QStringLiteral("Unknown"));
    QCOMPARE(record->entries.at(1).label, record->entries.at(2).label);
}

void DataRecordImportTest::readsLongValuesFromFilesBeside()
{
    QByteArray text = "\xef\xbb\xbf";
    while (text.size() < 1'500'000)
        text += "\"a\"\r\n\t\xe2\x80\xa8\xf0\x9f\x98\x80";
    write(QStringLiteral("values/long.txt"), text);
    writeRecord(row + "L,TEXTAREA,false,,,,0,0,,values/long.txt,,\n");
    take();
    QVERIFY(stored()->entries.first().value.text == QChar(0xfeff) + QString::fromUtf8(text.mid(3)));
}

void DataRecordImportTest::storesAgainOnlyWhatDiffers()
{
    const QByteArray line = row + "L,TEXT,false,,,,0,0,a,,,\n";
    writeRecord(line);
    QCOMPARE(take(), QStringLiteral("1/0/0"));
    QCOMPARE(take(), QStringLiteral("0/0/1"));
    QCOMPARE(stored()->version, 1);
    writeRecord(QByteArray(line).replace(",a,", ",b,") + line);
    QCOMPARE(take(), QStringLiteral("0/1/0"));
    QCOMPARE(stored()->version, 2);
    QCOMPARE(stored()->entries.size(), 2);
    writeRecord(line);
    QCOMPARE(take(), QStringLiteral("0/1/0"));
    QCOMPARE(stored()->version, 3);
    QCOMPARE(stored()->entries.size(), 1);
    QFile::remove(m_folder->filePath(QStringLiteral("data-records.csv")));
    QCOMPARE(take(), QStringLiteral("0/0/0"));
    QVERIFY(stored());
}

void DataRecordImportTest::namesThePlaceOfEveryFault_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QString>("words");
    const auto fault = [](const char *name, const QByteArray &line, const char *words) {
        QTest::newRow(name) << line << QString::fromLatin1(words);
    };
    fault("too few cells", row + "L,TEXT\n", "cells");
    fault("no account", QByteArray(row).replace(0, 1, "x") + "L,TEXT,false,,,,0,0,,,,\n",
          "\"account\"");
    fault("no guid", "1,theme,L,TEXT,false,,,,0,0,,,,\n", "\"theme\"");
    fault("another account", "2" + row.mid(1) + "L,TEXT,false,,,,0,0,,,,\n", "has no theme");
    fault("an unknown theme", "1,00000000-0000-4000-8000-000000000002,L,TEXT,false,,,,0,0,,,,\n",
          "has no theme");
    fault("hidden or not", row + "L,TEXT,maybe,,,,0,0,,,,\n", "\"hidden\"");
    fault("too wide", row + "L,CUSTOM,false,,,,32768,0,,,,\n", "\"width\"");
    fault("too high", row + "L,CUSTOM,false,,,,0,-1,,,,\n", "\"height\"");
    fault("text and file", row + "L,TEXT,false,,,,0,0,a,values/b.txt,,\n", "both");
    fault("no file", row + "L,TEXT,false,,,,0,0,,values/none.txt,,\n", "values/none.txt");
    fault("a file that is no text", row + "L,TEXT,false,,,,0,0,,values/latin1.txt,,\n", "UTF-8");
    fault("a character that cannot be stored", row + "L,TEXT,false,,,,0,0,a\xef\xbf\xbf,,,\n",
          "cannot be stored");
    fault("a long label", row + QByteArray(65537, 'L') + ",TEXT,false,,,,0,0,,,,\n", "\"label\"");
    fault("a long type", row + "L," + QByteArray(1025, 'T') + ",false,,,,0,0,,,,\n", "\"type\"");
}

void DataRecordImportTest::namesThePlaceOfEveryFault()
{
    QFETCH(QByteArray, line);
    QFETCH(QString, words);
    write(QStringLiteral("values/latin1.txt"), "\xe9t\xe9");
    writeRecord("\n" + line);
    const QString said = complaint();
    QVERIFY2(said.contains(QLatin1String("data-records.csv:3:")), qPrintable(said));
    QVERIFY2(said.contains(words), qPrintable(said));
}

void DataRecordImportTest::keepsTheRecordWithinItsLimit()
{
    write(QStringLiteral("values/half.txt"), QByteArray(DataRecords::largestRecord / 2, 'x'));
    const QByteArray half = row + "L,TEXT,false,,,,0,0,,values/half.txt,,\n";
    writeRecord(half + half + row + "L,TEXT,false,,,,0,0,a,,,\n");
    const QString said = complaint();
    QVERIFY2(said.contains(QLatin1String("data-records.csv:4:")), qPrintable(said));
    QVERIFY2(said.contains(QLatin1String("16 MiB")), qPrintable(said));
    writeRecord(half + half);
    QCOMPARE(complaint(), QString());
    QByteArray many;
    for (qsizetype i = 0; i <= DataRecords::mostEntries; ++i)
        many += row + "L,TEXT,false,,,,0,0,,,,\n";
    writeRecord(many);
    QVERIFY2(complaint().contains(QLatin1String("20000 fields")), qPrintable(complaint()));
}

void DataRecordImportTest::storesNothingOfAFailedImport()
{
    writeRecord(row + "L,TEXT,false,,,,0,0,a,,,\n" +
                "1,00000000-0000-4000-8000-000000000002,L,TEXT,false,,,,0,0,,,,\n");
    QVERIFY(!complaint().isEmpty());
    QVERIFY(!stored());
    QVERIFY(m_store->themes.withGuid(themeGuid).isEmpty());
}

ZEL_TEST_MAIN(DataRecordImportTest)
#include "tst_datarecordimport.moc"
