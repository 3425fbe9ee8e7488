// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QtGlobal>

#include <functional>

namespace ZelWebServiceControls {

/// What the field widgets offer C++ beside their members: they tell when a person changed their
/// value. A host's own widget class that derives from it takes part in
/// `DataRecordManager::setFieldEditedHandler`.
class ZEL_EXPORT EditedField
{
public:
    EditedField();
    virtual ~EditedField();

    /// Called after every change by a person, a letter typed included; never for a value set by
    /// code. It must not destroy the widget.
    void setEditedHandler(std::function<void()> handler);

protected:
    void tellEdited() const;

private:
    Q_DISABLE_COPY_MOVE(EditedField)

    std::function<void()> m_handler;
};

} // namespace ZelWebServiceControls
