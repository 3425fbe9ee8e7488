// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "testsupport/testcase.h"
#include "themes/themedefinition.h"

#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>
#include <QTest>
#include <QXmlStreamReader>

#include <random>

using ZelWebServiceControls::MostDefinitionBytes;
using ZelWebServiceControls::MostDefinitionDepth;
using ZelWebServiceControls::readThemeDefinition;
using ZelWebServiceControls::ThemeDefinition;

namespace {

const QString folder = QStringLiteral(ZEL_FIXTURES "/themes/definitions/");

QString contentOf(const QString &path)
{
    QFile file(path);
    if (!file.open(QFile::ReadOnly))
        qFatal("cannot read %s", qPrintable(path));
    // Not a decoder, which would take byte order marks away.
    QString text = QString::fromUtf8(file.readAll().prepend("x"));
    return text.remove(0, 1);
}

void addFiles(const QString &kind)
{
    QTest::addColumn<QString>("path");
    QDirIterator files(folder + kind, {QStringLiteral("*.xml")});
    int count = 0;
    for (; files.hasNext(); ++count) {
        files.next();
        QTest::newRow(qPrintable(files.fileInfo().baseName())) << files.filePath();
    }
    QVERIFY(count > 0);
}

/// The names of all fields that the files have, and of those that they must not be taken to have.
QStringList allNames()
{
    QStringList names{QString(), QStringLiteral("type"), QStringLiteral("size"),
                      QStringLiteral("a<A'")};
    for (char16_t letter = u'a'; letter <= u'g'; ++letter)
        names << QString(QChar(letter));
    return names;
}

/// Version and fields as lines `name «text»`, fields by name.
QStringList lines(const ThemeDefinition &definition)
{
    QStringList lines;
    for (auto field = definition.fields.begin(); field != definition.fields.end(); ++field)
        lines << QStringLiteral("%1 «%2»").arg(field.key(), field.value());
    lines.sort();
    return QStringList{QStringLiteral("version «%1»").arg(definition.studioVersion)} + lines;
}

QString nested(int depth)
{
    return QStringLiteral("<a>").repeated(depth) + QStringLiteral("</a>").repeated(depth);
}

/// A definition of this many bytes in UTF-8, filled up with a character.
QString ofBytes(qsizetype bytes, QChar filling = u'x')
{
    const QString before = QStringLiteral("<WIZARD studio_version='1.0.0'>");
    const QString after = QStringLiteral("</WIZARD>");
    const qsizetype room = bytes - before.size() - after.size();
    const qsizetype bytesOfOne = QString(filling).toUtf8().size();
    return before + QString(room / bytesOfOne, filling) + QString(room % bytesOfOne, u'x') + after;
}

} // namespace

/// Reading definitions: the files in fixtures/themes/definitions, and texts too large for files.
class tst_ThemeDefinition : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void readsWhatIsReadable_data() { addFiles(QStringLiteral("readable")); }

    void readsWhatIsReadable();

    void refusesWhatIsNot_data() { addFiles(QStringLiteral("unreadable")); }

    void refusesWhatIsNot();
    void refusesNothing();
    void readsOnlyTheFieldsAskedFor();
    void refusesBytesOfAnotherEncoding();
    void refusesWhatIsTooLarge_data();
    void refusesWhatIsTooLarge();
    void refusesAHundredMegabytes();
    void refusesWhatIsTooDeep();
    void readsLongNames();
    void agreesWithAPlainReaderOnDamagedTexts();
};

void tst_ThemeDefinition::readsWhatIsReadable()
{
    QFETCH(QString, path);
    const auto definition = readThemeDefinition(contentOf(path), allNames());
    QVERIFY(definition);
    static const QRegularExpression line(QStringLiteral("(?:^|\\n)([^«»\\n]* «[^»]*»)"));
    QStringList expected;
    const QString text =
        contentOf(QString(path).replace(QStringLiteral(".xml"), QStringLiteral(".txt")));
    for (auto found = line.globalMatch(text); found.hasNext();)
        expected << found.next().captured(1);
    expected.sort();
    const QStringList version = expected.filter(QRegularExpression(QStringLiteral("^version ")));
    expected.removeAll(version.value(0));
    expected.prepend(version.value(0, QStringLiteral("version «»")));
    QCOMPARE(lines(*definition), expected);
}

void tst_ThemeDefinition::refusesWhatIsNot()
{
    QFETCH(QString, path);
    QVERIFY(!readThemeDefinition(contentOf(path), allNames()));
    QVERIFY(!readThemeDefinition(contentOf(path), {}));
}

void tst_ThemeDefinition::refusesNothing()
{
    QVERIFY(!readThemeDefinition(QString(), allNames()));
}

void tst_ThemeDefinition::readsOnlyTheFieldsAskedFor()
{
    const QString xml = contentOf(folder + QStringLiteral("readable/whole.xml"));
    const auto definition = readThemeDefinition(xml, {QStringLiteral("size")});
    QVERIFY(definition);
    QCOMPARE(lines(*definition),
             (QStringList{QStringLiteral("version «3.2.10»"), QStringLiteral("size «big»")}));
    QCOMPARE(readThemeDefinition(xml, {})->fields.size(), 0);
}

void tst_ThemeDefinition::refusesBytesOfAnotherEncoding()
{
    // UTF-16 that somebody took for a text of single bytes.
    const QString xml = contentOf(folder + QStringLiteral("readable/declares-utf-16.xml"));
    const auto *bytes = reinterpret_cast<const char *>(xml.utf16());
    const QString mistaken = QString::fromLatin1(bytes, xml.size() * 2);
    QVERIFY(!readThemeDefinition(mistaken, allNames()));
    QVERIFY(!readThemeDefinition(QString(QChar(0xFFFE)) + xml, allNames()));
}

void tst_ThemeDefinition::refusesWhatIsTooLarge_data()
{
    QTest::addColumn<QChar>("filling");
    QTest::newRow("one byte each") << QChar(u'x');
    QTest::newRow("two bytes each") << QChar(u'é');
    QTest::newRow("three bytes each") << QChar(u'€');
}

void tst_ThemeDefinition::refusesWhatIsTooLarge()
{
    QFETCH(QChar, filling);
    const QString most = ofBytes(MostDefinitionBytes, filling);
    QCOMPARE(most.toUtf8().size(), MostDefinitionBytes);
    QVERIFY(readThemeDefinition(most, {}));
    QVERIFY(!readThemeDefinition(ofBytes(MostDefinitionBytes + 1, filling), {}));
}

void tst_ThemeDefinition::refusesAHundredMegabytes()
{
    QVERIFY(!readThemeDefinition(ofBytes(100 * 1000 * 1000), allNames()));
}

void tst_ThemeDefinition::refusesWhatIsTooDeep()
{
    QVERIFY(readThemeDefinition(nested(MostDefinitionDepth), {}));
    QVERIFY(!readThemeDefinition(nested(MostDefinitionDepth + 1), {}));
    QVERIFY(!readThemeDefinition(nested(100'000), allNames()));
    QVERIFY(!readThemeDefinition(QStringLiteral("<a>").repeated(100'000), allNames()));
    // Beside each other there may be any number.
    const QString broad = QStringLiteral("<WIZARD>%1</WIZARD>").arg(nested(10).repeated(1000));
    QVERIFY(readThemeDefinition(broad, {}));
}

void tst_ThemeDefinition::readsLongNames()
{
    const QString name(4000, u'n');
    const QString xml = QStringLiteral("<WIZARD %1='1'><CUSTOMFIELDS><FIELD name='%1'>text</FIELD>"
                                       "</CUSTOMFIELDS><%1/></WIZARD>")
                            .arg(name);
    QCOMPARE(readThemeDefinition(xml, {name})->fields.value(name), QStringLiteral("text"));
    for (const int length : {4095, 4096, 4097, 70'000}) {
        const QString longer(length, u'n');
        // Whether they are read is up to the reader; that it survives them is not.
        readThemeDefinition(QStringLiteral("<%1:a/>").arg(longer), {});
        readThemeDefinition(QStringLiteral("<a %1:b='1'/>").arg(longer), {});
        readThemeDefinition(QStringLiteral("<a:%1/>").arg(longer), {});
    }
}

void tst_ThemeDefinition::agreesWithAPlainReaderOnDamagedTexts()
{
    const QString whole = contentOf(folder + QStringLiteral("readable/whole.xml")) +
                          contentOf(folder + QStringLiteral("readable/namespaces.xml"));
    const QString pieces = QStringLiteral("<>/&;='\"![]-?:x \n") + QChar(0) + QChar(0xD800);
    std::mt19937 random(20060914);
    const auto below = [&random](qsizetype count) { return qsizetype(random() % size_t(count)); };
    int readable = 0;
    for (int i = 0; i < 4000; ++i) {
        const qsizetype cut = i % 2 == 0 ? whole.indexOf(u"<WIZARD", 60) : 0;
        QString text = cut > 0 ? whole.first(cut) : whole.sliced(whole.lastIndexOf(u"<WIZARD"));
        for (qsizetype changes = below(3); changes >= 0; --changes) {
            const qsizetype at = below(text.size());
            if (below(3) == 0)
                text.remove(at, below(5));
            else
                text.insert(at, pieces.at(below(pieces.size())));
        }
        QXmlStreamReader plain(text);
        bool declaresEntities = false;
        while (!plain.atEnd()) {
            plain.readNext();
            declaresEntities = declaresEntities || !plain.entityDeclarations().isEmpty();
        }
        const bool read = readThemeDefinition(text, allNames()).has_value();
        QCOMPARE(read, !plain.hasError() && !declaresEntities);
        readable += read ? 1 : 0;
    }
    QVERIFY(readable > 400 && readable < 3600);
}

ZEL_TEST_MAIN(tst_ThemeDefinition)
#include "tst_themedefinition.moc"
