// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "errornumber.h"
#include "platform/core/collection.h"
#include "testsupport/testcase.h"

#include <QTest>

#include <memory>

using Zel::Collection;

class TestCollection : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void countsFromOne()
    {
        const Collection<int> numbers{10, 20, 30};
        QCOMPARE(numbers.count(), 3);
        QCOMPARE(numbers.item(1), 10);
        QCOMPARE(numbers.item(3), 30);
        QCOMPARE(Collection<>().count(), 0);
    }

    void anIndexOutsideIsError9()
    {
        Collection<int> numbers{10};
        QCOMPARE(errorNumber([&] { numbers.item(0); }), 9);
        QCOMPARE(errorNumber([&] { numbers.item(2); }), 9);
        QCOMPARE(errorNumber([&] { numbers.item(-1); }), 9);
        QCOMPARE(errorNumber([&] { numbers.key(2); }), 9);
        QCOMPARE(errorNumber([&] { numbers.remove(0); }), 9);
        QCOMPARE(errorNumber([] { Collection<>().item(1); }), 9);
        QCOMPARE(numbers.count(), 1);
    }

    void anAbsentKeyIsError5()
    {
        Collection<int> numbers;
        numbers.add(1, QStringLiteral("a"));
        QCOMPARE(errorNumber([&] { numbers.item(QStringLiteral("b")); }), 5);
        QCOMPARE(errorNumber([&] { numbers.remove(QStringLiteral("b")); }), 5);
        QCOMPARE(errorNumber([&] { numbers.item(QString()); }), 5);
        QCOMPARE(numbers.count(), 1);
    }

    void aKeyUsedTwiceIsError457AndAddsNothing()
    {
        Collection<int> numbers;
        numbers.add(1, QStringLiteral("a"));
        QCOMPARE(errorNumber([&] { numbers.add(2, QStringLiteral("a")); }), 457);
        QCOMPARE(numbers.count(), 1);
        QCOMPARE(numbers.item(QStringLiteral("a")), 1);
    }

    void keysCompareExactly()
    {
        Collection<int> numbers;
        numbers.add(1, QStringLiteral("Key"));
        numbers.add(2, QStringLiteral("key"));
        numbers.add(3, QStringLiteral("key "));
        // The same letter to the eye, composed and decomposed.
        numbers.add(4, QStringLiteral("\u00E9"));
        numbers.add(5, QStringLiteral("e\u0301"));
        QCOMPARE(numbers.item(QStringLiteral("key")), 2);
        QCOMPARE(numbers.item(QStringLiteral("e\u0301")), 5);
        QVERIFY(!numbers.contains(QStringLiteral("KEY")));
        QVERIFY(numbers.contains(QStringLiteral("key ")));
    }

    void valuesNeedNoKey()
    {
        Collection<int> numbers;
        numbers.add(1);
        numbers.add(2, QString());
        numbers.add(3, QStringLiteral("three"));
        QCOMPARE(numbers.count(), 3);
        QCOMPARE(numbers.key(2), QString());
        QCOMPARE(numbers.key(3), QStringLiteral("three"));
        QVERIFY(!numbers.contains(QString()));
    }

    void removingKeepsTheOtherKeysRight()
    {
        Collection<QString> words;
        for (const char *word : {"one", "two", "three", "four"})
            words.add(QString::fromLatin1(word).toUpper(), QString::fromLatin1(word));
        words.remove(2);
        QCOMPARE(words.count(), 3);
        QCOMPARE(words.item(QStringLiteral("one")), QStringLiteral("ONE"));
        QCOMPARE(words.item(QStringLiteral("three")), QStringLiteral("THREE"));
        QCOMPARE(words.item(QStringLiteral("four")), QStringLiteral("FOUR"));
        QCOMPARE(words.item(2), QStringLiteral("THREE"));
        QCOMPARE(words.key(2), QStringLiteral("three"));
        QVERIFY(!words.contains(QStringLiteral("two")));
        words.remove(QStringLiteral("four"));
        QCOMPARE(words.count(), 2);
        words.add(QStringLiteral("again"), QStringLiteral("two"));
        QCOMPARE(words.item(3), QStringLiteral("again"));
    }

    void isWalkedInOrder()
    {
        Collection<int> numbers;
        numbers.reserve(3);
        numbers.add(3, QStringLiteral("z"));
        numbers.add(1, QStringLiteral("a"));
        numbers.add(2);
        QList<int> seen;
        for (const int number : numbers)
            seen << number;
        QCOMPARE(seen, (QList<int>{3, 1, 2}));
    }

    void holdsVariantsAndSharedRecords()
    {
        Collection<> variants;
        variants.add(QStringLiteral("text"));
        variants.add(42, QStringLiteral("answer"));
        QCOMPARE(variants.item(QStringLiteral("answer")), QVariant(42));
        const auto record = std::make_shared<const int>(7);
        Collection<std::shared_ptr<const int>> records;
        records.add(record, QStringLiteral("r"));
        QCOMPARE(records.item(QStringLiteral("r")).get(), record.get());
    }

    void aCopyIsIndependent()
    {
        Collection<int> numbers;
        numbers.add(1, QStringLiteral("a"));
        Collection<int> copy = numbers;
        copy.remove(QStringLiteral("a"));
        QCOMPARE(numbers.item(QStringLiteral("a")), 1);
        QCOMPARE(copy.count(), 0);
    }
};

ZEL_TEST_MAIN(TestCollection)
#include "tst_collection.moc"
