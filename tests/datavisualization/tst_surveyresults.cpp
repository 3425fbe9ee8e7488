// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "datavisualization/workbookreader.h"
#include "resultstext.h"
#include "testsupport/testcase.h"
#include "workbooktext.h"

#include <QDir>
#include <QFile>
#include <QTest>

using namespace ZelDataVisualization;

namespace {

const QString folder = QStringLiteral(ZEL_FIXTURES "/workbooks");

QString contentOf(const QString &path)
{
    QFile file(path);
    if (!file.open(QFile::ReadOnly))
        qFatal("cannot read %s", qPrintable(path));
    return QString::fromUtf8(file.readAll());
}

/// What a workbook says, or why it says nothing.
QString outcomeOf(const QString &text)
{
    WorkbookAnswer answer = readWorkbook(text);
    if (!answer.workbook)
        return QStringLiteral("refused: %1\n").arg(answer.problem);
    QString problem;
    const auto results = SurveyResults::from(std::move(*answer.workbook), &problem);
    return results ? resultsText(*results) : QStringLiteral("refused: %1\n").arg(problem);
}

} // namespace

/// What results workbooks say. Each folder of tests/fixtures/workbooks has a workbook and what is
/// read from it.
class tst_SurveyResults : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void saysWhatIsInTheWorkbook_data()
    {
        QTest::addColumn<QString>("path");
        const QStringList cases = QDir(folder).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
        QVERIFY(!cases.isEmpty());
        for (const QString &name : cases)
            QTest::newRow(qPrintable(name)) << folder + u'/' + name + u'/';
    }

    void saysWhatIsInTheWorkbook()
    {
        QFETCH(QString, path);
        const QString expected = contentOf(path + QStringLiteral("expected.txt"));
        QCOMPARE(outcomeOf(contentOf(path + QStringLiteral("workbook.xml"))), expected);
    }

    void anEscapedWorkbookSaysTheSame()
    {
        const QString hostile = QStringLiteral("<b>&\"</b> ]]> \\1 %1 $& </Row> &amp; \U0001F600");
        const QList<WorkbookText::Question> questions{
            {hostile, {{hostile, true, 2}, {hostile, false, 1}}},
            {QStringLiteral("'"), {{QStringLiteral("x"), false, 3}, {hostile, true, 0}}}};
        QStringList outcomes;
        for (const auto form : {WorkbookText::Form::Kept, WorkbookText::Form::Escaped}) {
            WorkbookText text(questions, WorkbookText::Kind::Survey, form);
            text.addRespondent(hostile, {QStringLiteral("1"), QStringLiteral("1,2")});
            text.addRespondent(QStringLiteral("b"), {QString(), QStringLiteral("2")});
            outcomes << outcomeOf(text.text());
        }
        QVERIFY(outcomes[0].contains(QStringLiteral("question 1: ") + hostile));
        QVERIFY(outcomes[0].contains(QStringLiteral("1 - %1 = 2 correct").arg(hostile)));
        QCOMPARE(outcomes[0], outcomes[1]);
    }

    void everyTextMayBeMarkup()
    {
        const QString markup = QStringLiteral("<b>&\"</b>");
        WorkbookText text({{markup, {{markup, true, 1}, {markup, false, 0}}}});
        text.addRespondent(markup, {QStringLiteral("1")});
        QCOMPARE(outcomeOf(text.text()), QStringLiteral("question 1: <b>&\"</b>\n"
                                                        "  1 - <b>&\"</b> = 1 correct\n"
                                                        "  2 - <b>&\"</b> = 0\n"
                                                        "  of 1; right 1, share 1\n"
                                                        "respondent <b>&\"</b>: right 1, share 1\n"
                                                        "with scores\n"));
    }

    void manyRespondentsAreCountedRight()
    {
        WorkbookText text({{QStringLiteral("a"), {{QStringLiteral("x"), true, 1}}},
                           {QStringLiteral("b"), {{QStringLiteral("y"), false, 2}}}});
        for (int i = 0; i < 40'000; ++i)
            text.addRespondent(QString::number(i),
                               {i % 4 == 0 ? QStringLiteral("1") : QStringLiteral("2"),
                                i % 2 == 0 ? QString() : QStringLiteral("1")});
        QString problem;
        WorkbookAnswer answer = readWorkbook(text.text());
        QVERIFY2(answer.workbook, qPrintable(answer.problem));
        const auto results = SurveyResults::from(std::move(*answer.workbook), &problem);
        QCOMPARE(results->respondentCount(), 40'000);
        QCOMPARE(results->respondent(39'999), QStringLiteral("39999"));
        QCOMPARE(results->rightOfQuestion(0), std::optional(10'000.0));
        QCOMPARE(results->shareOfQuestion(0), std::optional(0.25));
        QCOMPARE(results->baseOf(0), 40'000.0);
        QCOMPARE(results->baseOf(1), 20'000.0);
        QCOMPARE(results->shareOfRespondent(4), std::optional(0.5));
    }
};

ZEL_TEST_MAIN(tst_SurveyResults)
#include "tst_surveyresults.moc"
