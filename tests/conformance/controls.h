// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "assets/assetmanager.h"
#include "login/login.h"
#include "platform/widgets/controlregistry.h"
#include "projects/projectlist.h"
#include "themes/themelist.h"

/// Introduces every control of the library, for the tests that go through all of them.
inline void introduceControls()
{
    using namespace ZelWebServiceControls;
    Zel::ControlRegistry::add<AssetManager>();
    Zel::ControlRegistry::add<Login>();
    Zel::ControlRegistry::add<ProjectList>();
    Zel::ControlRegistry::add<ThemeList>();
}
