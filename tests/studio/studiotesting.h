// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAction>
#include <QMenu>
#include <QMessageBox>
#include <QTest>
#include <QTimer>
#include <QToolButton>
#include <QWidget>

/// What the tests of Studio do as a person would: by object name, with mouse and keys.
namespace StudioTesting {

template <typename Object = QWidget>
Object *child(const QObject &root, const QString &name)
{
    auto *found = root.findChild<Object *>(name);
    if (!found)
        qFatal("there is no child %s", qPrintable(name));
    return found;
}

template <typename Object = QWidget>
Object *child(const QObject &root, const char *name)
{
    return child<Object>(root, QString::fromLatin1(name));
}

inline void click(const QWidget &root, const char *name)
{
    auto *widget = child(root, name);
    QVERIFY2(widget->isVisible() && widget->isEnabled(), name);
    QTest::mouseClick(widget, Qt::LeftButton);
}

/// Types over what a box holds.
inline void type(const QWidget &root, const char *name, const QString &text)
{
    auto *box = child(root, name);
    box->setFocus();
    QTest::keyClick(box, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(box, Qt::Key_Delete);
    QTest::keyClicks(box, text);
}

/// Answers the message box that `open` brings up. Returns whether one came.
template <typename Open>
bool answerBox(const Open &open, QMessageBox::StandardButton answer)
{
    bool came = false;
    QTimer timer;
    timer.callOnTimeout([&] {
        auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        if (!box)
            return;
        came = true;
        QTest::mouseClick(box->button(answer), Qt::LeftButton);
    });
    timer.start(0);
    open();
    return came;
}

/// Shows a window and makes it the one with the keyboard.
inline void show(QWidget &window)
{
    window.show();
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
}

/// Presses a key wherever the keyboard is.
inline void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    QVERIFY(QApplication::focusWidget());
    QTest::keyClick(QApplication::focusWidget(), key, modifiers);
}

/// Opens a button's menu with the mouse and clicks actions in it, one within the sub-menu of the
/// one before it.
inline void chooseFromMenu(const QWidget &root, const char *button, const QStringList &actions)
{
    auto *tool = child<QToolButton>(root, button);
    bool isChosen = false;
    // The menu runs a loop of its own inside the click.
    QTimer timer;
    timer.setSingleShot(true);
    QObject::connect(&timer, &QTimer::timeout, [&] {
        QMenu *menu = tool->menu();
        for (const QString &name : actions) {
            auto *action = menu->findChild<QAction *>(name);
            auto *subMenu = menu->findChild<QMenu *>(name);
            if (subMenu)
                action = subMenu->menuAction();
            if (!action || !menu->isVisible())
                break;
            QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(action).center());
            isChosen = name == actions.constLast();
            if (subMenu && QTest::qWaitFor([subMenu] { return subMenu->isVisible(); }))
                menu = subMenu;
        }
        tool->menu()->close();
    });
    timer.start(0);
    QTest::mouseClick(tool, Qt::LeftButton);
    QVERIFY2(isChosen, button);
    // The platform without a screen has no window manager to do so.
    root.window()->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(root.window()));
}

} // namespace StudioTesting
