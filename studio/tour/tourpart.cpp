// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/tour/tour.h"

#include "studio/appearance.h"
#include "studio/mainwindow.h"
#include "studio/settings.h"
#include "studio/studioapp.h"
#include "studio/tour/assetstour.h"
#include "studio/tour/newprojecttour.h"
#include "studio/tour/projectstour.h"
#include "studio/tour/signintour.h"
#include "studio/tour/touractor.h"

#include <QApplication>
#include <QLocale>

#include <cmath>
#include <cstdio>

namespace Studio {

namespace {

QString partName(Appearance appearance, qreal scale)
{
    return QStringLiteral("%1-%2").arg(appearanceKey(appearance)).arg(std::lround(scale * 100));
}

/// The platform without a screen tells at every window what it cannot do.
void dropPlatformNotes(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    if (!text.startsWith(QLatin1String("This plugin does not support")))
        std::fprintf(stderr, "%s\n", qPrintable(qFormatLogMessage(type, context, text)));
}

void walk(const QString &folder, const Options &options, Appearance appearance)
{
    Settings().reset();
    Settings().setAppearance(appearance);
    StudioApp studio(options);
    studio.start();
    TourActor actor(studio.window(), folder,
                    partName(appearance, studio.window().devicePixelRatioF()));
    tourSignIn(actor);
    tourProjects(actor, studio);
    tourNewProject(actor);
    tourAssets(actor, studio);
}

} // namespace

int runTourPart(const QString &folder, const Options &options)
{
    qInstallMessageHandler(dropPlatformNotes);
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
    applyFont();
    try {
        walk(folder, options, Appearance::Light);
        walk(folder, options, Appearance::Dark);
    } catch (const std::exception &failure) {
        std::fprintf(stderr, "tour: %s\n", failure.what());
        return 1;
    }
    return 0;
}

} // namespace Studio
