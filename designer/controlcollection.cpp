// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "designer/controlcollection.h"

#include "assets/assetmanager.h"
#include "designer/controlplugin.h"
#include "login/login.h"
#include "projects/projectlist.h"
#include "themes/themelist.h"

using namespace ZelWebServiceControls;

namespace {

QList<ControlEntry> controls()
{
    return {
        controlEntry<AssetManager>(
            "assets/assetmanager.h", "assetmanager",
            QT_TRANSLATE_NOOP("ControlPlugin", "Shows, uploads and deletes assets in folders")),
        controlEntry<Login>("login/login.h", "login",
                            QT_TRANSLATE_NOOP("ControlPlugin", "Signs a person in to the service")),
        controlEntry<ProjectList>(
            "projects/projectlist.h", "projectlist",
            QT_TRANSLATE_NOOP("ControlPlugin", "Lists the projects of a type")),
        controlEntry<ThemeList>(
            "themes/themelist.h", "themelist",
            QT_TRANSLATE_NOOP("ControlPlugin", "Lets a person choose the theme of a project")),
    };
}

} // namespace

ControlCollection::ControlCollection(QObject *parent)
    : QObject(parent)
{
    for (const ControlEntry &entry : controls())
        m_controls.push_back(std::make_unique<ControlPlugin>(entry));
}

ControlCollection::~ControlCollection() = default;

QList<QDesignerCustomWidgetInterface *> ControlCollection::customWidgets() const
{
    QList<QDesignerCustomWidgetInterface *> list;
    for (const auto &control : m_controls)
        list << control.get();
    return list;
}
