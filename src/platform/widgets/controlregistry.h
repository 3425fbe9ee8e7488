// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QString>
#include <QStringList>

class QWidget;

namespace Zel {

/// Makes controls by their ProgID, "ZelWebServiceControls.<Name>".
///
/// Hosts introduce the classes they use once, at start: `ControlRegistry::add<Login>()`. A host's
/// own widget class takes part under any ProgID it likes. ProgIDs compare ignoring case.
class ZEL_EXPORT ControlRegistry
{
public:
    using Factory = QWidget *(*)(QWidget *parent);

    /// Introduces a class under a ProgID; a second class under the same ProgID replaces the first.
    static void add(const QString &progId, Factory factory);

    /// Introduces a control under the ProgID made of its class name.
    template <typename ControlClass>
    static void add()
    {
        add(progIdOf(ControlClass::staticMetaObject.className()),
            [](QWidget *parent) -> QWidget * { return new ControlClass(parent); });
    }

    /// Makes a control: a first placement in run mode. Error 429 when no class goes by that ProgID.
    static QWidget *create(const QString &progId, QWidget *parent = nullptr);

    static bool contains(const QString &progId);
    /// The ProgIDs as they were introduced, sorted.
    static QStringList progIds();

    /// "ZelWebServiceControls::Login" becomes "ZelWebServiceControls.Login"; a class outside a
    /// namespace goes under "ZelWebServiceControls" too.
    static QString progIdOf(const char *className);
};

} // namespace Zel
