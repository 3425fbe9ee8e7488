// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/migrations.h"
#include "service/store/store.h"
#include "service/store/workspaceimport.h"
#include "tests/service/testdatabases.h"
#include "testsupport/testcase.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QStringEncoder>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace Zel;

namespace {

const QString themeGuid = QStringLiteral("00000000-0000-4000-8000-000000000001");
const char *const themesHead =
    "account,guid,owner,name,description,width,height,created,modified,definition,preview\n";
const char *const themesRow =
    "1,00000000-0000-4000-8000-000000000001,ann,Name,Text,800,600,2026-01-02T03:04:05Z,"
    "2026-01-03T03:04:05Z,files/a.xml,files/a.png\n";
const char *const templatesText = "account,template,version,name,description\n"
                                  "0,player,1,Player,\n"
                                  "1,form,2,Form,\"A form,\nlong\"\n";
const char *const usesHead = "account,theme,template,version,required\n";
const char *const usesRows = "1,00000000-0000-4000-8000-000000000001,form,2,true\n"
                             "1,00000000-0000-4000-8000-000000000001,player,1,false\n";
const char *const projectsText =
    "account,guid,typeID,name,description,created,modified,createdBy,eventDate,published,theme\n"
    "1,00000000-0000-4000-8000-0000000000aa,webcast,P,,,,ann,,true,"
    "00000000-0000-4000-8000-000000000001\n";

QByteArray picture(const char *format, const QSize &size = QSize(8, 5))
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::darkCyan);
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    if (!image.save(&buffer, format))
        throw std::runtime_error("the picture cannot be made");
    return buffer.data();
}

const char *const svgText = "<?xml version='1.0'?><!-- "
                            "a long remark a long remark a long remark a long remark a long remark "
                            "a long remark a long remark a long remark a long remark a long remark "
                            "a long remark a long remark a long remark a long remark a long remark "
                            "-->\n<svg xmlns='http://www.w3.org/2000/svg' width='8' height='5'>"
                            "<rect width='8' height='5' fill='red'/></svg>";

} // namespace

/// Taking themes in from files, on SQLite; what the databases differ in is tested with the store.
class ThemeImportTest : public ZelTest::TestCase
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void takesThemesTheirFilesAndTemplatesIn();
    void changesNothingTheSecondTime();
    void changesWhatDiffers();
    void readsDefinitionsInEveryUnicode_data();
    void readsDefinitionsInEveryUnicode();
    void takesTheLongestDefinition();
    void tellsPreviewsByContent_data();
    void tellsPreviewsByContent();
    void refusesPreviewsThatAreNone_data();
    void refusesPreviewsThatAreNone();
    void refusesDefinitionsBeyondTheLimit_data();
    void refusesDefinitionsBeyondTheLimit();
    void namesThePlaceOfEveryFault_data();
    void namesThePlaceOfEveryFault();
    void storesNothingOfAFailedImport();

private:
    void write(const QString &name, const QByteArray &bytes)
    {
        QFile file(m_folder->filePath(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            throw std::runtime_error("the test file cannot be written");
    }

    void writeWorkspace();

    QString take()
    {
        QStringList parts;
        const QList<ImportCount> counts =
            importWorkspace(*m_store, WorkspaceFiles::read({m_folder->path()}));
        for (const ImportCount &count : counts) {
            if (count.kind == QLatin1String("templates") || count.kind == QLatin1String("themes") ||
                count.kind == QLatin1String("template lists") ||
                count.kind == QLatin1String("projects"))
                parts << QStringLiteral("%1 %2/%3/%4")
                             .arg(count.kind)
                             .arg(count.added)
                             .arg(count.changed)
                             .arg(count.unchanged);
        }
        return parts.join(QLatin1String(", "));
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

    Theme theme() { return m_store->themes.withGuid(themeGuid).value(0); }

    ZelTest::TestDatabases m_databases;
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<QTemporaryDir> m_files;
    std::unique_ptr<Database> m_database;
    std::unique_ptr<Store> m_store;
};

void ThemeImportTest::init()
{
    TestCase::init();
    m_folder = std::make_unique<QTemporaryDir>();
    m_files = std::make_unique<QTemporaryDir>();
    m_database = std::make_unique<Database>(m_databases.fresh(false), Database::Missing::Create);
    Migrations(*m_database).migrate();
    m_store = std::make_unique<Store>(*m_database, PasswordHasher::Cost::Minimal, systemClock(),
                                      m_files->path());
    QDir(m_folder->path()).mkdir(QStringLiteral("files"));
    writeWorkspace();
}

void ThemeImportTest::cleanup()
{
    m_store.reset();
    m_database.reset();
    m_files.reset();
    m_folder.reset();
}

void ThemeImportTest::writeWorkspace()
{
    write(QStringLiteral("accounts.json"),
          "[{\"account\": 1, \"name\": \"One\"}, {\"account\": 2, \"name\": \"Two\"}]");
    write(QStringLiteral("people.json"),
          "[{\"user\": \"ann\", \"displayName\": \"Ann\", \"password\": \"x\", "
          "\"accounts\": [{\"account\": 1, \"role\": \"owner\"}]},"
          "{\"user\": \"bob\", \"displayName\": \"Bob\", \"password\": \"x\", "
          "\"accounts\": [{\"account\": 2, \"role\": \"owner\"}]}]");
    write(QStringLiteral("project-types.json"),
          "[{\"typeID\": \"webcast\", \"name\": \"Webcasts\", \"accounts\": [1]}]");
    write(QStringLiteral("templates.csv"), templatesText);
    write(QStringLiteral("themes.csv"), QByteArray(themesHead) + themesRow);
    write(QStringLiteral("theme-templates.csv"), QByteArray(usesHead) + usesRows);
    write(QStringLiteral("projects.csv"), projectsText);
    write(QStringLiteral("files/a.xml"), "<WIZARD>\r\n</WIZARD>");
    write(QStringLiteral("files/a.png"), picture("PNG"));
}

void ThemeImportTest::takesThemesTheirFilesAndTemplatesIn()
{
    QCOMPARE(take(), QStringLiteral("templates 2/0/0, themes 1/0/0, template lists 1/0/0, "
                                    "projects 1/0/0"));
    const Theme stored = theme();
    QCOMPARE(stored.accountId, 1);
    QCOMPARE(stored.ownerId, m_store->users.find(QStringLiteral("ann"))->userId);
    QCOMPARE(stored.name, QStringLiteral("Name"));
    QCOMPARE(stored.description, QStringLiteral("Text"));
    QCOMPARE(stored.width, 800);
    QCOMPARE(stored.height, 600);
    QCOMPARE(stored.createdAt,
             QDateTime(QDate(2026, 1, 2), QTime(3, 4, 5), Qt::UTC).toMSecsSinceEpoch());
    QCOMPARE(stored.modifiedAt, stored.createdAt + 24 * 60 * 60 * 1000);
    QCOMPARE(stored.definition, QStringLiteral("<WIZARD>\r\n</WIZARD>"));
    QCOMPARE(stored.preview.mime, QStringLiteral("image/png"));
    const auto blob = m_store->blobs.open({stored.accountId, stored.preview.sha});
    QVERIFY(blob);
    QCOMPARE(blob->readAll(), picture("PNG"));
    QCOMPARE(m_store->themes.templatesOf(1, themeGuid),
             (QList<TemplateUse>{{QStringLiteral("form"), QStringLiteral("2"), true},
                                 {QStringLiteral("player"), QStringLiteral("1"), false}}));
    QCOMPARE(
        m_store->themes.findTemplate(1, QStringLiteral("form"), QStringLiteral("2"))->description,
        QStringLiteral("A form,\nlong"));
    QCOMPARE(m_store->projects.list(1, QStringLiteral("webcast"))->first().themeGuid, themeGuid);
}

void ThemeImportTest::changesNothingTheSecondTime()
{
    take();
    const Theme before = theme();
    QCOMPARE(take(), QStringLiteral("templates 0/0/2, themes 0/0/1, template lists 0/0/1, "
                                    "projects 0/0/1"));
    QCOMPARE(theme(), before);
}

void ThemeImportTest::changesWhatDiffers()
{
    take();
    write(QStringLiteral("files/a.xml"), "<WIZARD/>");
    write(QStringLiteral("templates.csv"), QByteArray(templatesText).replace("Form", "Sheet"));
    write(QStringLiteral("theme-templates.csv"),
          QByteArray(usesHead) + QByteArray(usesRows).replace("true", "false"));
    write(QStringLiteral("projects.csv"),
          QByteArray(projectsText).replace(themeGuid.toLatin1() + '\n', "\n"));
    QCOMPARE(take(), QStringLiteral("templates 0/1/1, themes 0/1/0, template lists 0/1/0, "
                                    "projects 0/1/0"));
    QCOMPARE(theme().definition, QStringLiteral("<WIZARD/>"));
    QVERIFY(!m_store->themes.templatesOf(1, themeGuid).first().required);
    QCOMPARE(m_store->projects.list(1, QStringLiteral("webcast"))->first().themeGuid, QString());

    // Another picture under the same name; then no files at all.
    write(QStringLiteral("files/a.png"), picture("PNG", QSize(9, 9)));
    const QString former = theme().preview.sha;
    take();
    QVERIFY(theme().preview.sha != former);
    write(QStringLiteral("themes.csv"),
          QByteArray(themesHead) + QByteArray(themesRow).replace("files/a.xml,files/a.png", ","));
    take();
    QCOMPARE(theme().definition, QString());
    QCOMPARE(theme().preview.sha, QString());
}

void ThemeImportTest::readsDefinitionsInEveryUnicode_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("text");
    const QString text = QString::fromUtf8("<WIZARD name='Łódź 😀'/>\r\n");
    const QString marked = QChar(0xfeff) + text;
    const auto encoded = [](const QString &of, QStringConverter::Encoding encoding) {
        QStringEncoder encoder(encoding);
        return QByteArray(encoder(of));
    };
    QTest::newRow("UTF-8") << text.toUtf8() << text;
    QTest::newRow("UTF-8 with its mark") << "\xef\xbb\xbf" + text.toUtf8() << marked;
    QTest::newRow("UTF-16, little end first")
        << encoded(marked, QStringConverter::Utf16LE) << marked;
    QTest::newRow("UTF-16, big end first") << encoded(marked, QStringConverter::Utf16BE) << marked;
    QTest::newRow("empty") << QByteArray() << QString();
    QTest::newRow("no XML") << QByteArray("hello <") << QStringLiteral("hello <");
}

void ThemeImportTest::readsDefinitionsInEveryUnicode()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, text);
    write(QStringLiteral("files/a.xml"), bytes);
    QCOMPARE(complaint(), QString());
    QCOMPARE(theme().definition, text);
}

void ThemeImportTest::takesTheLongestDefinition()
{
    write(QStringLiteral("files/a.xml"), QByteArray(Themes::largestDefinition, 'x'));
    QCOMPARE(complaint(), QString());
    QCOMPARE(theme().definition.size(), Themes::largestDefinition);
}

void ThemeImportTest::tellsPreviewsByContent_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("mime");
    QTest::newRow("PNG") << picture("PNG") << QStringLiteral("image/png");
    QTest::newRow("JPEG") << picture("JPG") << QStringLiteral("image/jpeg");
    QTest::newRow("WebP") << picture("WEBP") << QStringLiteral("image/webp");
    QTest::newRow("SVG") << QByteArray(svgText) << QStringLiteral("image/svg+xml");
}

void ThemeImportTest::tellsPreviewsByContent()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, mime);
    write(QStringLiteral("files/a.png"), bytes); // whatever the name says
    QCOMPARE(complaint(), QString());
    QCOMPARE(theme().preview.mime, mime);
    QCOMPARE(theme().preview.size, bytes.size());
}

void ThemeImportTest::refusesPreviewsThatAreNone_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("word");
    QTest::newRow("text") << QByteArray("a picture") << QStringLiteral("no picture");
    QTest::newRow("empty") << QByteArray() << QStringLiteral("no picture");
    QTest::newRow("cut") << picture("PNG", QSize(400, 400)).chopped(60)
                         << QStringLiteral("no picture");
    QTest::newRow("another form") << picture("BMP") << QStringLiteral("neither PNG nor JPEG");
    QTest::newRow("XML, but no SVG") << QByteArray("<html/>") << QStringLiteral("no picture");
    QTest::newRow("too large") << picture("PNG") + QByteArray(Themes::largestPreview, ' ')
                               << QStringLiteral("4194304");
}

void ThemeImportTest::refusesPreviewsThatAreNone()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, word);
    write(QStringLiteral("files/a.png"), bytes);
    const QString message = complaint();
    QVERIFY2(message.contains(QLatin1String("/themes.csv:2: ")), qPrintable(message));
    QVERIFY2(message.contains(QLatin1String("files/a.png")), qPrintable(message));
    QVERIFY2(message.contains(word), qPrintable(message));
    QVERIFY(m_store->themes.withGuid(themeGuid).isEmpty());
}

void ThemeImportTest::refusesDefinitionsBeyondTheLimit_data()
{
    QTest::addColumn<qint64>("size");
    QTest::newRow("one byte more") << Themes::largestDefinition + 1;
    QTest::newRow("100 MB") << qint64(100) * 1000 * 1000;
}

void ThemeImportTest::refusesDefinitionsBeyondTheLimit()
{
    QFETCH(qint64, size);
    QFile file(m_folder->filePath(QStringLiteral("files/a.xml")));
    QVERIFY(file.resize(size));
    const QString message = complaint();
    QVERIFY2(message.contains(QLatin1String("/themes.csv:2: ")), qPrintable(message));
    QVERIFY2(message.contains(QStringLiteral("files/a.xml has %1 bytes").arg(size)),
             qPrintable(message));
    QVERIFY2(message.contains(QLatin1String("8388608 (8 MiB)")), qPrintable(message));
    QVERIFY(m_store->themes.withGuid(themeGuid).isEmpty());
}

void ThemeImportTest::namesThePlaceOfEveryFault_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("place");
    QTest::addColumn<QString>("word");
    const auto row = [](const char *name, const char *file, const QByteArray &text,
                        const char *place, const char *word) {
        QTest::newRow(name) << QString::fromLatin1(file) << text << QString::fromLatin1(place)
                            << QString::fromUtf8(word);
    };
    const auto theme = [&row](const char *name, const char *from, const char *to,
                              const char *word) {
        const QByteArray second = QByteArray(themesRow).replace("0001,", "0002,");
        if (!second.contains(from))
            throw std::logic_error("the row has nothing to replace");
        row(name, "themes.csv",
            QByteArray(themesHead) + themesRow + QByteArray(second).replace(from, to),
            "themes.csv:3:", word);
    };
    theme("unknown account", "1,0000", "9,0000", "account 9");
    theme("account below 0", "1,0000", "-1,0000", "account");
    theme("unknown owner", ",ann,", ",eve,", "eve");
    theme("owner of every account's", "1,0000", "0,0000", "no owner");
    theme("no guid", "00000000-0000-4000-8000-000000000002", "x", "UUID");
    theme("guid twice", "0002,", "0001,", "twice");
    theme("no name", ",Name,", ",,", "name");
    theme("width no number", ",800,", ",wide,", "width");
    theme("width beyond 32 bits", ",800,", ",2147483648,", "width");
    theme("height below 0", ",600,", ",-1,", "height");
    theme("no time", "2026-01-02T03:04:05Z", "", "created");
    theme("time without a zone", "2026-01-03T03:04:05Z", "2026-01-03T03:04:05", "zone");
    theme("no such definition", "files/a.xml", "files/b.xml", "files/b.xml cannot be read");
    theme("definition a folder", "files/a.xml", "files", "cannot be read");
    theme("no such preview", "files/a.png", "files/b.png", "files/b.png cannot be read");
    row("a column too few", "themes.csv", "account,guid\n1,x\n", "themes.csv:2:", "UUID");
    row("unknown column", "themes.csv",
        QByteArray(themesHead).replace("preview", "preview,more") +
            QByteArray(themesRow).replace(".png", ".png,x"),
        "themes.csv:2:", "\"more\"");
    row("definition in Latin-1", "files/a.xml", "<a>\xe9</a>",
        "themes.csv:2:", "files/a.xml is neither");
    row("definition with NUL", "files/a.xml", QByteArray("<a>\0</a>", 8),
        "themes.csv:2:", "files/a.xml has a character");
    row("template twice", "templates.csv", QByteArray(templatesText) + "0,player,1,Again,\n",
        "templates.csv:5:", "twice");
    row("template without a key", "templates.csv", QByteArray(templatesText) + "0,,1,N,\n",
        "templates.csv:5:", "template");
    row("long key", "templates.csv",
        QByteArray(templatesText) + "0," + QByteArray(257, 'k') + ",1,N,\n",
        "templates.csv:5:", "256");
    row("template of an account nobody has", "templates.csv",
        QByteArray(templatesText) + "9,k,1,N,\n", "templates.csv:5:", "account 9");
    const auto use = [&row](const char *name, const QByteArray &line, const char *word) {
        row(name, "theme-templates.csv", QByteArray(usesHead) + usesRows + line,
            "theme-templates.csv:4:", word);
    };
    const QByteArray start = "1," + themeGuid.toLatin1();
    use("unknown theme", "1,00000000-0000-4000-8000-000000000009,form,2,true\n", "has no theme");
    use("theme of another account", "2," + themeGuid.toLatin1() + ",player,1,true\n",
        "belongs to account 1");
    use("unknown template", start + ",form,3,true\n", "\"form\" of version \"3\"");
    use("used twice", start + ",form,2,false\n", "already");
    use("neither true nor false", start + ",form,3,yes\n", "true or false");
    row("project of an unknown theme", "projects.csv",
        QByteArray(projectsText).replace("000000000001\n", "000000000009\n"),
        "projects.csv:2:", "has no theme");
    row("project of no theme's guid", "projects.csv",
        QByteArray(projectsText).replace(themeGuid.toLatin1() + '\n', "x\n"),
        "projects.csv:2:", "UUID");
}

void ThemeImportTest::namesThePlaceOfEveryFault()
{
    QFETCH(QString, file);
    QFETCH(QByteArray, text);
    QFETCH(QString, place);
    QFETCH(QString, word);
    write(file, text);
    const QString message = complaint();
    QVERIFY2(message.contains(QLatin1Char('/') + place), qPrintable(message));
    QVERIFY2(message.contains(word), qPrintable(message));
    QVERIFY(m_store->themes.withGuid(themeGuid).isEmpty());
    QVERIFY(!m_store->themes.ownTemplate(0, QStringLiteral("player"), QStringLiteral("1")));
}

void ThemeImportTest::storesNothingOfAFailedImport()
{
    take();
    const Theme before = theme();
    write(QStringLiteral("files/a.xml"), "<changed/>");
    write(QStringLiteral("projects.csv"), QByteArray(projectsText).replace("webcast", "podcast"));
    QVERIFY(complaint().contains(QLatin1String("podcast")));
    QCOMPARE(theme(), before);
    // A theme stays where it is.
    writeWorkspace();
    write(QStringLiteral("themes.csv"),
          QByteArray(themesHead) +
              QByteArray(themesRow).replace("1,0000", "0,0000").replace(",ann,", ",,"));
    QVERIFY(complaint().contains(QLatin1String("belongs to account 1")));
    QCOMPARE(theme(), before);
}

ZEL_TEST_MAIN(ThemeImportTest)
#include "tst_themeimport.moc"
