// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QWidget>

#include <functional>
#include <stdexcept>

class QMenu;

namespace Studio {

/// A step of a tour that did not come out.
class TourFailure : public std::runtime_error
{
public:
    explicit TourFailure(const QString &what)
        : std::runtime_error(what.toStdString())
    {
    }
};

/// The scripted user: finds widgets by object name in a window and acts on them with real mouse and
/// key events, checks what comes of it, and takes pictures.
class TourActor
{
public:
    /// @param part what the pictures of this run are called by, for instance "dark-150"
    TourActor(QWidget &window, const QString &folder, const QString &part);

    /// The visible widget of that name; a failure when there is none within a minute.
    template <typename Widget = QWidget>
    Widget &find(const QString &name)
    {
        Widget *found = nullptr;
        waitFor(QStringLiteral("\"%1\" to be shown").arg(name), [&] {
            for (QWidget *widget : named(name)) {
                if (auto *candidate = qobject_cast<Widget *>(widget);
                    candidate && widget->isVisible())
                    found = candidate;
            }
            return found != nullptr;
        });
        return *found;
    }

    bool isShown(const QString &name) const
    {
        const auto *widget = m_window.findChild<QWidget *>(name);
        return widget && widget->isVisible();
    }

    void click(const QString &name);
    void clickAt(QWidget &widget, const QPoint &position);
    /// Replaces the text of an input box by typing.
    void type(const QString &name, const QString &text);
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    /// Opens the menu of a tool button, does `atMenu` while it is open, chooses the action of that
    /// name (none: closes the menu).
    void useMenu(const QString &button, const QString &action, const std::function<void()> &atMenu);

    /// Drags files over a widget, does `atHover`, lets them go there.
    void drop(QWidget &widget, const QStringList &paths, const std::function<void()> &atHover);
    /// Does `open`, which shows a dialog and returns when it is closed, and `act` while it is
    /// shown.
    void withDialog(const std::function<void()> &open, const std::function<void()> &act);

    /// Lets events be handled until the condition holds; a failure after a minute.
    void waitFor(const QString &what, const std::function<bool()> &condition);
    static void expect(bool condition, const QString &what);

    /// Takes a picture of the window and of a dialog or a menu open over it.
    void shoot(const QString &caption);
    /// The same at this very moment, without letting events be handled.
    void shootNow(const QString &caption);

private:
    /// The widgets of that name in the window and in a dialog open over it.
    QList<QWidget *> named(const QString &name) const;
    static void chooseFrom(QMenu &menu, const QString &action, const std::function<void()> &atMenu);

    QWidget &m_window;
    QString m_folder;
    QString m_part;
    int m_count = 0;
};

} // namespace Studio
