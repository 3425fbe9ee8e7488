// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/widgets/twipsgeometry.h"

#include "platform/widgets/twips.h"
#include "testsupport/testcase.h"

#include <QBoxLayout>
#include <QLineEdit>
#include <QTest>

using Zel::setTwipsGeometry;
using Zel::twipsGeometry;
using Zel::TwipsRect;

namespace Zel {

/// What QCOMPARE prints.
char *toString(const TwipsRect &rect)
{
    return QTest::toString(QRectF(rect.left, rect.top, rect.width, rect.height));
}

} // namespace Zel

/// A widget on a screen of the given resolution.
class WidgetAt : public QWidget
{
    Q_OBJECT

public:
    explicit WidgetAt(int dpi, QWidget *parent = nullptr)
        : QWidget(parent)
        , m_dpi(dpi)
    {
    }

protected:
    int metric(PaintDeviceMetric metric) const override
    {
        return metric == PdmDpiX || metric == PdmDpiY ? m_dpi : QWidget::metric(metric);
    }

private:
    int m_dpi;
};

class TestTwipsGeometry : public ZelTest::TestCase
{
    Q_OBJECT

    static void addScreens()
    {
        QTest::addColumn<int>("dpi");
        for (int dpi : {96, 120, 144, 168})
            QTest::addRow("%d dpi", dpi) << dpi;
    }

private slots:

    void whatIsPlacedReadsBackExactly_data() { addScreens(); }

    void whatIsPlacedReadsBackExactly()
    {
        QFETCH(int, dpi);
        WidgetAt form(dpi);
        WidgetAt child(dpi, &form);
        for (double twips = 4140; twips < 4160; twips += 0.25) {
            const TwipsRect rect{twips, -twips, twips + 1, twips + 2};
            setTwipsGeometry(&child, rect);
            QCOMPARE(twipsGeometry(&child), rect);
        }
    }

    void everyEdgeIsRoundedOnce_data() { addScreens(); }

    void everyEdgeIsRoundedOnce()
    {
        QFETCH(int, dpi);
        WidgetAt form(dpi);
        WidgetAt child(dpi, &form);
        setTwipsGeometry(&child, {4150, 375, 5850, 285});
        QCOMPARE(child.x(), qRound(4150.0 * dpi / 1440));
        QCOMPARE(child.y(), qRound(375.0 * dpi / 1440));
        QCOMPARE(child.x() + child.width(), qRound(10000.0 * dpi / 1440));
        QCOMPARE(child.y() + child.height(), qRound(660.0 * dpi / 1440));
    }

    void neighboursShareTheirEdge_data() { addScreens(); }

    void neighboursShareTheirEdge()
    {
        QFETCH(int, dpi);
        WidgetAt form(dpi);
        WidgetAt upper(dpi, &form);
        WidgetAt lower(dpi, &form);
        for (int row = 0; row < 60; ++row) {
            setTwipsGeometry(&upper, {0, 377.0 * row, 100, 377});
            setTwipsGeometry(&lower, {0, 377.0 * (row + 1), 100, 377});
            QCOMPARE(upper.y() + upper.height(), lower.y());
        }
    }

    void aWidgetThatWasNeverPlacedHasTheTwipsOfItsPixels()
    {
        WidgetAt form(96);
        WidgetAt child(96, &form);
        child.setGeometry(1, 2, 30, 40);
        QCOMPARE(twipsGeometry(&child), (TwipsRect{15, 30, 450, 600}));
    }

    void theTwipsFollowALayout()
    {
        WidgetAt form(96);
        auto *child = new WidgetAt(96);
        auto *layout = new QHBoxLayout(&form);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->addWidget(child);
        setTwipsGeometry(child, {151, 202, 4151, 303});
        form.resize(200, 100);
        form.show();
        QCOMPARE(twipsGeometry(child), (TwipsRect{0, 0, 3000, 1500}));
    }

    void aMoveByQtLeavesTheSizeExact()
    {
        WidgetAt form(96);
        WidgetAt child(96, &form);
        setTwipsGeometry(&child, {4151, 302, 1234, 305});
        child.move(10, child.y());
        QCOMPARE(twipsGeometry(&child), (TwipsRect{150, 302, 1234, 305}));
        child.resize(child.width(), 30);
        QCOMPARE(twipsGeometry(&child), (TwipsRect{150, 302, 1234, 450}));
    }

    void backAtItsPixelsAWidgetIsBackAtItsTwips()
    {
        WidgetAt form(96);
        WidgetAt child(96, &form);
        setTwipsGeometry(&child, {4151, 302, 1234, 305});
        const QRect pixels = child.geometry();
        child.setGeometry(0, 0, 1, 1);
        child.setGeometry(pixels);
        QCOMPARE(twipsGeometry(&child), (TwipsRect{4151, 302, 1234, 305}));
    }

    void aMinimumSizeTellsWhatTheWidgetBecame()
    {
        WidgetAt form(96);
        WidgetAt child(96, &form);
        child.setMinimumWidth(100);
        child.setMaximumHeight(20);
        setTwipsGeometry(&child, {7, 8, 10, 4000});
        QCOMPARE(child.size(), QSize(100, 20));
        QCOMPARE(twipsGeometry(&child), (TwipsRect{7, 8, 1500, 300}));
    }

    void aSizeBelowNothingIsNothing()
    {
        WidgetAt form(96);
        WidgetAt child(96, &form);
        setTwipsGeometry(&child, {15, 15, -355, -1});
        QCOMPARE(twipsGeometry(&child), (TwipsRect{15, 15, 0, 0}));
        QCOMPARE(child.size(), QSize(0, 0));
    }

    void nonsenseStaysInBounds()
    {
        WidgetAt form(96);
        WidgetAt child(96, &form);
        setTwipsGeometry(&child, {-1e300, 1e300, 1e300, 15});
        QVERIFY(child.x() < 0);
        QVERIFY(child.y() > 0);
        QVERIFY(child.width() > 0 && child.width() <= QWIDGETSIZE_MAX);
    }

    void movingKeepsWidthAndHeight()
    {
        WidgetAt form(120);
        WidgetAt child(120, &form);
        setTwipsGeometry(&child, {10, 20, 3000, 4000});
        Zel::setTwipsTop(&child, -125);
        QCOMPARE(twipsGeometry(&child), (TwipsRect{10, -125, 3000, 4000}));
    }

    void theTwipsGoWithTheWidget()
    {
        WidgetAt form(96);
        WidgetAt other(96);
        auto *child = new WidgetAt(96, &form);
        setTwipsGeometry(child, {11, 22, 333, 444});
        child->setParent(&other);
        child->setGeometry(child->geometry());
        QCOMPARE(twipsGeometry(child).width, 333.0);
        delete child;
    }
};

ZEL_TEST_MAIN(TestTwipsGeometry)
#include "tst_twipsgeometry.moc"
