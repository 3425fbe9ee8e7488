// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/widgets/listsorting.h"
#include "testsupport/testcase.h"

#include <QTest>

#include <limits>
#include <numeric>
#include <random>

using namespace Zel;

namespace {

using Rows = ListOrder::Rows;

/// The plainest stable order, to hold the fast one against.
Rows plainOrder(const std::vector<qint64> &values, Qt::SortOrder order)
{
    Rows rows(values.size());
    std::iota(rows.begin(), rows.end(), 0U);
    std::stable_sort(rows.begin(), rows.end(), [&](quint32 a, quint32 b) {
        return order == Qt::AscendingOrder ? values[a] < values[b] : values[a] > values[b];
    });
    return rows;
}

QStringList inOrder(const std::vector<QString> &texts, const Rows &rows)
{
    QStringList sorted;
    for (quint32 row : rows)
        sorted.append(texts[row]);
    return sorted;
}

} // namespace

class TestListSorting : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void valuesSortInBothDirections_data()
    {
        QTest::addColumn<int>("count");
        for (int count : {0, 1, 2, 511, 512, 513, 5000})
            QTest::addRow("%d values", count) << count;
    }

    void valuesSortInBothDirections()
    {
        QFETCH(int, count);
        std::mt19937_64 random(7);
        std::vector<qint64> values(static_cast<size_t>(count));
        for (qint64 &value : values)
            value = static_cast<qint64>(random());
        for (auto order : {Qt::AscendingOrder, Qt::DescendingOrder})
            QCOMPARE(ListSorting::byValue(values, order), plainOrder(values, order));
    }

    void equalValuesKeepTheOrderOfTheRecordsInBothDirections()
    {
        std::mt19937 random(3);
        std::vector<qint64> values(4000);
        for (qint64 &value : values)
            value = static_cast<qint64>(random() % 5) - 2;
        for (auto order : {Qt::AscendingOrder, Qt::DescendingOrder})
            QCOMPARE(ListSorting::byValue(values, order), plainOrder(values, order));
        const std::vector<qint64> same(1000, 42);
        Rows rows(1000);
        std::iota(rows.begin(), rows.end(), 0U);
        QCOMPARE(ListSorting::byValue(same, Qt::DescendingOrder), rows);
    }

    void theEndsOfTheRangeAreValuesLikeOthers()
    {
        std::vector<qint64> values(600, 0);
        values[10] = std::numeric_limits<qint64>::max();
        values[20] = std::numeric_limits<qint64>::min();
        values[30] = -1;
        values[40] = 1;
        const Rows rows = ListSorting::byValue(values, Qt::AscendingOrder);
        QCOMPARE(rows.front(), 20U);
        QCOMPARE(rows[1], 30U);
        QCOMPARE(rows[598], 40U);
        QCOMPARE(rows.back(), 10U);
        QCOMPARE(ListSorting::byValue(values, Qt::DescendingOrder).front(), 10U);
    }

    void keysSortByCodePoint()
    {
        const std::vector<QString> keys{
            QStringLiteral("b"), QStringLiteral("B"),  QString(),          QStringLiteral("&9"),
            QStringLiteral("1"), QStringLiteral("ab"), QStringLiteral("a")};
        QCOMPARE(inOrder(keys, ListSorting::byKey(keys, Qt::AscendingOrder)),
                 QStringList({QString(), "&9", "1", "B", "a", "ab", "b"}));
        QCOMPARE(inOrder(keys, ListSorting::byKey(keys, Qt::DescendingOrder)),
                 QStringList({"b", "ab", "a", "B", "1", "&9", QString()}));
    }

    void charactersOutsideTheBasicPlaneComeLast()
    {
        const QString astral = QString::fromUcs4(U"\U0001F600");
        const QString privateUse = QString(QChar(0xE000));
        const QString lastBasic = QString(QChar(0xFFFD));
        QVERIFY(astral < privateUse); // by code units
        QVERIFY(ListSorting::compareCodePoints(astral, privateUse) > 0);
        QVERIFY(ListSorting::compareCodePoints(lastBasic, astral) < 0);
        QVERIFY(ListSorting::compareCodePoints(privateUse, lastBasic) < 0);
        QCOMPARE(ListSorting::compareCodePoints(astral, astral), 0);
        QVERIFY(ListSorting::compareCodePoints(QStringLiteral("a"), QStringLiteral("ab")) < 0);
        QVERIFY(ListSorting::compareCodePoints(QStringLiteral("ab"), QStringLiteral("a")) > 0);
        QCOMPARE(ListSorting::compareCodePoints({}, {}), 0);
    }

    void textsSortByTheLocaleAndCaseAlike()
    {
        const std::vector<QString> texts{QStringLiteral("Zebra"), QStringLiteral("äpfel"),
                                         QStringLiteral("apfel"), QStringLiteral("Banane"),
                                         QStringLiteral("Apfel"), QString()};
        const QLocale german(QLocale::German, QLocale::Germany);
        QCOMPARE(inOrder(texts, ListSorting::byText(texts, Qt::AscendingOrder, german)),
                 QStringList({QString(), "apfel", "Apfel", "äpfel", "Banane", "Zebra"}));
        const QLocale swedish(QLocale::Swedish, QLocale::Sweden);
        QCOMPARE(inOrder(texts, ListSorting::byText(texts, Qt::AscendingOrder, swedish)),
                 QStringList({QString(), "apfel", "Apfel", "Banane", "Zebra", "äpfel"}));
    }

    void textsThatDifferInCaseOnlyKeepTheOrderOfTheRecords_data()
    {
        QTest::addColumn<QLocale>("locale");
        QTest::newRow("C") << QLocale::c();
        QTest::newRow("en_US") << QLocale(QLocale::English, QLocale::UnitedStates);
    }

    void textsThatDifferInCaseOnlyKeepTheOrderOfTheRecords()
    {
        QFETCH(QLocale, locale);
        const std::vector<QString> texts{QStringLiteral("b"), QStringLiteral("A"),
                                         QStringLiteral("a"), QStringLiteral("B"),
                                         QStringLiteral("a")};
        QCOMPARE(ListSorting::byText(texts, Qt::AscendingOrder, locale), Rows({1, 2, 4, 0, 3}));
        QCOMPARE(ListSorting::byText(texts, Qt::DescendingOrder, locale), Rows({0, 3, 1, 2, 4}));
    }

    void textsThatRepeatKeepTheOrderOfTheRecords_data()
    {
        textsThatDifferInCaseOnlyKeepTheOrderOfTheRecords_data();
    }

    void textsThatRepeatKeepTheOrderOfTheRecords()
    {
        QFETCH(QLocale, locale);
        const QStringList words{QStringLiteral("delta"), QStringLiteral("Alpha"), QString(),
                                QStringLiteral("alpha"), QStringLiteral("beta")};
        const std::vector<quint32> places{3, 1, 0, 1, 2};
        std::vector<QString> texts;
        for (quint32 i = 0; i < 4000; ++i)
            texts.push_back(words.at(i * 7 % 5));
        const auto place = [&](quint32 row) { return places[row * 7 % 5]; };
        for (const Qt::SortOrder order : {Qt::AscendingOrder, Qt::DescendingOrder}) {
            Rows expected(texts.size());
            std::iota(expected.begin(), expected.end(), 0U);
            std::stable_sort(expected.begin(), expected.end(), [&](quint32 a, quint32 b) {
                return order == Qt::AscendingOrder ? place(a) < place(b) : place(b) < place(a);
            });
            QCOMPARE(ListSorting::byText(texts, order, locale), expected);
        }
        QCOMPARE(ListSorting::byText({}, Qt::AscendingOrder, locale), Rows());
    }

    void digitsAreCharacters()
    {
        const std::vector<QString> texts{QStringLiteral("item 10"), QStringLiteral("item 9")};
        const QLocale locale(QLocale::English, QLocale::UnitedStates);
        QCOMPARE(ListSorting::byText(texts, Qt::AscendingOrder, locale), Rows({0, 1}));
    }
};

ZEL_TEST_MAIN(TestListSorting)
#include "tst_listsorting.moc"
