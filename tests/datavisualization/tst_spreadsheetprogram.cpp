// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "datavisualization/gridchart.h"
#include "datavisualization/workbookreader.h"
#include "resultstext.h"
#include "testsupport/testcase.h"
#include "workbooktext.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>

using namespace ZelDataVisualization;

namespace {

/// Opens a workbook in the spreadsheet program and saves it again in the same format.
QString savedAgain(const QString &workbook)
{
    const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("results.xml")));
    if (!file.open(QFile::WriteOnly) || file.write(workbook.toUtf8()) < 0)
        qFatal("%s", qPrintable(file.errorString()));
    file.close();
    const QUrl profile = QUrl::fromLocalFile(folder.filePath(QStringLiteral("profile")));
    QProcess program;
    program.start(QStringLiteral("soffice"),
                  {QStringLiteral("-env:UserInstallation=") + profile.toString(),
                   QStringLiteral("--headless"), QStringLiteral("--convert-to"),
                   QStringLiteral("xml:MS Excel 2003 XML"), QStringLiteral("--outdir"),
                   folder.filePath(QStringLiteral("out")), file.fileName()});
    if (!program.waitForFinished(240 * 1000) || program.exitCode() != 0)
        qFatal("soffice: %s", qPrintable(program.errorString()));
    QFile saved(folder.filePath(QStringLiteral("out/results.xml")));
    if (!saved.open(QFile::ReadOnly))
        qFatal("%s: %s", qPrintable(saved.errorString()),
               program.readAllStandardError().constData());
    return QString::fromUtf8(saved.readAll());
}

std::shared_ptr<SurveyResults> resultsOf(const QString &text)
{
    WorkbookAnswer answer = readWorkbook(text);
    QString problem = answer.problem;
    const auto results =
        answer.workbook ? SurveyResults::from(std::move(*answer.workbook), &problem) : nullptr;
    if (!results)
        qFatal("%s", qPrintable(problem));
    return results;
}

WorkbookText survey(WorkbookText::Form form)
{
    const QString hostile = QStringLiteral("<b>&\"'</b> %1 \\1 $& =1+1 \U0001F600 é");
    WorkbookText text(
        {{hostile, {{hostile, true, 40}, {QStringLiteral("no"), false, 20}, {hostile, true, 3}}},
         {QStringLiteral("=1+1"),
          {{QStringLiteral("=SUM(A1)"), false, 25}, {QStringLiteral("b"), true, 35}}},
         {QStringLiteral("third"), {{QStringLiteral("only"), true, 9}}}},
        WorkbookText::Kind::Survey, form);
    const QStringList first{QStringLiteral("1,3"), QStringLiteral("1"), QStringLiteral("2"),
                            QString(), QStringLiteral("1,2")};
    const QStringList second{QStringLiteral("2"), QString(), QStringLiteral("1")};
    for (int i = 0; i < 60; ++i)
        text.addRespondent(
            QStringLiteral("{00C0FFEE-%1}").arg(i),
            {first[i % 5], second[i % 3], i % 7 == 0 ? QString() : QStringLiteral("1")});
    return text;
}

} // namespace

/// A workbook that a spreadsheet program has opened and saved again still says the same, and the
/// program has computed what we do.
class tst_SpreadsheetProgram : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void readsWhatItHasSaved()
    {
        const QString ours = resultsText(*resultsOf(survey(WorkbookText::Form::Kept).text()));
        QVERIFY(ours.contains(QStringLiteral("right 12, share 0.2")));
        const QString theirs = savedAgain(survey(WorkbookText::Form::Escaped).text());
        QVERIFY(theirs.contains(QStringLiteral("ss:Formula=\"of:=COUNTIF(")));
        QCOMPARE(resultsText(*resultsOf(theirs)), ours);
        GridChart chart;
        QVERIFY2(chart.LoadWorkbookXml(theirs), qPrintable(chart.problem()));
        chart.ShowQuestionDetails(3);
    }

    void computesWhatItComputes()
    {
        const QString theirs = savedAgain(survey(WorkbookText::Form::Escaped).text());
        const WorkbookAnswer answer = readWorkbook(theirs);
        QVERIFY2(answer.workbook, qPrintable(answer.problem));
        const Workbook &workbook = *answer.workbook;
        Calculator calculator(workbook);
        int formulas = 0;
        for (const Sheet &sheet : workbook.sheets) {
            for (size_t row = 0; row < sheet.rows.size(); ++row) {
                for (const Cell &cell : sheet.cellsOf(row)) {
                    if (cell.kind() != CellKind::Formula)
                        continue;
                    const Cell &stored = workbook.formulas[cell.value].stored;
                    const Value value =
                        calculator.value(sheet, sheet.rows[row].number, cell.column);
                    QVERIFY(value.number);
                    QCOMPARE(Zel::invariantNumberText(*value.number), workbook.textOf(stored));
                    ++formulas;
                }
            }
        }
        QCOMPARE(formulas, 9);
    }
};

ZEL_TEST_MAIN(tst_SpreadsheetProgram)
#include "tst_spreadsheetprogram.moc"
