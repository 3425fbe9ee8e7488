// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/widgets/systemcolor.h"

#include "platform/widgets/control.h"
#include "testsupport/testcase.h"

#include <QApplication>
#include <QLabel>
#include <QTest>

using namespace Zel;

namespace {

/// Light or dark surroundings; every role has a colour of its own.
QPalette surroundings(bool dark)
{
    QPalette palette;
    for (int role = 0; role < QPalette::NColorRoles; ++role) {
        const QColor color(dark ? role : 255 - role, 10 + role, 100 + role);
        for (const auto group : {QPalette::Active, QPalette::Inactive})
            palette.setColor(group, QPalette::ColorRole(role), color);
        palette.setColor(QPalette::Disabled, QPalette::ColorRole(role), color.lighter(103));
    }
    palette.setColor(QPalette::Window, dark ? QColor(30, 30, 35) : QColor(240, 240, 245));
    palette.setColor(QPalette::WindowText, dark ? Qt::white : Qt::black);
    palette.setColor(QPalette::Disabled, QPalette::WindowText, Qt::gray);
    return palette;
}

void useSurroundings(const QPalette &palette)
{
    QApplication::setPalette(palette);
    QCoreApplication::processEvents(); // widgets are told through the event loop
}

QColor windowColor(const QWidget &widget)
{
    return widget.palette().color(QPalette::Active, QPalette::Window);
}

QColor textColor(const QWidget &widget)
{
    return widget.palette().color(QPalette::Active, QPalette::WindowText);
}

} // namespace

/// A control with a background of its own and a label on it.
class Sheet : public Control
{
    Q_OBJECT

public:
    explicit Sheet(QWidget *parent)
        : Control(parent)
        , label(new QLabel(QStringLiteral("User Name"), this))
    {
    }

    void setBackColor(ColorValue color)
    {
        m_color = color;
        applyBackground(this, m_color);
    }

    QLabel *label;

protected:
    void appearanceChanged() override { applyBackground(this, m_color); }

private:
    ColorValue m_color = ButtonFace;
};

class TestSystemColor : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void cleanup() { useSurroundings(QPalette()); }

    void plainValuesAreRedLowestByte()
    {
        const QPalette palette;
        QCOMPARE(colorFromValue(0x000000FF, palette), QColor(255, 0, 0));
        QCOMPARE(colorFromValue(0x0000FF00, palette), QColor(0, 255, 0));
        QCOMPARE(colorFromValue(0x00FF0000, palette), QColor(0, 0, 255));
        QCOMPARE(colorFromValue(0x00A0A0A0, palette), QColor(160, 160, 160));
        QCOMPARE(colorFromValue(0, palette), QColor(Qt::black));
    }

    void plainValuesComeBack()
    {
        for (const ColorValue value : {0x00000000u, 0x00123456u, 0x00FFFFFFu, 0x00C08001u})
            QCOMPARE(valueFromColor(colorFromValue(value, QPalette())), value);
        QCOMPARE(valueFromColor(QColor(1, 2, 3, 4)), 0x00030201u);
    }

    void theTopBitNamesASystemColor()
    {
        QVERIFY(isSystemColor(0x80000000u));
        QVERIFY(isSystemColor(ButtonFace));
        QVERIFY(!isSystemColor(0x7FFFFFFFu));
        QVERIFY(!isSystemColor(0x00FFFFFFu));
    }

    void systemColorsComeFromThePalette_data()
    {
        QTest::addColumn<uint>("index");
        QTest::addColumn<int>("group");
        QTest::addColumn<int>("role");
        const auto row = [](uint index, QPalette::ColorRole role,
                            QPalette::ColorGroup group = QPalette::Active) {
            QTest::addRow("%u", index) << index << int(group) << int(role);
        };
        row(1, QPalette::Dark);
        row(2, QPalette::Highlight);
        row(5, QPalette::Base);
        row(6, QPalette::Shadow);
        row(8, QPalette::Text);
        row(13, QPalette::Highlight);
        row(14, QPalette::HighlightedText);
        row(15, QPalette::Window);
        row(16, QPalette::Dark);
        row(17, QPalette::WindowText, QPalette::Disabled);
        row(18, QPalette::ButtonText);
        row(20, QPalette::Light);
        row(22, QPalette::Midlight);
        row(23, QPalette::ToolTipText);
        row(24, QPalette::ToolTipBase);
        row(25, QPalette::Window);
        row(0x7FFFFFFF, QPalette::Window);
    }

    void systemColorsComeFromThePalette()
    {
        QFETCH(uint, index);
        QFETCH(int, group);
        QFETCH(int, role);
        QPalette palette = surroundings(false);
        const QColor expected =
            palette.color(QPalette::ColorGroup(group), QPalette::ColorRole(role));
        QCOMPARE(colorFromValue(0x80000000u | index, palette), expected);
        // Also for a widget that is switched off.
        palette.setCurrentColorGroup(QPalette::Disabled);
        QCOMPARE(colorFromValue(0x80000000u | index, palette), expected);
    }

    void contrastIsThatOfRelativeLuminance()
    {
        QCOMPARE(contrastRatio(Qt::black, Qt::white), 21.0);
        QCOMPARE(contrastRatio(Qt::white, Qt::black), 21.0);
        QCOMPARE(contrastRatio(Qt::red, Qt::red), 1.0);
        // The lightest grey on white that still counts as readable.
        QVERIFY(contrastRatio(QColor(0x76, 0x76, 0x76), Qt::white) >= 4.5);
        QVERIFY(contrastRatio(QColor(0x77, 0x77, 0x77), Qt::white) < 4.5);
    }

    void theButtonFaceBlendsIntoTheForm()
    {
        useSurroundings(surroundings(false));
        QWidget form;
        Sheet sheet(&form);
        sheet.setBackColor(0x000000FF);
        sheet.setBackColor(ButtonFace);
        QCOMPARE(windowColor(sheet), windowColor(form));
        QVERIFY(!sheet.testAttribute(Qt::WA_SetPalette));
        useSurroundings(surroundings(true));
        QCOMPARE(windowColor(sheet), QColor(30, 30, 35));
    }

    void aBackgroundIsPainted()
    {
        QWidget form;
        Sheet sheet(&form);
        sheet.label->hide();
        sheet.resize(20, 20);
        sheet.setBackColor(0x00C08001);
        QCOMPARE(form.grab().toImage().pixelColor(10, 10), QColor(0x01, 0x80, 0xC0));
    }

    void readableTextIsLeftAlone()
    {
        useSurroundings(surroundings(false));
        QWidget form;
        Sheet sheet(&form);
        sheet.setBackColor(0x00FFFFFF);
        QCOMPARE(windowColor(*sheet.label), QColor(Qt::white));
        QCOMPARE(textColor(*sheet.label), QColor(Qt::black));
        // Only the background is its own; the rest keeps following.
        QCOMPARE(sheet.palette().color(QPalette::Base), form.palette().color(QPalette::Base));
    }

    void textThatCouldNotBeReadSwitches()
    {
        useSurroundings(surroundings(false));
        QWidget form;
        Sheet sheet(&form);
        sheet.setBackColor(0x00200000);
        QCOMPARE(textColor(*sheet.label), QColor(Qt::white));
        sheet.setBackColor(0x00F0FFFF);
        QCOMPARE(textColor(*sheet.label), QColor(Qt::black));
    }

    void aPlainBackgroundStaysReadableWhenThePaletteTurnsDark()
    {
        useSurroundings(surroundings(false));
        QWidget form;
        Sheet sheet(&form);
        sheet.setBackColor(0x00FFFFFF);
        useSurroundings(surroundings(true));
        QCOMPARE(windowColor(sheet), QColor(Qt::white));
        QCOMPARE(textColor(*sheet.label), QColor(Qt::black));
        useSurroundings(surroundings(false));
        QCOMPARE(textColor(*sheet.label), QColor(Qt::black));
    }

    void aSystemBackgroundFollowsThePalette()
    {
        useSurroundings(surroundings(false));
        QWidget form;
        Sheet sheet(&form);
        sheet.setBackColor(0x80000005);
        QCOMPARE(windowColor(sheet), surroundings(false).color(QPalette::Base));
        useSurroundings(surroundings(true));
        QCOMPARE(windowColor(sheet), surroundings(true).color(QPalette::Base));
    }

    void otherColorsOfTheFormKeepComingThrough()
    {
        QWidget form;
        QPalette palette = surroundings(false);
        palette.setColor(QPalette::Highlight, QColor(1, 2, 3));
        form.setPalette(palette);
        Sheet sheet(&form);
        sheet.setBackColor(0x00FFFFFF);
        palette.setColor(QPalette::Highlight, QColor(4, 5, 6));
        form.setPalette(palette);
        QCOMPARE(sheet.palette().color(QPalette::Highlight), QColor(4, 5, 6));
    }
};

ZEL_TEST_MAIN(TestSystemColor)
#include "tst_systemcolor.moc"
