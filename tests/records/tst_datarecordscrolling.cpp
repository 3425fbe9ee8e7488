// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "recordfixture.h"
#include "testsupport/testcase.h"

#include <QApplication>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QWheelEvent>

/// How a form that is higher than its control is moved, and where the focus goes.
class tst_DataRecordScrolling : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void init()
    {
        TestCase::init();
        m = std::make_unique<RecordFixture>();
    }

    void cleanup() { m.reset(); }

    void threeFieldsInAThousandTwips()
    {
        m->size(8000, 1000);
        loadLines(3);
        QVERIFY(m->scroll()->isVisible());
        QCOMPARE(m->scroll()->Min(), 0);
        QCOMPARE(m->scroll()->Max(), -125);
        QCOMPARE(m->scroll()->LargeChange(), 1000);
        QCOMPARE(m->scroll()->Value(), 0);
    }

    void noBarWhereAllIsSeen()
    {
        m->size(8000, 1125);
        loadLines(3);
        QVERIFY(m->scroll()->isHidden());
        m->size(8000, 1124);
        loadLines(3);
        QVERIFY(!m->scroll()->isHidden());
        QCOMPARE(m->scroll()->Max(), -1);
        m->size(8000, 1124.75); // a quarter is too little, and no whole twip
        loadLines(3);
        QVERIFY(!m->scroll()->isHidden());
        QCOMPARE(m->scroll()->Max(), 0);
    }

    void theFrameFollowsTheBar()
    {
        loadLines(40);
        m->scroll()->setValue(-300);
        QCOMPARE(m->placeOf(m->frame()).top, -300.0);
        m->scroll()->setValue(m->scroll()->Max());
        QCOMPARE(m->placeOf(m->frame()).top, 5000.0 - 40 * 375);
        m->scroll()->setValue(0);
        QCOMPARE(m->placeOf(m->frame()).top, 0.0);
    }

    void theFrameFollowsTheThumbWhileItIsDragged()
    {
        loadLines(40);
        Zel::VScroll *bar = m->scroll();
        const QPoint thumb(bar->width() / 2, bar->width() + 10);
        QTest::mousePress(bar, Qt::LeftButton, {}, thumb);
        QTest::mouseMove(bar, thumb + QPoint(0, 30));
        const double dragged = m->placeOf(m->frame()).top;
        QVERIFY(dragged < 0);
        QCOMPARE(dragged, double(bar->Value()));
        QTest::mouseRelease(bar, Qt::LeftButton, {}, thumb + QPoint(0, 30));
        QCOMPARE(m->placeOf(m->frame()).top, dragged);
    }

    void wheelScrolls()
    {
        loadLines(40);
        for (QWidget *over : {m->box("widget_3"), static_cast<QWidget *>(m->frame()),
                              static_cast<QWidget *>(m->container())}) {
            m->scroll()->setValue(0);
            wheel(over, -120);
            QVERIFY2(m->scroll()->Value() < 0, qPrintable(over->objectName()));
            wheel(over, 120);
            QCOMPARE(m->scroll()->Value(), 0);
        }
        loadLines(3);
        wheel(m->box("widget_3"), -120);
        QCOMPARE(m->placeOf(m->frame()).top, 0.0);
    }

    void wheelOverTextThatIsScrolledStaysThere()
    {
        QList<QXSC::DataRecordEntry> entries = lines(40);
        entries[0] = entry("TEXTAREA", "Area", QString("line\n").repeated(100));
        m->load(entries);
        auto *area = qobject_cast<QPlainTextEdit *>(m->box("widget_Area"));
        wheel(area->viewport(), -120);
        QCOMPARE(m->scroll()->Value(), 0);
    }

    void aNewRecordBeginsAtItsTop()
    {
        loadLines(40);
        m->scroll()->setValue(-3000);
        loadLines(50);
        QCOMPARE(m->scroll()->Value(), 0);
        m->scroll()->setValue(-3000);
        loadLines(3);
        QVERIFY(m->scroll()->isHidden());
        QCOMPARE(m->placeOf(m->frame()).top, 0.0);
    }

    void tabBringsTheNextFieldIntoView()
    {
        loadLines(40);
        m->box("widget_1")->setFocus();
        for (int i = 2; i <= 40; ++i) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            QCOMPARE(focused(), QString("widget_%1").arg(i));
            QVERIFY(isInView(focused()));
        }
        QCOMPARE(m->scroll()->Value(), m->scroll()->Max());
        for (int i = 39; i >= 1; --i) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab, Qt::ShiftModifier);
            QCOMPARE(focused(), QString("widget_%1").arg(i));
            QVERIFY(isInView(focused()));
        }
        QCOMPARE(m->scroll()->Value(), 0);
    }

    void tabLeavesTextAreas()
    {
        m->load({entry("TEXTAREA", "a"), entry("CHECKBOX", "b"), entry("TEXTASSET", "c"),
                 entry("CUSTOM", "d"), entry("TEXT", "e")});
        m->box("widget_a")->setFocus();
        QStringList order{QApplication::focusWidget()->objectName() + ' ' + focused()};
        for (int i = 0; i < 5; ++i) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            order << QApplication::focusWidget()->objectName() + ' ' + focused();
        }
        QCOMPARE(order, (QStringList{"widgetValue widget_a", "widgetValue widget_b",
                                     "widgetValue widget_c", "Command1 widget_c",
                                     "widgetButton widget_d", "widgetValue widget_e"}));
        QCOMPARE(FieldTesting::text(m->field("widget_a"), "GetValue"), QString());
    }

    void theFormKeepsItsPlaceInTheTabOrder()
    {
        QLineEdit before(&m->form);
        QLineEdit after(&m->form);
        for (QLineEdit *box : {&before, &after})
            box->show();
        for (int round = 0; round < 2; ++round) {
            loadLines(2);
            QWidget::setTabOrder(&before, m->manager);
            QWidget::setTabOrder(m->manager, &after);
            if (round == 1)
                loadLines(3);
            before.setFocus();
            for (int i = 1; i <= 2 + round; ++i) {
                QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
                QCOMPARE(focused(), QString("widget_%1").arg(i));
            }
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            QCOMPARE(QApplication::focusWidget(), &after);
        }
        m->manager->setFocus();
        QCOMPARE(focused(), QString("widget_1"));
    }

    void focusGivenByCodeIsInView()
    {
        loadLines(40);
        m->box("widget_30")->setFocus();
        QVERIFY(isInView("widget_30"));
        m->box("widget_2")->setFocus();
        QVERIFY(isInView("widget_2"));
        const int value = m->scroll()->Value();
        m->box("widget_3")->setFocus(); // is in view already
        QCOMPARE(m->scroll()->Value(), value);
    }

    void clickDoesNotMoveTheFieldAway()
    {
        m->size(8000, 1000); // the third field is cut
        loadLines(10);
        QTest::mouseClick(m->box("widget_3"), Qt::LeftButton, {}, QPoint(10, 3));
        QCOMPARE(focused(), QString("widget_3"));
        QCOMPARE(m->scroll()->Value(), 0);
        // Typing does, so that one sees what one types.
        QTest::keyClicks(QApplication::focusWidget(), "x");
        QVERIFY(isInView("widget_3"));
    }

    void typingBringsTheFieldBack()
    {
        loadLines(40);
        m->box("widget_1")->setFocus();
        m->scroll()->setValue(m->scroll()->Max());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Control);
        QVERIFY(!isInView("widget_1"));
        QTest::keyClicks(QApplication::focusWidget(), "x");
        QVERIFY(isInView("widget_1"));
    }

    void pageKeysGoThroughTheForm()
    {
        loadLines(40); // 13 of them are in view
        m->box("widget_2")->setFocus();
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_PageDown);
        QCOMPARE(m->scroll()->Value(), -5000);
        QVERIFY(isInView(focused()));
        QCOMPARE(focused(), QString("widget_15"));
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_PageDown);
        QCOMPARE(m->scroll()->Value(), m->scroll()->Max());
        QVERIFY(isInView(focused()));
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_PageDown);
        QCOMPARE(focused(), QString("widget_40"));
        for (int i = 0; i < 3; ++i) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_PageUp);
            QVERIFY(isInView(focused()));
        }
        QCOMPARE(m->scroll()->Value(), 0);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_PageUp);
        QCOMPARE(focused(), QString("widget_1"));
    }

    void pageKeysAreTheTextAreasOwn()
    {
        QList<QXSC::DataRecordEntry> entries = lines(40);
        entries[0] = entry("TEXTAREA", "Area", QString("line\n").repeated(100));
        m->load(entries);
        m->box("widget_Area")->setFocus();
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_PageDown);
        QCOMPARE(m->scroll()->Value(), 0);
        QCOMPARE(focused(), QString("widget_Area"));
    }

    void aFieldHigherThanTheViewIsSeenFromItsTop()
    {
        m->size(8000, 1000);
        m->load({entry("TEXT", "a"), entry("TEXTAREA", "b"), entry("TEXT", "c")});
        m->box("widget_b")->setFocus();
        QCOMPARE(m->scroll()->Value(), -375);
        m->box("widget_c")->setFocus();
        QCOMPARE(m->scroll()->Value(), m->scroll()->Max());
        m->box("widget_b")->setFocus();
        QCOMPARE(m->scroll()->Value(), -375);
    }

    void rebuildingKeepsPlaceAndFocus()
    {
        loadLines(40);
        auto *box = qobject_cast<QLineEdit *>(m->box("widget_20"));
        box->setFocus();
        QTest::keyClicks(box, "abc");
        box->setSelection(2, -1);
        m->scroll()->setValue(-4000);
        m->manager->UpdateDataRecord();
        m->size(6000, 4000);
        m->manager->rebuild();
        QCOMPARE(m->placeOf(m->field("widget_20")).width, 6000.0 - 355);
        QCOMPARE(m->scroll()->Value(), -4000);
        QCOMPARE(focused(), QString("widget_20"));
        auto *rebuilt = qobject_cast<QLineEdit *>(QApplication::focusWidget());
        QCOMPARE(rebuilt->text(), QString("abcvalue 20"));
        QCOMPARE(rebuilt->selectedText(), QString("b"));
        QCOMPARE(rebuilt->cursorPosition(), 1);
        QTest::keyClicks(rebuilt, "x");
        QCOMPARE(rebuilt->text(), QString("axcvalue 20"));
    }

    void rebuildingWhereAllIsSeenBeginsAtTheTop()
    {
        m->size(8000, 1000);
        loadLines(4);
        m->scroll()->setValue(-300);
        m->size(8000, 5000);
        m->manager->rebuild();
        QVERIFY(m->scroll()->isHidden());
        QCOMPARE(m->placeOf(m->frame()).top, 0.0);
    }

    void anotherRecordKeepsTheFocusInTheForm()
    {
        loadLines(3);
        m->box("widget_2")->setFocus();
        loadLines(4);
        QCOMPARE(focused(), QString("widget_1"));
        QLineEdit other(&m->form);
        other.show();
        other.setFocus();
        loadLines(3);
        QCOMPARE(QApplication::focusWidget(), &other);
    }

    void rebuildingKeepsTheCursorInATextArea()
    {
        m->load({entry("TEXTAREA", "Area", "one\r\ntwo")});
        auto *area = qobject_cast<QPlainTextEdit *>(m->box("widget_Area"));
        area->setFocus();
        QTest::keyClick(area, Qt::Key_End);
        m->manager->UpdateDataRecord();
        m->manager->rebuild();
        QTest::keyClicks(QApplication::focusWidget(), "!");
        QCOMPARE(m->value("widget_Area"), QString("one!\r\ntwo"));
    }

    void rebuildingKeepsTheFocusOfButtons()
    {
        m->load({entry("TEXTASSET", "Logo"), entry("CHECKBOX", "Live")});
        for (const auto &[field, name] :
             std::initializer_list<std::pair<const char *, const char *>>{
                 {"widget_Logo", "Command1"}, {"widget_Live", "widgetValue"}}) {
            FieldTesting::child(m->field(field), name)->setFocus();
            m->manager->rebuild();
            QCOMPARE(QApplication::focusWidget(), FieldTesting::child(m->field(field), name));
        }
    }

    void rebuildingLeavesTheFocusElsewhereAlone()
    {
        QLineEdit other(&m->form);
        other.show();
        loadLines(3);
        other.setFocus();
        m->manager->rebuild();
        QCOMPARE(QApplication::focusWidget(), &other);
    }

    void rebuildingWithNothingLoadedDoesNothing()
    {
        m->manager->rebuild();
        QCOMPARE(m->fields(), QStringList());
    }

private:
    static QList<QXSC::DataRecordEntry> lines(int count)
    {
        QList<QXSC::DataRecordEntry> entries;
        for (int i = 1; i <= count; ++i)
            entries << entry("TEXT", QString::number(i), QString("value %1").arg(i));
        return entries;
    }

    void loadLines(int count) { m->load(lines(count)); }

    /// The field the focus is in.
    QString focused() const
    {
        QWidget *widget = QApplication::focusWidget();
        while (widget && widget->parentWidget() != m->frame())
            widget = widget->parentWidget();
        return widget ? widget->objectName() : QString();
    }

    bool isInView(const QString &name) const
    {
        const QWidget *field = m->field(name);
        const QRect seen(field->mapTo(m->container(), QPoint()), field->size());
        return m->container()->rect().contains(seen);
    }

    static void wheel(QWidget *over, int delta)
    {
        const QPointF at = over->rect().center();
        QWheelEvent event(at, over->mapToGlobal(at), QPoint(), QPoint(0, delta), Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        // As from the device: one that a program makes is not handed outward.
        QSpontaneKeyEvent::setSpontaneous(&event);
        qApp->notify(over, &event);
    }

    std::unique_ptr<RecordFixture> m;
};

ZEL_TEST_MAIN(tst_DataRecordScrolling)
#include "tst_datarecordscrolling.moc"
