// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "fieldtesting.h"
#include "platform/widgets/control.h"
#include "platform/widgets/twips.h"
#include "testsupport/errornumber.h"
#include "testsupport/testcase.h"

#include <QApplication>
#include <QFont>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

#include <cmath>

using namespace FieldTesting;
using ZelTest::errorNumber;

/// Where the parts of the field widgets are, to the twip.
class tst_FieldLayout : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void initTestCase()
    {
        TestCase::initTestCase();
        // The same must hold on every screen; the build runs this on two.
        const int dpi = qEnvironmentVariable("EXPECTED_DPI", "96").toInt();
        QCOMPARE(Zel::logicalDpi(nullptr), dpi);
    }

    void namesAreThoseOfTheRegistry_data() { addAll(); }

    void namesAreThoseOfTheRegistry()
    {
        QCOMPARE(QString::fromLatin1(m_field->metaObject()->className()),
                 QStringLiteral("ZelWebServiceControls::") + m_name);
    }

    void labelIsFourTenthsOfTheWidth_data() { addAll(); }

    void labelIsFourTenthsOfTheWidth()
    {
        let(m_field.get(), "Width", 10000);
        QCOMPARE(label().width, 4000.0);
        QCOMPARE(value().left, 4150.0);
    }

    void halvesOfTheWidthGoToTheEvenNeighbour_data() { addAll(); }

    void halvesOfTheWidthGoToTheEvenNeighbour()
    {
        const std::initializer_list<std::pair<double, double>> cases{
            {3746.25, 1498}, // 1498.5
            {3748.75, 1500}, // 1499.5
            {3747, 1499},    // 1498.8
            {3, 1},          // 1.2
        };
        for (const auto &[width, expected] : cases) {
            let(m_field.get(), "Width", width);
            QCOMPARE(label().width, expected);
        }
    }

    void everyResizeLaysOut_data() { addAll(); }

    void everyResizeLaysOut()
    {
        // Also one that Qt made, of a field on the screen.
        m_field->show();
        call(m_field.get(), "SetLabelWidth", {1000});
        QCOMPARE(label().width, 1000.0);
        m_field->resize(400, m_field->height());
        const double expected =
            std::nearbyint(Zel::twipsFromPixels(400, Zel::logicalDpi(m_field.get())) * 0.4);
        QCOMPARE(label().width, expected);
        call(m_field.get(), "SetLabelWidth", {1000});
        let(m_field.get(), "Height", 600);
        QCOMPARE(label().width, expected);
    }

    void anotherLabelWidthHoldsUntilTheNextResize_data() { addAll(); }

    void anotherLabelWidthHoldsUntilTheNextResize()
    {
        let(m_field.get(), "Width", 9001);
        call(m_field.get(), "SetLabelWidth", {1234});
        // Showing it tells it its size once more, which is no other size.
        m_field->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_field.get()));
        QCOMPARE(label().width, 1234.0);
        QCOMPARE(value().left, 1384.0);
        let(m_field.get(), "Width", 9002);
        QCOMPARE(label().width, 3601.0);
    }

    void boxRunsToTheRightEdge_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("TextWidget") << "TextWidget";
        QTest::newRow("TextAreaWidget") << "TextAreaWidget";
    }

    void boxRunsToTheRightEdge()
    {
        let(m_field.get(), "Width", 10000);
        QCOMPARE(value().width, 5850.0);
        call(m_field.get(), "SetLabelWidth", {2500});
        QCOMPARE(value().left, 2650.0);
        QCOMPARE(value().width, 7350.0);
    }

    void checkBoxKeepsItsWidth()
    {
        const auto field = make("CheckboxWidget");
        const double width = place(field.get(), "widgetValue").width;
        QVERIFY(width > 0);
        let(field.get(), "Width", 10000);
        call(field.get(), "SetLabelWidth", {2500});
        QCOMPARE(place(field.get(), "widgetValue").left, 2650.0);
        QCOMPARE(place(field.get(), "widgetValue").width, width);
    }

    void assetButtonIsAtTheRightEdge()
    {
        const auto field = make("TextAssetWidget");
        const double button = place(field.get(), "Command1").width;
        let(field.get(), "Width", 10000);
        QCOMPARE(place(field.get(), "Command1").left, 10000 - button);
        QCOMPARE(place(field.get(), "Command1").width, button);
        QCOMPARE(place(field.get(), "widgetValue").left, 4150.0);
        QCOMPARE(place(field.get(), "widgetValue").width, 10000 - button - 4150 - 30);
    }

    void pageButtonIsAsWideAsItsCaption()
    {
        const auto field = make("CustomWidget");
        call(field.get(), "setButtonText", {"Choose a colour"});
        let(field.get(), "Width", 10000);
        const double caption = Zel::textWidthTwips("Choose a colour", field.get());
        QCOMPARE(place(field.get(), "widgetButton").left, 4150.0);
        QCOMPARE(place(field.get(), "widgetButton").width, caption + 350);
        call(field.get(), "SetLabelWidth", {100});
        QCOMPARE(place(field.get(), "widgetButton").left, 250.0);
        call(field.get(), "setButtonText", {""});
        call(field.get(), "SetLabelWidth", {100});
        QCOMPARE(place(field.get(), "widgetButton").width, 350.0);
    }

    void theBoxBesideThePageButtonIsNotLaidOut()
    {
        const auto field = make("CustomWidget");
        const Zel::TwipsRect before = place(field.get(), "widgetValue");
        let(field.get(), "Width", 10000);
        call(field.get(), "SetLabelWidth", {2500});
        QCOMPARE(place(field.get(), "widgetValue"), before);
    }

    void noWidthChangesOnlyTheHeightOfTheLabel_data() { addAll(); }

    void noWidthChangesOnlyTheHeightOfTheLabel()
    {
        let(m_field.get(), "Width", 10000);
        call(m_field.get(), "SetLabelWidth", {2500});
        Zel::TwipsRect tall = label();
        tall.height = 777;
        Zel::setTwipsGeometry(child(m_field.get(), "widgetLabel"), tall);
        const Zel::TwipsRect formerValue = value();
        for (const int width : {0, -1, -32768}) {
            call(m_field.get(), "SetLabelWidth", {width});
            QCOMPARE(label().width, 2500.0);
            QCOMPARE(value(), formerValue);
        }
        const bool isArea = m_name == QLatin1String("TextAreaWidget");
        const double line = Zel::textHeightTwips(m_field.get());
        QVERIFY(line > 100 && line < 777);
        QCOMPARE(label().height, isArea ? 777.0 : line);
    }

    void heightOfTheLabelFollowsTheFont()
    {
        const auto field = make("TextWidget");
        QFont font = field->font();
        font.setPointSizeF(24);
        field->setFont(font);
        call(field.get(), "SetLabelWidth", {0});
        QCOMPARE(place(field.get(), "widgetLabel").height, Zel::textHeightTwips(field.get()));
    }

    void smallestWidthCounts_data() { addAll(); }

    void smallestWidthCounts()
    {
        call(m_field.get(), "SetLabelWidth", {1});
        QCOMPARE(label().width, 1.0);
        QCOMPARE(value().left, 151.0);
    }

    void greatestWidthIs32617_data() { addAll(); }

    void greatestWidthIs32617()
    {
        call(m_field.get(), "SetLabelWidth", {32617});
        QCOMPARE(value().left, 32767.0);
        const Zel::TwipsRect former = value();
        for (const int width : {32618, 32767}) {
            QCOMPARE(errorNumber([&] { call(m_field.get(), "SetLabelWidth", {width}); }), 6);
            QCOMPARE(label().width, double(width));
            QCOMPARE(value(), former);
        }
        QCOMPARE(errorNumber([&] { call(m_field.get(), "SetLabelWidth", {32768}); }), 6);
        QCOMPARE(label().width, 32767.0);
    }

    void fieldsTooWideForTheirLabelsSaySo_data() { addAll(); }

    void fieldsTooWideForTheirLabelsSaySo()
    {
        auto *control = qobject_cast<Zel::Control *>(m_field.get());
        const QSignalSpy errors(control, &Zel::Control::runtimeError);
        let(control, "Width", 81542.5); // 0.4 of it is 32617
        QCOMPARE(errors.count(), 0);
        QCOMPARE(value().left, 32767.0);
        let(control, "Width", 81545);
        let(control, "Width", 90000); // no 16-bit width at all
        QCOMPARE(errors.count(), 2);
        for (const QVariantList &error : errors)
            QCOMPARE(error.constFirst().value<Zel::RuntimeError>().number(), 6);
    }

    void narrowFieldsHaveNoBox()
    {
        const auto field = make("TextWidget");
        call(field.get(), "SetLabelWidth", {20000});
        QCOMPARE(place(field.get(), "widgetValue").left, 20150.0);
        QCOMPARE(place(field.get(), "widgetValue").width, 0.0);
    }

    void partsOfALineStandOnOneLine_data() { addAll(); }

    void partsOfALineStandOnOneLine()
    {
        if (m_name == QLatin1String("TextAreaWidget"))
            return; // has its label at its first line
        const QWidget *label = child(m_field.get(), "widgetLabel");
        const QWidget *value = child(m_field.get(), valueName());
        const double apart =
            label->geometry().toRectF().center().y() - value->geometry().toRectF().center().y();
        QVERIFY(std::abs(apart) <= 1);
    }

    void labelsAreNotCut_data() { addAll(); }

    void labelsAreNotCut()
    {
        const QWidget *label = child(m_field.get(), "widgetLabel");
        QVERIFY(label->height() >= label->fontMetrics().height());
    }

    void oneLineIs375High_data() { addAll(); }

    void oneLineIs375High()
    {
        const bool isArea = m_name == QLatin1String("TextAreaWidget");
        QCOMPARE(Zel::twipsGeometry(m_field.get()).height, isArea ? 1125.0 : 375.0);
        QCOMPARE(m_field->sizeHint().height(),
                 Zel::pixelsFromTwips(isArea ? 1125 : 375, Zel::logicalDpi(m_field.get())));
    }

    void bigTextGetsHigherFields_data() { addAll(); }

    void bigTextGetsHigherFields()
    {
        QWidget form;
        QFont font = form.font();
        font.setPointSizeF(24);
        form.setFont(font);
        const std::unique_ptr<QWidget> field(
            Zel::ControlRegistry::create("ZelWebServiceControls." + m_name, &form));
        QVERIFY(Zel::twipsGeometry(field.get()).height > Zel::textHeightTwips(field.get()));
        const QWidget *value = child(field.get(), valueName());
        QVERIFY(value->height() >= QFontMetrics(font).height() + 4);
    }

    void clickOnTheLabelGoesToTheValue_data() { addAll(); }

    void clickOnTheLabelGoesToTheValue()
    {
        m_field->show();
        m_field->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_field.get()));
        m_field->setFocus();
        QCOMPARE(QApplication::focusWidget(), child(m_field.get(), valueName()));
    }

    void init()
    {
        TestCase::init();
        m_field.reset();
        // Not every test has a row for each class.
        const char *name = QTest::currentDataTag();
        m_name = QString::fromLatin1(name);
        if (name)
            m_field = make(name);
    }

    void cleanup() { m_field.reset(); }

private:
    static void addAll()
    {
        QTest::addColumn<QString>("name");
        for (const char *name :
             {"TextWidget", "TextAreaWidget", "CheckboxWidget", "TextAssetWidget", "CustomWidget"})
            QTest::newRow(name) << name;
    }

    const char *valueName() const
    {
        return m_name == QLatin1String("CustomWidget") ? "widgetButton" : "widgetValue";
    }

    Zel::TwipsRect label() const { return place(m_field.get(), "widgetLabel"); }

    Zel::TwipsRect value() const { return place(m_field.get(), valueName()); }

    QString m_name;
    std::unique_ptr<QWidget> m_field;
};

ZEL_TEST_MAIN(tst_FieldLayout)
#include "tst_fieldlayout.moc"
