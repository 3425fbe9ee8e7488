// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "controlmembers.h"

#include "platform/widgets/control.h"

#include <QMetaEnum>
#include <QMetaMethod>
#include <QMetaProperty>

namespace ControlMembers {

namespace {

const QMetaObject &base = Zel::Control::staticMetaObject;

/// "type name" for each argument; the last `optional` ones in brackets.
QString arguments(const QMetaMethod &method, int optional)
{
    QStringList texts;
    for (int i = 0; i < method.parameterCount(); ++i) {
        const QString text = QString::fromLatin1(method.parameterTypeName(i)) + u' ' +
                             QString::fromLatin1(method.parameterNames().at(i));
        const bool isOptional = i >= method.parameterCount() - optional;
        texts << (isOptional ? QStringLiteral("[%1]").arg(text) : text);
    }
    return texts.join(QStringLiteral(", "));
}

/// A default argument makes another entry behind the method's own.
int optionalArguments(const QMetaObject *metaObject, int index)
{
    int count = 0;
    while (index + count + 1 < metaObject->methodCount() &&
           metaObject->method(index + count + 1).attributes() & QMetaMethod::Cloned)
        ++count;
    return count;
}

QString withArguments(const QString &line, const QMetaObject *metaObject, int index)
{
    const QString texts =
        arguments(metaObject->method(index), optionalArguments(metaObject, index));
    return texts.isEmpty() ? line : line + u' ' + texts;
}

bool isOwnEntry(const QMetaMethod &method)
{
    return !(method.attributes() & QMetaMethod::Cloned);
}

} // namespace

QStringList properties(const QMetaObject *metaObject)
{
    QStringList lines;
    for (int i = base.propertyCount(); i < metaObject->propertyCount(); ++i) {
        const QMetaProperty property = metaObject->property(i);
        lines << QStringLiteral("property %1 %2 %3")
                     .arg(QString::fromLatin1(property.name()),
                          QString::fromLatin1(property.typeName()),
                          property.isWritable() ? QStringLiteral("get let")
                                                : QStringLiteral("get"));
    }
    return lines;
}

QStringList methods(const QMetaObject *metaObject)
{
    QStringList lines;
    for (int i = base.methodCount(); i < metaObject->methodCount(); ++i) {
        const QMetaMethod method = metaObject->method(i);
        if (method.methodType() == QMetaMethod::Signal || !isOwnEntry(method))
            continue;
        QString line =
            QStringLiteral("method %1 %2")
                .arg(QString::fromLatin1(method.name()), QString::fromLatin1(method.typeName()));
        if (method.access() != QMetaMethod::Public)
            line += QStringLiteral(" (not public)");
        lines << withArguments(line, metaObject, i);
    }
    return lines;
}

QStringList events(const QMetaObject *metaObject)
{
    QStringList lines;
    for (int i = base.methodCount(); i < metaObject->methodCount(); ++i) {
        const QMetaMethod method = metaObject->method(i);
        if (method.methodType() != QMetaMethod::Signal || !isOwnEntry(method))
            continue;
        const QString line =
            QStringLiteral("event %1 %2")
                .arg(QString::number(lines.size() + 1), QString::fromLatin1(method.name()));
        lines << withArguments(line, metaObject, i);
    }
    return lines;
}

QStringList enumerations(const QMetaObject *metaObject)
{
    QStringList lines;
    for (int i = base.enumeratorCount(); i < metaObject->enumeratorCount(); ++i)
        lines << QString::fromLatin1(metaObject->enumerator(i).name());
    return lines;
}

} // namespace ControlMembers
