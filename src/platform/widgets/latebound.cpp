// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/widgets/latebound.h"

#include "platform/core/runtimeerror.h"
#include "platform/core/variantconversion.h"
#include "platform/widgets/containerproperties.h"
#include "platform/widgets/control.h"

#include <QMetaMethod>
#include <QMetaProperty>

#include <array>
#include <optional>

namespace Zel {

namespace {

constexpr qsizetype MostArguments = 10; // what QMetaMethod::invoke takes

/// The classes whose members take part, the most derived first.
QList<const QMetaObject *> classesOf(const QObject &object)
{
    const QMetaObject *floor = &QObject::staticMetaObject;
    if (qobject_cast<const Control *>(&object))
        floor = &Control::staticMetaObject;
    else if (object.isWidgetType())
        floor = &QWidget::staticMetaObject;
    QList<const QMetaObject *> classes;
    for (const QMetaObject *meta = object.metaObject(); meta != floor; meta = meta->superClass())
        classes << meta;
    return classes;
}

bool sameName(const QByteArray &a, const QByteArray &b, Qt::CaseSensitivity sensitivity)
{
    return sensitivity == Qt::CaseSensitive ? a == b : a.compare(b, Qt::CaseInsensitive) == 0;
}

std::optional<QMetaProperty> findProperty(const QObject &object, const QByteArray &name,
                                          Qt::CaseSensitivity sensitivity)
{
    for (const QMetaObject *meta : classesOf(object)) {
        for (int i = meta->propertyOffset(); i < meta->propertyCount(); ++i) {
            if (sameName(meta->property(i).name(), name, sensitivity))
                return meta->property(i);
        }
    }
    return std::nullopt;
}

bool isCallable(const QMetaMethod &method)
{
    return method.access() == QMetaMethod::Public &&
           (method.methodType() == QMetaMethod::Method || method.methodType() == QMetaMethod::Slot);
}

struct MethodSearch
{
    bool nameExists = false;
    std::optional<QMetaMethod> method;
};

MethodSearch findMethod(const QObject &object, const QByteArray &name, qsizetype arguments,
                        Qt::CaseSensitivity sensitivity)
{
    MethodSearch result;
    for (const QMetaObject *meta : classesOf(object)) {
        for (int i = meta->methodOffset(); i < meta->methodCount(); ++i) {
            const QMetaMethod method = meta->method(i);
            if (!isCallable(method) || !sameName(method.name(), name, sensitivity))
                continue;
            result.nameExists = true;
            if (method.parameterCount() == arguments && arguments <= MostArguments) {
                result.method = method;
                return result;
            }
        }
    }
    return result;
}

QVariant invoke(QObject &object, const QMetaMethod &method, const QVariantList &arguments)
{
    QVariantList values;
    values.reserve(arguments.size());
    std::array<QGenericArgument, MostArguments> generic;
    for (int i = 0; i < arguments.size(); ++i)
        values << convertTo(arguments.at(i), method.parameterMetaType(i));
    for (int i = 0; i < values.size(); ++i) {
        const QMetaType type = method.parameterMetaType(i);
        const bool variant = type == QMetaType::fromType<QVariant>();
        const void *data =
            variant ? static_cast<const void *>(&values.at(i)) : values.at(i).constData();
        generic[static_cast<std::size_t>(i)] = QGenericArgument(type.name(), data);
    }
    const QMetaType returned = method.returnMetaType();
    const bool isVoid = returned == QMetaType::fromType<void>();
    const bool isVariant = returned == QMetaType::fromType<QVariant>();
    QVariant result = isVoid || isVariant ? QVariant() : QVariant(returned);
    const QGenericReturnArgument out =
        isVoid ? QGenericReturnArgument()
               : QGenericReturnArgument(method.typeName(), isVariant ? &result : result.data());
    if (!method.invoke(&object, Qt::DirectConnection, out, generic[0], generic[1], generic[2],
                       generic[3], generic[4], generic[5], generic[6], generic[7], generic[8],
                       generic[9]))
        throw RuntimeError(RuntimeError::TypeMismatch);
    return result;
}

[[noreturn]] void fail(int number, const QString &name)
{
    throw RuntimeError(
        number, QStringLiteral("%1: \"%2\"").arg(RuntimeError::standardDescription(number), name));
}

} // namespace

LateBound::LateBound(QObject *object)
    : m_object(object)
{
}

QObject &LateBound::target() const
{
    if (!m_object)
        throw RuntimeError(RuntimeError::ObjectNotSet);
    return *m_object;
}

QVariant LateBound::get(const QString &name) const
{
    return call(name);
}

void LateBound::let(const QString &name, const QVariant &value) const
{
    QObject &object = target();
    if (const auto property = ContainerProperty::find(object, name))
        return property->write(value);
    for (const Qt::CaseSensitivity sensitivity : {Qt::CaseSensitive, Qt::CaseInsensitive}) {
        if (const auto property = findProperty(object, name.toLatin1(), sensitivity)) {
            if (!property->isWritable())
                fail(RuntimeError::WrongArgumentCount, name);
            if (!property->write(&object, convertTo(value, property->metaType())))
                fail(RuntimeError::TypeMismatch, name);
            return;
        }
        if (findMethod(object, name.toLatin1(), 0, sensitivity).nameExists)
            fail(RuntimeError::WrongArgumentCount, name);
    }
    fail(RuntimeError::NoSuchMember, name);
}

QVariant LateBound::call(const QString &name, const QVariantList &arguments) const
{
    QObject &object = target();
    if (const auto property = ContainerProperty::find(object, name)) {
        if (!arguments.isEmpty())
            fail(RuntimeError::WrongArgumentCount, name);
        return property->read();
    }
    for (const Qt::CaseSensitivity sensitivity : {Qt::CaseSensitive, Qt::CaseInsensitive}) {
        const MethodSearch search =
            findMethod(object, name.toLatin1(), arguments.size(), sensitivity);
        if (search.method)
            return invoke(object, *search.method, arguments);
        const auto property = findProperty(object, name.toLatin1(), sensitivity);
        if (property && arguments.isEmpty())
            return property->read(&object);
        if (property || search.nameExists)
            fail(RuntimeError::WrongArgumentCount, name);
    }
    fail(RuntimeError::NoSuchMember, name);
}

} // namespace Zel
