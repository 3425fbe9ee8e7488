// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "sharedform.h"

LibraryForm::LibraryForm() = default;

LibraryForm::~LibraryForm() = default;

LibraryForm *libraryForm()
{
    return &Zel::sharedForm<LibraryForm>();
}
