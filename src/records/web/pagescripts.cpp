// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "records/web/pagescripts.h"

#include "records/web/pageresult.h"

#include <QFile>
#include <QFontInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QPalette>
#include <QRegularExpression>
#include <QWidget>

namespace ZelWebServiceControls {

namespace {

QString source(const QString &name)
{
    QFile file(QStringLiteral(":/zel/records/web/scripts/") + name);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("the library was built without %s", qPrintable(name));
    return QString::fromUtf8(file.readAll());
}

QWebEngineScript script(const QString &name, const QString &text, quint32 world)
{
    QWebEngineScript made;
    made.setName(name);
    made.setSourceCode(text);
    made.setInjectionPoint(QWebEngineScript::DocumentCreation);
    made.setWorldId(world);
    return made;
}

} // namespace

QWebEngineScript componentPageScript(const QString &token, const QString &style)
{
    QString text = source(QStringLiteral("componentpage.js"));
    text.replace(QLatin1String("@token@"), token);
    text.replace(QLatin1String("@style@"), style);
    text.replace(QLatin1String("@mostCharacters@"), QString::number(MostResultCharacters));
    text.replace(QLatin1String("@mostElements@"), QString::number(MostResultElements));
    text.replace(QLatin1String("@deepest@"), QString::number(DeepestResult));
    return script(QStringLiteral("componentpage"), text, QWebEngineScript::MainWorld);
}

QString rootStyle(const QWidget &widget)
{
    const QPalette palette = widget.palette();
    QString style;
    const auto add = [&style](const char *name, const QString &value) {
        style += QStringLiteral("--studio-%1: %2; ").arg(QLatin1String(name), value);
    };
    const auto addColor = [&](const char *name, QPalette::ColorRole role) {
        add(name, palette.color(QPalette::Active, role).name());
    };
    addColor("window", QPalette::Window);
    addColor("window-text", QPalette::WindowText);
    addColor("base", QPalette::Base);
    addColor("alternate-base", QPalette::AlternateBase);
    addColor("text", QPalette::Text);
    addColor("placeholder-text", QPalette::PlaceholderText);
    addColor("button", QPalette::Button);
    addColor("button-text", QPalette::ButtonText);
    addColor("highlight", QPalette::Highlight);
    addColor("highlighted-text", QPalette::HighlightedText);
    addColor("link", QPalette::Link);
    addColor("border", QPalette::Mid);
    const bool isDark = palette.color(QPalette::Window).lightness() < 128;
    add("color-scheme", isDark ? QStringLiteral("dark") : QStringLiteral("light"));
    add("font-size", QStringLiteral("%1px").arg(QFontInfo(widget.font()).pixelSize()));
    QString family = QFontInfo(widget.font()).family();
    family.remove(QRegularExpression(QStringLiteral("[^\\w .-]")));
    add("font-family", QStringLiteral("\"%1\", sans-serif").arg(family));
    return style;
}

QWebEngineScript frameWatchScript(const QString &token)
{
    QString text = source(QStringLiteral("framewatch.js"));
    text.replace(QLatin1String("@token@"), token);
    QWebEngineScript made =
        script(QStringLiteral("framewatch"), text, QWebEngineScript::ApplicationWorld);
    made.setRunsOnSubFrames(true);
    return made;
}

QString dialogCall(const QString &call)
{
    return QStringLiteral("try { zelDialog.%1 } catch (e) { null }").arg(call);
}

QString scriptText(const QString &text)
{
    const QByteArray array = QJsonDocument(QJsonArray{text}).toJson(QJsonDocument::Compact);
    return QString::fromUtf8(array.mid(1, array.size() - 2));
}

} // namespace ZelWebServiceControls
