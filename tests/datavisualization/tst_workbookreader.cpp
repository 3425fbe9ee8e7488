// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "datavisualization/workbookreader.h"
#include "datavisualization/xmlguard.h"
#include "testsupport/testcase.h"
#include "workbooktext.h"

#include <QTest>

#include <sys/mman.h>

using namespace ZelDataVisualization;

namespace {

const QString strictHead =
    QStringLiteral("<?xml version='1.0'?><Workbook xmlns='urn:x' xmlns:ss='urn:x'>");

QString strict(const QString &rows)
{
    return strictHead +
           QStringLiteral("<ss:Worksheet ss:Name='A'><Table>%1</Table></ss:Worksheet></Workbook>")
               .arg(rows);
}

/// The cells of the first sheet, "row:column text".
QStringList cellsOf(const Workbook &workbook)
{
    QStringList cells;
    const Sheet &sheet = workbook.sheets.at(0);
    for (size_t row = 0; row < sheet.rows.size(); ++row) {
        for (const Cell &cell : sheet.cellsOf(row))
            cells << QStringLiteral("%1:%2 %3")
                         .arg(sheet.rows[row].number)
                         .arg(cell.column)
                         .arg(workbook.textOf(cell));
    }
    return cells;
}

WorkbookText survey(WorkbookText::Form form)
{
    WorkbookText text({{QStringLiteral("Which <b>?"),
                        {{QStringLiteral("a & b"), true, 1}, {QStringLiteral("\""), false, 1}}},
                       {QStringLiteral("q"), {{QStringLiteral("c"), false, 2}}}},
                      WorkbookText::Kind::Survey, form);
    text.addRespondent(QStringLiteral("u1"), {QStringLiteral("1"), QStringLiteral("1,2")});
    text.addRespondent(QStringLiteral("u2"), {QStringLiteral("2"), QString()});
    return text;
}

/// A text of any length that takes memory only where it is looked at.
class VastText
{
public:
    VastText(const QString &begin, qsizetype length)
        : m_bytes(static_cast<size_t>(length) * sizeof(QChar))
        , m_memory(mmap(nullptr, m_bytes, PROT_READ | PROT_WRITE,
                        MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0))
        , m_length(length)
    {
        if (m_memory == MAP_FAILED)
            qFatal("no address space for a vast text");
        memcpy(m_memory, begin.constData(), static_cast<size_t>(begin.size()) * sizeof(QChar));
    }

    ~VastText() { munmap(m_memory, m_bytes); }

    Q_DISABLE_COPY_MOVE(VastText)

    QString text() const
    {
        return QString::fromRawData(static_cast<const QChar *>(m_memory), m_length);
    }

private:
    size_t m_bytes;
    void *m_memory;
    qsizetype m_length;
};

} // namespace

class tst_WorkbookReader : public ZelTest::TestCase
{
    Q_OBJECT

private slots:
    void tellsOurOwnWorkbooksByTheirBrokenNamespace();
    void readsOurOwnWorkbooks();
    void aNumberThatIsNoneIsATextInOurOwnWorkbooks();
    void readsWhatStandsInAnyOtherWorkbook_data();
    void readsWhatStandsInAnyOtherWorkbook();
    void keepsGroundsOfStyles();
    void refusesWhatIsMalformed_data();
    void refusesWhatIsMalformed();
    void survivesEveryTruncation_data();
    void survivesEveryTruncation();
    void survivesEveryDamagedCharacter_data();
    void survivesEveryDamagedCharacter();
    void refusesVastTexts();
    void entitiesNeverExpand();
    void refusesWhatOnlyAnAttackHas_data();
    void refusesWhatOnlyAnAttackHas();
    void longTextsAreNoAttack();
};

void tst_WorkbookReader::tellsOurOwnWorkbooksByTheirBrokenNamespace()
{
    const QString kept = survey(WorkbookText::Form::Kept).text();
    QVERIFY(isKeptWorkbook(kept));
    QVERIFY(!isKeptWorkbook(survey(WorkbookText::Form::Escaped).text()));
    QVERIFY(!isKeptWorkbook(QString()));
    QVERIFY(!isKeptWorkbook(u"<Workbook"));
    // Line ends that somebody has made plain do not matter.
    QString plain = kept;
    plain.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    QVERIFY(isKeptWorkbook(plain));
    QVERIFY(readWorkbook(plain).workbook);
}

void tst_WorkbookReader::readsOurOwnWorkbooks()
{
    const WorkbookAnswer answer = readWorkbook(survey(WorkbookText::Form::Kept).text());
    QVERIFY2(answer.workbook, qPrintable(answer.problem));
    QCOMPARE(answer.workbook->sheets.size(), size_t(2));
    QCOMPARE(answer.workbook->sheets[0].name, QStringLiteral("Responses"));
    QCOMPARE(answer.workbook->sheets[1].name, QStringLiteral("Summary"));
    QCOMPARE(cellsOf(*answer.workbook).mid(0, 21),
             (QStringList{QStringLiteral("1:1 "),
                          QStringLiteral("1:2 Which <b>?"),
                          QStringLiteral("1:3 q"),
                          QStringLiteral("2:1 "),
                          QStringLiteral("2:2 1 - a & b"),
                          QStringLiteral("2:3 1 - c"),
                          QStringLiteral("3:1 "),
                          QStringLiteral("3:2 2 - \""),
                          QStringLiteral("4:1 User ID"),
                          QStringLiteral("4:4 Correct"),
                          QStringLiteral("4:5 Percent Correct"),
                          QStringLiteral("5:1 u1"),
                          QStringLiteral("5:2 1"),
                          QStringLiteral("5:3 1,2"),
                          QStringLiteral("5:4 1"),
                          QStringLiteral("5:5 0.5"),
                          QStringLiteral("6:1 u2"),
                          QStringLiteral("6:2 2"),
                          QStringLiteral("6:3 (skipped)"),
                          QStringLiteral("6:4 0"),
                          QStringLiteral("6:5 0")}));
}

void tst_WorkbookReader::aNumberThatIsNoneIsATextInOurOwnWorkbooks()
{
    QString kept = survey(WorkbookText::Form::Kept).text();
    kept.replace(QStringLiteral("'String'>1,2<"), QStringLiteral("'Number'>1,2<"));
    const WorkbookAnswer answer = readWorkbook(kept);
    QVERIFY2(answer.workbook, qPrintable(answer.problem));
    const Cell *cell = answer.workbook->sheets[0].find(5, 3);
    QVERIFY(cell->kind() == CellKind::Text);
    QCOMPARE(answer.workbook->textOf(*cell), QStringLiteral("1,2"));
}

void tst_WorkbookReader::readsWhatStandsInAnyOtherWorkbook_data()
{
    QTest::addColumn<QString>("rows");
    QTest::addColumn<QStringList>("cells");
    const auto row = [](const char *name, const char *rows, const QStringList &cells) {
        QTest::newRow(name) << QString::fromUtf8(rows) << cells;
    };
    row("numbers",
        "<Row><Cell><Data ss:Type='Number'> 1.5E3 </Data></Cell>"
        "<Cell><Data ss:Type='Number'>-7</Data></Cell></Row>",
        {QStringLiteral("1:1 1500"), QStringLiteral("1:2 -7")});
    row("booleans and errors",
        "<Row><Cell><Data ss:Type='Boolean'>1</Data></Cell>"
        "<Cell><Data ss:Type='Boolean'>0</Data></Cell>"
        "<Cell><Data ss:Type='Error'>#REF!</Data></Cell></Row>",
        {QStringLiteral("1:1 TRUE"), QStringLiteral("1:2 FALSE"), QStringLiteral("1:3 #REF!")});
    row("texts with markup of their own",
        "<Row><Cell><ss:Data ss:Type='String'>a &lt;<B>bold</B> <![CDATA[<c>]]>&#x20AC;</ss:Data>"
        "<Comment><ss:Data>never</ss:Data></Comment></Cell></Row>",
        {QStringLiteral("1:1 a <bold <c>€")});
    row("gaps",
        "<Row ss:Index='3'><Cell ss:Index='2'><Data ss:Type='String'>a</Data></Cell>"
        "<Cell/><Cell ss:Index='7'><Data ss:Type='String'>b</Data></Cell></Row>"
        "<Row ss:Span='2'/><Row><Cell><Data ss:Type='String'>c</Data></Cell></Row>",
        {QStringLiteral("3:2 a"), QStringLiteral("3:3 "), QStringLiteral("3:7 b"),
         QStringLiteral("7:1 c")});
    row("merged cells",
        "<Row><Cell ss:MergeAcross='2'><Data ss:Type='String'>a</Data></Cell>"
        "<Cell><Data ss:Type='String'>b</Data></Cell></Row>",
        {QStringLiteral("1:1 a"), QStringLiteral("1:4 b")});
    row("what a formula came to",
        "<Row><Cell ss:Formula='=1+1'><Data ss:Type='Number'>2</Data></Cell></Row>",
        {QStringLiteral("1:1 2")});
}

void tst_WorkbookReader::readsWhatStandsInAnyOtherWorkbook()
{
    QFETCH(QString, rows);
    const WorkbookAnswer answer = readWorkbook(strict(rows));
    QVERIFY2(answer.workbook, qPrintable(answer.problem));
    QTEST(cellsOf(*answer.workbook), "cells");
}

void tst_WorkbookReader::keepsGroundsOfStyles()
{
    const QString text =
        strictHead +
        QStringLiteral("<Styles><Style ss:ID='a'><Interior ss:Color='#ccffcc'/></Style>"
                       "<Style ss:ID='b' ss:Parent='a'/></Styles>"
                       "<Worksheet ss:Name='A'><Table><Row><Cell ss:StyleID='b'/>"
                       "<Cell ss:StyleID='c'/></Row></Table></Worksheet></Workbook>");
    const WorkbookAnswer answer = readWorkbook(text);
    QVERIFY2(answer.workbook, qPrintable(answer.problem));
    const Workbook &workbook = *answer.workbook;
    QCOMPARE(workbook.styles[workbook.sheets[0].find(1, 1)->style()].ground,
             QStringLiteral("#ccffcc"));
    QCOMPARE(workbook.sheets[0].find(1, 2)->style(), quint16(0));
}

void tst_WorkbookReader::refusesWhatIsMalformed_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("nothing") << QString();
    QTest::newRow("no XML") << QStringLiteral("a,b,c");
    QTest::newRow("another document") << QStringLiteral("<html/>");
    QTest::newRow("an open element") << strictHead;
    QTest::newRow("a bare ampersand")
        << strict(QStringLiteral("<Row><Cell><Data>a & b</Data></Cell></Row>"));
    QTest::newRow("a number that is none")
        << strict(QStringLiteral("<Row><Cell><Data ss:Type='Number'>1,5</Data></Cell></Row>"));
    QTest::newRow("an infinite number")
        << strict(QStringLiteral("<Row><Cell><Data ss:Type='Number'>INF</Data></Cell></Row>"));
    QTest::newRow("a row that goes back")
        << strict(QStringLiteral("<Row ss:Index='3'/><Row ss:Index='3'/>"));
    QTest::newRow("a cell that goes back")
        << strict(QStringLiteral("<Row><Cell/><Cell ss:Index='1'/></Row>"));
    QTest::newRow("a column too far")
        << strict(QStringLiteral("<Row><Cell ss:Index='16385'/></Row>"));
    QTest::newRow("a place that is no number")
        << strict(QStringLiteral("<Row><Cell ss:Index='x'/></Row>"));
    QTest::newRow("more columns than there are")
        << strict(QStringLiteral("<Row><Cell ss:MergeAcross='4294967295'/></Row>"));
    QTest::newRow("an undeclared prefix") << strict(QStringLiteral("<y:Row/>"));
}

void tst_WorkbookReader::refusesWhatIsMalformed()
{
    QFETCH(QString, text);
    const WorkbookAnswer answer = readWorkbook(text);
    QVERIFY(!answer.workbook);
    QVERIFY2(answer.problem.endsWith(u'.') || answer.problem.contains(u':'),
             qPrintable(answer.problem));
}

void tst_WorkbookReader::survivesEveryTruncation_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("kept") << survey(WorkbookText::Form::Kept).text();
    QTest::newRow("escaped") << survey(WorkbookText::Form::Escaped).text();
}

void tst_WorkbookReader::survivesEveryTruncation()
{
    QFETCH(QString, text);
    const QString end = QStringLiteral("</Workbook>");
    const qsizetype whole = text.lastIndexOf(end) + end.size();
    const QByteArray bytes = text.toUtf8(); // one for each character here
    for (qsizetype length = 0; length <= bytes.size(); ++length) {
        const WorkbookAnswer answer = readWorkbook(QString::fromUtf8(bytes.left(length)));
        QCOMPARE(answer.workbook.has_value(), length >= whole);
        QCOMPARE(answer.problem.isEmpty(), length >= whole);
    }
}

void tst_WorkbookReader::survivesEveryDamagedCharacter_data()
{
    survivesEveryTruncation_data();
}

void tst_WorkbookReader::survivesEveryDamagedCharacter()
{
    QFETCH(QString, text);
    for (const char16_t damage : {u'<', u'\''}) {
        for (qsizetype at = 0; at < text.size(); ++at) {
            QString damaged = text;
            damaged[at] = damage;
            const WorkbookAnswer answer = readWorkbook(damaged);
            QCOMPARE(answer.workbook.has_value(), answer.problem.isEmpty());
        }
    }
}

void tst_WorkbookReader::refusesVastTexts()
{
    for (const auto form : {WorkbookText::Form::Kept, WorkbookText::Form::Escaped}) {
        const VastText vast(survey(form).text(), MostKeptCharacters + qsizetype(1));
        const WorkbookAnswer answer = readWorkbook(vast.text());
        QVERIFY(!answer.workbook);
        QCOMPARE(answer.problem, QStringLiteral("The workbook is too large to be shown."));
    }
}

void tst_WorkbookReader::entitiesNeverExpand()
{
    QString bomb = QStringLiteral("<?xml version='1.0'?><!DOCTYPE x [<!ENTITY a0 'ha'>");
    for (int i = 1; i < 30; ++i)
        bomb += QStringLiteral("<!ENTITY a%1 '&a%2;&a%2;'>").arg(i).arg(i - 1);
    bomb += QStringLiteral("]><Workbook xmlns:ss='x'><Worksheet ss:Name='A'><Table><Row><Cell>"
                           "<Data ss:Type='String'>&a29;</Data></Cell></Row></Table></Worksheet>"
                           "</Workbook>");
    QVERIFY(!readWorkbook(bomb).workbook);
    QVERIFY(readWorkbook(bomb).problem.contains(QStringLiteral("document type")));
    const QString file =
        QStringLiteral("<!DOCTYPE Workbook SYSTEM 'file:///etc/passwd'><Workbook/>");
    QVERIFY(!readWorkbook(file).workbook);
    // In our own form "&" is a character like any other, and what stands before the sheets has no
    // document type.
    QString kept = survey(WorkbookText::Form::Kept).text();
    kept.insert(kept.indexOf(QStringLiteral("<Workbook")),
                QStringLiteral("<!DOCTYPE Workbook [<!ENTITY a 'b'>]>\r\n"));
    QVERIFY(!readWorkbook(kept).workbook);
}

void tst_WorkbookReader::refusesWhatOnlyAnAttackHas_data()
{
    QTest::addColumn<QString>("rows");
    QTest::newRow("elements inside each other")
        << QStringLiteral("<Row><Cell>") + QStringLiteral("<a>").repeated(100'000);
    QString attributes;
    for (int i = 0; i < 100'000; ++i)
        attributes += QStringLiteral(" a%1=''").arg(i);
    QTest::newRow("many attributes") << QStringLiteral("<Row%1/>").arg(attributes);
    QTest::newRow("a long name") << QStringLiteral("<%1:a/>").arg(QString(70'000, u'x'));
    QTest::newRow("a long name of an attribute")
        << QStringLiteral("<Row %1:a='b'/>").arg(QString(70'000, u'x'));
    QString namespaces;
    for (int i = 0; i < 100; ++i)
        namespaces += QStringLiteral("<Row xmlns:a%1='x'/>").arg(i);
    QTest::newRow("many namespaces") << namespaces;
}

void tst_WorkbookReader::refusesWhatOnlyAnAttackHas()
{
    QFETCH(QString, rows);
    const WorkbookAnswer answer = readWorkbook(strict(rows));
    QVERIFY(!answer.workbook);
    QVERIFY(!answer.problem.isEmpty());
}

void tst_WorkbookReader::longTextsAreNoAttack()
{
    const QString longText(32'767, u'x');
    const QString rows =
        QStringLiteral("<!-- <%1 --><Row><Cell><Data ss:Type='String'>%1</Data></Cell><Cell>"
                       "<Data ss:Type='String'><![CDATA[<%1=\"\"\"]]></Data></Cell></Row>")
            .arg(longText);
    QVERIFY(!isHostileXml(strict(rows)));
    const WorkbookAnswer answer = readWorkbook(strict(rows));
    QVERIFY2(answer.workbook, qPrintable(answer.problem));
    QCOMPARE(answer.workbook->textOf(*answer.workbook->sheets[0].find(1, 1)), longText);
}

ZEL_TEST_MAIN(tst_WorkbookReader)
#include "tst_workbookreader.moc"
