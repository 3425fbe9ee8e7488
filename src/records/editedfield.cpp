// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "records/editedfield.h"

#include <utility>

namespace ZelWebServiceControls {

EditedField::EditedField() = default;

EditedField::~EditedField() = default;

void EditedField::setEditedHandler(std::function<void()> handler)
{
    m_handler = std::move(handler);
}

void EditedField::tellEdited() const
{
    if (m_handler)
        m_handler();
}

} // namespace ZelWebServiceControls
