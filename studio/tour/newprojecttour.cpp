// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/tour/newprojecttour.h"

#include "platform/widgets/listview.h"
#include "studio/tour/listacts.h"
#include "studio/tour/touractor.h"
#include "webcontrols/webimage.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QTabBar>

#include <utility>

namespace Studio {

namespace {

const QString projectName = QStringLiteral("Spring town hall");

void showScopes(TourActor &actor, Zel::ListView &themes)
{
    const std::pair<const char *, const char *> scopes[] = {
        {"accountOption", "Themes of the account"},
        {"globalOption", "Themes every account has"},
        {"userOption", "Themes of one's own"},
        {"allOption", "All themes"}};
    for (const auto &[option, caption] : scopes) {
        actor.click(QLatin1String(option));
        actor.expect(themes.count() > 0, QStringLiteral("themes of each scope"));
        actor.shoot(QLatin1String(caption));
    }
}

/// A theme with required templates, whatever its place.
void chooseTheme(TourActor &actor, Zel::ListView &themes)
{
    qsizetype position = 0;
    while (position < themes.count() &&
           themes.text(themes.rowAt(position)) != QLatin1String("Town hall"))
        ++position;
    themes.ensureVisible(themes.rowAt(position));
    clickLine(actor, themes, position);
    actor.expect(actor.find<QLabel>(QStringLiteral("chosenTheme"))
                     .text()
                     .endsWith(QLatin1String("Town hall")),
                 QStringLiteral("the clicked theme to be chosen"));
    // The preview comes a little later.
    const auto &preview = actor.find<ZelWebControls::WebImage>(QStringLiteral("ThemePreview"));
    actor.waitFor(QStringLiteral("the preview of the theme"), [&] { return !preview.isLoading(); });
    actor.shoot(QStringLiteral("A theme and its details"));
    auto &tabs = actor.find<QTabBar>(QStringLiteral("TabStrip1"));
    actor.clickAt(tabs, tabs.tabRect(1).center());
    auto &templates = actor.find<Zel::ListView>(QStringLiteral("TemplateListView"));
    actor.expect(templates.count() > 0, QStringLiteral("the templates of the theme"));
    actor.shoot(QStringLiteral("The templates of a theme"));
}

void showHidden(TourActor &actor)
{
    actor.click(QStringLiteral("hiddenThemesButton"));
    QWidget *popup = QApplication::activePopupWidget();
    actor.expect(popup, QStringLiteral("the list of themes that are not shown"));
    actor.shoot(QStringLiteral("Why themes are not shown"));
    popup->close();
}

void fillIn(TourActor &actor)
{
    actor.click(QStringLiteral("toProjectForm"));
    actor.press(Qt::Key_Return);
    actor.expect(!actor.find<QLabel>(QStringLiteral("newNameProblem")).text().isEmpty(),
                 QStringLiteral("to be told that a name is needed"));
    actor.shoot(QStringLiteral("A name is needed"));
    actor.type(QStringLiteral("newName"), projectName);
    actor.click(QStringLiteral("newHasDate"));
    actor.shoot(QStringLiteral("A new project"));
}

} // namespace

void tourNewProject(TourActor &actor)
{
    actor.click(QStringLiteral("newProject"));
    auto &themes = actor.find<Zel::ListView>(QStringLiteral("ThemeListView"));
    actor.expect(themes.count() > 0, QStringLiteral("themes"));
    actor.expect(!actor.find<QAbstractButton>(QStringLiteral("toProjectForm")).isEnabled(),
                 QStringLiteral("to have to choose a theme first"));
    actor.shoot(QStringLiteral("Choosing a theme"));
    showScopes(actor, themes);
    chooseTheme(actor, themes);
    showHidden(actor);
    fillIn(actor);
    actor.click(QStringLiteral("saveNewProject"));
    auto &list = actor.find<Zel::ListView>(QStringLiteral("projectList"));
    actor.expect(list.text(list.selectedRow()) == projectName,
                 QStringLiteral("the new project to be selected"));
    actor.shoot(QStringLiteral("The new project in the list"));
}

} // namespace Studio
