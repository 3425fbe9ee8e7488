// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "datavisualization/calculator.h"
#include "datavisualization/criterion.h"
#include "datavisualization/workbookreader.h"
#include "platform/core/numbertext.h"
#include "testsupport/testcase.h"

#include <QTest>

using namespace ZelDataVisualization;
using Error = Value::Error;

namespace {

/// A sheet "A" of these rows and an empty sheet "It's B" with 40 in its first cell.
Workbook workbook(const QString &rows)
{
    WorkbookAnswer answer = readWorkbook(
        QStringLiteral("<Workbook xmlns:ss='x'><Worksheet ss:Name='A'><Table>%1</Table></Worksheet>"
                       "<Worksheet ss:Name=\"It's B\"><Table><Row><Cell><Data ss:Type='Number'>40"
                       "</Data></Cell></Row></Table></Worksheet></Workbook>")
            .arg(rows));
    if (!answer.workbook)
        qFatal("%s", qPrintable(answer.problem));
    return std::move(*answer.workbook);
}

QString cell(const QString &type, const QString &text)
{
    return QStringLiteral("<Cell><Data ss:Type='%1'>%2</Data></Cell>").arg(type, text);
}

QString formulaCell(const QString &formula)
{
    return QStringLiteral("<Cell ss:Formula=\"%1\"/>").arg(formula.toHtmlEscaped());
}

/// Rows 1 to 5 of columns 1 and 2; the formula stands in row 6, column 2.
const QString numbers =
    QStringLiteral("<Row>%1%2</Row><Row>%3%4</Row><Row>%5%6</Row><Row><Cell/>%7</Row><Row>%8</Row>")
        .arg(cell(QStringLiteral("Number"), QStringLiteral("2")),
             cell(QStringLiteral("Number"), QStringLiteral("2")),
             cell(QStringLiteral("Number"), QStringLiteral("0.5")),
             cell(QStringLiteral("String"), QStringLiteral("2")),
             cell(QStringLiteral("Number"), QStringLiteral("-8")),
             cell(QStringLiteral("String"), QStringLiteral("Yes")),
             cell(QStringLiteral("String"), QStringLiteral("2,3")),
             cell(QStringLiteral("Boolean"), QStringLiteral("1")));

QString textOf(const Value &value)
{
    static const QHash<Error, QString> errors{{Error::DivisionByZero, QStringLiteral("#div")},
                                              {Error::WrongType, QStringLiteral("#type")},
                                              {Error::NoReference, QStringLiteral("#ref")},
                                              {Error::Unknown, QStringLiteral("#unknown")},
                                              {Error::Circular, QStringLiteral("#circular")},
                                              {Error::TooMuch, QStringLiteral("#much")}};
    if (value.error != Error::None)
        return errors.value(value.error);
    return value.number ? Zel::invariantNumberText(*value.number)
                        : QStringLiteral("'%1'").arg(value.text);
}

} // namespace

class tst_Formulas : public ZelTest::TestCase
{
    Q_OBJECT

private slots:
    void computes_data();
    void computes();
    void countsWhatFits_data();
    void countsWhatFits();
    void aFormulaThatNeedsItselfIsAnError();
    void aLongChainIsComputed();
    void workIsBounded();
    void whatIsNotUnderstoodCountsAsStored();
    void absurdFormulasAreUnknown();
};

void tst_Formulas::computes_data()
{
    QTest::addColumn<QString>("formula");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *formula, const char *expected) {
        QTest::newRow(formula) << QString::fromUtf8(formula) << QString::fromUtf8(expected);
    };
    // Arithmetic.
    row("=1+2*3", "7");
    row("=(1+2)*3", "9");
    row("=7-2-1", "4");
    row("=8/4/2", "1");
    row("=2^3^2", "64");
    row("=-2^2", "4");
    row("=--3", "3");
    row("=+5%", "0.05");
    row("= 1.5E2 / 3 ", "50");
    row("=\"a\"\"b\"&1+1", "'a\"b2'");
    row("=\"3\"*2", "6");
    row("=1/0", "#div");
    row("=\"x\"+1", "#type");
    row("=10^999", "#type");
    // References, relative and not.
    row("=R[-5]C", "2");
    row("=R[-5]C[-1]", "2");
    row("=R3C1", "-8");
    row("=R[-5]C1+R2C[-1]", "2.5");
    row("=rc[-1]", "''");
    row("=R[-6]C", "#ref");
    row("=RC[-2]", "#ref");
    row("=R99C99*2", "0");
    row("='It''s B'!R1C1+1", "41");
    row("=Nowhere!R1C1", "#ref");
    row("=R1C1:R2C1", "#type");
    row("=(R[-5]C/4)", "0.5");
    // Functions.
    row("=SUM(R[-5]C[-1]:R[-3]C[-1])", "-5.5");
    row("=SUM(R1C1:R5C2)", "-3.5");
    row("=SUM(R1C1,R2C1,3,\"4\")", "9.5");
    row("=SUM(\"x\")", "#type");
    row("=SUM(R1C1,1/0)", "#div");
    row("=SUM(R9C1:R10C1)", "0");
    row("=AVERAGE(R1C1:R2C1)", "1.25");
    row("=AVERAGE(R[-5]C[-1]:R[-1]C[-1])", "-1.83333333333333");
    row("=AVERAGE(R9C1:R10C1)", "#div");
    row("=COUNT(R1C1:R5C2)", "4");
    row("=COUNT(\"x\",\"1\",1/0)", "1");
    row("=MIN(R1C1:R3C1)", "-8");
    row("=max(R1C1:R3C1)", "2");
    row("=COUNTIF(R[-5]C:R[-1]C,\"2\")", "2");
    row("=COUNTIF(R[-5]C:R[-1]C,2)", "2");
    row("=COUNTIF(R[-5]C:R[-1]C,\"2,3\")", "1");
    row("=COUNTIF(R[-5]C:R[-1]C,\"\")", "1");
    row("=COUNTIF(R[-5]C:R[-1]C,\"a\"b\")", "0");
    row("=COUNTIF(2,\"2\")", "#type");
    row("=COUNTIF(R1C1:R5C1)", "#type");
    row("=COUNTIF(R[-7]C:R[-1]C,\"2\")", "#ref");
    // As open documents write them.
    row("of:=COUNTIF([.B1:.B5];\"2,3\")", "1");
    row("of:=SUM([.A1:.A3])+1", "-4.5");
    row("of:=[.$A$1]/4", "0.5");
    row("of:=[$'It''s B'.A1]", "40");
    row("of:=SUM([.A1];[.A2])", "2.5");
    row("of:=[.A0]", "#unknown");
    // Neither.
    row("SUM(1)", "#unknown");
    row("=", "#unknown");
    row("=1+", "#unknown");
    row("=(1", "#unknown");
    row("=1)", "#unknown");
    row("=\"a", "#unknown");
    row("=NOSUCH(1)", "#unknown");
    row("=R[1", "#unknown");
    row("=R[99999999999999999999]C", "#unknown");
}

void tst_Formulas::computes()
{
    QFETCH(QString, formula);
    const Workbook book =
        workbook(numbers + QStringLiteral("<Row><Cell/>%1</Row>").arg(formulaCell(formula)));
    Calculator calculator(book);
    QTEST(textOf(calculator.value(book.sheets[0], 6, 2)), "expected");
}

void tst_Formulas::countsWhatFits_data()
{
    QTest::addColumn<QString>("criterion");
    QTest::addColumn<QString>("value");
    QTest::addColumn<bool>("fits");
    const auto row = [](const char *criterion, const char *value, bool fits) {
        QTest::newRow(qPrintable(
            QStringLiteral("%1 | %2").arg(QLatin1String(criterion), QLatin1String(value))))
            << QString::fromUtf8(criterion) << QString::fromUtf8(value) << fits;
    };
    row("yes", "YES", true);
    row("yes", "yes!", false);
    row("=yes", "Yes", true);
    row("<>yes", "yes", false);
    row("<>yes", "no", true);
    row("2", "2.0", true);
    row("2", "x2", false);
    row("<>2", "x", true);
    row(">2", "3", false); // a text is neither more nor less than a number
    row(">b", "c", true);
    row("<=b", "b", true);
    row("<b", "b", false);
    row(">=b", "a", false);
    row("a*", "abc", true);
    row("*c", "abc", true);
    row("a?c", "abc", true);
    row("a?c", "ac", false);
    row("a~*c", "a*c", true);
    row("a~*c", "abc", false);
    row("*", "", true);
    row("a*a*a*a*a*a*a*b", "aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa", false);
}

void tst_Formulas::countsWhatFits()
{
    QFETCH(QString, criterion);
    QFETCH(QString, value);
    QTEST(Criterion(criterion).matches(QStringView(value)), "fits");
}

void tst_Formulas::aFormulaThatNeedsItselfIsAnError()
{
    const Workbook book = workbook(QStringLiteral("<Row>%1%2%3%4</Row>")
                                       .arg(formulaCell(QStringLiteral("=RC+1")),
                                            formulaCell(QStringLiteral("=RC[1]+1")),
                                            formulaCell(QStringLiteral("=SUM(R1C1:R1C4)")),
                                            formulaCell(QStringLiteral("=1+1"))));
    Calculator calculator(book);
    QCOMPARE(textOf(calculator.value(book.sheets[0], 1, 1)), QStringLiteral("#circular"));
    QCOMPARE(textOf(calculator.value(book.sheets[0], 1, 2)), QStringLiteral("#circular"));
    QCOMPARE(textOf(calculator.value(book.sheets[0], 1, 3)), QStringLiteral("#circular"));
    QCOMPARE(textOf(calculator.value(book.sheets[0], 1, 4)), QStringLiteral("2"));
}

void tst_Formulas::aLongChainIsComputed()
{
    constexpr int Length = 100'000;
    QString rows;
    for (int i = 1; i < Length; ++i)
        rows += QStringLiteral("<Row><Cell ss:Formula='=R[1]C+1'/></Row>");
    rows +=
        QStringLiteral("<Row>%1</Row>").arg(cell(QStringLiteral("Number"), QStringLiteral("1")));
    const Workbook book = workbook(rows);
    Calculator calculator(book);
    QCOMPARE(calculator.value(book.sheets[0], 1, 1).number, std::optional<double>(Length));
}

void tst_Formulas::workIsBounded()
{
    // Each of many formulas looks at all that are above it: the square of their number.
    QString rows;
    for (int i = 0; i < 20'000; ++i)
        rows += QStringLiteral("<Row><Cell ss:Formula='=SUM(R1C1:R20000C16384)'/></Row>");
    const Workbook book = workbook(rows);
    Calculator calculator(book);
    const Value value = calculator.value(book.sheets[0], 20'000, 1);
    QVERIFY(value.error == Error::TooMuch || value.error == Error::Circular);
    QString wide;
    for (int i = 0; i < 20'000; ++i)
        wide += QStringLiteral("<Row>%1<Cell ss:Formula='=SUM(R1C1:R20000C1)'/></Row>")
                    .arg(cell(QStringLiteral("Number"), QStringLiteral("1")));
    const Workbook second = workbook(wide);
    Calculator bounded(second);
    QCOMPARE(bounded.value(second.sheets[0], 1, 2).number, std::optional(20'000.0));
    for (quint32 row = 2; row <= 20'000; ++row)
        bounded.value(second.sheets[0], row, 2);
    QCOMPARE(textOf(bounded.value(second.sheets[0], 20'000, 2)), QStringLiteral("#much"));
}

void tst_Formulas::whatIsNotUnderstoodCountsAsStored()
{
    const Workbook book = workbook(QStringLiteral(
        "<Row><Cell ss:Formula='=MEDIAN(R9C1:R9C3)'><Data ss:Type='Number'>7</Data></Cell>"
        "<Cell ss:Formula='=RC[-1]*2'/>"
        "<Cell ss:Formula='=1+1'><Data ss:Type='Number'>99</Data></Cell></Row>"));
    Calculator calculator(book);
    QCOMPARE(textOf(calculator.value(book.sheets[0], 1, 1)), QStringLiteral("7"));
    QCOMPARE(textOf(calculator.value(book.sheets[0], 1, 2)), QStringLiteral("14"));
    QCOMPARE(textOf(calculator.value(book.sheets[0], 1, 3)), QStringLiteral("2"));
}

void tst_Formulas::absurdFormulasAreUnknown()
{
    const QString deep = u'=' + QString(4'000, u'(') + u'1' + QString(4'000, u')');
    QVERIFY(!parseFormula(deep));
    QVERIFY(!parseFormula(QStringLiteral("=1") + QStringLiteral("+1").repeated(1'001)));
    QVERIFY(parseFormula(QStringLiteral("=1") + QStringLiteral("+1").repeated(999)));
    QVERIFY(!parseFormula(QStringLiteral("=\"%1\"").arg(QString(9'000, u'x'))));
    QVERIFY(!parseFormula(u'=' + QString(8'000, u'-')));
}

ZEL_TEST_MAIN(tst_Formulas)
#include "tst_formulas.moc"
