// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/jsonwriter.h"
#include "service/daemon/logline.h"
#include "testsupport/testcase.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

#include <limits>

using namespace Zel::Service;

/// What the service writes by itself: JSON and log lines.
class JsonTest : public ZelTest::TestCase
{
    Q_OBJECT

private slots:
    void writesEveryCodePointSoThatItReadsBack();
    void writesHalfAPairAsItsEscape();
    void setsCommasWhereTheyBelong();
    void writesNumbersOf64Bits();
    void quotesLogValuesThatNeedIt();
};

void JsonTest::writesEveryCodePointSoThatItReadsBack()
{
    for (char32_t code = 1; code <= 0x10ffff; code += code < 0x3000 ? 1 : 97) {
        if (QChar::isSurrogate(code))
            continue;
        const QString text = QString::fromUcs4(&code, 1) + QLatin1Char('z');
        const QByteArray json = JsonWriter().beginArray().text(text).endArray().json();
        QJsonParseError error;
        const QJsonDocument document = QJsonDocument::fromJson(json, &error);
        QCOMPARE(error.error, QJsonParseError::NoError);
        QCOMPARE(document.array().first().toString(), text);
    }
}

void JsonTest::writesHalfAPairAsItsEscape()
{
    const auto json = [](std::initializer_list<char16_t> units) {
        QString text;
        for (const char16_t unit : units)
            text += QChar(unit);
        return JsonWriter().text(text).json();
    };
    QCOMPARE(json({0xd83d}), QByteArray("\"\\ud83d\""));
    QCOMPARE(json({0xde00, u'a'}), QByteArray("\"\\ude00a\""));
    QCOMPARE(json({0xd83d, 0xd83d, 0xde00}), QByteArray("\"\\ud83d\xf0\x9f\x98\x80\""));
    QCOMPARE(json({0xd83d, u'a'}), QByteArray("\"\\ud83da\""));
    QCOMPARE(json({0}), QByteArray("\"\\u0000\""));
}

void JsonTest::setsCommasWhereTheyBelong()
{
    JsonWriter json;
    json.beginObject().key("a").beginArray().endArray();
    json.key("b").beginArray().integer(1).null().boolean(true).beginObject().endObject().endArray();
    json.key("c").beginObject().key("d").text(u"e").key("f").boolean(false).endObject();
    json.endObject();
    QCOMPARE(json.json(), QByteArray(R"({"a":[],"b":[1,null,true,{}],"c":{"d":"e","f":false}})"));
}

void JsonTest::writesNumbersOf64Bits()
{
    JsonWriter json;
    json.beginArray().integer(std::numeric_limits<qint64>::min());
    json.integer(std::numeric_limits<qint64>::max());
    json.integer(std::optional<qint64>()).integer(std::optional<qint64>(0)).endArray();
    QCOMPARE(json.json(), QByteArray("[-9223372036854775808,9223372036854775807,null,0]"));
}

void JsonTest::quotesLogValuesThatNeedIt()
{
    QCOMPARE(formatLogLine("info", {{"a", QStringLiteral("plain/{x}")},
                                    {"b", QStringLiteral("two words")},
                                    {"c", QStringLiteral("line\nlevel=forged")},
                                    {"d", QString()}}),
             QByteArray("level=info a=plain/{x} b=\"two words\" c=\"line\\nlevel=forged\" d=\"\""));
}

ZEL_TEST_MAIN(JsonTest)
#include "tst_json.moc"
