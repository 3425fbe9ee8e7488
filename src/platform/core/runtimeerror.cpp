// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/core/runtimeerror.h"

#include <array>

namespace Zel {

namespace {

struct StandardText
{
    int number;
    const char *text;
};

constexpr std::array standardTexts{
    StandardText{RuntimeError::InvalidProcedureCall, "Invalid procedure call or argument"},
    StandardText{RuntimeError::Overflow, "Overflow"},
    StandardText{RuntimeError::SubscriptOutOfRange, "Subscript out of range"},
    StandardText{RuntimeError::DivisionByZero, "Division by zero"},
    StandardText{RuntimeError::TypeMismatch, "Type mismatch"},
    StandardText{RuntimeError::PathFileAccess, "Path/File access error"},
    StandardText{RuntimeError::ObjectNotSet, "Object variable or With block variable not set"},
    StandardText{RuntimeError::PropertySetAtRunTime, "Set not supported at runtime"},
    StandardText{RuntimeError::ObjectRequired, "Object required"},
    StandardText{RuntimeError::CannotCreateObject, "Component can't create object"},
    StandardText{RuntimeError::NoSuchMember, "Object doesn't support this property or method"},
    StandardText{RuntimeError::WrongArgumentCount,
                 "Wrong number of arguments or invalid property assignment"},
    StandardText{RuntimeError::KeyInUse,
                 "This key is already associated with an element of this collection"},
    StandardText{RuntimeError::ComponentUnusable,
                 "A required component cannot be loaded on this machine"},
    StandardText{RuntimeError::DialogCancelled, "Cancel was selected"},
    StandardText{RuntimeError::ElementNotFound, "Element not found"},
    StandardText{RuntimeError::KeyNotUnique, "Key is not unique in collection"},
};

} // namespace

RuntimeError::RuntimeError() = default;

RuntimeError::RuntimeError(int number) : RuntimeError(number, standardDescription(number)) { }

RuntimeError::RuntimeError(int number, const QString &description, const QString &source)
    : m_number(number)
    , m_description(description)
    , m_source(source)
    , m_what(QStringLiteral("Error %1: %2").arg(number).arg(description).toUtf8())
{
}

RuntimeError::RuntimeError(const RuntimeError &) = default;
RuntimeError &RuntimeError::operator=(const RuntimeError &) = default;
RuntimeError::~RuntimeError() = default;

const char *RuntimeError::what() const noexcept
{
    return m_what.constData();
}

QString RuntimeError::standardDescription(int number)
{
    for (const StandardText &entry : standardTexts) {
        if (entry.number == number)
            return QString::fromLatin1(entry.text);
    }
    return QStringLiteral("Application-defined or object-defined error");
}

RuntimeError *RuntimeError::clone() const
{
    return new RuntimeError(*this);
}

void RuntimeError::raise() const
{
    throw RuntimeError(*this);
}

} // namespace Zel
