// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/core/datetext.h"
#include "platform/core/sortkeys.h"
#include "testsupport/testcase.h"

#include <QTest>

using namespace Zel;

namespace {

struct Moment
{
    QDate date;
    QTime time;
};

/// Days and times that patterns and readers stumble over.
QList<Moment> awkwardMoments()
{
    const QDate dates[] = {
        QDate(2007, 1, 9),   QDate(2007, 11, 19), QDate(2001, 2, 3),   QDate(2003, 2, 1),
        QDate(2012, 12, 12), QDate(1930, 1, 1),   QDate(1929, 12, 31), QDate(2029, 12, 31),
        QDate(2030, 1, 1),   QDate(2000, 2, 29),  QDate(1900, 1, 1),   QDate(1899, 12, 29),
        QDate(1899, 12, 30), QDate(1899, 12, 31), QDate(100, 1, 1),    QDate(931, 3, 4),
        QDate(31, 5, 6),     QDate(9999, 12, 31), QDate(2024, 3, 10),  QDate(2024, 11, 3),
        QDate(1883, 11, 18),
    };
    const QTime times[] = {
        QTime(0, 0, 0),    QTime(0, 0, 1),  QTime(0, 1, 0),    QTime(1, 2, 3),    QTime(1, 30, 0),
        QTime(2, 30, 0),   QTime(9, 5, 7),  QTime(10, 11, 12), QTime(12, 0, 0),   QTime(12, 0, 1),
        QTime(12, 34, 56), QTime(13, 0, 0), QTime(15, 4, 5),   QTime(23, 59, 59),
    };
    QList<Moment> moments;
    for (const QDate date : dates) {
        for (const QTime time : times)
            moments.append({date, time});
    }
    return moments;
}

QString described(const QLocale &locale, const QString &text)
{
    return QStringLiteral("%1 (%2): %3")
        .arg(locale.name(), QLocale::scriptToString(locale.script()), text);
}

QList<QLocale> allLocales()
{
    return QLocale::matchingLocales(QLocale::AnyLanguage, QLocale::AnyScript, QLocale::AnyCountry);
}

} // namespace

/// The promise on which sorting by date rests, in every locale Qt knows.
class TestDateTextLocales : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void everyLocaleReadsBackWhatItWrites()
    {
        const QList<QLocale> locales = allLocales();
        QVERIFY(locales.size() > 500);
        const QList<Moment> moments = awkwardMoments();
        QStringList failures;
        for (const QLocale &locale : locales) {
            for (const Moment &moment : moments) {
                const QString text = generalDateText(QDateTime(moment.date, moment.time), locale);
                const auto read = dateFromText(text, locale);
                if (!read || read->date() != moment.date || read->time() != moment.time)
                    failures << described(locale, text);
            }
        }
        QCOMPARE(failures.mid(0, 20).join(u'\n'), QString());
    }

    void keysSortAsTimeRunsInEveryLocale()
    {
        for (const QLocale &locale : allLocales()) {
            for (const Moment &moment : awkwardMoments()) {
                const QString text = generalDateText(QDateTime(moment.date, moment.time), locale);
                const QString expected = moment.date.toString(QStringLiteral("yyyyMMdd")) +
                                         moment.time.toString(QStringLiteral("HHmmss"));
                QVERIFY2(dateSortKey(text, locale) == expected,
                         qPrintable(described(locale, text)));
            }
        }
    }

    void everyLocaleReadsAnotherShapeOfItsText()
    {
        const QDateTime moment(QDate(2007, 11, 19), QTime(15, 4, 5));
        for (const QLocale &locale : allLocales()) {
            QString text = generalDateText(moment, locale);
            text.replace(u' ', QChar(QChar::Nbsp));
            text = QChar(0x202B) + text.toUpper() + QStringLiteral(" \t");
            const auto read = dateFromText(text, locale);
            QVERIFY2(read == moment, qPrintable(described(locale, text)));
        }
    }

    void everyLocaleReadsTheIsoForm()
    {
        for (const QLocale &locale : allLocales()) {
            const auto read = dateFromText(u"2007-11-09T15:04:05", locale);
            QVERIFY2(read == QDateTime(QDate(2007, 11, 9), QTime(15, 4, 5)),
                     qPrintable(locale.name()));
            QVERIFY2(dateFromText(u"2007-11-09", locale) ==
                         QDateTime(QDate(2007, 11, 9), QTime(0, 0)),
                     qPrintable(locale.name()));
        }
    }

    void everyLocaleReadsItsMonthNames()
    {
        for (const QLocale &locale : allLocales()) {
            for (int month = 1; month <= 12; ++month) {
                for (const QString &name :
                     {locale.monthName(month), locale.monthName(month, QLocale::ShortFormat),
                      locale.standaloneMonthName(month)}) {
                    // Some locales have numbers instead of names, and some the same letter twice.
                    if (name.isEmpty() || locale.toDouble(name) > 0 ||
                        locale.monthName(month, QLocale::ShortFormat).size() < 3)
                        continue;
                    const QString text = QStringLiteral("9 %1 2007").arg(name);
                    const auto read = dateFromText(text, locale);
                    QVERIFY2(read == QDateTime(QDate(2007, month, 9), QTime(0, 0)),
                             qPrintable(described(locale, text)));
                }
            }
        }
    }

    void noLocaleReadsWhatIsNoDate()
    {
        for (const QLocale &locale : allLocales()) {
            for (const QStringView text :
                 {u"", u"abc", u"5", u"13/45/2007", u"45/13/2007", u"2007"})
                QVERIFY2(!isDate(text, locale), qPrintable(described(locale, text.toString())));
        }
    }
};

ZEL_TEST_MAIN(TestDateTextLocales)
#include "tst_datetextlocales.moc"
