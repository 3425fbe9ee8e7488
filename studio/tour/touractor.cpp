// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/tour/touractor.h"

#include "studio/tour/tourindex.h"

#include <QApplication>
#include <QDropEvent>
#include <QElapsedTimer>
#include <QMenu>
#include <QMimeData>
#include <QPainter>
#include <QRegularExpression>
#include <QTest>
#include <QTimer>
#include <QToolButton>
#include <QWindow>

#include <cstdio>
#include <exception>

namespace Studio {

namespace {

constexpr int Patience = 60000; // milliseconds: machines may be busy
constexpr int MenuDelay = 150;

QString fileName(int number, const QString &part, const QString &caption)
{
    QString words = caption.toLower();
    words.replace(QRegularExpression(QStringLiteral("[^a-z0-9]+")), QStringLiteral("-"));
    return QStringLiteral("%1-%2-%3.png")
        .arg(number, 2, 10, QLatin1Char('0'))
        .arg(part, words.left(40));
}

/// Draws what lies over a window where it lies, dialogs with an edge, as a desktop would.
void drawOver(QPixmap &picture, const QWidget &window, QWidget &over)
{
    const QRect place(window.mapFromGlobal(over.pos()), over.size());
    QPainter painter(&picture);
    painter.drawPixmap(place.topLeft(), over.grab());
    if (over.windowType() == Qt::Popup)
        return;
    painter.setPen(over.palette().color(QPalette::Disabled, QPalette::WindowText));
    painter.drawRect(place.adjusted(-1, -1, 0, 0));
}

} // namespace

TourActor::TourActor(QWidget &window, const QString &folder, const QString &part)
    : m_window(window)
    , m_folder(folder)
    , m_part(part)
{
}

void TourActor::waitFor(const QString &what, const std::function<bool()> &condition)
{
    QElapsedTimer timer;
    timer.start();
    while (!condition()) {
        if (timer.hasExpired(Patience))
            throw TourFailure(QStringLiteral("waited in vain for %1").arg(what));
        QTest::qWait(10);
    }
}

void TourActor::expect(bool condition, const QString &what)
{
    if (!condition)
        throw TourFailure(QStringLiteral("expected %1").arg(what));
}

void TourActor::click(const QString &name)
{
    QWidget &widget = find(name);
    waitFor(QStringLiteral("\"%1\" to be enabled").arg(name), [&] { return widget.isEnabled(); });
    clickAt(widget, widget.rect().center());
}

void TourActor::clickAt(QWidget &widget, const QPoint &position)
{
    QTest::mouseClick(&widget, Qt::LeftButton, Qt::NoModifier, position);
    QTest::qWait(0);
}

void TourActor::type(const QString &name, const QString &text)
{
    QWidget &widget = find(name);
    clickAt(widget, widget.rect().center());
    QTest::keyClick(&widget, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(&widget, Qt::Key_Delete);
    QTest::keyClicks(&widget, text);
    QTest::qWait(0);
}

void TourActor::press(Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    // A window manager may take its time to give a window the focus.
    waitFor(QStringLiteral("a window that has the keyboard"),
            [] { return QApplication::activeWindow() != nullptr; });
    QWidget *target = QApplication::focusWidget();
    QTest::keyClick(target ? target : &m_window, key, modifiers);
    QTest::qWait(0);
}

void TourActor::useMenu(const QString &button, const QString &action,
                        const std::function<void()> &atMenu)
{
    auto &tool = find<QToolButton>(button);
    std::exception_ptr failure;
    // The menu runs a loop of its own inside the click; what happens in it comes by timer.
    QTimer timer;
    timer.setSingleShot(true);
    QObject::connect(&timer, &QTimer::timeout, [&] {
        try {
            chooseFrom(*tool.menu(), action, atMenu);
        } catch (...) {
            failure = std::current_exception();
        }
        tool.menu()->close();
    });
    timer.start(MenuDelay);
    clickAt(tool, tool.rect().center());
    if (failure)
        std::rethrow_exception(failure);
    expect(!timer.isActive(), QStringLiteral("the menu of \"%1\" to open").arg(button));
    waitFor(QStringLiteral("the menu of \"%1\" to close").arg(button),
            [] { return !QApplication::activePopupWidget(); });
}

void TourActor::chooseFrom(QMenu &menu, const QString &action, const std::function<void()> &atMenu)
{
    expect(menu.isVisible(), QStringLiteral("the menu \"%1\" to open").arg(menu.objectName()));
    atMenu();
    if (action.isEmpty())
        return;
    auto *chosen = menu.findChild<QAction *>(action);
    expect(chosen, QStringLiteral("an action \"%1\"").arg(action));
    QTest::mouseClick(&menu, Qt::LeftButton, {}, menu.actionGeometry(chosen).center());
}

QList<QWidget *> TourActor::named(const QString &name) const
{
    QList<QWidget *> widgets = m_window.findChildren<QWidget *>(name);
    if (const QWidget *dialog = QApplication::activeModalWidget())
        widgets << dialog->findChildren<QWidget *>(name);
    return widgets;
}

void TourActor::drop(QWidget &widget, const QStringList &paths,
                     const std::function<void()> &atHover)
{
    QMimeData data;
    QList<QUrl> urls;
    for (const QString &path : paths)
        urls << QUrl::fromLocalFile(path);
    data.setUrls(urls);
    const QPoint place = widget.rect().center();
    QDragEnterEvent enter(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&widget, &enter);
    expect(enter.isAccepted(), QStringLiteral("files to be welcome"));
    atHover();
    QDropEvent drop(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&widget, &drop);
    QTest::qWait(0);
}

void TourActor::withDialog(const std::function<void()> &open, const std::function<void()> &act)
{
    std::exception_ptr failure;
    // The dialog runs a loop of its own; what happens in it comes by timer, once it is on screen.
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] {
        QWidget *dialog = QApplication::activeModalWidget();
        if (!dialog || !dialog->windowHandle() || !dialog->windowHandle()->isExposed())
            return;
        timer.stop();
        try {
            act();
        } catch (...) {
            failure = std::current_exception();
            dialog->close();
        }
    });
    timer.start(MenuDelay);
    open();
    if (failure)
        std::rethrow_exception(failure);
    expect(!timer.isActive(), QStringLiteral("a dialog to open"));
    // The platform without a screen has no window manager to do so.
    QWidget *below = QApplication::activeModalWidget();
    QWidget &next = below ? *below : m_window;
    next.activateWindow();
    waitFor(QStringLiteral("the window to be active again"), [&] { return next.isActiveWindow(); });
}

void TourActor::shoot(const QString &caption)
{
    QTest::qWait(60); // animations of the style end, pending paints happen
    shootNow(caption);
}

void TourActor::shootNow(const QString &caption)
{
    QPixmap picture = m_window.grab();
    for (QWidget *over : {QApplication::activeModalWidget(), QApplication::activePopupWidget()}) {
        if (over)
            drawOver(picture, m_window, *over);
    }
    const QString file = fileName(++m_count, m_part, caption);
    if (!picture.save(m_folder + QLatin1Char('/') + file))
        throw TourFailure(QStringLiteral("the picture %1 could not be written").arg(file));
    addToTourList(m_folder, m_part, file, caption);
    std::printf("tour: %s\n", qPrintable(file));
    std::fflush(stdout);
}

} // namespace Studio
