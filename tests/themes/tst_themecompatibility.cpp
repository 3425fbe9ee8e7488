// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "testsupport/recordingclient.h"
#include "testsupport/testcase.h"
#include "themes/themecompatibility.h"

#include <QFile>
#include <QRegularExpression>
#include <QTest>
#include <QXmlStreamWriter>

#include <optional>

using ZelWebServiceControls::ThemeCompatibility;
using ZelWebServiceControls::ThemeRules;
using Reason = ThemeCompatibility::Reason;

namespace {

/// The texts between « and » in a column, in order.
QStringList textsIn(const QString &column)
{
    static const QRegularExpression text(QStringLiteral("«([^»]*)»"));
    QStringList texts;
    for (auto found = text.globalMatch(column); found.hasNext();)
        texts << found.next().captured(1);
    return texts;
}

/// A definition with a version, if any, and fields: name, text, name, text.
QString definition(const std::optional<QString> &version, const QStringList &fields)
{
    QString xml;
    QXmlStreamWriter writer(&xml);
    writer.writeStartElement(QStringLiteral("WIZARD"));
    if (version)
        writer.writeAttribute(QStringLiteral("studio_version"), *version);
    writer.writeStartElement(QStringLiteral("CUSTOMFIELDS"));
    for (qsizetype i = 0; i + 1 < fields.size(); i += 2) {
        writer.writeStartElement(QStringLiteral("FIELD"));
        writer.writeAttribute(QStringLiteral("name"), fields.at(i));
        writer.writeCharacters(fields.at(i + 1));
        writer.writeEndElement();
    }
    writer.writeEndDocument();
    return xml;
}

/// An answer as the table writes it.
QString answer(const ThemeCompatibility &verdict)
{
    switch (verdict.reason) {
    case Reason::Usable:
        return QStringLiteral("usable");
    case Reason::VersionNeeded:
        return QStringLiteral("version");
    case Reason::FieldMissing:
        return QStringLiteral("missing «%1»").arg(verdict.field);
    case Reason::FieldNotMatching:
        return QStringLiteral("differs «%1»").arg(verdict.field);
    case Reason::NoDefinition:
        return QStringLiteral("no definition");
    case Reason::Unreadable:
        break;
    }
    return QStringLiteral("unreadable");
}

} // namespace

/// Which themes can be used: the table in fixtures/themes/compatibility.txt, and what a verdict
/// tells.
class tst_ThemeCompatibility : public ZelTest::TestCase
{
    Q_OBJECT

private slots:
    void isAsTheTableSays_data();
    void isAsTheTableSays();
    void doesNotDependOnTheLanguage();
    void tellsTheVersionNeeded();
    void tellsTheFieldMissing();
    void tellsTheFieldThatDiffers();
    void anEmptyDefinitionIsNone();
    void anUnreadableDefinitionIsSoWhateverItsVersion();
    void anotherRootHasNeitherVersionNorFields();
    void judgesManyAtOnceAsOneByOne();
};

void tst_ThemeCompatibility::isAsTheTableSays_data()
{
    QTest::addColumn<QString>("themeVersion");
    QTest::addColumn<QString>("appVersion");
    QTest::addColumn<QString>("flags");
    QTest::addColumn<QString>("fields");
    QTest::addColumn<QString>("expected");
    QFile table(QStringLiteral(ZEL_FIXTURES "/themes/compatibility.txt"));
    QVERIFY(table.open(QFile::ReadOnly));
    int rows = 0;
    int number = 0;
    for (const QString &line : QString::fromUtf8(table.readAll()).split(u'\n')) {
        ++number;
        if (line.isEmpty() || line.startsWith(u'#'))
            continue;
        const QStringList columns = line.split(u'|');
        QVERIFY2(columns.size() == 6, qPrintable(line));
        QTest::addRow("line %d, %s", number, qPrintable(columns.at(0).trimmed()))
            << columns.at(1).trimmed() << columns.at(2).trimmed() << columns.at(3).trimmed()
            << columns.at(4).trimmed() << columns.at(5).trimmed();
        ++rows;
    }
    QVERIFY(rows >= 60);
}

void tst_ThemeCompatibility::isAsTheTableSays()
{
    QFETCH(QString, themeVersion);
    QFETCH(QString, appVersion);
    QFETCH(QString, flags);
    QFETCH(QString, fields);
    QFETCH(QString, expected);
    std::optional<QString> version;
    if (themeVersion != QStringLiteral("-"))
        version = textsIn(themeVersion).value(0);
    const ThemeRules rules(textsIn(appVersion).value(0), textsIn(flags).value(0));
    const QString xml = definition(version, textsIn(fields));
    QCOMPARE(answer(rules.judge(xml)), expected);
}

void tst_ThemeCompatibility::doesNotDependOnTheLanguage()
{
    const QLocale before;
    // Points group digits here: "3.2" would be thirty-two.
    for (const QLocale &locale :
         {QLocale(QLocale::German), QLocale(QLocale::Arabic, QLocale::Egypt)}) {
        QLocale::setDefault(locale);
        const ThemeRules rules(QStringLiteral("3.2.10"), QString());
        QVERIFY(rules.judge(definition(QStringLiteral("3.2.10"), {})).isUsable());
        QVERIFY(!rules.judge(definition(QStringLiteral("3.2.11"), {})).isUsable());
        // A comma is a decimal point here, and would make it an earlier build.
        QVERIFY(!rules.judge(definition(QStringLiteral("3.2.1,1"), {})).isUsable());
    }
    QLocale::setDefault(before);
}

void tst_ThemeCompatibility::tellsTheVersionNeeded()
{
    const ThemeRules rules(QStringLiteral("3.2.10"), QStringLiteral("a:1"));
    ThemeCompatibility expected;
    expected.reason = Reason::VersionNeeded;
    expected.version = QStringLiteral(" 4.0");
    QVERIFY(rules.judge(definition(QStringLiteral(" 4.0"), {})) == expected);
}

void tst_ThemeCompatibility::tellsTheFieldMissing()
{
    const ThemeRules rules(QStringLiteral("3.2.10"), QStringLiteral("a:1;b:2"));
    ThemeCompatibility expected;
    expected.reason = Reason::FieldMissing;
    expected.field = QStringLiteral("b");
    QVERIFY(rules.judge(definition({}, {QStringLiteral("a"), QStringLiteral("1")})) == expected);
}

void tst_ThemeCompatibility::tellsTheFieldThatDiffers()
{
    const ThemeRules rules(QStringLiteral("3.2.10"), QStringLiteral("x:0;a:1,2;b:2"));
    ThemeCompatibility expected;
    expected.reason = Reason::FieldNotMatching;
    expected.field = QStringLiteral("a");
    expected.text = QStringLiteral("3");
    expected.values = QStringLiteral("1,2");
    QVERIFY(rules.judge(definition({}, {QStringLiteral("a"), QStringLiteral("3")})) == expected);
}

void tst_ThemeCompatibility::anEmptyDefinitionIsNone()
{
    const ThemeRules rules(QStringLiteral("3.2.10"), QString());
    QCOMPARE(answer(rules.judge(QString())), QStringLiteral("no definition"));
    QCOMPARE(answer(rules.judge(QStringLiteral(""))), QStringLiteral("no definition"));
    QCOMPARE(answer(rules.judge(QStringLiteral(" "))), QStringLiteral("unreadable"));
}

void tst_ThemeCompatibility::anUnreadableDefinitionIsSoWhateverItsVersion()
{
    const ThemeRules rules(QStringLiteral("3.2.10"), QStringLiteral("a:1"));
    QCOMPARE(answer(rules.judge(QStringLiteral("<WIZARD studio_version='4.0.0'>"))),
             QStringLiteral("unreadable"));
    QCOMPARE(answer(rules.judge(QStringLiteral("<WIZARD studio_version='1.0.0'/>x"))),
             QStringLiteral("unreadable"));
}

void tst_ThemeCompatibility::anotherRootHasNeitherVersionNorFields()
{
    const QString xml = QStringLiteral("<THEME studio_version='9.0.0'><CUSTOMFIELDS>"
                                       "<FIELD name='a'>1</FIELD></CUSTOMFIELDS></THEME>");
    const ThemeRules withoutFlags(QStringLiteral("3.2.10"), QString());
    QCOMPARE(answer(withoutFlags.judge(xml)), QStringLiteral("usable"));
    const ThemeRules withFlag(QStringLiteral("3.2.10"), QStringLiteral("a:1"));
    QCOMPARE(answer(withFlag.judge(xml)), QStringLiteral("missing «a»"));
}

void tst_ThemeCompatibility::judgesManyAtOnceAsOneByOne()
{
    // Enough to be read on all cores, in every mixture of answers.
    const QString padding(8000, u'x');
    QList<QXSC::ThemeRecord> records;
    for (int i = 0; i < 500; ++i) {
        QXSC::ThemeRecord record;
        const QString text = i % 4 == 0 ? QStringLiteral("1") : QString::number(i);
        if (i % 5 != 0)
            record.wizardXml = definition(i % 3 == 0 ? QStringLiteral("4.0.%1").arg(i) : QString(),
                                          {i % 7 == 0 ? QStringLiteral("b") : QStringLiteral("a"),
                                           text, QStringLiteral("padding"), padding});
        if (i % 11 == 0)
            record.wizardXml.chop(3);
        records << record;
    }
    const QXSC::ThemeCollectionPtr themes = ZelTest::themeList(records);
    const ThemeRules rules(QStringLiteral("3.2.10"), QStringLiteral("a:1"));
    const QList<ThemeCompatibility> verdicts = rules.judgeAll(*themes);
    QCOMPARE(verdicts.size(), themes->count());
    QStringList answers;
    for (qsizetype i = 0; i < verdicts.size(); ++i) {
        QVERIFY(verdicts.at(i) == rules.judge(records.at(i).wizardXml));
        answers << answer(verdicts.at(i)).section(u' ', 0, 0);
    }
    answers.removeDuplicates();
    QCOMPARE(answers.size(), 6);
    QVERIFY(rules.judgeAll(*ZelTest::themeList({})).isEmpty());
}

ZEL_TEST_MAIN(tst_ThemeCompatibility)
#include "tst_themecompatibility.moc"
