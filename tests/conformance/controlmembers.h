// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QMetaObject>
#include <QStringList>

/// What a control's class declares below Control, in order, written like the lines of a table.
namespace ControlMembers {

QStringList properties(const QMetaObject *metaObject);
/// Methods and slots of any access; one that is not public says so.
QStringList methods(const QMetaObject *metaObject);
/// Events, numbered from 1.
QStringList events(const QMetaObject *metaObject);
/// Enumerations, which no control has.
QStringList enumerations(const QMetaObject *metaObject);

} // namespace ControlMembers
