// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"
#include "platform/core/runtimeerror.h"

#include <QCoreApplication>
#include <QDialog>
#include <QMetaMethod>
#include <QPointer>

#include <functional>

namespace Zel {

/// Base of the modal dialog forms.
///
/// A form is shown with `showModal`, which loads it fresh, parents it to the caller's window for
/// that use and returns when it is closed. Errors of what a person does in the form go to
/// `runtimeError`, else to the control that opened it; the form stays open.
class ZEL_EXPORT Form : public QDialog
{
    Q_OBJECT

public:
    explicit Form(QWidget *parent = nullptr);
    ~Form() override;

    /// Loads the form and shows it modally over the window of `caller`, which may be null. Errors
    /// of loading propagate and the form is not shown. Returns at once, without doing anything,
    /// when the form is in use already.
    ///
    /// A form over a window that is destroyed goes with it.
    void showModal(QWidget *caller);

    /// The control that opened the form; null while it is not shown.
    QWidget *caller() const { return m_caller; }

    bool hasErrorListener(const QMetaMethod &signal) const { return isSignalConnected(signal); }

signals:
    /// An error of something the user did in this form.
    void runtimeError(const Zel::RuntimeError &error);

protected:
    /// Puts the form into its starting state; called at the beginning of every use.
    virtual void load();

    /// Does `action`; a run-time error goes to the host, nothing is thrown.
    void guard(const std::function<void()> &action);

    /// Connects something the user does to a member function, through the guard.
    template <typename Sender, typename Signal, typename Receiver, typename... Arguments>
    void onUser(Sender *sender, Signal signal, void (Receiver::*action)(Arguments...))
    {
        connect(sender, signal, this, [this, action](Arguments... arguments) {
            guard([&] { (static_cast<Receiver *>(this)->*action)(arguments...); });
        });
    }

private:
    void release();

    QPointer<QWidget> m_caller;
    bool m_inUse = false;
};

/// The one shared instance of a form, made on first use and deleted when the application quits (a
/// widget that outlives the application object crashes). Exported, so that every library that uses
/// an exported form gets the same one.
template <typename FormClass>
ZEL_EXPORT FormClass &sharedForm()
{
    static QPointer<FormClass> form;
    if (!form) {
        form = new FormClass;
        QObject::connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, form.data(),
                         [] { delete form.data(); });
    }
    return *form;
}

} // namespace Zel
