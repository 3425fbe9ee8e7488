// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "assets/assetmanager.h"
#include "datavisualization/gridchart.h"
#include "login/login.h"
#include "platform/widgets/controlregistry.h"
#include "projects/projectlist.h"
#include "stats/statscontrol.h"
#include "themes/themelist.h"
#include "records/checkboxwidget.h"
#include "records/customwidget.h"
#include "records/datarecordmanager.h"
#include "records/textareawidget.h"
#include "records/textassetwidget.h"
#include "records/textwidget.h"

/// Introduces every control of the library, for the tests that go through all of them.
inline void introduceControls()
{
    using namespace ZelWebServiceControls;
    Zel::ControlRegistry::add<AssetManager>();
    Zel::ControlRegistry::add<CheckboxWidget>();
    Zel::ControlRegistry::add<CustomWidget>();
    Zel::ControlRegistry::add<DataRecordManager>();
    Zel::ControlRegistry::add(
        QStringLiteral("ZelDataVisualization.GridChart"),
        [](QWidget *parent) -> QWidget * { return new ZelDataVisualization::GridChart(parent); });
    Zel::ControlRegistry::add<Login>();
    Zel::ControlRegistry::add<ProjectList>();
    Zel::ControlRegistry::add<StatsControl>();
    Zel::ControlRegistry::add<ThemeList>();
    Zel::ControlRegistry::add<TextAreaWidget>();
    Zel::ControlRegistry::add<TextAssetWidget>();
    Zel::ControlRegistry::add<TextWidget>();
}
