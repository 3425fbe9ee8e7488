// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/core/propertybag.h"
#include "testsupport/testcase.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>

#include <limits>

using Zel::PropertyBag;

namespace {

PropertyBag sample()
{
    PropertyBag bag;
    bag.write(QStringLiteral("ShowLoginURL"), false, true);
    bag.write(QStringLiteral("BackColor"), 0x8000000FU, 0xFFFFFFU);
    bag.write(QStringLiteral("LoginURL"), QStringLiteral("https://studio.example/?a=1&b=<2>"));
    bag.write(QStringLiteral("Count"), -42);
    bag.write(QStringLiteral("Big"), 9007199254740993LL);
    bag.write(QStringLiteral("Ratio"), 0.1);
    bag.write(QStringLiteral("Since"), QDateTime(QDate(2007, 1, 9), QTime(15, 4, 5)));
    return bag;
}

QStringList awkwardTexts()
{
    QStringList texts{
        QString(),
        QStringLiteral(" "),
        QStringLiteral("  leading and trailing\t "),
        QStringLiteral("a\r\nb\rc\nd\te"),
        QStringLiteral("\"quotes\" and 'apostrophes'"),
        QStringLiteral("<a href=\"x\">&amp;&lt;]]></a><!-- -->"),
        QStringLiteral("C:\\new\\u0041\\"),
        QStringLiteral("\u00E9 e\u0301 \u200F\u2028\u2029\uFEFF"),
        QStringLiteral("\U0001F600 \U0010FFFF"),
        QStringLiteral("True"),
        QStringLiteral("&H8000000F&"),
        QString(70000, u'x'),
        QChar(0xD800),
        QChar(0xDC00) + QString(QChar(0xD800)),
        QStringLiteral("x") + QChar(0xD83D) + QStringLiteral("y\\"),
        QChar(0xFFFE) + QString(QChar(0xFFFF)),
    };
    QString controls;
    for (char16_t c = 0; c < 0xA0; ++c)
        controls += QChar(c);
    texts << controls;
    return texts;
}

/// Every UTF-16 code unit there is, in a few long texts.
QStringList allCodeUnits()
{
    QStringList texts;
    for (int block = 0; block < 16; ++block) {
        QString text;
        for (int unit = 0; unit < 0x1000; ++unit)
            text += QChar(block * 0x1000 + unit);
        texts << text;
    }
    return texts;
}

QString throughJsonText(const PropertyBag &bag)
{
    return QString::fromUtf8(QJsonDocument(bag.toJson()).toJson());
}

void compareBags(const PropertyBag &read, const PropertyBag &written)
{
    QCOMPARE(read.problems(), QStringList());
    QCOMPARE(read.names(), written.names());
    for (const QString &name : written.names()) {
        QCOMPARE(read.read(name).metaType(), written.read(name).metaType());
        QCOMPARE(read.read(name), written.read(name));
    }
    QVERIFY(read == written);
}

QString entries(const char *text)
{
    return QStringLiteral("<properties version=\"1\">\n%1\n</properties>")
        .arg(QString::fromUtf8(text));
}

} // namespace

class TestPropertyBagFormats : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void xmlIsReadable()
    {
        PropertyBag bag;
        bag.write(QStringLiteral("ShowLoginURL"), false, true);
        bag.write(QStringLiteral("BackColor"), 0x8000000FU);
        bag.write(QStringLiteral("UserName"), QStringLiteral("Ann"));
        bag.write(QStringLiteral("Bell"), QStringLiteral("\a\\"));
        QCOMPARE(
            bag.toXml(),
            QStringLiteral(
                "<?xml version=\"1.0\"?>\n"
                "<properties version=\"1\">\n"
                "    <property name=\"ShowLoginURL\" type=\"boolean\" value=\"False\"/>\n"
                "    <property name=\"BackColor\" type=\"color\" value=\"&amp;H8000000F&amp;\"/>\n"
                "    <property name=\"UserName\" type=\"text\" value=\"Ann\"/>\n"
                "    <property name=\"Bell\" type=\"escapedText\" value=\"\\u0007\\\\\"/>\n"
                "</properties>\n"));
    }

    void jsonIsReadable()
    {
        PropertyBag bag;
        bag.write(QStringLiteral("ShowLoginURL"), false, true);
        bag.write(QStringLiteral("BackColor"), 0x8000000FU);
        bag.write(QStringLiteral("Ratio"), 0.5);
        const QByteArray expected =
            R"({"properties":[{"name":"ShowLoginURL","type":"boolean","value":false},)"
            R"({"name":"BackColor","type":"color","value":"&H8000000F&"},)"
            R"({"name":"Ratio","type":"number","value":0.5}],"version":1})";
        QCOMPARE(QJsonDocument(bag.toJson()).toJson(QJsonDocument::Compact), expected);
    }

    void everyKindOfValueComesBack()
    {
        PropertyBag bag = sample();
        bag.write(QStringLiteral("True"), true);
        bag.write(QStringLiteral("Least"), std::numeric_limits<qint64>::min());
        bag.write(QStringLiteral("Tiny"), std::numeric_limits<double>::denorm_min());
        bag.write(QStringLiteral("Huge"), std::numeric_limits<double>::max());
        bag.write(QStringLiteral("Third"), 1.0 / 3);
        bag.write(QStringLiteral("Whole"), 3.0);
        bag.write(QStringLiteral("White"), 0U);
        bag.write(QStringLiteral("Milliseconds"), QDateTime(QDate(100, 1, 1), QTime(1, 2, 3, 4)));
        compareBags(PropertyBag::fromXml(bag.toXml()), bag);
        compareBags(PropertyBag::fromJson(bag.toJson()), bag);
        compareBags(PropertyBag::fromText(throughJsonText(bag)), bag);
        compareBags(PropertyBag::fromText(bag.toText()), bag);
    }

    void awkwardTextsComeBackCodeUnitForCodeUnit()
    {
        PropertyBag bag;
        for (const QString &text : awkwardTexts() + allCodeUnits())
            bag.write(QStringLiteral("p%1").arg(bag.names().size()), text);
        const QString xml = bag.toXml();
        compareBags(PropertyBag::fromXml(xml), bag);
        compareBags(PropertyBag::fromJson(bag.toJson()), bag);
        // Through a file, as a host saves it.
        compareBags(PropertyBag::fromText(QString::fromUtf8(xml.toUtf8())), bag);
        compareBags(PropertyBag::fromText(throughJsonText(bag)), bag);
    }

    void awkwardNamesComeBackToo()
    {
        PropertyBag bag;
        int value = 0;
        for (const QString &name : awkwardTexts()) {
            if (!name.isEmpty())
                bag.write(name, ++value);
        }
        compareBags(PropertyBag::fromText(QString::fromUtf8(bag.toXml().toUtf8())), bag);
        compareBags(PropertyBag::fromText(throughJsonText(bag)), bag);
    }

    void anEmptyBagIsAnEmptyText()
    {
        QCOMPARE(PropertyBag().toText(), QString());
        for (const char *text : {"", "  \r\n ", "<properties/>", "{\"properties\":[]}"}) {
            const PropertyBag bag = PropertyBag::fromText(QString::fromLatin1(text));
            QVERIFY(bag.isEmpty());
            QCOMPARE(bag.problems(), QStringList());
        }
        QVERIFY(PropertyBag::fromXml(PropertyBag().toXml()).problems().isEmpty());
    }

    void textMayBeginWithAByteOrderMark()
    {
        const QChar mark(0xFEFF);
        compareBags(PropertyBag::fromText(mark + sample().toXml()), sample());
        compareBags(PropertyBag::fromText(mark + throughJsonText(sample())), sample());
    }

    void whatAPersonWroteByHandIsRead()
    {
        const PropertyBag bag = PropertyBag::fromText(
            entries("<!-- mine --><property name='ShowLoginURL' value='false'/>"
                    "<property value='255' type='color' name='BackColor'></property>"
                    "<property name='Note' value='&#65;&lt;'/>"));
        QCOMPARE(bag.problems(), QStringList());
        QVERIFY(!bag.readBool(QStringLiteral("ShowLoginURL"), true));
        QCOMPARE(bag.readColor(QStringLiteral("BackColor"), 0), 255U);
        QCOMPARE(bag.readString(QStringLiteral("Note"), QString()), QStringLiteral("A<"));
        const PropertyBag json = PropertyBag::fromText(
            QStringLiteral(R"({"properties":[{"name":"BackColor","type":"color","value":255},)"
                           R"({"name":"Count","type":"integer","value":"7"}]})"));
        QCOMPARE(json.problems(), QStringList());
        QCOMPARE(json.readColor(QStringLiteral("BackColor"), 0), 255U);
        QCOMPARE(json.read(QStringLiteral("Count")), QVariant(7));
    }

    void aMalformedEntryIsToldAndTheOthersAreRead_data()
    {
        QTest::addColumn<QString>("entry");
        QTest::addColumn<QString>("problem");
        const auto row = [](const char *entry, const char *problem) {
            QTest::newRow(entry) << QString::fromUtf8(entry) << QString::fromUtf8(problem);
        };
        row("<property type='text' value='x'/>",
            "The entry at line 3 is left out: it has no name.");
        row("<property name='' value='x'/>", "The entry at line 3 is left out: it has no name.");
        row("<property name='n' type='integer'/>",
            "The entry “n” at line 3 is left out: it has no value.");
        row("<property name='n' type='wish' value='x'/>",
            "The entry “n” at line 3 is left out: “wish” is not a known type.");
        row("<property name='First' value='2'/>",
            "The entry “First” at line 3 is left out: there is one of this name before it.");
        row("<property name='n' type='integer' value='7.5'/>",
            "The entry “n” at line 3 is left out: “7.5” is not a value of type integer.");
        row("<property name='n' type='boolean' value='banana'/>",
            "The entry “n” at line 3 is left out: “banana” is not a value of type boolean.");
        row("<property name='n' type='color' value='red'/>",
            "The entry “n” at line 3 is left out: “red” is not a value of type color.");
        row("<property name='n' type='number' value='inf'/>",
            "The entry “n” at line 3 is left out: “inf” is not a value of type number.");
        row("<property name='n' type='number' value='1,5'/>",
            "The entry “n” at line 3 is left out: “1,5” is not a value of type number.");
        row("<property name='n' type='date' value='soon'/>",
            "The entry “n” at line 3 is left out: “soon” is not a value of type date.");
        row("<property name='n' type='date' value='2007-01-09x15:04:05'/>",
            "The entry “n” at line 3 is left out: “2007-01-09x15:04:05” is not a value of type "
            "date.");
        row("<property name='n' type='date' value='2007-02-30T15:04:05'/>",
            "The entry “n” at line 3 is left out: “2007-02-30T15:04:05” is not a value of type "
            "date.");
        row("<property name='n' type='escapedText' value='a\\x'/>",
            "The entry “n” at line 3 is left out: “a\\x” is not a value of type escapedText.");
        row("<property name='n' type='escapedText' value='\\u12'/>",
            "The entry “n” at line 3 is left out: “\\u12” is not a value of type escapedText.");
        row("<property escapedName='a\\' value='1'/>",
            "The entry “a\\” at line 3 is left out: it has no name.");
        row("<wish name='n'/>", "The element “wish” at line 3 is left out: it is no property.");
        row("<wish><property name='n' value='1'/></wish>",
            "The element “wish” at line 3 is left out: it is no property.");
    }

    void aMalformedEntryIsToldAndTheOthersAreRead()
    {
        QFETCH(QString, entry);
        QFETCH(QString, problem);
        const PropertyBag bag = PropertyBag::fromXml(
            QStringLiteral("<properties>\n<property name='First' type='integer' value='1'/>\n%1\n"
                           "<property name='Last' type='boolean' value='True'/>\n</properties>")
                .arg(entry));
        QCOMPARE(bag.problems(), QStringList(problem));
        QCOMPARE(bag.names().join(u' '), QStringLiteral("First Last"));
        QCOMPARE(bag.read(QStringLiteral("First")), QVariant(1));
        QCOMPARE(bag.read(QStringLiteral("Last")), QVariant(true));
    }

    void aMalformedJsonEntryIsToldAndTheOthersAreRead_data()
    {
        QTest::addColumn<QString>("entry");
        QTest::addColumn<QString>("problem");
        const auto row = [](const char *entry, const char *problem) {
            QTest::newRow(entry) << QString::fromUtf8(entry) << QString::fromUtf8(problem);
        };
        row("7", "The entry at number 2 is left out: it has no name.");
        row("{}", "The entry at number 2 is left out: it has no name.");
        row(R"({"name":5,"value":1})", "The entry at number 2 is left out: it has no name.");
        row(R"({"name":"n"})", "The entry “n” at number 2 is left out: it has no value.");
        row(R"({"name":"n","type":7,"value":"x"})",
            "The entry “n” at number 2 is left out: “” is not a known type.");
        row(R"({"name":"n","value":5})",
            "The entry “n” at number 2 is left out: “5” is not a value of type text.");
        row(R"({"name":"n","type":"integer","value":7.5})",
            "The entry “n” at number 2 is left out: “7.5” is not a value of type integer.");
        row(R"({"name":"n","type":"integer","value":true})",
            "The entry “n” at number 2 is left out: “true” is not a value of type integer.");
        row(R"({"name":"n","type":"boolean","value":null})",
            "The entry “n” at number 2 is left out: “null” is not a value of type boolean.");
        row(R"({"name":"n","type":"color","value":4294967296})",
            "The entry “n” at number 2 is left out: “4294967296” is not a value of type color.");
        row(R"({"name":"n","type":"number","value":[1]})",
            "The entry “n” at number 2 is left out: “[1]” is not a value of type number.");
    }

    void aMalformedJsonEntryIsToldAndTheOthersAreRead()
    {
        QFETCH(QString, entry);
        QFETCH(QString, problem);
        const PropertyBag bag = PropertyBag::fromText(
            QStringLiteral(R"({"properties":[{"name":"First","type":"integer","value":1},%1,)"
                           R"({"name":"Last","type":"boolean","value":true}]})")
                .arg(entry));
        QCOMPARE(bag.problems(), QStringList(problem));
        QCOMPARE(bag.names().join(u' '), QStringLiteral("First Last"));
    }

    void whatIsNoBagIsToldAndEmpty_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("problem");
        const auto row = [](const char *text, const char *problem) {
            QTest::newRow(text) << QString::fromUtf8(text) << QString::fromUtf8(problem);
        };
        row("hello", "The text is neither XML nor JSON; nothing is read.");
        row("[]", "The text is neither XML nor JSON; nothing is read.");
        row("<html/>", "The XML text holds no properties.");
        row("<html><property name='n' value='1'/></html>", "The XML text holds no properties.");
        row("{}", "The JSON text holds no properties.");
        row(R"({"properties":{}})", "The JSON text holds no properties.");
        row("{\n\"properties\":\n[}",
            "The text is not well-formed JSON at line 3 (object is missing after a comma); "
            "nothing is read.");
        row("<!DOCTYPE properties [<!ENTITY a 'b'>]><properties/>",
            "The XML text has a document type declaration, which is not read.");
    }

    void whatIsNoBagIsToldAndEmpty()
    {
        QFETCH(QString, text);
        QFETCH(QString, problem);
        const PropertyBag bag = PropertyBag::fromText(text);
        QVERIFY(bag.isEmpty());
        QCOMPARE(bag.problems(), QStringList(problem));
    }

    void entitiesNeverExpand()
    {
        const PropertyBag declared = PropertyBag::fromXml(
            QStringLiteral("<?xml version='1.0'?><!DOCTYPE p [<!ENTITY a 'aaaaaaaaaa'>"
                           "<!ENTITY b '&a;&a;&a;'>]><properties><property name='n' value='&b;'/>"
                           "</properties>"));
        QVERIFY(declared.isEmpty());
        QCOMPARE(declared.problems().size(), 1);
        const PropertyBag undeclared = PropertyBag::fromXml(
            entries("<property name='a' value='1'/>\n<property name='n' value='&nbsp;'/>"));
        QCOMPARE(undeclared.names(), QStringList(QStringLiteral("a")));
        QCOMPARE(undeclared.problems().size(), 1);
        QVERIFY(undeclared.problems().first().startsWith(
            QStringLiteral("The text is not well-formed XML from line 3 on (")));
    }

    void aNewerVersionIsToldAndRead()
    {
        const QString problem = QStringLiteral("The properties were saved by a newer version; what "
                                               "this one understands is read.");
        const PropertyBag xml =
            PropertyBag::fromText(QStringLiteral("<properties version='2'><property name='n' "
                                                 "value='1'><more/></property></properties>"));
        QCOMPARE(xml.problems(), QStringList(problem));
        QCOMPARE(xml.names(), QStringList(QStringLiteral("n")));
        const PropertyBag json = PropertyBag::fromText(
            QStringLiteral(R"({"version":2,"properties":[{"name":"n","value":"1"}]})"));
        QCOMPARE(json.problems(), QStringList(problem));
        QCOMPARE(json.names(), QStringList(QStringLiteral("n")));
    }

    void aTextCutOffAnywhereKeepsWhatWasWhole()
    {
        const PropertyBag whole = sample();
        const QString xml = whole.toXml().trimmed();
        for (qsizetype length = 1; length < xml.size(); ++length) {
            const PropertyBag bag = PropertyBag::fromText(xml.first(length));
            const qsizetype complete = xml.first(length).count(QStringLiteral("/>"));
            QVERIFY2(!bag.problems().isEmpty(), qPrintable(QString::number(length)));
            QCOMPARE(bag.names(), whole.names().first(complete));
        }
        const QString json = throughJsonText(whole).trimmed();
        for (qsizetype length = 1; length < json.size(); ++length) {
            const PropertyBag bag = PropertyBag::fromText(json.first(length));
            QVERIFY2(!bag.problems().isEmpty(), qPrintable(QString::number(length)));
            QVERIFY(bag.isEmpty());
        }
    }

    void anyDamagedCharacterIsSurvived()
    {
        const QString xml = sample().toXml();
        const QString json = throughJsonText(sample());
        for (const QString &text : {xml, json}) {
            for (qsizetype at = 0; at < text.size(); ++at) {
                for (const char16_t c :
                     {u'<', u'>', u'&', u'"', u':', u'\0', u'{', char16_t(0xD800), u'é'}) {
                    QString damaged = text;
                    damaged[at] = c;
                    const PropertyBag bag = PropertyBag::fromText(damaged);
                    QVERIFY(bag.names().size() <= sample().names().size());
                }
                QString shorter = text;
                shorter.remove(at, 1);
                QVERIFY(PropertyBag::fromText(shorter).names().size() <= sample().names().size());
            }
        }
    }

    void aHugeTextIsRefused()
    {
        PropertyBag bag;
        bag.write(QStringLiteral("n"), QString(PropertyBag::MostCharacters, u'x'));
        for (const QString &text : {bag.toXml(), throughJsonText(bag), QString(5000000, u' ')}) {
            const PropertyBag read = PropertyBag::fromText(text);
            QVERIFY(read.isEmpty());
            if (!text.trimmed().isEmpty())
                QCOMPARE(
                    read.problems(),
                    QStringList(QStringLiteral(
                        "The text is too long to be read: it has more than 1048576 characters.")));
        }
    }

    void manyEntriesAreRead()
    {
        PropertyBag bag;
        for (int i = 0; i < 12000; ++i)
            bag.write(QStringLiteral("property%1").arg(i), i);
        compareBags(PropertyBag::fromXml(bag.toXml()), bag);
    }

    void deepNestingEndsTheReading()
    {
        const QString start = QStringLiteral("<properties><property name='n' value='1'/>");
        const PropertyBag bag =
            PropertyBag::fromXml(start + QStringLiteral("<a>").repeated(100000));
        QCOMPARE(bag.names(), QStringList(QStringLiteral("n")));
        QVERIFY(bag.problems().last().startsWith(
            QStringLiteral("The elements are nested too deeply from line 1 on")));
        const PropertyBag json =
            PropertyBag::fromText(QStringLiteral("{\"properties\":") + QString(100000, u'['));
        QVERIFY(json.isEmpty());
        QCOMPARE(json.problems().size(), 1);
    }

    void namespacesMeanNothing()
    {
        const PropertyBag bag = PropertyBag::fromXml(QStringLiteral(
            "<properties xmlns='urn:x' xmlns:p='urn:y'><property name='n' value='1'/>"
            "<p:property name='m' value='1'/></properties>"));
        QCOMPARE(bag.names(), QStringList(QStringLiteral("n")));
        QCOMPARE(bag.problems().size(), 1);
    }
};

ZEL_TEST_MAIN(TestPropertyBagFormats)
#include "tst_propertybagformats.moc"
