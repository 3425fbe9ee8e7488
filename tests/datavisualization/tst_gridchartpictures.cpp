// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "gridchartfixture.h"
#include "testsupport/errornumber.h"
#include "testsupport/filedialogdriver.h"
#include "testsupport/testcase.h"

#include <QFile>
#include <QImage>
#include <QPdfWriter>
#include <QPrintDialog>
#include <QSignalSpy>
#include <QSvgRenderer>
#include <QTemporaryDir>
#include <QTimer>

using namespace ZelDataVisualization;

namespace {

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

/// Pictures of a chart that leave the screen.
class tst_GridChartPictures : public ZelTest::TestCase
{
    Q_OBJECT

private slots:
    void savesInTheFormOfTheEnding();
    void savesWhereAPersonSays();
    void nothingIsSavedWhenThePersonCancels();
    void aPictureThatCannotBeSavedIsAnError();
    void aDrawingHasItsTexts();
    void isBlackOnWhiteOnADarkScreenToo();
    void prints();
    void asksForThePrinter();
};

void tst_GridChartPictures::savesInTheFormOfTheEnding()
{
    const QTemporaryDir folder;
    GridChartFixture on;
    QVERIFY(on.load());
    on.chart.ShowQuestionDetails(1);
    on.chart.savePicture(folder.filePath(QStringLiteral("a.png")));
    on.chart.savePicture(folder.filePath(QStringLiteral("a.SVG")));
    on.chart.savePicture(folder.filePath(QStringLiteral("a.pdf")));
    const QImage image(folder.filePath(QStringLiteral("a.png")));
    QCOMPARE(image.size(), on.graph()->viewport()->size().expandedTo({480, 320}) * 2);
    QVERIFY(QSvgRenderer(folder.filePath(QStringLiteral("a.SVG"))).isValid());
    QVERIFY(contentOf(folder.filePath(QStringLiteral("a.pdf"))).startsWith("%PDF-"));
}

void tst_GridChartPictures::savesWhereAPersonSays()
{
    const QTemporaryDir folder;
    GridChartFixture on;
    QVERIFY(on.load());
    ZelTest::FileDialogDriver dialogs;
    dialogs.choose({folder.filePath(QStringLiteral("chart.svg"))});
    QTest::keySequence(on.graph(), QKeySequence::Save);
    QCOMPARE(dialogs.shown().size(), 1);
    QCOMPARE(dialogs.shown().constFirst().title, QStringLiteral("Save Picture As"));
    QVERIFY(contentOf(folder.filePath(QStringLiteral("chart.svg"))).contains("<svg"));
    // A name without an ending is a PNG.
    dialogs.choose({folder.filePath(QStringLiteral("plain"))});
    QTest::keySequence(on.graph(), QKeySequence::Save);
    QVERIFY(!QImage(folder.filePath(QStringLiteral("plain.png"))).isNull());
}

void tst_GridChartPictures::nothingIsSavedWhenThePersonCancels()
{
    const QTemporaryDir folder;
    GridChartFixture on;
    QVERIFY(on.load());
    const QSignalSpy errors(&on.chart, &Zel::Control::runtimeError);
    ZelTest::FileDialogDriver dialogs;
    dialogs.cancel();
    QTest::keySequence(on.graph(), QKeySequence::Save);
    QCOMPARE(dialogs.shown().size(), 1);
    QCOMPARE(errors.count(), 0);
}

void tst_GridChartPictures::aPictureThatCannotBeSavedIsAnError()
{
    const QTemporaryDir folder;
    GridChartFixture on;
    QVERIFY(on.load());
    const QString inNoFolder = folder.filePath(QStringLiteral("none/a.png"));
    QCOMPARE(ZelTest::errorNumber([&] { on.chart.savePicture(inNoFolder); }), 75);
    // The folder is there, but nobody can write to it, an administrator included.
    const QString unwritable = QStringLiteral("/proc/chart.png");
    QCOMPARE(ZelTest::errorNumber([&] { on.chart.savePicture(unwritable); }), 75);
    const QSignalSpy errors(&on.chart, &Zel::Control::runtimeError);
    ZelTest::FileDialogDriver dialogs;
    dialogs.choose({unwritable});
    QTest::keySequence(on.graph(), QKeySequence::Save);
    QCOMPARE(errors.count(), 1);
    QCOMPARE(errors.at(0).at(0).value<Zel::RuntimeError>().number(), 75);
}

void tst_GridChartPictures::aDrawingHasItsTexts()
{
    const QTemporaryDir folder;
    GridChartFixture on;
    QVERIFY(on.load(40));
    on.chart.ShowQuestionDetails(1);
    on.chart.savePicture(folder.filePath(QStringLiteral("a.svg")));
    const QString drawing = QString::fromUtf8(contentOf(folder.filePath(QStringLiteral("a.svg"))));
    QVERIFY(drawing.contains(QStringLiteral("Question 1: Is &lt;b&gt;this&lt;/b&gt; &amp; that?")));
    QVERIFY(drawing.contains(QStringLiteral("✓ 30 (75 %)")));
    QVERIFY(drawing.contains(QStringLiteral("2 - No")));
}

void tst_GridChartPictures::isBlackOnWhiteOnADarkScreenToo()
{
    const QTemporaryDir folder;
    GridChartFixture on;
    QPalette dark;
    dark.setColor(QPalette::Base, Qt::black);
    dark.setColor(QPalette::Text, Qt::white);
    on.chart.setPalette(dark);
    QVERIFY(on.load());
    on.chart.savePicture(folder.filePath(QStringLiteral("a.png")));
    const QImage image(folder.filePath(QStringLiteral("a.png")));
    QCOMPARE(image.pixelColor(3, 3), QColor(Qt::white));
    QCOMPARE(image.pixelColor(image.width() - 4, image.height() - 4), QColor(Qt::white));
}

void tst_GridChartPictures::prints()
{
    const QTemporaryDir folder;
    GridChartFixture on;
    QVERIFY(on.load());
    {
        QPdfWriter page(folder.filePath(QStringLiteral("page.pdf")));
        on.chart.printOn(page);
    }
    const QByteArray page = contentOf(folder.filePath(QStringLiteral("page.pdf")));
    QVERIFY(page.startsWith("%PDF-"));
    QVERIFY(page.size() > 3'000); // there is something on it
}

void tst_GridChartPictures::asksForThePrinter()
{
    GridChartFixture on;
    QVERIFY(on.load());
    QString title;
    QTimer timer;
    connect(&timer, &QTimer::timeout, this, [&title] {
        if (auto *dialog = qobject_cast<QPrintDialog *>(QApplication::activeModalWidget())) {
            title = dialog->windowTitle();
            dialog->reject();
        }
    });
    timer.start(10);
    QTest::keySequence(on.graph(), QKeySequence::Print);
    QCOMPARE(title, QStringLiteral("Print Graph"));
}

ZEL_TEST_MAIN(tst_GridChartPictures)
#include "tst_gridchartpictures.moc"
