// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"
#include "platform/core/propertybag.h"
#include "platform/core/runtimeerror.h"
#include "platform/widgets/twipsgeometry.h"

#include <QMetaMethod>
#include <QWidget>

#include <functional>

namespace Zel {

/// Base of every embeddable control: what a control gets from its container and owes its host.
///
/// A control made in code is a first placement: its members have their defaults and no layout has
/// been changed by properties. A host that stored the control's properties hands them back with
/// `readPropertyBag` (or, in a .ui file, through `PropertyBagText`).
///
/// A control runs in one of two modes. In design mode it shows itself, takes properties and does
/// nothing else; in run mode, the default, it works, and a property that belongs to design time
/// refuses to be set with error 382.
///
/// Errors of a public member propagate to its caller. Errors of something the user does reach the
/// host through `runtimeError`, once and unchanged; when nobody listens the error goes to the
/// control or dialog around this one, and in the end a message box shows number and text.
class ZEL_EXPORT Control : public QWidget
{
    Q_OBJECT
    /// All persisted properties as one text, for .ui files; setting it reads the bag.
    Q_PROPERTY(QString PropertyBagText READ propertyBagText WRITE setPropertyBagText)

public:
    enum class Mode
    {
        Design,
        Run
    };

    explicit Control(QWidget *parent = nullptr);
    ~Control() override;

    Mode mode() const { return m_mode; }

    /// A container sets the mode once, right after making the control.
    void setMode(Mode mode);

    /// Reads every persisted property, the default where the bag has none, and applies it.
    void readPropertyBag(const PropertyBag &bag);
    /// The persisted properties that differ from their defaults.
    PropertyBag writePropertyBag() const;

    QString propertyBagText() const;
    void setPropertyBagText(const QString &text);

    /// What the last read found wrong in its bag, a sentence each; such properties got their
    /// defaults.
    QStringList propertyProblems() const { return m_propertyProblems; }

    /// The names of a control's events in order: event number n is entry n - 1.
    static QStringList eventNames(const QMetaObject *metaObject);

    /// Whether somebody is connected to the given signal of this control.
    bool hasErrorListener(const QMetaMethod &signal) const { return isSignalConnected(signal); }

signals:
    /// An error of something the user did in this control.
    void runtimeError(const Zel::RuntimeError &error);
    /// A persisted property was changed: the host's document is to be saved.
    void changed();
    /// The control cannot go on and asks its container to unload it.
    void unloadRequested();

protected:
    /// Reads the persisted properties; called with the bag a host stored.
    virtual void readProperties(const PropertyBag &bag);
    virtual void writeProperties(PropertyBag &bag) const;
    /// Called once for every other size the control gets; geometry in twips is up to date. A size
    /// in twips (twipsgeometry.h) is told at once; one that Qt set while the control is hidden when
    /// it is shown.
    virtual void resized();
    /// Called after the palette, style or font changed.
    virtual void appearanceChanged();

    /// Marks a persisted property as changed.
    void markChanged();
    /// Refuses with error 382 unless in design mode.
    void requireDesignTime() const;

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

    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    Mode m_mode = Mode::Run;
    bool m_reading = false;
    TwipsRect m_settled{0, 0, -1, -1}; // the size `resized` was last called for
    QStringList m_propertyProblems;
};

} // namespace Zel
