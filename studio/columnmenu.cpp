// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/columnmenu.h"

#include "platform/core/propertybag.h"
#include "projects/projectlist.h"
#include "studio/log.h"
#include "studio/settings.h"

#include <array>

namespace Studio {

namespace {

struct ColumnSwitch
{
    const char *property;
    const char *caption;
    bool onByDefault;
};

constexpr std::array columnSwitches{
    ColumnSwitch{"ShowCreated", QT_TRANSLATE_NOOP("Studio::ColumnMenu", "Created"), true},
    ColumnSwitch{"ShowModiffied", QT_TRANSLATE_NOOP("Studio::ColumnMenu", "Modified"), true},
    ColumnSwitch{"ShowCreatedBy", QT_TRANSLATE_NOOP("Studio::ColumnMenu", "Created By"), true},
    ColumnSwitch{"ShowEventDate", QT_TRANSLATE_NOOP("Studio::ColumnMenu", "Event Date"), true},
    ColumnSwitch{"ShowPublished", QT_TRANSLATE_NOOP("Studio::ColumnMenu", "Published marker"),
                 false},
};

/// What Studio starts with: the list as it is made, and the marker.
Zel::PropertyBag firstBag()
{
    Zel::PropertyBag bag;
    bag.write(QStringLiteral("ShowPublished"), true, false);
    return bag;
}

} // namespace

ColumnMenu::ColumnMenu(ZelWebServiceControls::ProjectList &list, Settings &settings,
                       QWidget *parent)
    : QMenu(parent)
    , m_list(list)
    , m_settings(settings)
{
    setObjectName(QStringLiteral("columnMenu"));
    for (const ColumnSwitch &entry : columnSwitches) {
        QAction *action = addAction(tr(entry.caption));
        action->setObjectName(QLatin1String(entry.property));
        action->setCheckable(true);
        connect(action, &QAction::triggered, this, [this, entry](bool on) {
            switchColumn(QLatin1String(entry.property), on, entry.onByDefault);
        });
    }
    connect(this, &QMenu::aboutToShow, this, [this] {
        for (QAction *action : actions())
            action->setChecked(
                m_list.property(action->objectName().toLatin1().constData()).toBool());
    });
    readRemembered();
}

void ColumnMenu::readRemembered()
{
    const std::optional<QString> text = m_settings.projectListBag();
    m_list.readPropertyBag(text ? Zel::PropertyBag::fromText(*text) : firstBag());
    for (const QString &problem : m_list.propertyProblems())
        qCWarning(studioLog).noquote() << "The remembered columns:" << problem;
}

void ColumnMenu::switchColumn(const QString &property, bool on, bool onByDefault)
{
    emit aboutToSwitch();
    Zel::PropertyBag bag = m_list.writePropertyBag();
    bag.write(property, on, onByDefault);
    m_list.readPropertyBag(bag);
    m_settings.setProjectListBag(bag.toText());
    emit switched(property);
}

} // namespace Studio
