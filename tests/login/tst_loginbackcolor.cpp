// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "loginfixture.h"
#include "platform/widgets/systemcolor.h"
#include "testsupport/testcase.h"

#include <QApplication>
#include <QLabel>

namespace {

QPalette light()
{
    return QPalette(QColor(0xf0, 0xf0, 0xf0));
}

QPalette dark()
{
    QPalette palette(QColor(0x30, 0x32, 0x36));
    palette.setColor(QPalette::WindowText, Qt::white);
    palette.setColor(QPalette::Text, Qt::white);
    palette.setColor(QPalette::Base, QColor(0x20, 0x20, 0x22));
    return palette;
}

} // namespace

/// The background of the control and its frames.
class tst_LoginBackColor : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void cleanup() { QApplication::setPalette(QPalette()); }

    void beginsAsTheButtonFace();
    void coversTheControlAndItsFrames();
    void followsThePaletteAsASystemColour();
    void staysAsAPlainColourOnAnotherPalette();
    void returnsToTheSystemColour();
    void keepsTheTextReadable();
    void keepsTheTextReadableWhenThePaletteChanges();
    void readsBackEveryBit();

private:
    /// The colour a person sees near the upper left corner of a widget.
    static QColor painted(QWidget *widget)
    {
        return widget->grab(QRect(1, 1, 1, 1)).toImage().pixelColor(0, 0);
    }

    static QColor paintedFrame(const LoginFixture &f, const char *name)
    {
        return painted(f.child(name));
    }

    static void compareAll(const LoginFixture &f, const QColor &color)
    {
        QCOMPARE(painted(f.login), color);
        for (const char *name : {"loginFrame", "upFrame", "selectAccountFrame"})
            QCOMPARE(paintedFrame(f, name), color);
    }

    static double labelContrast(const LoginFixture &f)
    {
        const QPalette palette = f.child<QLabel>("Label1")->palette();
        return Zel::contrastRatio(palette.color(QPalette::WindowText), paintedFrame(f, "upFrame"));
    }
};

void tst_LoginBackColor::beginsAsTheButtonFace()
{
    QApplication::setPalette(light());
    LoginFixture f;
    QCOMPARE(f.login->BackColor(), 0x8000000Fu);
    compareAll(f, light().color(QPalette::Window));
}

void tst_LoginBackColor::coversTheControlAndItsFrames()
{
    LoginFixture f;
    f.login->setBackColor(0x00336699); // blue, green, red
    compareAll(f, QColor(0x99, 0x66, 0x33));
    // The boxes keep the colour of boxes.
    QCOMPARE(f.child("qxUserName")->palette().color(QPalette::Base),
             QApplication::palette().color(QPalette::Base));
}

void tst_LoginBackColor::followsThePaletteAsASystemColour()
{
    QApplication::setPalette(light());
    LoginFixture f;
    QApplication::setPalette(dark());
    QCoreApplication::processEvents();
    compareAll(f, dark().color(QPalette::Window));
    f.login->setBackColor(0x80000005); // the background of windows, as lists have it
    compareAll(f, dark().color(QPalette::Base));
    QApplication::setPalette(light());
    QCoreApplication::processEvents();
    compareAll(f, light().color(QPalette::Base));
}

void tst_LoginBackColor::staysAsAPlainColourOnAnotherPalette()
{
    QApplication::setPalette(light());
    LoginFixture f;
    f.login->setBackColor(0x00336699);
    QApplication::setPalette(dark());
    QCoreApplication::processEvents();
    compareAll(f, QColor(0x99, 0x66, 0x33));
}

void tst_LoginBackColor::returnsToTheSystemColour()
{
    QApplication::setPalette(light());
    LoginFixture f;
    f.login->setBackColor(0);
    compareAll(f, Qt::black);
    f.login->setBackColor(0x8000000F);
    compareAll(f, light().color(QPalette::Window));
    QCOMPARE(f.child<QLabel>("Label1")->palette().color(QPalette::WindowText),
             light().color(QPalette::WindowText));
}

void tst_LoginBackColor::keepsTheTextReadable()
{
    for (const QPalette &palette : {light(), dark()}) {
        QApplication::setPalette(palette);
        for (const uint color : {0x000000u, 0xFFFFFFu, 0x202020u, 0xE0E0E0u, 0x00FFFFu}) {
            LoginFixture f;
            f.login->setBackColor(color);
            QVERIFY2(labelContrast(f) >= 4.5, qPrintable(QString::number(color, 16)));
        }
    }
}

void tst_LoginBackColor::keepsTheTextReadableWhenThePaletteChanges()
{
    for (const uint color : {0x000000u, 0xFFFFFFu}) {
        QApplication::setPalette(light());
        LoginFixture f;
        f.login->setBackColor(color);
        QApplication::setPalette(dark());
        QCoreApplication::processEvents();
        QVERIFY(labelContrast(f) >= 4.5);
        QApplication::setPalette(light());
        QCoreApplication::processEvents();
        QVERIFY(labelContrast(f) >= 4.5);
    }
}

void tst_LoginBackColor::readsBackEveryBit()
{
    LoginFixture f;
    for (const uint color : {0u, 1u, 0x00FFFFFFu, 0x80000000u, 0x80000018u, 0xFFFFFFFFu}) {
        f.login->setBackColor(color);
        QCOMPARE(f.login->BackColor(), color);
    }
}

ZEL_TEST_MAIN(tst_LoginBackColor)
#include "tst_loginbackcolor.moc"
