// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "designer/controlcollection.h"

#include "assets/assetmanager.h"
#include "designer/controlplugin.h"
#include "login/login.h"
#include "projects/projectlist.h"
#include "stats/statscontrol.h"
#include "themes/themelist.h"
#include "records/checkboxwidget.h"
#include "records/customwidget.h"
#include "records/datarecordmanager.h"
#include "records/textareawidget.h"
#include "records/textassetwidget.h"
#include "records/textwidget.h"

using namespace ZelWebServiceControls;

namespace {

QList<ControlEntry> controls()
{
    return {
        controlEntry<AssetManager>(
            "assets/assetmanager.h", "assetmanager",
            QT_TRANSLATE_NOOP("ControlPlugin", "Shows, uploads and deletes assets in folders")),
        controlEntry<CheckboxWidget>(
            "records/checkboxwidget.h", "checkboxwidget",
            QT_TRANSLATE_NOOP("ControlPlugin", "A field that is on or off")),
        controlEntry<CustomWidget>(
            "records/customwidget.h", "customwidget",
            QT_TRANSLATE_NOOP("ControlPlugin", "A field whose editor is a web page")),
        controlEntry<DataRecordManager>(
            "records/datarecordmanager.h", "datarecordmanager",
            QT_TRANSLATE_NOOP("ControlPlugin", "Edits a data record in a form of its own making")),
        controlEntry<Login>("login/login.h", "login",
                            QT_TRANSLATE_NOOP("ControlPlugin", "Signs a person in to the service")),
        controlEntry<ProjectList>(
            "projects/projectlist.h", "projectlist",
            QT_TRANSLATE_NOOP("ControlPlugin", "Lists the projects of a type")),
        controlEntry<StatsControl>(
            "stats/statscontrol.h", "statscontrol",
            QT_TRANSLATE_NOOP("ControlPlugin",
                              "Shows who came to an event, and moderates its questions")),
        controlEntry<TextAreaWidget>(
            "records/textareawidget.h", "textareawidget",
            QT_TRANSLATE_NOOP("ControlPlugin", "A field of several lines of text")),
        controlEntry<TextAssetWidget>(
            "records/textassetwidget.h", "textassetwidget",
            QT_TRANSLATE_NOOP("ControlPlugin", "A field that holds an asset")),
        controlEntry<TextWidget>("records/textwidget.h", "textwidget",
                                 QT_TRANSLATE_NOOP("ControlPlugin", "A field of one line of text")),
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
