// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

namespace Studio {

/// A page of the main window. Each page hosts controls of the library and adds what a person needs
/// around them; pages do not know each other.
class Page : public QWidget
{
    Q_OBJECT

public:
    using QWidget::QWidget;

    virtual QString title() const = 0;
    /// The name of the page's icon on the rail.
    virtual QString icon() const = 0;
    /// Loads the page for the account just signed in to. Errors propagate. After the same person
    /// has signed in again to the same account, what they had arranged is still there.
    virtual void open() = 0;

    /// Forgets everything of the account: somebody else may be the next to look.
    virtual void leave() {}

    /// Whether something was entered that is not saved.
    virtual bool holdsChanges() const { return false; }

    /// Before the window closes or the person signs out: asks what becomes of what is not saved.
    /// Returns whether it may be given up.
    virtual bool mayClose() { return true; }

    /// The same before another page is shown, where this page does not keep what was entered.
    virtual bool mayLeave() { return true; }

    /// Keeps what a person arranged for the next start; called before the window goes.
    virtual void remember() {}
};

} // namespace Studio
