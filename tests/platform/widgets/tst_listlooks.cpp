// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "listtesting.h"
#include "testsupport/testcase.h"

#include <QApplication>
#include <QHelpEvent>
#include <QSignalSpy>
#include <QStyledItemDelegate>
#include <QToolTip>

#include <cmath>

using namespace Zel;
using namespace ListTesting;

namespace {

/// Text that paints as a solid area of the text colour.
const QString solid(8, QChar(0x2588));

QPalette darkPalette()
{
    QPalette palette;
    palette.setColor(QPalette::Window, QColor(53, 53, 53));
    palette.setColor(QPalette::Base, QColor(35, 35, 35));
    palette.setColor(QPalette::Text, QColor(235, 235, 235));
    palette.setColor(QPalette::WindowText, QColor(235, 235, 235));
    palette.setColor(QPalette::PlaceholderText, QColor(150, 150, 150));
    palette.setColor(QPalette::Highlight, QColor(42, 130, 218));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    return palette;
}

double luminance(const QColor &colour)
{
    const auto linear = [](double part) {
        return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
           0.0722 * linear(colour.blueF());
}

/// The colour at a point in device-independent pixels, on screens of any scale.
QColor colourAt(const QImage &image, const QPoint &at)
{
    const double scale = image.devicePixelRatio();
    return image.pixelColor(static_cast<int>((at.x() + 0.5) * scale),
                            static_cast<int>((at.y() + 0.5) * scale));
}

/// The contrast of two colours as the accessibility guidelines count it, 1 to 21.
double contrast(const QColor &a, const QColor &b)
{
    const double lighter = std::max(luminance(a), luminance(b));
    const double darker = std::min(luminance(a), luminance(b));
    return (lighter + 0.05) / (darker + 0.05);
}

} // namespace

/// What a ListView paints.
class TestListLooks : public ZelTest::TestCase
{
    Q_OBJECT

    std::unique_ptr<ListView> m_list;

    QImage picture() const { return m_list->viewport()->grab().toImage(); }

    QColor pixel(const QPoint &at) const { return colourAt(picture(), at); }

    /// Inside the text of a cell that begins with `solid`.
    QColor textColour(qsizetype row, int column = 0, int indent = 0) const
    {
        const QRect cell = m_list->cellRect(row, column);
        return pixel({cell.left() + indent + 24, cell.center().y()});
    }

    QColor ground(qsizetype row) const
    {
        const QRect cell = m_list->cellRect(row, 0);
        return pixel({cell.right() - 3, cell.center().y()});
    }

    QString toolTip(qsizetype row, int column)
    {
        QToolTip::hideText();
        if (!QTest::qWaitFor([] { return !QToolTip::isVisible(); }))
            return QStringLiteral("the former tool tip stays");
        const QPoint at = m_list->cellRect(row, column).center();
        QHelpEvent event(QEvent::ToolTip, at, m_list->viewport()->mapToGlobal(at));
        QApplication::sendEvent(m_list->viewport(), &event);
        return QToolTip::isVisible() ? QToolTip::text() : QString();
    }

private slots:

    void init()
    {
        TestCase::init();
        m_list = std::make_unique<ListView>();
        m_list->addColumn(QStringLiteral("Name"), 3000);
        m_list->addColumn(QStringLiteral("Description"), 2000);
        auto rows = std::make_shared<ListLines>();
        for (int i = 0; i < 4; ++i)
            rows->add(solid, {solid});
        m_list->setRows(rows);
        show(*m_list);
    }

    void cleanup()
    {
        QToolTip::hideText();
        m_list.reset();
    }

    void theEmptyTextShowsWhileThereIsNoLine_data()
    {
        QTest::addColumn<bool>("icons");
        QTest::newRow("report") << false;
        QTest::newRow("icons") << true;
    }

    void theEmptyTextShowsWhileThereIsNoLine()
    {
        QFETCH(bool, icons);
        if (icons)
            m_list->setViewMode(ListView::ViewMode::Icon);
        m_list->setRowFilter([](qsizetype) { return false; });
        const QImage blank = picture();
        m_list->setEmptyText(solid);
        QCOMPARE(m_list->emptyText(), solid);
        const QColor middle = pixel(m_list->viewport()->rect().center());
        QVERIFY(middle != colourAt(blank, m_list->viewport()->rect().center()));
        QVERIFY(contrast(middle, Qt::white) > 1.5);
        QVERIFY(contrast(middle, Qt::white) < contrast(Qt::black, Qt::white));
        m_list->setRowFilter({});
        QCOMPARE(pixel(m_list->viewport()->rect().center() + QPoint(100, 60)), QColor(Qt::white));
    }

    void coloursThatCodeSetsArePainted()
    {
        m_list->setLineColour(1, QColor(160, 160, 160));
        m_list->setCellColour(1, 1, Qt::red);
        QCOMPARE(textColour(0), m_list->palette().color(QPalette::Text));
        QCOMPARE(textColour(1), QColor(160, 160, 160));
        QCOMPARE(textColour(1, 1), QColor(Qt::red));
        m_list->selectRow(1);
        m_list->setFocus();
        QCOMPARE(textColour(1), m_list->palette().color(QPalette::HighlightedText));
    }

    void ghostedLinesAreMutedAndReadable_data()
    {
        QTest::addColumn<QPalette>("palette");
        QTest::newRow("light") << QApplication::palette();
        QTest::newRow("dark") << darkPalette();
    }

    void ghostedLinesAreMutedAndReadable()
    {
        QFETCH(QPalette, palette);
        m_list->setPalette(palette);
        m_list->setGhosted(1, true);
        const QColor base = palette.color(QPalette::Base);
        QCOMPARE(ground(1), base);
        QVERIFY(contrast(textColour(1), base) >= 4.5);
        QVERIFY(contrast(textColour(1), base) < 0.7 * contrast(textColour(0), base));
        // The colour that code sets goes before.
        m_list->setLineColour(1, QColor(160, 160, 160));
        QCOMPARE(textColour(1), QColor(160, 160, 160));
    }

    void aSelectionWithoutTheFocusIsPalerAndReadable_data()
    {
        ghostedLinesAreMutedAndReadable_data();
    }

    void aSelectionWithoutTheFocusIsPalerAndReadable()
    {
        QFETCH(QPalette, palette);
        m_list->setPalette(palette);
        m_list->selectRow(2);
        m_list->setFocus();
        const QColor focused = ground(2);
        QVERIFY(contrast(focused, palette.color(QPalette::Base)) > 1.5);
        m_list->view()->clearFocus();
        const QColor unfocused = ground(2);
        QVERIFY(unfocused != palette.color(QPalette::Base));
        QVERIFY(contrast(unfocused, palette.color(QPalette::Base)) <
                contrast(focused, palette.color(QPalette::Base)));
        QVERIFY(contrast(textColour(2), unfocused) >= 4.5);
    }

    void linesWithoutAnIconKeepItsPlace()
    {
        QPixmap green(16, 16);
        green.fill(Qt::green);
        const QColor text = m_list->palette().color(QPalette::Text);
        const QRect cell = m_list->cellRect(0);
        const QPoint icon(cell.left() + 12, cell.center().y());
        QCOMPARE(pixel(icon), text);
        m_list->setSmallImages({QIcon(green)});
        m_list->setSmallIcon(0, 1);
        const QPoint below =
            icon + QPoint(0, m_list->cellRect(1).top() - m_list->cellRect(0).top());
        QCOMPARE(pixel(icon), QColor(Qt::green));
        QCOMPARE(pixel(below), QColor(Qt::white));
        QCOMPARE(textColour(0, 0, 16), text);
        QCOMPARE(textColour(1, 0, 16), text);
        // The selection does not stain the icon.
        m_list->selectRow(0);
        m_list->setFocus();
        QCOMPARE(pixel(icon), QColor(Qt::green));
    }

    void theIconViewPaintsLargeIconsAndFadesGhostedOnes()
    {
        QPixmap blue(48, 48);
        blue.fill(Qt::blue);
        m_list->setLargeImages({QIcon(blue)});
        m_list->setLargeIcon(0, 1);
        m_list->setLargeIcon(1, 1);
        m_list->setGhosted(1, true);
        m_list->setViewMode(ListView::ViewMode::Icon);
        const auto icon = [this](qsizetype row) {
            return m_list->cellRect(row).topLeft() + QPoint(m_list->cellRect(row).width() / 2, 25);
        };
        QCOMPARE(pixel(icon(0)), QColor(Qt::blue));
        QVERIFY(pixel(icon(1)) != QColor(Qt::blue));
        QVERIFY(pixel(icon(1)).red() > 80);
        QCOMPARE(pixel(icon(2)), QColor(Qt::white));
        const QSize cell = m_list->cellRect(0).size();
        m_list->setLargeIconSize({96, 96});
        QVERIFY(m_list->cellRect(0).height() >= cell.height() + 48);
    }

    void longAndBrokenTextsShowOnOneLine()
    {
        const auto *delegate = qobject_cast<QStyledItemDelegate *>(m_list->view()->itemDelegate());
        QVERIFY(delegate);
        const auto shown = [delegate](const QString &text) {
            return delegate->displayText(text, QLocale());
        };
        const QString text = QStringLiteral("a\nb\tc\r") + QChar(QChar::LineSeparator) + QChar(0);
        QCOMPARE(shown(text), QStringLiteral("a b c   "));
        const QString longText(10'000, QLatin1Char('x'));
        QVERIFY(shown(longText).size() <= 301);
        QVERIFY(shown(longText).endsWith(QChar(0x2026)));
        QCOMPARE(shown(QStringLiteral("Q&A <b>")), QStringLiteral("Q&A <b>"));

        const int height = m_list->cellRect(0).height();
        auto rows = std::make_shared<ListLines>();
        rows->add(longText + QLatin1Char('\n') + longText);
        m_list->setRows(rows);
        QCOMPARE(m_list->cellRect(0).height(), height);
        // Whoever reads the model or copies gets it all.
        QCOMPARE(m_list->view()->model()->index(0, 0).data().toString().size(), 20'001);
    }

    void aShortenedCellHasItsTextAsToolTip()
    {
        auto rows = std::make_shared<ListLines>();
        const QString description =
            QStringLiteral("A description <i>far</i> too long for its column");
        rows->add(QStringLiteral("short"), {description});
        rows->add(QString(5000, QLatin1Char('y')), {});
        m_list->setRows(rows);
        QVERIFY(toolTip(0, 1).contains(description.toHtmlEscaped()));
        QCOMPARE(toolTip(0, 0), QString());
        QCOMPARE(toolTip(1, 1), QString());
        const QString longTip = toolTip(1, 0);
        QVERIFY(longTip.size() > 1000 && longTip.size() < 2200);

        m_list->setColumnWidth(1, 9000);
        QCOMPARE(toolTip(0, 1), QString());
        m_list->setViewMode(ListView::ViewMode::Icon);
        QVERIFY(toolTip(1, 0).contains(QLatin1String("yyy")));
        QCOMPARE(toolTip(0, 0), QString());
    }

    void aCheckBoxCanBeSeenOnADarkGround()
    {
        m_list->setPalette(darkPalette());
        m_list->setCheckBoxes(true);
        const QImage image = picture();
        const QRect cell = m_list->cellRect(0);
        double best = 1;
        for (int x = cell.left(); x < cell.left() + 22; ++x)
            best = std::max(best, contrast(colourAt(image, {x, cell.center().y()}),
                                           darkPalette().color(QPalette::Base)));
        QVERIFY2(best >= 3, qPrintable(QString::number(best)));
    }

    void theMarkInTheBoxOfASelectedLineCanBeSeen()
    {
        m_list->setCheckBoxes(true);
        m_list->setChecked(1, true);
        m_list->setFocus();
        // The darkest point inside the box, whose own ground is white.
        const auto darkest = [this] {
            const QImage image = picture();
            const QRect cell = m_list->cellRect(1);
            double best = 1;
            for (int x = cell.left() + 9; x < cell.left() + 16; ++x) {
                for (int y = cell.center().y() - 3; y <= cell.center().y() + 3; ++y)
                    best = std::max(best, contrast(colourAt(image, {x, y}), Qt::white));
            }
            return best;
        };
        QVERIFY(darkest() > 7);
        m_list->selectRow(1);
        QVERIFY(darkest() > 7);
    }

    void rightToLeftTurnsAllRound()
    {
        m_list->setLayoutDirection(Qt::RightToLeft);
        const QRect name = m_list->cellRect(0, 0);
        QVERIFY(name.left() > m_list->cellRect(0, 1).right() - 1);
        QCOMPARE(pixel({name.right() - 24, name.center().y()}),
                 m_list->palette().color(QPalette::Text));
        QSignalSpy clicks(m_list.get(), &ListView::lineClicked);
        click(*m_list, 2, 1);
        QCOMPARE(clicks.size(), 1);
        const QImage image = header(*m_list)->grab().toImage();
        const int middle = header(*m_list)->height() / 2;
        QCOMPARE(colourAt(image, {8, middle}),
                 colourAt(image, {header(*m_list)->sectionViewportPosition(1) + 8, middle}));
    }

    void theCurrentLineOfSeveralHasAFrame()
    {
        m_list->setMultiSelect(true);
        m_list->setFocus();
        m_list->selectRow(0);
        QTest::keyClick(m_list->view(), Qt::Key_Down, Qt::ControlModifier);
        const QRect cell = m_list->cellRect(1);
        const QPoint edge(cell.left() + 60, cell.bottom());
        QCOMPARE(pixel(edge), m_list->palette().color(QPalette::Highlight));
        m_list->view()->clearFocus();
        QCOMPARE(pixel(edge), QColor(Qt::white));
    }

    void theLineUnderThePointerIsTinted()
    {
        const QColor before = ground(1);
        QTest::mouseMove(m_list->viewport(), m_list->cellRect(0).center());
        QTest::mouseMove(m_list->viewport(), m_list->cellRect(1).center());
        QTRY_VERIFY(ground(1) != before);
        QVERIFY(contrast(ground(1), before) < 1.3);
    }

    void theHeaderRunsToTheEdge()
    {
        QHeaderView *head = header(*m_list);
        QVERIFY(head->length() < head->width() - 20);
        const QImage image = head->grab().toImage();
        const int middle = head->height() / 2;
        QCOMPARE(colourAt(image, {head->width() - 8, middle}),
                 colourAt(image, {head->length() - 8, middle}));
    }
};

ZEL_TEST_MAIN(TestListLooks)
#include "tst_listlooks.moc"
