// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/core/datetext.h"
#include "platform/core/datetextform.h"
#include "testsupport/testcase.h"

#include <QTest>
#include <QThread>

#include <memory>
#include <vector>

using namespace Zel;

namespace {

const QLocale english(QLocale::English, QLocale::UnitedStates);
const QLocale german(QLocale::German, QLocale::Germany);

QDateTime moment(int year, int month, int day, int hour = 0, int minute = 0, int second = 0)
{
    return QDateTime(QDate(year, month, day), QTime(hour, minute, second));
}

/// "yyyy-MM-dd hh:mm:ss", or "-" for no date.
QString shown(const std::optional<QDateTime> &date)
{
    if (!date)
        return QStringLiteral("-");
    return date->date().toString(Qt::ISODate) + u' ' + date->time().toString(Qt::ISODate);
}

QString readIn(const QLocale &locale, const QString &text)
{
    return shown(dateFromText(text, locale));
}

} // namespace

class TestDateText : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void isTheShortDateAndTheLongTime()
    {
        QCOMPARE(generalDateText(moment(2007, 1, 9, 15, 4, 5), english),
                 QStringLiteral("1/9/2007 3:04:05 PM"));
        QCOMPARE(generalDateText(moment(2007, 11, 19, 9, 0, 0), english),
                 QStringLiteral("11/19/2007 9:00:00 AM"));
        QCOMPARE(generalDateText(moment(2007, 1, 9, 15, 4, 5), german),
                 QStringLiteral("09.01.2007 15:04:05"));
        QCOMPARE(generalDateText(moment(2007, 1, 9, 15, 4, 5), QLocale(QStringLiteral("en_AU"))),
                 QStringLiteral("9/1/2007 3:04:05 pm"));
        QCOMPARE(generalDateText(moment(2007, 1, 9, 15, 4, 5), QLocale(QStringLiteral("bg_BG"))),
                 QStringLiteral("9.01.2007 г. 15:04:05 ч."));
        QCOMPARE(generalDateText(moment(2007, 1, 9, 15, 4, 5), QLocale(QStringLiteral("ja_JP"))),
                 QStringLiteral("2007/01/09 15時04分05秒"));
        QCOMPARE(generalDateText(moment(2007, 1, 9, 15, 4, 5), QLocale(QStringLiteral("zh_TW"))),
                 QStringLiteral("2007/1/9 下午3:04:05"));
        QCOMPARE(generalDateText(moment(2007, 1, 9, 15, 4, 5), QLocale(QStringLiteral("zh_CN"))),
                 QStringLiteral("2007/1/9 15:04:05"));
        QCOMPARE(generalDateText(moment(2007, 1, 9, 15, 4, 5), QLocale(QStringLiteral("ar_EG"))),
                 QStringLiteral("٩\u200F/١\u200F/٢٠٠٧ ٣:٠٤:٠٥ م"));
        QCOMPARE(generalDateText(moment(2007, 1, 9, 15, 4, 5), QLocale::c()),
                 QStringLiteral("9 Jan 2007 15:04:05"));
    }

    void midnightAndNoonOnATwelveHourClock()
    {
        QCOMPARE(generalDateText(moment(2007, 1, 9, 12, 0, 0), english),
                 QStringLiteral("1/9/2007 12:00:00 PM"));
        QCOMPARE(generalDateText(moment(2007, 1, 9, 0, 0, 1), english),
                 QStringLiteral("1/9/2007 12:00:01 AM"));
        QCOMPARE(readIn(english, QStringLiteral("1/9/2007 12:00:01 AM")),
                 QStringLiteral("2007-01-09 00:00:01"));
        QCOMPARE(readIn(english, QStringLiteral("1/9/2007 12:30:00 PM")),
                 QStringLiteral("2007-01-09 12:30:00"));
    }

    void aMidnightShowsTheDateAlone()
    {
        QCOMPARE(generalDateText(moment(2007, 1, 9), english), QStringLiteral("1/9/2007"));
        QCOMPARE(generalDateText(QDateTime(QDate(2007, 1, 9), QTime(0, 0, 0, 999)), english),
                 QStringLiteral("1/9/2007"));
    }

    void dayZeroShowsTheTimeAlone()
    {
        QCOMPARE(generalDateText(moment(1899, 12, 30, 15, 4, 5), english),
                 QStringLiteral("3:04:05 PM"));
        QCOMPARE(generalDateText(moment(1899, 12, 30), english), QStringLiteral("12:00:00 AM"));
        QCOMPARE(generalDateText(moment(1899, 12, 31), english), QStringLiteral("12/31/1899"));
    }

    void theYearHasFourDigits()
    {
        QCOMPARE(generalDateText(moment(100, 2, 3), english), QStringLiteral("2/3/0100"));
        QCOMPARE(generalDateText(moment(7, 2, 3), english), QStringLiteral("2/3/0007"));
        QCOMPARE(readIn(english, QStringLiteral("2/3/0007")),
                 QStringLiteral("0007-02-03 00:00:00"));
        QCOMPARE(readIn(english, QStringLiteral("2/3/100")), QStringLiteral("0100-02-03 00:00:00"));
    }

    void aDateThatIsNoneShowsNothing()
    {
        QCOMPARE(generalDateText(QDateTime(), english), QString());
        QCOMPARE(generalDateText(QDateTime(QDate(2007, 2, 30), QTime(1, 0)), english), QString());
    }

    void anotherZoneIsShownInLocalTime()
    {
        const QDateTime utc(QDate(2007, 1, 9), QTime(20, 4, 5), Qt::UTC);
        QCOMPARE(generalDateText(utc, english), QStringLiteral("1/9/2007 3:04:05 PM"));
    }

    void theHourThatTheClocksSkipKeepsItsFields()
    {
        const QDateTime skipped = moment(2024, 3, 10, 2, 30);
        QVERIFY(!skipped.isValid());
        const QString text = generalDateText(skipped, english);
        QCOMPARE(text, QStringLiteral("3/10/2024 2:30:00 AM"));
        QVERIFY(isDate(text, english));
        QCOMPARE(readIn(english, text), QStringLiteral("2024-03-10 02:30:00"));
    }

    void theHourThatComesTwiceKeepsItsFields()
    {
        for (const int utcHour : {5, 6}) {
            const QDateTime utc(QDate(2024, 11, 3), QTime(utcHour, 30), Qt::UTC);
            const QString text = generalDateText(utc, english);
            QCOMPARE(text, QStringLiteral("11/3/2024 1:30:00 AM"));
            QCOMPARE(readIn(english, text), QStringLiteral("2024-11-03 01:30:00"));
        }
    }

    void followsTheDefaultLocale()
    {
        const QLocale former;
        QLocale::setDefault(german);
        const QString text = generalDateText(moment(2007, 1, 9, 15, 4, 5));
        const auto read = dateFromText(u"09.01.2007");
        QLocale::setDefault(english);
        const QString inEnglish = generalDateText(moment(2007, 1, 9, 15, 4, 5));
        QLocale::setDefault(former);
        QCOMPARE(text, QStringLiteral("09.01.2007 15:04:05"));
        QCOMPARE(shown(read), QStringLiteral("2007-01-09 00:00:00"));
        QCOMPARE(inEnglish, QStringLiteral("1/9/2007 3:04:05 PM"));
    }

    void readsWhatPeopleType_data()
    {
        QTest::addColumn<QString>("locale");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("read");
        const auto row = [](const char *locale, const char *text, const char *read) {
            QTest::addRow("%s: %s", locale, text)
                << QString::fromLatin1(locale) << QString::fromUtf8(text)
                << QString::fromLatin1(read);
        };
        row("en_US", "2007-01-09", "2007-01-09 00:00:00");
        row("en_US", "2007-01-09 15:04", "2007-01-09 15:04:00");
        row("en_US", "2007-01-09T15:04:05", "2007-01-09 15:04:05");
        row("en_US", "2007-01-09t15:04", "2007-01-09 15:04:00");
        row("de_DE", "2007-01-09T15:04:05", "2007-01-09 15:04:05");
        row("ar_EG", "2007-01-09 15:04:05", "2007-01-09 15:04:05");
        row("en_US", "1/9/07", "2007-01-09 00:00:00");
        row("en_US", "1/9/29", "2029-01-09 00:00:00");
        row("en_US", "1/9/30", "1930-01-09 00:00:00");
        row("en_US", "1/9/00", "2000-01-09 00:00:00");
        row("en_US", "1/9/99", "1999-01-09 00:00:00");
        row("en_US", "01/09/2007", "2007-01-09 00:00:00");
        row("en_US", "1-9-2007", "2007-01-09 00:00:00");
        row("en_GB", "9/1/07", "2007-01-09 00:00:00");
        row("de_DE", "9.1.07", "2007-01-09 00:00:00");
        row("de_DE", "9.1.2007 15:04", "2007-01-09 15:04:00");
        row("de_DE", "9/1/2007", "2007-01-09 00:00:00");
        row("sv_SE", "07-01-09", "2007-01-09 00:00:00");
        row("ja_JP", "2007/1/9", "2007-01-09 00:00:00");
        row("en_US", "2007/1/9", "2007-01-09 00:00:00");
        row("en_US", "1/9/2007 3:04 PM", "2007-01-09 15:04:00");
        row("en_US", "1/9/2007 3:04:05 pm", "2007-01-09 15:04:05");
        row("en_US", "1/9/2007 3:04 p.m.", "2007-01-09 15:04:00");
        row("en_US", "1/9/2007 15:04", "2007-01-09 15:04:00");
        row("en_US", "1/9/2007 3:04", "2007-01-09 03:04:00");
        row("en_US", "  1/9/2007   3:04:05 PM ", "2007-01-09 15:04:05");
        row("en_US", "1/9/2007\u00A03:04:05\u202FPM", "2007-01-09 15:04:05");
        row("en_US", "3:04 PM", "1899-12-30 15:04:00");
        row("en_US", "3:04:05PM", "1899-12-30 15:04:05");
        row("en_US", "15:04", "1899-12-30 15:04:00");
        row("en_US", "0:00", "1899-12-30 00:00:00");
        row("en_US", "3:04 PM 1/9/2007", "2007-01-09 15:04:00");
        row("en_US", "PM 3:04", "1899-12-30 15:04:00");
        row("de_DE", "3:04 PM", "1899-12-30 15:04:00");
        row("en_US", "9 January 2007", "2007-01-09 00:00:00");
        row("en_US", "January 9, 2007", "2007-01-09 00:00:00");
        row("en_US", "Jan. 9, 2007 3:04 PM", "2007-01-09 15:04:00");
        row("en_US", "jan 9 07", "2007-01-09 00:00:00");
        row("en_US", "9-Jan-07", "2007-01-09 00:00:00");
        row("en_US", "2007 Jan 9", "2007-01-09 00:00:00");
        row("en_US", "2007-JAN-09", "2007-01-09 00:00:00");
        row("sv_SE", "07 jan 9", "2007-01-09 00:00:00");
        row("sv_SE", "9 jan. 2007", "2007-01-09 00:00:00");
        row("de_DE", "9. Januar 2007", "2007-01-09 00:00:00");
        row("de_DE", "9. M\u00E4rz 2007, 15:04", "2007-03-09 15:04:00");
        row("fr_FR", "9 ao\u00FBt 2007", "2007-08-09 00:00:00");
        row("fr_FR", "9 F\u00C9VRIER 2007", "2007-02-09 00:00:00");
        row("ru_RU", "9 \u044F\u043D\u0432\u0430\u0440\u044F 2007", "2007-01-09 00:00:00");
        row("en_US", "2/29/2008", "2008-02-29 00:00:00");
        row("en_US", "12/31/9999", "9999-12-31 00:00:00");
        row("fi_FI", "9.1.2007 klo", "-");
        row("fi_FI", "9.1.2007 15.04", "2007-01-09 15:04:00");
        row("fi_FI", "9.1.07", "2007-01-09 00:00:00");
        row("ko_KR", "2007. 1. 9. \uC624\uD6C4 3:04", "2007-01-09 15:04:00");
        row("zh_TW", "2007/1/9 \u4E0B\u53483:04", "2007-01-09 15:04:00");
        row("ar_EG", "9/1/2007 3:04:05 PM", "2007-01-09 15:04:05");
    }

    void readsWhatPeopleType()
    {
        QFETCH(QString, locale);
        QFETCH(QString, text);
        QTEST(readIn(QLocale(locale), text), "read");
    }

    void takesNothingElseForADate_data()
    {
        QTest::addColumn<QString>("text");
        for (const char *text : {"",
                                 " ",
                                 "abc",
                                 "5",
                                 "2007",
                                 "20070109",
                                 "13/45/2007",
                                 "13/1/2007",
                                 "1/9",
                                 "1/32/2007",
                                 "2/29/2007",
                                 "0/9/2007",
                                 "1/0/2007",
                                 "1/9/0000",
                                 "1/9/20070",
                                 "1/9/2007/3",
                                 "1//9/2007",
                                 "/1/9/2007",
                                 "1/9/2007/",
                                 "-1/9/2007",
                                 "1/9/2007x",
                                 "x1/9/2007",
                                 "1.5",
                                 "1.2.3",
                                 "1 9 2007",
                                 "25:00",
                                 "3:60",
                                 "3:04:60",
                                 "13:00 PM",
                                 "0:30 PM",
                                 "3:4",
                                 "3:",
                                 ":04",
                                 "3:04:05:06",
                                 "3:04 QM",
                                 "3:04 AMx",
                                 "1/9/2007 abc",
                                 "1/9/2007 25:00",
                                 "1/9/20073:04",
                                 "1/9/2007 3:04 1/9/2007",
                                 "Januar 9 2007x",
                                 "Jan Feb 2007",
                                 "Mayor 9 2007",
                                 "9 January",
                                 "January 2007 2008",
                                 "2007-01-09T",
                                 "2007-01-09T15",
                                 "2007-13-01",
                                 "2007-01-09T15:04:05Z",
                                 "2007-01-09x15:04",
                                 "True",
                                 "0.5",
                                 "1,234.5"})
            QTest::newRow(text) << QString::fromLatin1(text);
        QTest::newRow("long") << QString(10000, u'1');
        QTest::newRow("long blanks") << QString(10000, u' ');
        QTest::newRow("a date too far") << QStringLiteral("1/9/12007");
        QTest::newRow("NUL") << QString(QChar(u'\0'));
        QTest::newRow("half a surrogate pair") << QString(QChar(0xD83A));
    }

    void takesNothingElseForADate()
    {
        QFETCH(QString, text);
        QCOMPARE(readIn(english, text), QStringLiteral("-"));
        QVERIFY(!isDate(text, english));
    }

    void aWrittenTimeIsNotTakenForADate()
    {
        const QLocale danish(QStringLiteral("da_DK"));
        const QString time = generalDateText(moment(1899, 12, 30, 12, 5, 10), danish);
        QCOMPARE(time, QStringLiteral("12.05.10"));
        QCOMPARE(readIn(danish, time), QStringLiteral("1899-12-30 12:05:10"));
        QCOMPARE(readIn(danish, QStringLiteral("9.5.10")), QStringLiteral("2010-05-09 00:00:00"));
    }

    void withoutWordsForTheHalvesOfTheDayTheClockHas24Hours()
    {
        DateNames names = DateNames::of(english);
        for (const auto &[am, pm] : {std::pair("", ""), std::pair("", "pm"), std::pair("x", "X")}) {
            names.am = QString::fromLatin1(am);
            names.pm = QString::fromLatin1(pm);
            for (const char *pattern : {"h:mm:ss AP t", "AP h:mm:ss", "h:mm:ss ap (t)"}) {
                const DateTextForm form({QStringLiteral("M/d/yy"), QString::fromLatin1(pattern),
                                         QStringLiteral("h:mm AP")},
                                        names);
                for (const int hour : {0, 1, 12, 13, 23}) {
                    const DateFields fields{QDate(2007, 1, 9), QTime(hour, 4, 5)};
                    const QString text = form.text(fields);
                    QCOMPARE(text, QStringLiteral("1/9/2007 %1:04:05").arg(hour));
                    QCOMPARE(form.read(text)->time, fields.time);
                }
                QCOMPARE(form.read(u"1/9/2007 3:04 PM")->time, QTime(15, 4));
            }
        }
    }

    void patternsAreReadAsQtWritesThem_data()
    {
        QTest::addColumn<QString>("date");
        QTest::addColumn<QString>("time");
        QTest::addColumn<QString>("text");
        const auto row = [](const char *date, const char *time, const char *text) {
            QTest::addRow("%s %s", date, time)
                << QString::fromUtf8(date) << QString::fromUtf8(time) << QString::fromUtf8(text);
        };
        row("dd.MM.yy", "HH:mm:ss t", "09.01.2007 15:04:05");
        row("d MMM yyyy", "t HH:mm:ss", "9 Jan 2007 15:04:05");
        row("MMMM d, yyyy", "H:mm:ss (t)", "January 9, 2007 15:04:05");
        row("d/M/yyyy", "h:mm:ss AP, t", "9/1/2007 3:04:05 PM");
        row("d/M/yyyy", "APh:mm:ss [t]", "9/1/2007 PM3:04:05");
        row("d/M/yyyy", "Bh:mm:ss [t]", "9/1/2007 PM3:04:05");
        row("d/M/yyyy", "'at' H 'o''clock' mm ss ''", "9/1/2007 at 15 o'clock 04 05 '");
        row("d/M/yyyy", "h:mm:ss", "9/1/2007 15:04:05");
        row("'d'd 'M'M yyyy", "H.mm.ss tttt", "d9 M1 2007 15.04.05");
    }

    void patternsAreReadAsQtWritesThem()
    {
        QFETCH(QString, date);
        QFETCH(QString, time);
        const DateTextForm form({date, time, time}, DateNames::of(english));
        const DateFields fields{QDate(2007, 1, 9), QTime(15, 4, 5)};
        QTEST(form.text(fields), "text");
        const auto read = form.read(form.text(fields));
        QVERIFY(read.has_value());
        QCOMPARE(read->date, fields.date);
        QCOMPARE(read->time, fields.time);
    }

    void manyThreadsShareTheForms()
    {
        const auto locales = QLocale::matchingLocales(QLocale::AnyLanguage, QLocale::AnyScript,
                                                      QLocale::Switzerland);
        QVERIFY(locales.size() > 3);
        QAtomicInt wrong;
        std::vector<std::unique_ptr<QThread>> threads;
        for (int i = 0; i < 4; ++i) {
            threads.emplace_back(QThread::create([&] {
                for (int round = 0; round < 50; ++round) {
                    for (const QLocale &locale : locales) {
                        const QDateTime date = moment(2007, 1, 9, 15, 4, round);
                        const auto read = dateFromText(generalDateText(date, locale), locale);
                        if (read != date)
                            wrong.ref();
                    }
                }
            }));
            threads.back()->start();
        }
        for (const auto &thread : threads)
            QVERIFY(thread->wait());
        QCOMPARE(wrong.loadRelaxed(), 0);
    }
};

ZEL_TEST_MAIN(TestDateText)
#include "tst_datetext.moc"
