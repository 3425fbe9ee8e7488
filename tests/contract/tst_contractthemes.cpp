// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/fileblobs.h"
#include "service/store/store.h"
#include "tests/contract/contracttest.h"
#include "tests/contract/contracttls.h"
#include "tests/contract/recordtext.h"
#include "tests/contract/serviceproxy.h"

#include <QCryptographicHash>
#include <QFile>
#include <QImage>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QSignalSpy>
#include <QTest>

using namespace QXSC;
using namespace ZelTest;

namespace {

const QString ofAccount = QStringLiteral("getAccountThemeList_Array");
const QString full = QStringLiteral("getFullThemeList_Array");
const QString global = QStringLiteral("getGlobalThemeList_Array");
const QString ofUser = QStringLiteral("getUserThemeList_Array");
const QString session = QStringLiteral("session");

const Zel::SqlText expire(R"sql(
    UPDATE session SET expires_at = $1
)sql");

ThemeCollectionPtr themesOf(Client &client, const QString &method)
{
    // Not null, to see that a client answers nothing rather than not at all.
    auto list = std::make_shared<const ThemeCollection>();
    client.callListMethod(QStringLiteral("Studio"), method, list);
    return list;
}

TemplateRecordPtr templateOf(Client &client, const QString &key, const QString &version)
{
    auto record = std::make_shared<const TemplateRecord>();
    client.getTemplate(key, version, record);
    return record;
}

QStringList namesIn(const ThemeCollectionPtr &themes)
{
    QStringList names;
    for (const ThemeRecordPtr &theme : *themes)
        names << theme->name;
    return names;
}

ThemeRecordPtr named(const ThemeCollectionPtr &themes, const QString &name)
{
    for (const ThemeRecordPtr &theme : *themes) {
        if (theme->name == name)
            return theme;
    }
    throw std::runtime_error(qPrintable(QLatin1String("there is no theme ") + name));
}

QByteArray sampleFile(const QString &name)
{
    QFile file(ServiceProcess::sampleFolder() + QLatin1String("/themes/") + name);
    if (!file.open(QIODevice::ReadOnly))
        throw std::runtime_error("a file of the sample cannot be read");
    return file.readAll();
}

struct Fetched
{
    int status = 0;
    QByteArray type;
    QByteArray bytes;
};

Fetched fetch(const QString &address)
{
    QNetworkAccessManager manager;
    const std::unique_ptr<QNetworkReply> reply(manager.get(requestOf(address)));
    QSignalSpy finished(reply.get(), &QNetworkReply::finished);
    if (!reply->isFinished())
        finished.wait(30'000);
    return {reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt(),
            reply->rawHeader("Content-Type"), reply->readAll()};
}

/// A list written on one line.
QStringList list(const char *names)
{
    return QString::fromUtf8(names).split(QLatin1String(" / "));
}

} // namespace

/// Themes and templates through the client against the real service.
class ContractThemesTest : public ContractTest
{
    Q_OBJECT

private slots:
    void showsTheSampleByScopeAndPerson_data();
    void showsTheSampleByScopeAndPerson();
    void answersEveryField();
    void givesPreviewsByTheirAddress_data();
    void givesPreviewsByTheirAddress();
    void refusesForgedPreviewAddresses();
    void givesAChangedPreviewAnotherAddress();
    void answersAnEmptyListWhereThereIsNone();
    void listsByFoldedNameThenGuid();
    void keepsDefinitionsCodeUnitForCodeUnit_data();
    void keepsDefinitionsCodeUnitForCodeUnit();
    void keepsAccountsAndPeopleApart();
    void refusesOtherListsWithoutAskingTheService_data();
    void refusesOtherListsWithoutAskingTheService();
    void findsTemplatesByBothKeys();
    void answersNothingForUnknownTemplates_data();
    void answersNothingForUnknownTemplates();
    void refusesKeysThatNoTemplateCanHave();
    void keepsTheThemeOfANewProject_data();
    void keepsTheThemeOfANewProject();
    void refusesAnotherThemeForTheSameProject();
    void refusesThemesThePersonDoesNotSee_data();
    void refusesThemesThePersonDoesNotSee();
    void showsViewersTheThemesToo();
    void wantsASessionAndAnAccount();
    void tellsThatTheServiceWentAwayInTheMiddle();
    void tellsThatThePictureIsAway();

private:
    void renameBlob(const QString &from, const QString &to)
    {
        const Zel::FileBlobs files(service().files);
        if (!hasChunks()) {
            QVERIFY(QFile::rename(files.blobPath(from), files.blobPath(to)));
            return;
        }
        database().tx([&] {
            database().runNative(
                QStringLiteral("UPDATE blob_content SET sha = '%1' WHERE sha = '%2'")
                    .arg(to, from));
        });
    }

    /// Stores a theme as somebody who runs the service does; returns its guid.
    QString add(qint64 account, const QString &name, const Person *owner = nullptr,
                const QString &definition = QString(), const QString &guid = newGuid())
    {
        Zel::Store store(database(), Zel::PasswordHasher::Cost::Minimal);
        Zel::Theme theme;
        theme.accountId = account;
        theme.guid = guid;
        theme.name = name;
        theme.definition = definition;
        if (owner)
            theme.ownerId = store.users.find(owner->user)->userId;
        database().tx([&] { store.themes.add(theme); });
        return guid;
    }

    void addTemplate(qint64 account, const Zel::Template &entry)
    {
        Zel::Store store(database(), Zel::PasswordHasher::Cost::Minimal);
        database().tx([&] { store.themes.storeTemplate(account, entry); });
    }

    QString storedThemeOf(qint64 account, const QString &project)
    {
        Zel::Store store(database(), Zel::PasswordHasher::Cost::Minimal);
        const auto found = store.projects.find(account, project);
        return found ? found->themeGuid : QStringLiteral("no such project");
    }
};

void ContractThemesTest::showsTheSampleByScopeAndPerson_data()
{
    QTest::addColumn<bool>("isMaja");
    QTest::addColumn<qint64>("account");
    QTest::addColumn<QString>("method");
    QTest::addColumn<QStringList>("names");
    const auto row = [](const char *name, bool isMaja, qint64 account, const QString &method,
                        const char *names) {
        QTest::newRow(name) << isMaja << account << method << list(names);
    };
    row("every account's", true, brightwaterMedia, global,
        "Audio briefing / Mixed reality stage / Panel discussion / Product launch / Town hall / "
        "Training room / Webcast, classic");
    row("the same elsewhere", true, harbourLearning, global,
        "Audio briefing / Mixed reality stage / Panel discussion / Product launch / Town hall / "
        "Training room / Webcast, classic");
    row("the account's", false, brightwaterMedia, ofAccount,
        "Award night / Brightwater keynote / Countdown / On the grounds / Press room / "
        "Quarterly results");
    row("the other account's", true, harbourLearning, ofAccount,
        "Language lab / Lecture hall / Safety course");
    row("her own", true, brightwaterMedia, ofUser, "Autumn gala (draft) / Fireside chat");
    row("his own", false, brightwaterMedia, ofUser, "Blueprint / The podcast table");
    row("her own elsewhere", true, harbourLearning, ofUser, "Breakout rooms");
    row("all", false, brightwaterMedia, full,
        "Audio briefing / Award night / Blueprint / Brightwater keynote / Countdown / "
        "Mixed reality stage / On the grounds / Panel discussion / Press room / Product launch / "
        "Quarterly results / The podcast table / Town hall / Training room / Webcast, classic");
    row("all elsewhere", true, harbourLearning, full,
        "Audio briefing / Breakout rooms / Language lab / Lecture hall / Mixed reality stage / "
        "Panel discussion / Product launch / Safety course / Town hall / Training room / "
        "Webcast, classic");
}

void ContractThemesTest::showsTheSampleByScopeAndPerson()
{
    QFETCH(bool, isMaja);
    QFETCH(qint64, account);
    QFETCH(QString, method);
    QFETCH(QStringList, names);
    const auto client = signIn(isMaja ? maja() : tomas(), account);
    QCOMPARE(namesIn(themesOf(*client, method)), names);
}

void ContractThemesTest::answersEveryField()
{
    const auto client = signIn(tomas(), brightwaterMedia);
    const auto themes = themesOf(*client, full);
    const auto keynote = named(themes, QStringLiteral("Brightwater keynote"));
    QCOMPARE(keynote->guid.size(), 36);
    QCOMPARE(keynote->description, QStringLiteral("The house's own look for the large talks."));
    QCOMPARE(keynote->width, 1280);
    QCOMPARE(keynote->height, 720);
    QCOMPARE(keynote->created.toUTC(), QDateTime(QDate(2025, 9, 8), QTime(15, 20), Qt::UTC));
    QCOMPARE(keynote->created.timeSpec(), Qt::LocalTime);
    QCOMPARE(keynote->modified.toUTC(), QDateTime(QDate(2026, 3, 9), QTime(16, 5, 30), Qt::UTC));
    QCOMPARE(keynote->wizardXml, QString::fromUtf8(sampleFile(QStringLiteral("keynote.xml"))));
    QStringList uses;
    for (const ThemeTemplatePtr &use : *keynote->templates)
        uses << use->templateKey + QLatin1Char('/') + use->templateVersionKey +
                    (use->required ? QStringLiteral(" required") : QString());
    QCOMPARE(uses, list("player/2 required / registration/1 required / imprint/3 required / "
                        "waiting/1"));
    for (const ThemeTemplatePtr &use : *keynote->templates)
        QVERIFY(templateOf(*client, use->templateKey, use->templateVersionKey));

    const auto owner = signIn(maja(), brightwaterMedia);
    const auto draft = named(themesOf(*owner, ofUser), QStringLiteral("Autumn gala (draft)"));
    QCOMPARE(draft->wizardXml, QString());
    QCOMPARE(draft->previewUrl, QString());
    QVERIFY(draft->templates);
    QCOMPARE(draft->templates->count(), 0);
}

void ContractThemesTest::givesPreviewsByTheirAddress_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("type");
    const auto row = [](const char *name, const char *file, const char *type) {
        QTest::newRow(file) << QString::fromLatin1(name) << QString::fromLatin1(file)
                            << QByteArray(type);
    };
    row("Webcast, classic", "webcast.png", "image/png");
    row("Town hall", "town-hall.jpg", "image/jpeg");
    row("Product launch", "product-launch.webp", "image/webp");
    row("Award night", "awards.svg", "image/svg+xml");
    row("The podcast table", "podcast.svg", "image/svg+xml");
}

void ContractThemesTest::givesPreviewsByTheirAddress()
{
    QFETCH(QString, name);
    QFETCH(QString, file);
    QFETCH(QByteArray, type);
    const auto client = signIn(tomas(), brightwaterMedia);
    const QString address = named(themesOf(*client, full), name)->previewUrl;
    QVERIFY2(address.startsWith(service().address() + QLatin1Char('/')), qPrintable(address));
    const Fetched fetched = fetch(address);
    QCOMPARE(fetched.status, 200);
    QCOMPARE(fetched.type, type);
    QVERIFY(fetched.bytes == sampleFile(file));
    QCOMPARE(QImage::fromData(fetched.bytes).size(), QSize(640, 400));
}

void ContractThemesTest::refusesForgedPreviewAddresses()
{
    const auto client = signIn(tomas(), brightwaterMedia);
    const auto themes = themesOf(*client, full);
    const auto own = named(themes, QStringLiteral("The podcast table"));
    const auto other = named(themes, QStringLiteral("Award night"));
    const QString address = own->previewUrl;
    for (const auto &[from, to] :
         {std::make_pair(QStringLiteral("&e="), QStringLiteral("&e=9")),
          std::make_pair(QStringLiteral("a=1001"), QStringLiteral("a=1002")),
          std::make_pair(QStringLiteral("&s="), QStringLiteral("&s=x")),
          std::make_pair(own->guid, other->guid)}) {
        QString forged = address;
        QVERIFY(forged.contains(from));
        QCOMPARE(fetch(forged.replace(from, to)).status, 403);
    }
    QCOMPARE(fetch(address).status, 200);
}

void ContractThemesTest::givesAChangedPreviewAnotherAddress()
{
    const auto client = signIn(maja(), harbourLearning);
    const QString before =
        named(themesOf(*client, ofAccount), QStringLiteral("Language lab"))->previewUrl;
    const QString guid = named(themesOf(*client, ofAccount), QStringLiteral("Language lab"))->guid;
    QTemporaryDir folder;
    const auto write = [&folder](const QString &name, const QByteArray &bytes) {
        QFile file(folder.filePath(name));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    };
    const QByteArray picture = sampleFile(QStringLiteral("webcast.png"));
    write(QStringLiteral("new.png"), picture);
    write(QStringLiteral("themes.csv"),
          "account,guid,owner,name,description,width,height,created,modified,definition,preview\n"
          "1002," +
              guid.toLatin1() +
              ",,Language lab,,1,2,2026-01-01T00:00:00Z,2026-01-01T00:00:00Z,,new.png\n");
    QByteArray output;
    QVERIFY2(service().runCommand(
                 {QStringLiteral("import"), folder.filePath(QStringLiteral("themes.csv"))},
                 &output) == 0,
             output.constData());
    const QString after =
        named(themesOf(*client, ofAccount), QStringLiteral("Language lab"))->previewUrl;
    QVERIFY(after != before);
    QVERIFY(fetch(after).bytes == picture);
    // Who still has the former address gets the picture of now.
    QVERIFY(fetch(before).bytes == picture);
}

void ContractThemesTest::answersAnEmptyListWhereThereIsNone()
{
    const auto client = signIn(vera(), quietRoom);
    for (const QString &method : {ofAccount, ofUser}) {
        const auto themes = themesOf(*client, method);
        QVERIFY(themes);
        QCOMPARE(themes->count(), 0);
    }
    QVERIFY(themesOf(*client, global)->count() > 0);
    QCOMPARE(namesIn(themesOf(*client, full)), namesIn(themesOf(*client, global)));
}

void ContractThemesTest::listsByFoldedNameThenGuid()
{
    const QString first = QStringLiteral("00000000-0000-4000-8000-00000000000a");
    const QString second = QStringLiteral("00000000-0000-4000-8000-00000000000b");
    add(clockTower, QStringLiteral("Zebra"), nullptr, QString(), second);
    add(clockTower, QStringLiteral("zebra"), nullptr, QString(), first);
    const Person owner = nora();
    for (const QString &name : {QStringLiteral("Äpfel"), QStringLiteral("apple"),
                                QStringLiteral("１０"), QStringLiteral("😀")})
        add(clockTower, name, &owner);
    add(clockTower, QStringLiteral("9"));
    const auto client = signIn(owner, clockTower);
    QStringList seen;
    const auto themes = themesOf(*client, full);
    const QStringList everybodys = namesIn(themesOf(*client, global));
    for (const ThemeRecordPtr &theme : *themes) {
        if (!everybodys.contains(theme->name))
            seen << theme->name + (theme->guid == first ? QStringLiteral(" a") : QString());
    }
    QCOMPARE(seen, list("１０ / 9 / apple / zebra a / Zebra / Äpfel / 😀"));
    // The three kinds are one list, not three behind each other.
    const QStringList names = namesIn(themes);
    QVERIFY(names.indexOf(QStringLiteral("apple")) <
            names.indexOf(QStringLiteral("Audio briefing")));
    QVERIFY(names.indexOf(QStringLiteral("Webcast, classic")) <
            names.indexOf(QStringLiteral("Zebra")));
}

void ContractThemesTest::keepsDefinitionsCodeUnitForCodeUnit_data()
{
    QTest::addColumn<QString>("definition");
    QTest::newRow("no XML") << QStringLiteral("<WIZARD><not closed & \"");
    QTest::newRow("line ends") << QStringLiteral("<a>\r\n\r\n\t<b/>\r</a>\u2028\u0085");
    QTest::newRow("byte order mark") << QStringLiteral("\ufeff<WIZARD/>");
    QTest::newRow("astral") << QString::fromUtf8("<WIZARD t='😀 𝄞 \u202e שלום'/>");
    QTest::newRow("entities") << QStringLiteral(
        "<!DOCTYPE a [<!ENTITY x SYSTEM 'file:///etc/passwd'>]><WIZARD>&x;</WIZARD>");
    QTest::newRow("controls") << QStringLiteral("\x01\x1f\x7f\\u0000 %1 $1");
    QTest::newRow("deep") << QStringLiteral("<a>").repeated(100'000);
    QString large = QStringLiteral("<WIZARD>");
    large += QString::fromUtf8("æ😀\"\n").repeated(1'000'000);
    QTest::newRow("eight million bytes") << large;
    QTest::newRow("the longest") << QString(Zel::Themes::largestDefinition, QLatin1Char('x'));
}

void ContractThemesTest::keepsDefinitionsCodeUnitForCodeUnit()
{
    QFETCH(QString, definition);
    const Person owner = vera();
    const QString guid = add(contractStudio, QStringLiteral("Kept"), &owner, definition);
    const auto client = signIn(owner, contractStudio);
    int found = 0;
    const auto themes = themesOf(*client, ofUser);
    for (const ThemeRecordPtr &theme : *themes) {
        if (theme->guid != guid)
            continue;
        ++found;
        QVERIFY(theme->wizardXml == definition); // too long to be shown
    }
    QCOMPARE(found, 1);
}

void ContractThemesTest::keepsAccountsAndPeopleApart()
{
    const Person one = nora();
    const QString shared = add(contractStudio, QStringLiteral("Apart, shared"));
    const QString own = add(contractStudio, QStringLiteral("Apart, Nora's"), &one);
    const auto sees = [](Client &client, const QString &method, const QString &guid) {
        int count = 0;
        const auto themes = themesOf(client, method);
        for (const ThemeRecordPtr &theme : *themes)
            count += theme->guid == guid;
        return count;
    };
    const auto herself = signIn(one, contractStudio);
    QCOMPARE(sees(*herself, full, shared), 1);
    QCOMPARE(sees(*herself, full, own), 1);
    QCOMPARE(sees(*herself, ofUser, own), 1);
    QCOMPARE(sees(*herself, ofUser, shared), 0);
    QCOMPARE(sees(*herself, ofAccount, shared), 1);
    QCOMPARE(sees(*herself, ofAccount, own), 0);
    QCOMPARE(sees(*herself, global, shared) + sees(*herself, global, own), 0);
    const auto colleague = signIn(olaf(), contractStudio);
    QCOMPARE(sees(*colleague, full, shared), 1);
    for (const QString &method : {ofAccount, full, global, ofUser})
        QCOMPARE(sees(*colleague, method, own), 0);
    const auto elsewhere = signIn(one, quietRoom);
    for (const QString &method : {ofAccount, full, global, ofUser})
        QCOMPARE(sees(*elsewhere, method, own) + sees(*elsewhere, method, shared), 0);
}

void ContractThemesTest::refusesOtherListsWithoutAskingTheService_data()
{
    QTest::addColumn<QString>("method");
    for (const char *method : {"getThemeList_Array", "getfullthemelist_array", "", "full",
                               "getFullThemeList_Array ", "getProjectList"})
        QTest::newRow(qPrintable(QLatin1Char('"') + QString::fromLatin1(method) + QLatin1Char('"')))
            << QString::fromLatin1(method);
}

void ContractThemesTest::refusesOtherListsWithoutAskingTheService()
{
    QFETCH(QString, method);
    ServiceProxy proxy(service().port());
    Client client;
    QVERIFY(authenticate(client, proxy.address(), nora().user, nora().password));
    QVERIFY(chooseAccount(client, QString::number(contractStudio)));
    const int before = proxy.requests();
    auto list = std::make_shared<const ThemeCollection>();
    const auto kept = list;
    try {
        client.callListMethod(QStringLiteral("Studio"), method, list);
        QFAIL("nothing was thrown");
    } catch (const ServiceError &error) {
        QCOMPARE(error.kind(), ServiceError::Kind::Invalid);
        const QString quoted = QLatin1Char('"') + method + QLatin1Char('"');
        QVERIFY2(error.description().contains(quoted), qPrintable(error.description()));
    }
    QCOMPARE(list, kept);
    QCOMPARE(proxy.requests(), before);
    QVERIFY(themesOf(client, full));
}

void ContractThemesTest::findsTemplatesByBothKeys()
{
    const QString strange = QString::fromUtf8("a&b=c+d %2B#ü?/ 😀");
    addTemplate(0, {QStringLiteral("both"), QStringLiteral("1"), QStringLiteral("Everybody's"),
                    QStringLiteral("e")});
    addTemplate(contractStudio, {QStringLiteral("both"), QStringLiteral("1"),
                                 QStringLiteral("The account's"), QStringLiteral("a")});
    addTemplate(contractStudio, {strange, strange, strange, QString()});
    const auto here = signIn(nora(), contractStudio);
    const auto mine = templateOf(*here, QStringLiteral("both"), QStringLiteral("1"));
    QCOMPARE(mine->name, QStringLiteral("The account's"));
    QCOMPARE(mine->description, QStringLiteral("a"));
    QCOMPARE(templateOf(*here, strange, strange)->name, strange);
    QCOMPARE(templateOf(*here, strange, strange)->description, QString());
    const auto there = signIn(nora(), quietRoom);
    QCOMPARE(templateOf(*there, QStringLiteral("both"), QStringLiteral("1"))->name,
             QStringLiteral("Everybody's"));
    QVERIFY(!templateOf(*there, strange, strange));
}

void ContractThemesTest::answersNothingForUnknownTemplates_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("version");
    const auto row = [](const char *name, const char *key, const char *version) {
        QTest::newRow(name) << QString::fromLatin1(key) << QString::fromLatin1(version);
    };
    row("unknown key", "none", "2");
    row("unknown version", "player", "3");
    row("keys changed over", "2", "player");
    row("another case", "Player", "2");
    row("another account's", "imprint", "3");
    row("no key", "", "2");
    row("no version", "player", "");
    row("nothing", "", "");
}

void ContractThemesTest::answersNothingForUnknownTemplates()
{
    QFETCH(QString, key);
    QFETCH(QString, version);
    const auto client = signIn(nora(), contractStudio);
    QVERIFY(!templateOf(*client, key, version));
    QVERIFY(templateOf(*client, QStringLiteral("player"), QStringLiteral("2")));
}

void ContractThemesTest::refusesKeysThatNoTemplateCanHave()
{
    const auto client = signIn(nora(), contractStudio);
    const QString version = QStringLiteral("1");
    QVERIFY(!templateOf(*client, QString(Zel::Themes::longestKey, QLatin1Char('k')), version));
    QCOMPARE(failureOf([&] {
                 templateOf(*client, QString(Zel::Themes::longestKey + 1, QLatin1Char('k')),
                            version);
             }),
             QStringLiteral("Invalid/invalid"));
    QCOMPARE(failureOf([&] { templateOf(*client, QString(1, QChar(0)), version); }),
             QStringLiteral("Invalid/invalid-text"));
}

void ContractThemesTest::keepsTheThemeOfANewProject_data()
{
    QTest::addColumn<qint64>("account");
    QTest::addColumn<bool>("isOwn");
    QTest::addColumn<bool>("inCapitals");
    QTest::newRow("every account's") << qint64(0) << false << false;
    QTest::newRow("the account's") << contractStudio << false << false;
    QTest::newRow("the person's own") << contractStudio << true << false;
    QTest::newRow("in capitals") << contractStudio << false << true;
}

void ContractThemesTest::keepsTheThemeOfANewProject()
{
    QFETCH(qint64, account);
    QFETCH(bool, isOwn);
    QFETCH(bool, inCapitals);
    const Person person = nora();
    const QString guid = add(account, QStringLiteral("For projects"), isOwn ? &person : nullptr);
    const auto client = signIn(person, contractStudio);
    NewProject project = newProject();
    project.themeGuid = inCapitals ? guid.toUpper() : guid;
    const auto made = client->createProject(project);
    QCOMPARE(storedThemeOf(contractStudio, project.guid), guid);
    QCOMPARE(textOf(*client->createProject(project)), textOf(*made));
    QCOMPARE(withGuid(projectsOf(*client, session), project.guid).size(), 1);
    const NewProject plain = newProject();
    client->createProject(plain);
    QCOMPARE(storedThemeOf(contractStudio, plain.guid), QString());
}

void ContractThemesTest::refusesAnotherThemeForTheSameProject()
{
    const auto client = signIn(nora(), contractStudio);
    const QString guid = add(contractStudio, QStringLiteral("One"));
    NewProject project = newProject();
    project.themeGuid = guid;
    client->createProject(project);
    const auto fails = [&] { client->createProject(project); };
    project.themeGuid = add(contractStudio, QStringLiteral("Another"));
    QCOMPARE(failureOf(fails), QStringLiteral("Conflict/conflict"));
    project.themeGuid.clear();
    QCOMPARE(failureOf(fails), QStringLiteral("Conflict/conflict"));
    QCOMPARE(storedThemeOf(contractStudio, project.guid), guid);
}

void ContractThemesTest::refusesThemesThePersonDoesNotSee_data()
{
    QTest::addColumn<int>("which");
    QTest::newRow("unknown") << 0;
    QTest::newRow("another account's") << 1;
    QTest::newRow("a colleague's own") << 2;
    QTest::newRow("her own of another account") << 3;
    QTest::newRow("a word") << 4;
    QTest::newRow("in braces") << 5;
    QTest::newRow("all zero") << 6;
}

void ContractThemesTest::refusesThemesThePersonDoesNotSee()
{
    QFETCH(int, which);
    const Person colleague = olaf();
    const Person herself = nora();
    NewProject project = newProject();
    const QString name = QStringLiteral("Unseen");
    switch (which) {
    case 0:
        project.themeGuid = newGuid();
        break;
    case 1:
        project.themeGuid = add(quietRoom, name);
        break;
    case 2:
        project.themeGuid = add(contractStudio, name, &colleague);
        break;
    case 3:
        project.themeGuid = add(quietRoom, name, &herself);
        break;
    case 4:
        project.themeGuid = QStringLiteral("theme");
        break;
    case 5:
        project.themeGuid = QLatin1Char('{') + add(contractStudio, name) + QLatin1Char('}');
        break;
    default:
        project.themeGuid = QStringLiteral("00000000-0000-0000-0000-000000000000");
    }
    const auto client = signIn(herself, contractStudio);
    const auto before = projectsOf(*client, session)->count();
    QCOMPARE(failureOf([&] { client->createProject(project); }), QStringLiteral("Invalid/invalid"));
    QCOMPARE(projectsOf(*client, session)->count(), before);
    project.themeGuid.clear();
    QVERIFY(client->createProject(project));
}

void ContractThemesTest::showsViewersTheThemesToo()
{
    add(contractStudio, QStringLiteral("To look at"));
    const auto viewer = signIn(vera(), contractStudio);
    QVERIFY(namesIn(themesOf(*viewer, ofAccount)).contains(QStringLiteral("To look at")));
    QVERIFY(templateOf(*viewer, QStringLiteral("player"), QStringLiteral("2")));
}

void ContractThemesTest::wantsASessionAndAnAccount()
{
    const auto lists = [](Client &client) { return failureOf([&] { themesOf(client, full); }); };
    const auto finds = [](Client &client) {
        return failureOf(
            [&] { templateOf(client, QStringLiteral("player"), QStringLiteral("2")); });
    };
    Client stranger;
    QCOMPARE(lists(stranger), QStringLiteral("SignedOut"));
    QCOMPARE(finds(stranger), QStringLiteral("SignedOut"));
    const auto without = signIn(nora());
    QCOMPARE(lists(*without), QStringLiteral("Refused/no-account"));
    QCOMPARE(finds(*without), QStringLiteral("Refused/no-account"));
    const auto late = signIn(nora(), contractStudio);
    const auto later = signIn(nora(), contractStudio);
    database().tx([this] { database().exec(expire, {QDateTime::currentMSecsSinceEpoch() - 1}); });
    QCOMPARE(lists(*late), QStringLiteral("SignedOut/signed-out"));
    QVERIFY(!late->isSignedIn());
    QCOMPARE(finds(*later), QStringLiteral("SignedOut/signed-out"));
}

void ContractThemesTest::tellsThatTheServiceWentAwayInTheMiddle()
{
    ServiceProxy proxy(service().port());
    Client client;
    QVERIFY(authenticate(client, proxy.address(), maja().user, maja().password));
    QVERIFY(chooseAccount(client, QString::number(brightwaterMedia)));
    for (const auto fate : {ServiceProxy::Fate::LoseAnswer, ServiceProxy::Fate::LoseRequest}) {
        proxy.setFate(fate);
        QCOMPARE(failureOf([&] { themesOf(client, full); }), QStringLiteral("ConnectionLost"));
        QCOMPARE(
            failureOf([&] { templateOf(client, QStringLiteral("player"), QStringLiteral("2")); }),
            QStringLiteral("ConnectionLost"));
    }
    proxy.setFate(ServiceProxy::Fate::PassOn);
    QVERIFY(themesOf(client, full)->count() > 10);
    const auto direct = signIn(maja(), brightwaterMedia);
    QCOMPARE(service().stop(), 0);
    const auto kept = std::make_shared<const ThemeCollection>();
    auto seen = kept;
    QCOMPARE(failureOf([&] { direct->callListMethod(QStringLiteral("Studio"), full, seen); }),
             QStringLiteral("Unreachable"));
    QCOMPARE(seen, kept);
}

void ContractThemesTest::tellsThatThePictureIsAway()
{
    const auto client = signIn(maja(), brightwaterMedia);
    const QString address = named(themesOf(*client, full), QStringLiteral("Town hall"))->previewUrl;
    const QString sha =
        QString::fromLatin1(QCryptographicHash::hash(sampleFile(QStringLiteral("town-hall.jpg")),
                                                     QCryptographicHash::Sha256)
                                .toHex());
    QCOMPARE(fetch(address).status, 200);
    renameBlob(sha, sha + QLatin1String(".away"));
    QCOMPARE(fetch(address).status, 404);
    renameBlob(sha + QLatin1String(".away"), sha);
    QCOMPARE(fetch(address).status, 200);
}

ZEL_TEST_MAIN(ContractThemesTest)
#include "tst_contractthemes.moc"
