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

namespace Zel {

namespace {

constexpr std::size_t MostArguments = 10; // what QMetaMethod::invoke takes

const QMetaObject *floorOf(const QObject &object)
{
    if (object.inherits("Zel::Control"))
        return &Control::staticMetaObject;
    return object.isWidgetType() ? &QWidget::staticMetaObject : &QObject::staticMetaObject;
}

bool sameName(const QByteArray &a, const QByteArray &b, Qt::CaseSensitivity sensitivity)
{
    return sensitivity == Qt::CaseSensitive ? a == b : a.compare(b, Qt::CaseInsensitive) == 0;
}

std::optional<QMetaProperty> findProperty(const QObject &object, const QByteArray &name,
                                          Qt::CaseSensitivity sensitivity)
{
    const QMetaObject *meta = object.metaObject();
    for (int i = floorOf(object)->propertyCount(); i < meta->propertyCount(); ++i) {
        if (sameName(meta->property(i).name(), name, sensitivity))
            return meta->property(i);
    }
    return std::nullopt;
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
    const QMetaObject *meta = object.metaObject();
    for (int i = floorOf(object)->methodCount(); i < meta->methodCount(); ++i) {
        const QMetaMethod method = meta->method(i);
        const bool callable =
            method.access() == QMetaMethod::Public && (method.methodType() == QMetaMethod::Method ||
                                                       method.methodType() == QMetaMethod::Slot);
        if (!callable || !sameName(method.name(), name, sensitivity))
            continue;
        result.nameExists = true;
        if (method.parameterCount() == arguments) {
            result.method = method;
            break;
        }
    }
    return result;
}

QVariant invoke(QObject &object, const QMetaMethod &method, const QVariantList &arguments)
{
    QVariantList values;
    values.reserve(arguments.size());
    std::array<QGenericArgument, MostArguments> generic;
    for (qsizetype i = 0; i < arguments.size(); ++i)
        values << convertTo(arguments.at(i), method.parameterMetaType(static_cast<int>(i)));
    for (qsizetype i = 0; i < values.size(); ++i) {
        const QMetaType type = method.parameterMetaType(static_cast<int>(i));
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
               : QGenericReturnArgument(returned.name(), isVariant ? &result : result.data());
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
    QObject &object = target();
    if (const auto property = ContainerProperty::find(object, name))
        return property->read();
    for (const Qt::CaseSensitivity sensitivity : {Qt::CaseSensitive, Qt::CaseInsensitive}) {
        if (const auto property = findProperty(object, name.toLatin1(), sensitivity))
            return property->read(&object);
        const MethodSearch search = findMethod(object, name.toLatin1(), 0, sensitivity);
        if (search.method)
            return invoke(object, *search.method, {});
        if (search.nameExists)
            fail(RuntimeError::WrongArgumentCount, name);
    }
    fail(RuntimeError::NoSuchMember, name);
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
            property->write(&object, convertTo(value, property->metaType()));
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
    if (arguments.size() > static_cast<qsizetype>(MostArguments))
        fail(RuntimeError::WrongArgumentCount, name);
    for (const Qt::CaseSensitivity sensitivity : {Qt::CaseSensitive, Qt::CaseInsensitive}) {
        const MethodSearch search =
            findMethod(object, name.toLatin1(), arguments.size(), sensitivity);
        if (search.method)
            return invoke(object, *search.method, arguments);
        if (search.nameExists)
            fail(RuntimeError::WrongArgumentCount, name);
    }
    if (arguments.isEmpty())
        return get(name);
    if (ContainerProperty::find(object, name) ||
        findProperty(object, name.toLatin1(), Qt::CaseInsensitive))
        fail(RuntimeError::WrongArgumentCount, name);
    fail(RuntimeError::NoSuchMember, name);
}

} // namespace Zel
