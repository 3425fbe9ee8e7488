// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/widgets/controlregistry.h"

#include "platform/core/runtimeerror.h"

#include <QCoreApplication>
#include <QMap>

namespace Zel {

namespace {

struct Entry
{
    QString progId;
    ControlRegistry::Factory factory;
};

QMap<QString, Entry> &entries()
{
    static QMap<QString, Entry> map;
    return map;
}

} // namespace

void ControlRegistry::add(const QString &progId, Factory factory)
{
    entries().insert(progId.toCaseFolded(), {progId, factory});
}

QWidget *ControlRegistry::create(const QString &progId, QWidget *parent)
{
    const auto found = entries().constFind(progId.toCaseFolded());
    if (found == entries().cend())
        throw RuntimeError(RuntimeError::CannotCreateObject,
                           QCoreApplication::translate("Zel::ControlRegistry",
                                                       "Component can't create object: no control "
                                                       "goes by the name \"%1\"")
                               .arg(progId));
    return found->factory(parent);
}

bool ControlRegistry::contains(const QString &progId)
{
    return entries().contains(progId.toCaseFolded());
}

QStringList ControlRegistry::progIds()
{
    QStringList names;
    for (const Entry &entry : std::as_const(entries()))
        names << entry.progId;
    return names;
}

QString ControlRegistry::progIdOf(const char *className)
{
    const QString name = QString::fromLatin1(className).section(QStringLiteral("::"), -1);
    return QStringLiteral("ZelWebServiceControls.") + name;
}

} // namespace Zel
