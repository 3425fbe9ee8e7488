// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QString>

namespace ZelWebServiceControls {

class ComponentDialog;

/// The library with the dialog for component pages: loaded at run time, because what it stands on
/// is large and not everywhere.
class ZEL_EXPORT ComponentModule
{
public:
    /// The module beside the library this code is in.
    ComponentModule();
    explicit ComponentModule(const QString &folder);

    /// Loads the module and makes a dialog. Error 429 with a sentence that says why it cannot.
    ComponentDialog *makeDialog() const;

    /// Why loading would end this program, as a sentence; empty when it would not.
    static QString obstacle();

private:
    QString m_folder;
};

} // namespace ZelWebServiceControls
