// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/widgets/form.h"

/// A form that lives in a library, and that library's idea of the shared instance.
class ZEL_EXPORT LibraryForm : public Zel::Form
{
    Q_OBJECT

public:
    LibraryForm();
    ~LibraryForm() override;
};

ZEL_EXPORT LibraryForm *libraryForm();
