// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/appearance.h"
#include "studio/card.h"
#include "studio/studiostyle.h"
#include "studio/tintedicon.h"
#include "tests/studio/studiotesting.h"
#include "testsupport/testcase.h"

#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QVBoxLayout>

#include <cmath>

using Studio::Appearance;
using namespace StudioTesting;

namespace {

// The contrast of two colours after WCAG 2.1: 4.5 is the least for text, 3 for the parts of a
// control.
constexpr double TextContrast = 4.5;
constexpr double PartContrast = 3;

double luminance(const QColor &color)
{
    const auto linear = [](double channel) {
        return channel <= 0.03928 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
           0.0722 * linear(color.blueF());
}

double contrast(const QColor &a, const QColor &b)
{
    const double brighter = std::max(luminance(a), luminance(b));
    const double darker = std::min(luminance(a), luminance(b));
    return (brighter + 0.05) / (darker + 0.05);
}

QColor pixel(QWidget &widget, const QPoint &at)
{
    return widget.grab().toImage().pixelColor(at);
}

} // namespace

class TestAppearance : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void textIsReadable_data()
    {
        QTest::addColumn<Appearance>("appearance");
        QTest::newRow("light") << Appearance::Light;
        QTest::newRow("dark") << Appearance::Dark;
    }

    void textIsReadable()
    {
        QFETCH(const Appearance, appearance);
        Studio::applyAppearance(appearance);
        const QPalette palette = QApplication::palette();

        struct Pair
        {
            const char *name;
            QColor text;
            QColor ground;
        };

        const auto color = [&](QPalette::ColorRole role) { return palette.color(role); };
        const QColor strip = Studio::mixed(color(QPalette::Window), Studio::alarmColor(),
                                           Studio::isDark(palette) ? 0.28 : 0.12);
        const Pair pairs[] = {
            {"text", color(QPalette::Text), color(QPalette::Base)},
            {"window", color(QPalette::WindowText), color(QPalette::Window)},
            {"button", color(QPalette::ButtonText), color(QPalette::Button)},
            {"selection", color(QPalette::HighlightedText), color(QPalette::Highlight)},
            {"tool tip", color(QPalette::ToolTipText), color(QPalette::ToolTipBase)},
            {"placeholder", color(QPalette::PlaceholderText), color(QPalette::Base)},
            {"muted", Studio::mutedText(palette), color(QPalette::Window)},
            {"muted on a card", Studio::mutedText(palette), Studio::Card::ground(palette)},
            {"alarm on a card", Studio::alarmText(palette), Studio::Card::ground(palette)},
            {"problem strip", color(QPalette::WindowText), strip},
        };
        for (const Pair &pair : pairs)
            QVERIFY2(contrast(pair.text, pair.ground) >= TextContrast,
                     qPrintable(QStringLiteral("%1: %2")
                                    .arg(QLatin1String(pair.name))
                                    .arg(contrast(pair.text, pair.ground))));
    }

    void boxesAndFocusAreSeen_data() { textIsReadable_data(); }

    void boxesAndFocusAreSeen()
    {
        QFETCH(const Appearance, appearance);
        Studio::applyAppearance(appearance);
        QWidget window;
        auto *column = new QVBoxLayout(&window);
        auto *box = new QLineEdit(&window);
        auto *button = new QPushButton(QStringLiteral("OK"), &window);
        auto *primary = new QPushButton(QStringLiteral("Sign In"), &window);
        auto *type = new QComboBox(&window);
        primary->setDefault(true);
        for (QWidget *widget : {static_cast<QWidget *>(box), static_cast<QWidget *>(button),
                                static_cast<QWidget *>(primary), static_cast<QWidget *>(type)})
            column->addWidget(widget);
        StudioTesting::show(window);
        const QPalette palette = QApplication::palette();
        const QColor ground = palette.color(QPalette::Window);

        button->setFocus();
        const QPoint edge(box->width() / 2, 0);
        QVERIFY(contrast(pixel(*box, edge), ground) >= PartContrast);
        for (QWidget *widget : {static_cast<QWidget *>(box), static_cast<QWidget *>(button),
                                static_cast<QWidget *>(type)}) {
            primary->setFocus();
            const QColor before = pixel(*widget, {widget->width() / 2, 0});
            widget->setFocus(Qt::TabFocusReason);
            const QColor ring = pixel(*widget, {widget->width() / 2, 0});
            QVERIFY(ring != before);
            QVERIFY2(contrast(ring, ground) >= PartContrast, widget->metaObject()->className());
        }
        // The one thing to press is filled with the accent, and its ring stands out from that.
        const QPoint middle(6, primary->height() / 2);
        QCOMPARE(pixel(*primary, middle), palette.color(QPalette::Highlight));
        primary->setFocus(Qt::TabFocusReason);
        QCOMPARE(pixel(*primary, {primary->width() / 2, 2}),
                 palette.color(QPalette::HighlightedText));
    }

    void aPersonsChoiceBringsStudiosOwnStyle()
    {
        Studio::applyAppearance(Appearance::Dark);
        QVERIFY(qobject_cast<Studio::StudioStyle *>(QApplication::style()));
        QVERIFY(Studio::isDark(QApplication::palette()));
        QStyle *style = QApplication::style();
        Studio::applyAppearance(Appearance::Light);
        QCOMPARE(QApplication::style(), style);
        QVERIFY(!Studio::isDark(QApplication::palette()));
    }

    void theDesktopsColoursAreLeftAlone()
    {
        Studio::applyAppearance(Appearance::Dark);
        qputenv("XDG_CURRENT_DESKTOP", "test");
        Studio::applyAppearance(Appearance::System);
        qunsetenv("XDG_CURRENT_DESKTOP");
        QCOMPARE(QApplication::palette().resolveMask(), QPalette::ResolveMask(0));
    }

    void keysNameAppearancesBothWays()
    {
        for (const Appearance appearance :
             {Appearance::System, Appearance::Light, Appearance::Dark})
            QCOMPARE(Studio::appearanceFromKey(Studio::appearanceKey(appearance)), appearance);
        QCOMPARE(Studio::appearanceFromKey(QString()), Appearance::System);
    }

    void iconsFollowTheColoursAndAreSharpAtEveryScale()
    {
        QPushButton button;
        const QIcon icon = Studio::tintedIcon(QStringLiteral("projects"));
        for (const Appearance appearance : {Appearance::Light, Appearance::Dark}) {
            Studio::applyAppearance(appearance);
            for (const qreal ratio : {1.0, 1.25, 1.5, 2.0}) {
                const QImage image = icon.pixmap(QSize(24, 24), ratio).toImage();
                QCOMPARE(image.size(), QSize(qRound(24 * ratio), qRound(24 * ratio)));
                // Some pixels are wholly the line's: nothing was scaled up from fewer.
                int solid = 0;
                QColor line;
                for (int y = 0; y < image.height(); ++y) {
                    for (int x = 0; x < image.width(); ++x) {
                        if (image.pixelColor(x, y).alpha() < 250)
                            continue;
                        ++solid;
                        line = image.pixelColor(x, y);
                    }
                }
                QVERIFY(solid > 20);
                QVERIFY(contrast(line, QApplication::palette().color(QPalette::Button)) >=
                        PartContrast);
            }
        }
    }

    void mixingIsBetweenBothColours()
    {
        QCOMPARE(Studio::mixed(Qt::black, Qt::white, 0), QColor(Qt::black));
        QCOMPARE(Studio::mixed(Qt::black, Qt::white, 1), QColor(Qt::white));
        QCOMPARE(qRound(Studio::mixed(Qt::black, Qt::white, 0.5).lightnessF() * 100), 50);
    }
};

ZEL_TEST_MAIN(TestAppearance)
#include "tst_appearance.moc"
