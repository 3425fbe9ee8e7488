// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/store.h"
#include "tests/contract/contracttest.h"
#include "tests/contract/serviceproxy.h"

#include <QMutex>
#include <QTest>
#include <QThread>

#include <atomic>
#include <csignal>

using namespace QXSC;
using namespace ZelTest;

namespace {

/// Themes of the sample.
const QString webcast = QStringLiteral("8e81b646-2609-527e-a561-47d962088b60");  // every account's
const QString training = QStringLiteral("f6477124-e84c-5a2f-ab9b-492ddc7c62f7"); // without record
const QString lecture = QStringLiteral("43b07666-9a9b-51bb-b15a-c52f18fea67a");  // of 1002
const QString fireside = QStringLiteral("914523c4-f4c1-5e02-9bf9-370ad3ddd7cf"); // maja's own
const QString townHall = QStringLiteral("52e0640e-e101-5b99-a638-ef6b288a45c8"); // every account's

const Zel::SqlText expire(R"sql(
    UPDATE session SET expires_at = $1
)sql");

Zel::RecordEntry entry(const QString &label, const QString &type, const QString &text = QString())
{
    Zel::RecordEntry result;
    result.label = label;
    result.type = type;
    result.value.text = text;
    return result;
}

QList<Zel::RecordEntry> someEntries(qsizetype count)
{
    QList<Zel::RecordEntry> entries;
    for (qsizetype i = 0; i < count; ++i)
        entries << entry(QStringLiteral("Field %1").arg(i), QStringLiteral("TEXT"),
                         QStringLiteral("first"));
    return entries;
}

DataRecordEntryPtr named(const DataRecordPtr &record, const QString &label)
{
    for (const DataRecordEntryPtr &one : *record->entries) {
        if (one->label == label)
            return one;
    }
    throw std::runtime_error(qPrintable(QLatin1String("there is no field ") + label));
}

void setAll(const DataRecordPtr &record, const QString &text)
{
    for (const DataRecordEntryPtr &one : *record->entries)
        one->value.text = text;
}

/// Everything of a record; long values as their length and hash.
QStringList linesOf(const DataRecordPtr &record)
{
    const auto shown = [](const QString &text) {
        return text.size() < 200 ? text
                                 : QStringLiteral("%1#%2").arg(text.size()).arg(qHash(text, 0));
    };
    QStringList lines{QString::number(record->version)};
    for (const DataRecordEntryPtr &one : *record->entries)
        lines << QStringList{shown(one->label),
                             one->type,
                             shown(one->value.text),
                             one->value.guid,
                             shown(one->value.assetDependencies),
                             one->ext,
                             one->hidden ? QStringLiteral("hidden") : QString(),
                             one->source,
                             one->buttonText,
                             QString::number(one->width),
                             QString::number(one->height)}
                     .join(QLatin1Char('|'));
    return lines;
}

} // namespace

/// The data records of themes through the client against the real service.
class ContractDataRecordsTest : public ContractTest
{
    Q_OBJECT

private slots:
    void givesTheDefaultsOfTheSampleWithEveryField();
    void answersNothingWhereThereIsNone_data();
    void answersNothingWhereThereIsNone();
    void anEmptyRecordIsNotNone();
    void namesTheServerOfTheSession();
    void savesEveryValueAndCountsTheVersions();
    void keepsValuesCodeUnitForCodeUnit_data();
    void keepsValuesCodeUnitForCodeUnit();
    void refusesTextsThatCannotBeStored_data();
    void refusesTextsThatCannotBeStored();
    void keepsUnknownTypesAndEqualLabels();
    void keepsFiveThousandFields();
    void changesNothingButValues();
    void refusesASaveAgainstAnOlderVersion();
    void oneOfSeveralWritersWins();
    void theLosersCanGoOnFromWhatTheyWereTold();
    void aSaveWhoseAnswerWasLostCanBeSentAgain();
    void keepsAccountsApart();
    void keepsAPersonsThemeToThatPerson();
    void letsMembersOfAnAccountShareARecord();
    void refusesASaveOfWhatIsNotThere_data();
    void refusesASaveOfWhatIsNotThere();
    void refusesTheWrongNumberOfValues_data();
    void refusesTheWrongNumberOfValues();
    void letsViewersLookOnly();
    void takesSixteenMebibytesAndNoMore();
    void wantsASessionAndAnAccount();
    void tellsThatTheServiceWentAwayInTheMiddle();
    void aNewImportReachesOnlyRecordsThatNobodySaved();
    void aKilledServiceLeavesTheOldRecordOrTheNew();

private:
    /// Stores a theme with a record as an import does; returns its guid.
    QString add(const QList<Zel::RecordEntry> &entries, qint64 account = contractStudio,
                const Person *owner = nullptr)
    {
        Zel::Store all(database(), Zel::PasswordHasher::Cost::Minimal);
        Zel::Theme theme;
        theme.accountId = account;
        theme.guid = newGuid();
        theme.name = QStringLiteral("With a record");
        if (owner)
            theme.ownerId = all.users.find(owner->user)->userId;
        database().tx([&] {
            all.themes.add(theme);
            all.dataRecords.storeImported(account, theme.guid, entries);
        });
        return theme.guid;
    }

    void importAgain(const QString &theme, const QList<Zel::RecordEntry> &entries)
    {
        Zel::Store all(database(), Zel::PasswordHasher::Cost::Minimal);
        database().tx([&] { all.dataRecords.storeImported(contractStudio, theme, entries); });
    }
};

void ContractDataRecordsTest::givesTheDefaultsOfTheSampleWithEveryField()
{
    const auto client = signIn(tomas(), brightwaterMedia);
    const DataRecordPtr record = client->GetThemeDataRecord(webcast);
    QVERIFY(record);
    QCOMPARE(record->version, 1);
    QStringList types;
    for (const DataRecordEntryPtr &one : *record->entries)
        types << one->type;
    QCOMPARE(types.join(QLatin1Char(' ')),
             QStringLiteral("TEXT TEXT TEXTAREA CUSTOM CUSTOM TEXTASSET TEXTASSET CHECKBOX "
                            "CHECKBOX CUSTOM CUSTOM TEXT"));
    QCOMPARE(named(record, QStringLiteral("Welcome text"))->value.text,
             QStringLiteral(
                 "Good morning!\r\n\r\nWe start at nine.\r\n\tPlease try your sound beforehand."));
    QCOMPARE(named(record, QStringLiteral("Logo"))->ext, QStringLiteral("png,jpg,svg,bmp"));
    QVERIFY(named(record, QStringLiteral("Layout revision"))->hidden);
    const DataRecordEntryPtr header = named(record, QStringLiteral("Header"));
    QVERIFY(!header->hidden);
    QCOMPARE(header->source, QStringLiteral("colour/page.html"));
    QCOMPARE(header->buttonText, QStringLiteral("Choose colour..."));
    QCOMPARE(header->width, 620);
    QCOMPARE(header->height, 520);
    // A long value comes from a file beside the list.
    const QString rules =
        named(client->GetThemeDataRecord(townHall), QStringLiteral("Rules of the house"))
            ->value.text;
    QVERIFY(rules.startsWith(QLatin1String("1. One person speaks at a time.\r\n2. ")));
    QVERIFY(rules.endsWith(QLatin1String("ninety days.\r\n")));
    // Guids are the same in capitals.
    QCOMPARE(linesOf(client->GetThemeDataRecord(webcast.toUpper())), linesOf(record));
}

void ContractDataRecordsTest::answersNothingWhereThereIsNone_data()
{
    QTest::addColumn<QString>("theme");
    QTest::newRow("a theme without record") << training;
    QTest::newRow("another account's") << lecture;
    QTest::newRow("another person's") << fireside;
    QTest::newRow("unknown") << newGuid();
    QTest::newRow("a word") << QStringLiteral("theme");
    QTest::newRow("in braces") << QLatin1Char('{') + webcast + QLatin1Char('}');
    QTest::newRow("nothing") << QString();
    QTest::newRow("one dot") << QStringLiteral(".");
    QTest::newRow("two dots") << QStringLiteral("..");
    QTest::newRow("a path") << QStringLiteral("../") + webcast;
    QTest::newRow("long") << QString(5000, QLatin1Char('a'));
}

void ContractDataRecordsTest::answersNothingWhereThereIsNone()
{
    QFETCH(QString, theme);
    const auto client = signIn(tomas(), brightwaterMedia);
    QVERIFY(!client->GetThemeDataRecord(theme));
}

void ContractDataRecordsTest::anEmptyRecordIsNotNone()
{
    const QString theme = add({});
    const auto client = signIn(nora(), contractStudio);
    DataRecordPtr record = client->GetThemeDataRecord(theme);
    QVERIFY(record && record->entries);
    QCOMPARE(record->entries->count(), 0);
    const DataRecordSave saved = client->saveThemeDataRecord(theme, *record);
    QVERIFY(saved.isSaved);
    QCOMPARE(saved.version, 2);
    record = client->GetThemeDataRecord(theme);
    QCOMPARE(record->version, 2);
    QCOMPARE(record->entries->count(), 0);
    // A record without a list has no values, either.
    DataRecord bare;
    bare.version = 2;
    QVERIFY(client->saveThemeDataRecord(theme, bare).isSaved);
}

void ContractDataRecordsTest::namesTheServerOfTheSession()
{
    Client client;
    QCOMPARE(client.serverUrl(), QString());
    QVERIFY(
        authenticate(client, service().address() + QLatin1Char('/'), nora().user, nora().password));
    QCOMPARE(client.serverUrl(), service().address());
    client.signOut();
    QCOMPARE(client.serverUrl(), QString());
}

void ContractDataRecordsTest::savesEveryValueAndCountsTheVersions()
{
    const QString theme = add({entry(QStringLiteral("a"), QStringLiteral("TEXT")),
                               entry(QStringLiteral("b"), QStringLiteral("TEXTASSET")),
                               entry(QStringLiteral("c"), QStringLiteral("CUSTOM"))});
    const auto client = signIn(nora(), contractStudio);
    const DataRecordPtr record = client->GetThemeDataRecord(theme);
    for (int round = 2; round < 6; ++round) {
        const QString mark = QString::number(round);
        named(record, QStringLiteral("a"))->value = {QStringLiteral("text ") + mark, {}, {}};
        named(record, QStringLiteral("b"))->value = {
            QStringLiteral("logo.png ") + mark, QStringLiteral("guid ") + mark, {}};
        named(record, QStringLiteral("c"))->value = {
            QStringLiteral("[] ") + mark, {}, QStringLiteral("x,y ") + mark};
        const DataRecordSave saved = client->saveThemeDataRecord(theme, *record);
        QVERIFY(saved.isSaved && !saved.newer);
        QCOMPARE(saved.version, round);
        record->version = saved.version;
        QCOMPARE(linesOf(signIn(olaf(), contractStudio)->GetThemeDataRecord(theme)),
                 linesOf(record));
    }
}

void ContractDataRecordsTest::keepsValuesCodeUnitForCodeUnit_data()
{
    QTest::addColumn<QString>("text");
    const auto row = [](const char *name, const QString &text) { QTest::newRow(name) << text; };
    row("empty", QString());
    row("blanks", QStringLiteral("  \t \u00a0\u3000 "));
    row("CR LF", QStringLiteral("a\r\n\r\nb\r\n"));
    row("CR", QStringLiteral("a\rb\r"));
    row("LF", QStringLiteral("\na\nb\n\n"));
    row("line separators", QStringLiteral("a\u2028b\u2029c\u0085d\x0b\x0c"));
    row("controls", QStringLiteral("\x01\x02\x1b\x1f\x7f\u0080\u009f"));
    row("quotes and escapes", QStringLiteral("\"'`\\ \\n \\u0000 ${x} %1 $1 <b>&amp;</b>"));
    row("a byte order mark", QStringLiteral("\ufeffa\ufeff"));
    row("directions", QStringLiteral("\u202eabc\u202c שלום \u200f\u200d"));
    row("astral", QString::fromUtf8("😀 𝄞 \U0001F3F4\U000E0067 \U0010FFFD"));
    row("not composed", QStringLiteral("e\u0301 \u1e9b\u0323 \ufb01"));
    row("private and unassigned", QStringLiteral("\ue000\uf8ff\ufdd0\u0378"));
    QString large;
    while (large.size() < 1'500'000)
        large += QString::fromUtf8("line \"%1\"\r\n\tæ😀\u2028").arg(large.size());
    row("a million and a half", large);
}

void ContractDataRecordsTest::keepsValuesCodeUnitForCodeUnit()
{
    QFETCH(QString, text);
    const QString theme = add({entry(text.left(10'000), QStringLiteral("TEXTAREA"), text),
                               entry(QStringLiteral("b"), QStringLiteral("CUSTOM"))});
    const auto client = signIn(nora(), contractStudio);
    const DataRecordPtr record = client->GetThemeDataRecord(theme);
    QVERIFY(record->entries->item(1)->label == text.left(10'000));
    QVERIFY(record->entries->item(1)->value.text == text);
    record->entries->item(1)->value.text = QStringLiteral("other");
    record->entries->item(2)->value = {text, text.left(40), text};
    QVERIFY(client->saveThemeDataRecord(theme, *record).isSaved);
    const DataRecordPtr again = client->GetThemeDataRecord(theme);
    QCOMPARE(again->entries->item(1)->value.text, QStringLiteral("other"));
    QVERIFY(again->entries->item(2)->value.text == text);
    QVERIFY(again->entries->item(2)->value.guid == text.left(40));
    QVERIFY(again->entries->item(2)->value.assetDependencies == text);
}

void ContractDataRecordsTest::refusesTextsThatCannotBeStored_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("NUL") << QStringLiteral("a") + QChar(0) + QStringLiteral("b");
    QTest::newRow("half a pair") << QStringLiteral("a") + QChar(0xd83d) + QStringLiteral("b");
    QTest::newRow("no character") << QStringLiteral("a") + QChar(0xffff);
}

void ContractDataRecordsTest::refusesTextsThatCannotBeStored()
{
    QFETCH(QString, text);
    const QString theme = add(someEntries(2));
    const auto client = signIn(nora(), contractStudio);
    const DataRecordPtr record = client->GetThemeDataRecord(theme);
    const QStringList before = linesOf(record);
    record->entries->item(1)->value.text = QStringLiteral("fine");
    record->entries->item(2)->value.text = text;
    QCOMPARE(failureOf([&] { client->saveThemeDataRecord(theme, *record); }),
             QStringLiteral("Invalid/invalid-text"));
    QCOMPARE(linesOf(client->GetThemeDataRecord(theme)), before);
}

void ContractDataRecordsTest::keepsUnknownTypesAndEqualLabels()
{
    QList<Zel::RecordEntry> entries;
    const QStringList types{QStringLiteral("TEXT"),      QStringLiteral("text"),
                            QStringLiteral("TEXTAREA"),  QStringLiteral("CHECKBOX"),
                            QStringLiteral("TEXTASSET"), QStringLiteral("CUSTOM"),
                            QStringLiteral("COUNTDOWN"), QString(),
                            QString::fromUtf8("Тип 😀")};
    for (const QString &type : types) {
        entries << entry(QStringLiteral("Same"), type, type + QStringLiteral(" value"));
        entries << entry(QString(), type, QString());
    }
    entries[0].width = -32768;
    entries[0].height = 32767;
    const QString theme = add(entries);
    const auto client = signIn(nora(), contractStudio);
    const DataRecordPtr record = client->GetThemeDataRecord(theme);
    QCOMPARE(record->entries->count(), entries.size());
    for (qsizetype i = 0; i < entries.size(); ++i) {
        const DataRecordEntryPtr one = record->entries->item(int(i) + 1);
        QCOMPARE(one->label, entries.at(i).label);
        QCOMPARE(one->type, entries.at(i).type);
        QCOMPARE(one->value.text, entries.at(i).value.text);
        one->value.text += QStringLiteral(" saved");
    }
    QCOMPARE(record->entries->item(1)->width, qint16(-32768));
    QCOMPARE(record->entries->item(1)->height, qint16(32767));
    QVERIFY(client->saveThemeDataRecord(theme, *record).isSaved);
    record->version = 2;
    QCOMPARE(linesOf(client->GetThemeDataRecord(theme)), linesOf(record));
}

void ContractDataRecordsTest::keepsFiveThousandFields()
{
    const QString theme = add(someEntries(5000));
    const auto client = signIn(nora(), contractStudio);
    const DataRecordPtr record = client->GetThemeDataRecord(theme);
    QCOMPARE(record->entries->count(), 5000);
    int number = 0;
    for (const DataRecordEntryPtr &one : *record->entries)
        one->value.text = QStringLiteral("value %1").arg(number++);
    QVERIFY(client->saveThemeDataRecord(theme, *record).isSaved);
    record->version = 2;
    QCOMPARE(linesOf(client->GetThemeDataRecord(theme)), linesOf(record));
}

void ContractDataRecordsTest::changesNothingButValues()
{
    const QString theme = add(someEntries(2));
    const auto client = signIn(nora(), contractStudio);
    const DataRecordPtr record = client->GetThemeDataRecord(theme);
    const DataRecordEntryPtr first = record->entries->item(1);
    first->label = QStringLiteral("Renamed");
    first->type = QStringLiteral("CUSTOM");
    first->hidden = true;
    first->source = QStringLiteral("x");
    first->value.text = QStringLiteral("new");
    QVERIFY(client->saveThemeDataRecord(theme, *record).isSaved);
    QCOMPARE(linesOf(client->GetThemeDataRecord(theme)),
             (QStringList{QStringLiteral("2"), QStringLiteral("Field 0|TEXT|new|||||||0|0"),
                          QStringLiteral("Field 1|TEXT|first|||||||0|0")}));
}

void ContractDataRecordsTest::refusesASaveAgainstAnOlderVersion()
{
    const QString theme = add(someEntries(3));
    const auto early = signIn(nora(), contractStudio);
    const auto late = signIn(olaf(), contractStudio);
    const DataRecordPtr one = early->GetThemeDataRecord(theme);
    const DataRecordPtr other = late->GetThemeDataRecord(theme);
    setAll(one, QStringLiteral("early"));
    setAll(other, QStringLiteral("late"));
    QVERIFY(early->saveThemeDataRecord(theme, *one).isSaved);
    const DataRecordSave refused = late->saveThemeDataRecord(theme, *other);
    QVERIFY(!refused.isSaved);
    QCOMPARE(refused.version, 2);
    QVERIFY(refused.newer);
    one->version = 2;
    QCOMPARE(linesOf(refused.newer), linesOf(one));
    QCOMPARE(linesOf(late->GetThemeDataRecord(theme)), linesOf(one));
    // A version nobody has been given is no newer one.
    other->version = 99;
    const DataRecordSave ahead = late->saveThemeDataRecord(theme, *other);
    QVERIFY(!ahead.isSaved);
    QCOMPARE(ahead.version, 2);
    QVERIFY(late->isSignedIn());
}

void ContractDataRecordsTest::oneOfSeveralWritersWins()
{
    const QString theme = add(someEntries(40));
    constexpr int writers = 8;
    for (int round = 1; round <= 4; ++round) {
        QMutex mutex;
        QStringList winners;
        QStringList failures;
        QList<DataRecordSave> refusals;
        std::vector<std::unique_ptr<QThread>> threads;
        std::atomic<int> ready = 0;
        for (int number = 0; number < writers; ++number) {
            threads.emplace_back(QThread::create([&, number] {
                try {
                    const auto client = signIn(number % 2 == 0 ? nora() : olaf(), contractStudio);
                    const DataRecordPtr record = client->GetThemeDataRecord(theme);
                    const QString text =
                        QStringLiteral("round %1 writer %2").arg(round).arg(number);
                    setAll(record, text);
                    ++ready; // all have read before anybody saves
                    while (ready < writers)
                        QThread::usleep(200);
                    const DataRecordSave save = client->saveThemeDataRecord(theme, *record);
                    const QMutexLocker lock(&mutex);
                    if (save.isSaved)
                        winners << text;
                    else
                        refusals << save;
                } catch (const std::exception &error) {
                    ready = writers;
                    const QMutexLocker lock(&mutex);
                    failures << QString::fromUtf8(error.what());
                }
            }));
            threads.back()->start();
        }
        for (const auto &thread : threads)
            thread->wait();
        QVERIFY2(failures.isEmpty(), qPrintable(failures.join(QLatin1Char('\n'))));
        QCOMPARE(winners.size(), 1);
        QCOMPARE(refusals.size(), writers - 1);
        const DataRecordPtr now = signIn(nora(), contractStudio)->GetThemeDataRecord(theme);
        QCOMPARE(now->version, round + 1);
        for (const DataRecordEntryPtr &one : *now->entries)
            QCOMPARE(one->value.text, winners.first());
        for (const DataRecordSave &refusal : refusals)
            QCOMPARE(linesOf(refusal.newer), linesOf(now));
    }
}

void ContractDataRecordsTest::theLosersCanGoOnFromWhatTheyWereTold()
{
    const QString theme = add(someEntries(2));
    const auto client = signIn(nora(), contractStudio);
    const auto other = signIn(olaf(), contractStudio);
    const DataRecordPtr mine = client->GetThemeDataRecord(theme);
    QVERIFY(other->saveThemeDataRecord(theme, *mine).isSaved);
    mine->entries->item(2)->value.text = QStringLiteral("mine");
    const DataRecordSave refused = client->saveThemeDataRecord(theme, *mine);
    QVERIFY(!refused.isSaved);
    refused.newer->entries->item(2)->value.text = QStringLiteral("mine");
    const DataRecordSave saved = client->saveThemeDataRecord(theme, *refused.newer);
    QVERIFY(saved.isSaved);
    QCOMPARE(saved.version, 3);
}

void ContractDataRecordsTest::aSaveWhoseAnswerWasLostCanBeSentAgain()
{
    const QString theme = add(someEntries(2));
    ServiceProxy proxy(service().port());
    Client client;
    QVERIFY(authenticate(client, proxy.address(), nora().user, nora().password));
    QVERIFY(chooseAccount(client, QString::number(contractStudio)));
    const DataRecordPtr record = client.GetThemeDataRecord(theme);
    setAll(record, QStringLiteral("sent twice"));
    proxy.setFate(ServiceProxy::Fate::LoseAnswer);
    QCOMPARE(failureOf([&] { client.saveThemeDataRecord(theme, *record); }),
             QStringLiteral("ConnectionLost"));
    proxy.setFate(ServiceProxy::Fate::PassOn);
    const DataRecordSave saved = client.saveThemeDataRecord(theme, *record);
    QVERIFY(saved.isSaved);
    QCOMPARE(saved.version, 2);
    QCOMPARE(client.GetThemeDataRecord(theme)->version, 2);
    // The same values from somebody else are another save, and too late.
    QVERIFY(!signIn(olaf(), contractStudio)->saveThemeDataRecord(theme, *record).isSaved);
    // And other values of the same person are, too.
    setAll(record, QStringLiteral("different"));
    QVERIFY(!client.saveThemeDataRecord(theme, *record).isSaved);
}

void ContractDataRecordsTest::keepsAccountsApart()
{
    const QString theme = add(someEntries(2), 0);
    const auto here = signIn(nora(), contractStudio);
    const auto there = signIn(nora(), quietRoom);
    const DataRecordPtr mine = here->GetThemeDataRecord(theme);
    setAll(mine, QStringLiteral("here"));
    QVERIFY(here->saveThemeDataRecord(theme, *mine).isSaved);
    const DataRecordPtr theirs = there->GetThemeDataRecord(theme);
    QCOMPARE(theirs->version, 1);
    QCOMPARE(theirs->entries->item(1)->value.text, QStringLiteral("first"));
    setAll(theirs, QStringLiteral("there"));
    QVERIFY(there->saveThemeDataRecord(theme, *theirs).isSaved);
    QCOMPARE(here->GetThemeDataRecord(theme)->entries->item(2)->value.text, QStringLiteral("here"));
    QCOMPARE(there->GetThemeDataRecord(theme)->entries->item(2)->value.text,
             QStringLiteral("there"));
}

void ContractDataRecordsTest::keepsAPersonsThemeToThatPerson()
{
    const Person owner = nora();
    const QString theme = add(someEntries(1), contractStudio, &owner);
    const auto herself = signIn(owner, contractStudio);
    const auto colleague = signIn(olaf(), contractStudio);
    const DataRecordPtr record = herself->GetThemeDataRecord(theme);
    QVERIFY(herself->saveThemeDataRecord(theme, *record).isSaved);
    QVERIFY(!colleague->GetThemeDataRecord(theme));
    QCOMPARE(failureOf([&] { colleague->saveThemeDataRecord(theme, *record); }),
             QStringLiteral("NotFound/not-found"));
    QVERIFY(!signIn(owner, quietRoom)->GetThemeDataRecord(theme));
}

void ContractDataRecordsTest::letsMembersOfAnAccountShareARecord()
{
    const QString theme = add(someEntries(1));
    const DataRecordPtr record = signIn(nora(), contractStudio)->GetThemeDataRecord(theme);
    setAll(record, QStringLiteral("shared"));
    QVERIFY(signIn(olaf(), contractStudio)->saveThemeDataRecord(theme, *record).isSaved);
    QCOMPARE(
        signIn(nora(), contractStudio)->GetThemeDataRecord(theme)->entries->item(1)->value.text,
        QStringLiteral("shared"));
}

void ContractDataRecordsTest::refusesASaveOfWhatIsNotThere_data()
{
    answersNothingWhereThereIsNone_data();
}

void ContractDataRecordsTest::refusesASaveOfWhatIsNotThere()
{
    QFETCH(QString, theme);
    const auto client = signIn(tomas(), brightwaterMedia);
    const DataRecordPtr record = client->GetThemeDataRecord(webcast);
    const QString failure = failureOf([&] { client->saveThemeDataRecord(theme, *record); });
    QVERIFY2(failure == QLatin1String("NotFound/not-found") || failure == QLatin1String("NotFound"),
             qPrintable(failure));
}

void ContractDataRecordsTest::refusesTheWrongNumberOfValues_data()
{
    QTest::addColumn<int>("count");
    for (const int count : {0, 1, 2, 4, 100})
        QTest::newRow(qPrintable(QString::number(count))) << count;
}

void ContractDataRecordsTest::refusesTheWrongNumberOfValues()
{
    QFETCH(int, count);
    const QString theme = add(someEntries(3));
    const auto client = signIn(nora(), contractStudio);
    auto entries = std::make_shared<DataRecordEntryCollection>();
    for (int i = 0; i < count; ++i)
        entries->add(std::make_shared<DataRecordEntry>());
    DataRecord record;
    record.version = 1;
    record.entries = entries;
    QCOMPARE(failureOf([&] { client->saveThemeDataRecord(theme, record); }),
             QStringLiteral("Invalid/invalid"));
    QCOMPARE(client->GetThemeDataRecord(theme)->version, 1);
}

void ContractDataRecordsTest::letsViewersLookOnly()
{
    const QString theme = add(someEntries(1));
    const auto viewer = signIn(vera(), contractStudio);
    const DataRecordPtr record = viewer->GetThemeDataRecord(theme);
    QVERIFY(record);
    QCOMPARE(failureOf([&] { viewer->saveThemeDataRecord(theme, *record); }),
             QStringLiteral("Refused/not-allowed"));
    QCOMPARE(viewer->GetThemeDataRecord(theme)->version, 1);
}

void ContractDataRecordsTest::takesSixteenMebibytesAndNoMore()
{
    constexpr qsizetype limit = Zel::DataRecords::largestRecord;
    const QString theme = add(someEntries(2));
    const auto client = signIn(nora(), contractStudio);
    const DataRecordPtr record = client->GetThemeDataRecord(theme);
    // Line breaks take two bytes each on the way.
    record->entries->item(1)->value.text = QString(limit - 7, QLatin1Char('\n'));
    record->entries->item(2)->value = {QStringLiteral("é"), QStringLiteral("g"),
                                       QString::fromUtf8("😀")};
    QVERIFY(client->saveThemeDataRecord(theme, *record).isSaved);
    const DataRecordPtr stored = client->GetThemeDataRecord(theme);
    QVERIFY(stored->entries->item(1)->value == record->entries->item(1)->value);
    QVERIFY(stored->entries->item(2)->value == record->entries->item(2)->value);
    stored->entries->item(2)->value.guid += QLatin1Char('g');
    QCOMPARE(failureOf([&] { client->saveThemeDataRecord(theme, *stored); }),
             QStringLiteral("Invalid/too-large"));
    // So much is not even sent: the answer would be lost when the service stops reading.
    stored->entries->item(1)->value.text = QString(4 * limit, QLatin1Char('x'));
    QCOMPARE(failureOf([&] { client->saveThemeDataRecord(theme, *stored); }),
             QStringLiteral("Invalid/too-large"));
    QCOMPARE(client->GetThemeDataRecord(theme)->version, 2);
}

void ContractDataRecordsTest::wantsASessionAndAnAccount()
{
    const QString theme = add(someEntries(1));
    const DataRecord record = *signIn(nora(), contractStudio)->GetThemeDataRecord(theme);
    const auto reads = [&](Client &client) {
        return failureOf([&] { client.GetThemeDataRecord(theme); });
    };
    const auto saves = [&](Client &client) {
        return failureOf([&] { client.saveThemeDataRecord(theme, record); });
    };
    Client stranger;
    QCOMPARE(reads(stranger), QStringLiteral("SignedOut"));
    QCOMPARE(saves(stranger), QStringLiteral("SignedOut"));
    const auto without = signIn(nora());
    QCOMPARE(reads(*without), QStringLiteral("Refused/no-account"));
    QCOMPARE(saves(*without), QStringLiteral("Refused/no-account"));
    const auto late = signIn(nora(), contractStudio);
    const auto later = signIn(nora(), contractStudio);
    database().tx([this] { database().exec(expire, {QDateTime::currentMSecsSinceEpoch() - 1}); });
    QCOMPARE(reads(*late), QStringLiteral("SignedOut/signed-out"));
    QCOMPARE(saves(*later), QStringLiteral("SignedOut/signed-out"));
    QVERIFY(!later->isSignedIn());
    QCOMPARE(later->serverUrl(), QString());
}

void ContractDataRecordsTest::tellsThatTheServiceWentAwayInTheMiddle()
{
    const QString theme = add(someEntries(1));
    ServiceProxy proxy(service().port());
    Client client;
    QVERIFY(authenticate(client, proxy.address(), nora().user, nora().password));
    QVERIFY(chooseAccount(client, QString::number(contractStudio)));
    const DataRecordPtr record = client.GetThemeDataRecord(theme);
    setAll(record, QStringLiteral("not sent"));
    proxy.setFate(ServiceProxy::Fate::LoseRequest);
    QCOMPARE(failureOf([&] { client.GetThemeDataRecord(theme); }),
             QStringLiteral("ConnectionLost"));
    QCOMPARE(failureOf([&] { client.saveThemeDataRecord(theme, *record); }),
             QStringLiteral("ConnectionLost"));
    proxy.setFate(ServiceProxy::Fate::PassOn);
    const DataRecordPtr kept = client.GetThemeDataRecord(theme);
    QCOMPARE(kept->version, 1);
    QCOMPARE(kept->entries->item(1)->value.text, QStringLiteral("first"));
    const auto direct = signIn(nora(), contractStudio);
    QCOMPARE(service().stop(), 0);
    QCOMPARE(failureOf([&] { direct->GetThemeDataRecord(theme); }), QStringLiteral("Unreachable"));
    QCOMPARE(failureOf([&] { direct->saveThemeDataRecord(theme, *record); }),
             QStringLiteral("Unreachable"));
}

void ContractDataRecordsTest::aNewImportReachesOnlyRecordsThatNobodySaved()
{
    const QString saved = add(someEntries(2));
    const QString untouched = add(someEntries(2));
    const auto client = signIn(nora(), contractStudio);
    const DataRecordPtr mine = client->GetThemeDataRecord(saved);
    const DataRecordPtr read = client->GetThemeDataRecord(untouched);
    QVERIFY(client->saveThemeDataRecord(saved, *mine).isSaved);
    importAgain(saved, someEntries(3));
    importAgain(untouched, someEntries(3));
    QCOMPARE(client->GetThemeDataRecord(saved)->entries->count(), 2);
    // Who has read the former fields is told of the new ones.
    const DataRecordSave refused = client->saveThemeDataRecord(untouched, *read);
    QVERIFY(!refused.isSaved);
    QCOMPARE(refused.version, 2);
    QCOMPARE(refused.newer->entries->count(), 3);
    QVERIFY(client->saveThemeDataRecord(untouched, *refused.newer).isSaved);
}

void ContractDataRecordsTest::aKilledServiceLeavesTheOldRecordOrTheNew()
{
    const QString theme = add(someEntries(400));
    qint64 acknowledged = 1;
    for (int round = 0; round < 6; ++round) {
        const auto client = signIn(nora(), contractStudio);
        const DataRecordPtr record = client->GetThemeDataRecord(theme);
        acknowledged = record->version;
        std::atomic<int> saves = 0;
        const std::unique_ptr<QThread> killer(QThread::create([&] {
            while (saves <= round) // in the middle of a save, each time of a later one
                QThread::usleep(200);
            QThread::usleep(static_cast<unsigned long>(round) * 1500);
            for (const qint64 id : service().processIds())
                ::kill(pid_t(id), SIGKILL);
        }));
        killer->start();
        const QString failure = failureOf([&] {
            for (;;) {
                setAll(record, QStringLiteral("version %1").arg(record->version + 1));
                ++saves;
                record->version = client->saveThemeDataRecord(theme, *record).version;
                acknowledged = record->version;
            }
        });
        saves = round + 1; // also when it did not come so far
        killer->wait();
        QVERIFY2(failure == QLatin1String("ConnectionLost") ||
                     failure == QLatin1String("Unreachable"),
                 qPrintable(failure));
        service().kill();
        QVERIFY(service().startAgain());
        const DataRecordPtr stored = signIn(nora(), contractStudio)->GetThemeDataRecord(theme);
        QVERIFY(stored->version == acknowledged || stored->version == acknowledged + 1);
        QCOMPARE(stored->entries->count(), 400);
        const QString expected = stored->version == 1
                                     ? QStringLiteral("first")
                                     : QStringLiteral("version %1").arg(stored->version);
        for (const DataRecordEntryPtr &one : *stored->entries)
            QCOMPARE(one->value.text, expected);
    }
}

ZEL_TEST_MAIN(ContractDataRecordsTest)
#include "tst_contractdatarecords.moc"
