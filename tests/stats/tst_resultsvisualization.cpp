// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/widgets/controlregistry.h"
#include "platform/widgets/twips.h"
#include "platform/widgets/twipsgeometry.h"
#include "stats/pollvisualization.h"
#include "stats/surveyvisualization.h"
#include "surveyfixture.h"
#include "testsupport/errornumber.h"
#include "testsupport/testcase.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QFileDialog>
#include <QFrame>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

using namespace ResultsFixture;
using namespace ZelWebServiceControls;
using ZelTest::errorNumber;

/// A chart that writes down what it is asked to show. What is common to all of them is static, for
/// a form makes its chart itself.
class ChartDouble : public QWidget
{
    Q_OBJECT

public:
    explicit ChartDouble(QWidget *parent = nullptr)
        : QWidget(parent)
    {
        setAutoFillBackground(true);
        setBackgroundRole(QPalette::Base);
        setFocusPolicy(Qt::StrongFocus);
    }

    static inline QStringList calls;
    static inline bool understands = true;
    /// The operation that fails, once.
    static inline QString failing;

    static QStringList takeCalls() { return std::exchange(calls, {}); }

    Q_INVOKABLE bool LoadWorkbookXml(const QString &excelXML)
    {
        note(QStringLiteral("LoadWorkbookXml ") + excelXML);
        return understands;
    }

    Q_INVOKABLE void ShowQuestionDetails(qint16 question)
    {
        note(QStringLiteral("ShowQuestionDetails %1").arg(question));
    }

    Q_INVOKABLE void ShowPercentCorrect() { note(QStringLiteral("ShowPercentCorrect")); }

    Q_INVOKABLE void ShowPercentCorrect(bool byQuestion)
    {
        note(QStringLiteral("ShowPercentCorrect %1").arg(byQuestion));
    }

    Q_INVOKABLE void ShowPercentCorrect(bool byQuestion, const QString &title)
    {
        note(QStringLiteral("ShowPercentCorrect %1 %2").arg(byQuestion).arg(title));
    }

    Q_INVOKABLE void SetShowGraph(bool show) { note(QStringLiteral("SetShowGraph %1").arg(show)); }

    Q_INVOKABLE void RotateChart(qint16 mode) { note(QStringLiteral("RotateChart %1").arg(mode)); }

    Q_INVOKABLE void ResetRotation() { note(QStringLiteral("ResetRotation")); }

private:
    static void note(const QString &call)
    {
        calls.append(call);
        if (!failing.isEmpty() && call.startsWith(failing)) {
            failing.clear();
            throw Zel::RuntimeError(9);
        }
    }
};

namespace {

template <typename Child>
Child *child(QWidget &form, const char *name)
{
    return form.findChild<Child *>(QLatin1String(name));
}

void click(QAbstractButton *button)
{
    QTest::mouseClick(button, Qt::LeftButton, {}, QPoint(10, button->height() / 2));
}

template <typename Form>
std::unique_ptr<Form> shown(qint16 questions = 3)
{
    auto form = std::make_unique<Form>();
    form->Init(QStringLiteral("xml"), questions, 5);
    form->show();
    ChartDouble::calls.clear();
    return form;
}

ResultsModels models()
{
    SurveyModels of{threeQuestions(), {}};
    of.users.SortResponse(QList{response("u1", "q1", "a2", "2")}, of.survey);
    return of;
}

} // namespace

/// The chart forms of polls and surveys over a chart that only writes down.
class tst_ResultsVisualization : public ZelTest::TestCase
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void childrenAreFindable();
    void loadingShowsTheFirstQuestion();
    void withoutQuestionsNothingIsShown();
    void aRejectedWorkbookUnloadsTheForm();
    void eachUseStartsAnew();
    void choosingAQuestionShowsItAtOnce();
    void choosingAQuestionWaitsForTheDetails();
    void aSurveyNamesItsSummaries();
    void aPollLeavesTheTitleToTheChart();
    void rotatingAndBack();
    void hidingTheGraphAndShowingIt();
    void theChartFillsTheFormAboveTheOptions_data();
    void theChartFillsTheFormAboveTheOptions();
    void theKeyboardReachesEverything();
    void anErrorOfTheChartReachesTheHost();
    void withoutAChartThereIsNoForm();
    void savingNeedsTheModels();
    void theWorkbookIsSavedAsItsNameSays_data();
    void theWorkbookIsSavedAsItsNameSays();
    void aFileThatCannotBeSavedIsReported();
};

void tst_ResultsVisualization::initTestCase()
{
    TestCase::initTestCase();
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    Zel::ControlRegistry::add(QStringLiteral("ZelDataVisualization.GridChart"),
                              [](QWidget *parent) -> QWidget * { return new ChartDouble(parent); });
}

void tst_ResultsVisualization::init()
{
    TestCase::init();
    ChartDouble::calls.clear();
    ChartDouble::understands = true;
    ChartDouble::failing.clear();
}

void tst_ResultsVisualization::childrenAreFindable()
{
    PollVisualization form;
    QVERIFY(child<ChartDouble>(form, "GridChart1"));
    QVERIFY(child<QComboBox>(form, "questionList"));
    for (const char *const name : {"graphOptionsFrame", "Frame1", "Frame2"})
        QVERIFY2(child<QWidget>(form, name), name);
    for (const char *const name : {"sortByQuestionDetails", "sortByQuestion", "sortByUser"})
        QVERIFY2(child<QRadioButton>(form, name), name);
    QVERIFY(child<QCheckBox>(form, "rotateChart"));
    QVERIFY(child<QCheckBox>(form, "showGraph")->isChecked());
}

void tst_ResultsVisualization::loadingShowsTheFirstQuestion()
{
    SurveyVisualization form;
    const QVariant result = form.Init(QStringLiteral("<a/>"), 3, 12);
    QCOMPARE(result.typeId(), int(QMetaType::Bool));
    QVERIFY(result.toBool());
    auto *list = child<QComboBox>(form, "questionList");
    QCOMPARE(list->count(), 3);
    QCOMPARE(list->itemText(0), QStringLiteral("Question 1"));
    QCOMPARE(list->itemText(2), QStringLiteral("Question 3"));
    QCOMPARE(list->currentIndex(), 0);
    QVERIFY(child<QRadioButton>(form, "sortByQuestionDetails")->isChecked());
    QCOMPARE(ChartDouble::calls, QStringList({"LoadWorkbookXml <a/>", "ShowQuestionDetails 1"}));
    QCOMPARE(form.questionCount(), qint16(3));
    QCOMPARE(form.userCount(), qint16(12));
}

void tst_ResultsVisualization::withoutQuestionsNothingIsShown()
{
    PollVisualization form;
    QVERIFY(form.Init(QStringLiteral("<a/>"), 0, 0).toBool());
    QCOMPARE(child<QComboBox>(form, "questionList")->count(), 0);
    QCOMPARE(ChartDouble::takeCalls(), QStringList({"LoadWorkbookXml <a/>"}));
    form.show();
    click(child<QRadioButton>(form, "sortByQuestionDetails"));
    QCOMPARE(ChartDouble::calls, QStringList());
}

void tst_ResultsVisualization::aRejectedWorkbookUnloadsTheForm()
{
    ChartDouble::understands = false;
    SurveyVisualization form;
    QCOMPARE(form.Init(QStringLiteral("?"), 3, 1), QVariant(false));
    QCOMPARE(ChartDouble::calls, QStringList({"LoadWorkbookXml ?"}));
    QCOMPARE(child<QComboBox>(form, "questionList")->count(), 0);
    QVERIFY(!form.isVisible());
}

void tst_ResultsVisualization::eachUseStartsAnew()
{
    const auto form = shown<SurveyVisualization>();
    child<QComboBox>(*form, "questionList")->setCurrentIndex(2);
    click(child<QRadioButton>(*form, "sortByUser"));
    form->Init(QStringLiteral("other"), 2, 1);
    QCOMPARE(child<QComboBox>(*form, "questionList")->count(), 2);
    QVERIFY(child<QRadioButton>(*form, "sortByQuestionDetails")->isChecked());
    QCOMPARE(ChartDouble::calls.last(), QStringLiteral("ShowQuestionDetails 1"));
}

void tst_ResultsVisualization::choosingAQuestionShowsItAtOnce()
{
    const auto form = shown<SurveyVisualization>();
    auto *list = child<QComboBox>(*form, "questionList");
    list->setFocus();
    QTest::keyClick(list, Qt::Key_End);
    QCOMPARE(list->currentIndex(), 2);
    QCOMPARE(ChartDouble::takeCalls(), QStringList({"ShowQuestionDetails 3"}));
    QTest::keyClick(list, Qt::Key_Up);
    QCOMPARE(ChartDouble::takeCalls(), QStringList({"ShowQuestionDetails 2"}));
}

void tst_ResultsVisualization::choosingAQuestionWaitsForTheDetails()
{
    const auto form = shown<PollVisualization>();
    click(child<QRadioButton>(*form, "sortByQuestion"));
    ChartDouble::calls.clear();
    auto *list = child<QComboBox>(*form, "questionList");
    QTest::keyClick(list, Qt::Key_End);
    QCOMPARE(ChartDouble::calls, QStringList());
    click(child<QRadioButton>(*form, "sortByQuestionDetails"));
    QCOMPARE(ChartDouble::takeCalls(), QStringList({"ShowQuestionDetails 3"}));
}

void tst_ResultsVisualization::aSurveyNamesItsSummaries()
{
    const auto form = shown<SurveyVisualization>();
    click(child<QRadioButton>(*form, "sortByQuestion"));
    click(child<QRadioButton>(*form, "sortByUser"));
    QCOMPARE(ChartDouble::calls, QStringList({"ShowPercentCorrect 1 Percentage Correct By Question",
                                              "ShowPercentCorrect 0 Percentage Correct By User"}));
}

void tst_ResultsVisualization::aPollLeavesTheTitleToTheChart()
{
    const auto form = shown<PollVisualization>();
    click(child<QRadioButton>(*form, "sortByQuestion"));
    click(child<QRadioButton>(*form, "sortByUser"));
    QCOMPARE(ChartDouble::calls, QStringList({"ShowPercentCorrect", "ShowPercentCorrect 0"}));
}

void tst_ResultsVisualization::rotatingAndBack()
{
    const auto form = shown<PollVisualization>();
    click(child<QCheckBox>(*form, "rotateChart"));
    click(child<QCheckBox>(*form, "rotateChart"));
    QCOMPARE(ChartDouble::calls, QStringList({"RotateChart 1", "ResetRotation"}));
}

void tst_ResultsVisualization::hidingTheGraphAndShowingIt()
{
    const auto form = shown<PollVisualization>();
    click(child<QCheckBox>(*form, "showGraph"));
    click(child<QCheckBox>(*form, "showGraph"));
    QCOMPARE(ChartDouble::calls, QStringList({"SetShowGraph 0", "SetShowGraph 1"}));
}

void tst_ResultsVisualization::theChartFillsTheFormAboveTheOptions_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("small") << QSize(640, 480);
    QTest::newRow("odd") << QSize(1001, 733);
    QTest::newRow("large") << QSize(1600, 1200);
}

void tst_ResultsVisualization::theChartFillsTheFormAboveTheOptions()
{
    QFETCH(QSize, size);
    const auto form = shown<SurveyVisualization>();
    form->resize(size);
    QCoreApplication::processEvents();
    const int dpi = Zel::logicalDpi(form.get());
    const double wide = Zel::twipsFromPixels(size.width(), dpi);
    const double high = Zel::twipsFromPixels(size.height(), dpi);
    const Zel::TwipsRect chart = Zel::twipsGeometry(child<QWidget>(*form, "GridChart1"));
    const Zel::TwipsRect options = Zel::twipsGeometry(child<QWidget>(*form, "graphOptionsFrame"));
    QCOMPARE(chart.width, wide - 345);
    QCOMPARE(chart.height, high - (options.height + 840));
    QCOMPARE(options.top, high - 2190);
    QCOMPARE(options.left, wide - 5880);
    QVERIFY(chart.top + chart.height <= options.top);
    QVERIFY(options.top + options.height <= high);
    QVERIFY(options.left + options.width <= wide);
    // Nothing in the options is squeezed below what it needs.
    const auto *frame = child<QFrame>(*form, "graphOptionsFrame");
    QVERIFY(frame->width() >= frame->minimumSizeHint().width());
    QVERIFY(frame->height() >= frame->minimumSizeHint().height());
}

void tst_ResultsVisualization::theKeyboardReachesEverything()
{
    const auto form = shown<SurveyVisualization>();
    form->setModels(models());
    form->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(form.get()));
    child<QWidget>(*form, "GridChart1")->setFocus();
    QStringList reached;
    for (int i = 0; i < 6; ++i) {
        reached.append(QApplication::focusWidget()->objectName());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    QCOMPARE(reached, QStringList({"GridChart1", "sortByQuestionDetails", "questionList",
                                   "showGraph", "rotateChart", "saveWorkbook"}));
    child<QWidget>(*form, "sortByQuestionDetails")->setFocus();
    ChartDouble::calls.clear();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
    QCOMPARE(ChartDouble::calls,
             QStringList({"ShowPercentCorrect 1 Percentage Correct By Question"}));
}

void tst_ResultsVisualization::anErrorOfTheChartReachesTheHost()
{
    SurveyVisualization failing;
    ChartDouble::failing = QStringLiteral("ShowQuestionDetails");
    QCOMPARE(errorNumber([&] { failing.Init(QStringLiteral("x"), 3, 1); }), 9);

    const auto form = shown<SurveyVisualization>();
    QSignalSpy errors(form.get(), &Zel::Form::runtimeError);
    ChartDouble::failing = QStringLiteral("RotateChart");
    click(child<QCheckBox>(*form, "rotateChart"));
    QCOMPARE(errors.size(), 1);
    QCOMPARE(errors.at(0).at(0).value<Zel::RuntimeError>().number(), 9);
    QVERIFY(form->isVisible());
}

void tst_ResultsVisualization::withoutAChartThereIsNoForm()
{
    const auto without = [](QWidget *) -> QWidget * {
        throw Zel::RuntimeError(Zel::RuntimeError::CannotCreateObject);
    };
    const auto with = [](QWidget *parent) -> QWidget * { return new ChartDouble(parent); };
    const QString progId = QStringLiteral("ZelDataVisualization.GridChart");
    Zel::ControlRegistry::add(progId, without);
    const int error = errorNumber([] { PollVisualization form; });
    Zel::ControlRegistry::add(progId, with);
    QCOMPARE(error, 429);
}

void tst_ResultsVisualization::savingNeedsTheModels()
{
    const auto form = shown<SurveyVisualization>();
    auto *save = child<QPushButton>(*form, "saveWorkbook");
    QVERIFY(!save->isVisible());
    form->setModels(models());
    QVERIFY(save->isVisible());
}

void tst_ResultsVisualization::theWorkbookIsSavedAsItsNameSays_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("begin");
    QTest::newRow("xlsx") << "a.xlsx" << QByteArray("PK");
    QTest::newRow("without an ending") << "a" << QByteArray("PK");
    QTest::newRow("xml") << "a.xml" << QByteArray("<?xml version=\"1.0\"?>");
    QTest::newRow("csv") << "a.csv" << QByteArray("\xEF\xBB\xBFUser ID,One?");
}

/// Types a name into the file dialog that comes up next.
static void typeName(QObject *context, const QString &name)
{
    auto *timer = new QTimer(context);
    QObject::connect(timer, &QTimer::timeout, timer, [timer, name] {
        auto *dialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
        if (!dialog)
            return;
        timer->deleteLater();
        auto *edit = dialog->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
        edit->setText(name);
        QTest::keyClick(edit, Qt::Key_Enter);
    });
    timer->start(20);
}

void tst_ResultsVisualization::theWorkbookIsSavedAsItsNameSays()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, begin);
    const QTemporaryDir folder;
    const auto form = shown<SurveyVisualization>();
    form->setModels(models());
    typeName(form.get(), folder.filePath(name));
    click(child<QPushButton>(*form, "saveWorkbook"));
    QFile file(folder.filePath(name.contains(u'.') ? name : name + QStringLiteral(".xlsx")));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.read(begin.size()), begin);
}

void tst_ResultsVisualization::aFileThatCannotBeSavedIsReported()
{
    const auto form = shown<SurveyVisualization>();
    form->setModels(SurveyModels());
    QSignalSpy errors(form.get(), &Zel::Form::runtimeError);
    const QTemporaryDir folder;
    typeName(form.get(), folder.filePath(QStringLiteral("a.xml")));
    click(child<QPushButton>(*form, "saveWorkbook"));
    QCOMPARE(errors.size(), 1);
    QCOMPARE(errors.at(0).at(0).value<Zel::RuntimeError>().number(), 91);
    QVERIFY(!QFile::exists(folder.filePath(QStringLiteral("a.xml"))));
    QVERIFY(form->isVisible());
}

ZEL_TEST_MAIN(tst_ResultsVisualization)
#include "tst_resultsvisualization.moc"
