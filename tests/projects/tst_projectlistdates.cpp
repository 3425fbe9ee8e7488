// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/core/sortkeys.h"
#include "projectlistfixture.h"
#include "testsupport/localefixture.h"
#include "testsupport/testcase.h"

#include <QRandomGenerator>
#include <QTimeZone>

namespace {

constexpr int RecordCount = 600;

QDateTime randomMoment(QRandomGenerator &random)
{
    const QDate around(2024, 3, 1);
    const QTime time = QTime::fromMSecsSinceStartOfDay(random.bounded(86400 * 1000));
    switch (random.bounded(12)) {
    case 0: // anything that a date can be, and a little more
        return QDateTime(QDate::fromJulianDay(random.bounded(1721000, 5375000)), time);
    case 1:
        return QDateTime(around.addDays(random.bounded(40)), QTime(0, 0, 0, random.bounded(1000)));
    case 2: // a time of day
        return QDateTime(QDate(1899, 12, 30), time);
    case 3: // the day before daylight saving and that day: one hour of it does not exist
        return QDateTime(QDate(2024, 3, 9 + random.bounded(3)), QTime(2, random.bounded(60)));
    case 4: // an hour that comes twice
        return QDateTime(QDate(2024, 11, 3), QTime(1, random.bounded(60)));
    case 5:
        return QDateTime(around.addDays(random.bounded(3)), time, Qt::UTC);
    case 6:
        return QDateTime(around.addDays(random.bounded(3)), time, Qt::OffsetFromUTC,
                         random.bounded(-12, 13) * 3600);
    case 7:
        return QDateTime();
    default: // close together, so that every part decides somewhere
        return QDateTime(around.addDays(random.bounded(3)), time);
    }
}

QList<QXSC::ProjectRecord> randomRecords(quint32 seed)
{
    QRandomGenerator random(seed);
    QList<QXSC::ProjectRecord> records;
    for (int i = 0; i < RecordCount; ++i) {
        QXSC::ProjectRecord record = project(i);
        record.hasCreated = random.bounded(10) > 0;
        record.created = randomMoment(random);
        records << record;
    }
    return records;
}

QList<qsizetype> rows(const Zel::ListView &list)
{
    QList<qsizetype> result;
    for (qsizetype position = 0; position < list.count(); ++position)
        result << list.rowAt(position);
    return result;
}

/// The order that the keys of the shown texts give.
QList<qsizetype> rowsByKey(const Zel::ListView &list, Qt::SortOrder order)
{
    QList<std::pair<QString, qsizetype>> keys;
    for (qsizetype row = 0; row < list.count(); ++row)
        keys << std::pair(Zel::dateSortKey(list.text(row, Created)), row);
    std::stable_sort(keys.begin(), keys.end(), [order](const auto &a, const auto &b) {
        return order == Qt::AscendingOrder ? a.first < b.first : b.first < a.first;
    });
    QList<qsizetype> result;
    for (const auto &[key, row] : std::as_const(keys))
        result << row;
    return result;
}

} // namespace

/// The date columns sort without making a text per line; the order has to be the one that the texts
/// would give, in every locale and time zone.
class tst_ProjectListDates : public ZelTest::TestCase
{
    Q_OBJECT

private slots:
    void sortAsTheKeysOfTheirTextsDo_data();
    void sortAsTheKeysOfTheirTextsDo();
    void countAnHourThatTheClocksSkip();
    void showAndSortOtherZonesInLocalTime();
};

void tst_ProjectListDates::sortAsTheKeysOfTheirTextsDo_data()
{
    QTest::addColumn<QString>("localeName");
    QTest::addColumn<QByteArray>("zone");
    const QByteArray zones[]{"UTC", "America/New_York", "Europe/Berlin", "Asia/Kathmandu",
                             "Pacific/Apia"};
    int i = 0;
    // With halves of the day and without, with other digits, with dots for colons.
    for (const char *name : {"C", "en_US", "de_DE", "fi_FI", "ja_JP", "zh_TW", "ar_EG", "fa_IR",
                             "hi_IN", "ko_KR", "hu_HU", "en_DK"}) {
        for (const int shift : {0, 1}) {
            const QByteArray &zone = zones[(i + shift * 2) % 5];
            QTest::addRow("%s in %s", name, zone.constData()) << QString::fromLatin1(name) << zone;
        }
        ++i;
    }
}

void tst_ProjectListDates::sortAsTheKeysOfTheirTextsDo()
{
    QFETCH(QString, localeName);
    QFETCH(QByteArray, zone);
    const ZelTest::LocaleFixture locale{QLocale(localeName)};
    const ZelTest::TimeZoneFixture timeZone(zone);
    ProjectListFixture f;
    f.load(randomRecords(qHash(localeName)));
    for (const Qt::SortOrder order : {Qt::DescendingOrder, Qt::AscendingOrder}) {
        ListTesting::clickHeader(f.view(), Created);
        QCOMPARE(f.view().sortOrder(), order);
        const QList<qsizetype> fast = rows(f.view());
        const QList<qsizetype> expected = rowsByKey(f.view(), order);
        for (int i = 0; i < RecordCount; ++i) {
            QVERIFY2(fast.at(i) == expected.at(i),
                     qPrintable(QStringLiteral("at %1: \"%2\" instead of \"%3\"")
                                    .arg(i)
                                    .arg(f.view().text(fast.at(i), Created),
                                         f.view().text(expected.at(i), Created))));
        }
    }
}

void tst_ProjectListDates::countAnHourThatTheClocksSkip()
{
    const ZelTest::TimeZoneFixture zone("America/New_York");
    const QDateTime skipped(QDate(2024, 3, 10), QTime(2, 30));
    QVERIFY(!skipped.isValid());
    ProjectListFixture f;
    QList<QXSC::ProjectRecord> records = projectsNumbered({1, 2, 3});
    for (QXSC::ProjectRecord &record : records)
        record.hasCreated = true;
    records[0].created = skipped;
    records[1].created = QDateTime(QDate(2024, 3, 10), QTime(1, 30));
    records[2].created = QDateTime(QDate(2024, 3, 10), QTime(3, 30));
    f.load(records);
    QVERIFY(!f.view().text(0, Created).isEmpty());
    ListTesting::clickHeader(f.view(), Created);
    QCOMPARE(f.order(), QStringLiteral("g3 g1 g2"));
}

void tst_ProjectListDates::showAndSortOtherZonesInLocalTime()
{
    const ZelTest::TimeZoneFixture zone("America/New_York");
    ProjectListFixture f;
    QList<QXSC::ProjectRecord> records = projectsNumbered({1, 2});
    for (QXSC::ProjectRecord &record : records)
        record.hasCreated = true;
    records[0].created = QDateTime(QDate(2024, 1, 10), QTime(3, 0), Qt::UTC); // 9th, 22:00
    records[1].created = QDateTime(QDate(2024, 1, 9), QTime(23, 0));
    f.load(records);
    ListTesting::clickHeader(f.view(), Created);
    QCOMPARE(f.order(), QStringLiteral("g2 g1"));
}

ZEL_TEST_MAIN(tst_ProjectListDates)
#include "tst_projectlistdates.moc"
