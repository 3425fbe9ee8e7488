// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "listtesting.h"
#include "testsupport/testcase.h"

#include <QSignalSpy>

using namespace Zel;
using namespace ListTesting;

/// Check boxes of a ListView.
class TestListChecks : public ZelTest::TestCase
{
    Q_OBJECT

    std::unique_ptr<ListView> m_list;
    std::unique_ptr<QSignalSpy> m_checks;

    QPoint box(qsizetype row) const
    {
        const QRect cell = m_list->cellRect(row);
        return {cell.left() + 12, cell.center().y()};
    }

    void clickBox(qsizetype row)
    {
        QTest::mouseClick(m_list->viewport(), Qt::LeftButton, {}, box(row));
    }

private slots:

    void init()
    {
        TestCase::init();
        m_list = std::make_unique<ListView>();
        m_list->addColumn(QStringLiteral("Template"), 4235);
        m_list->addColumn(QStringLiteral("Description"), 2000);
        m_list->setCheckBoxes(true);
        m_list->setRows(lines({"a", "b", "c"}));
        show(*m_list);
        m_checks = std::make_unique<QSignalSpy>(m_list.get(), &ListView::lineCheckChanged);
    }

    void cleanup()
    {
        m_checks.reset();
        m_list.reset();
    }

    void aClickOnTheBoxTogglesIt()
    {
        clickBox(1);
        QVERIFY(m_list->isChecked(1));
        QCOMPARE(m_checks->size(), 1);
        QCOMPARE(m_checks->first(), QVariantList({QVariant::fromValue<qsizetype>(1), true}));
        clickBox(1);
        QVERIFY(!m_list->isChecked(1));
        QCOMPARE(m_checks->last(), QVariantList({QVariant::fromValue<qsizetype>(1), false}));
    }

    void aClickBesideTheBoxLeavesIt()
    {
        click(*m_list, 1, 0);
        click(*m_list, 1, 1);
        QCOMPARE(m_checks->size(), 0);
        QCOMPARE(m_list->selectedRow(), 1);
    }

    void twoQuickClicksOnTheBoxAreTwoClicks()
    {
        QSignalSpy doubleClicks(m_list.get(), &ListView::lineDoubleClicked);
        clickBox(0);
        QTest::mouseDClick(m_list->viewport(), Qt::LeftButton, {}, box(0));
        QTest::mouseRelease(m_list->viewport(), Qt::LeftButton, {}, box(0));
        QCOMPARE(m_checks->size(), 2);
        QCOMPARE(doubleClicks.size(), 0);
        doubleClick(*m_list, 0, 1);
        QCOMPARE(doubleClicks.size(), 1);
        QCOMPARE(m_checks->size(), 2);
    }

    void spaceTogglesTheSelectedLines()
    {
        click(*m_list, 1);
        QTest::keyClick(m_list->view(), Qt::Key_Space);
        QVERIFY(m_list->isChecked(1));
        m_list->setMultiSelect(true);
        m_list->view()->selectAll();
        QTest::keyClick(m_list->view(), Qt::Key_Space);
        // All go where the current line goes.
        QVERIFY(!m_list->isChecked(0) && !m_list->isChecked(1) && !m_list->isChecked(2));
        QTest::keyClick(m_list->view(), Qt::Key_Space);
        QVERIFY(m_list->isChecked(0) && m_list->isChecked(1) && m_list->isChecked(2));
        QCOMPARE(m_checks->size(), 5);
    }

    void aListenerMayPutTheCheckBack()
    {
        m_list->setChecked(2, true);
        m_list->setGhosted(2, true);
        connect(m_list.get(), &ListView::lineCheckChanged, this, [this](qsizetype row, bool) {
            if (m_list->isGhosted(row))
                m_list->setChecked(row, true);
        });
        clickBox(2);
        QVERIFY(m_list->isChecked(2));
        QCOMPARE(m_checks->size(), 1);
        QTest::keyClick(m_list->view(), Qt::Key_Space);
        QVERIFY(m_list->isChecked(2));
        QCOMPARE(m_checks->size(), 2);
    }

    void aListenerMayTakeTheLinesAway()
    {
        connect(m_list.get(), &ListView::lineCheckChanged, m_list.get(), &ListView::clear);
        m_list->setMultiSelect(true);
        m_list->view()->selectAll();
        QTest::keyClick(m_list->view(), Qt::Key_Space);
        QCOMPARE(m_checks->size(), 1);
        QCOMPARE(m_list->count(), 0);
    }

    void withoutBoxesSpaceSelectsTheCurrentLine()
    {
        m_list->setCheckBoxes(false);
        m_list->setFocus();
        QSignalSpy clicks(m_list.get(), &ListView::lineClicked);
        QTest::keyClick(m_list->view(), Qt::Key_Space);
        QCOMPARE(m_list->selectedRow(), 0);
        QCOMPARE(clicks.size(), 1);
        clickBox(1);
        QCOMPARE(m_checks->size(), 0);
    }

    void checksSurviveSortAndFilter()
    {
        clickBox(0);
        m_list->sortBy(0, Qt::DescendingOrder);
        QCOMPARE(m_list->view()->model()->index(2, 0).data(Qt::CheckStateRole).toInt(),
                 int(Qt::Checked));
        m_list->setRowFilter([](qsizetype row) { return row == 0; });
        QCOMPARE(m_list->view()->model()->index(0, 0).data(CheckedRole).toBool(), true);
        m_list->setRowFilter({});
        QVERIFY(m_list->isChecked(0));
    }
};

ZEL_TEST_MAIN(TestListChecks)
#include "tst_listchecks.moc"
