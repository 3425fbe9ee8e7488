// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QMetaType>
#include <QString>

#include <exception>

namespace Zel {

/// A run-time error of a control, dialog or helper: the one exception type they throw.
///
/// A host tells errors apart by `number()`; `description()` is a sentence for people and `source()`
/// names the control or library the error comes from (empty when nobody named one). A public member
/// lets the error propagate to its caller; an error of a user action reaches the host through
/// `Control::runtimeError`.
class ZEL_EXPORT RuntimeError : public std::exception
{
public:
    /// The standard error numbers the controls raise.
    enum Number {
        InvalidProcedureCall = 5,
        Overflow = 6,
        SubscriptOutOfRange = 9,
        DivisionByZero = 11,
        TypeMismatch = 13,
        PathFileAccess = 75,
        ObjectNotSet = 91,
        PropertySetAtRunTime = 382,
        ObjectRequired = 424,
        CannotCreateObject = 429,
        NoSuchMember = 438,
        WrongArgumentCount = 450,
        KeyInUse = 457,
        ComponentUnusable = 727,
        DialogCancelled = 32755,
        ElementNotFound = 35601,
        KeyNotUnique = 35602
    };

    RuntimeError();
    /// The error with its standard description.
    explicit RuntimeError(int number);
    RuntimeError(int number, const QString &description, const QString &source = QString());
    RuntimeError(const RuntimeError &);
    RuntimeError &operator=(const RuntimeError &);
    ~RuntimeError() override;

    int number() const { return m_number; }

    QString description() const { return m_description; }

    QString source() const { return m_source; }

    /// "Error 6: Overflow", in UTF-8.
    const char *what() const noexcept override;

    /// The standard description of a number; a number without one answers
    /// "Application-defined or object-defined error".
    static QString standardDescription(int number);

    /// A copy on the heap that keeps the dynamic type, so that an error can be stored and thrown
    /// again later without losing what a derived class adds.
    virtual RuntimeError *clone() const;
    /// Throws a copy of this error with its dynamic type.
    [[noreturn]] virtual void raise() const;

private:
    int m_number = 0;
    QString m_description;
    QString m_source;
    QByteArray m_what;
};

} // namespace Zel

Q_DECLARE_METATYPE(Zel::RuntimeError)
