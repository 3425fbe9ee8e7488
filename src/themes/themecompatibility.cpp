// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "themes/themecompatibility.h"

#include "platform/core/runtimeerror.h"
#include "platform/core/variantconversion.h"
#include "themes/themedefinition.h"

#include <QThread>
#include <QThreadPool>

#include <algorithm>
#include <atomic>
#include <vector>

namespace ZelWebServiceControls {

namespace {

using Reason = ThemeCompatibility::Reason;

/// What is read in a few milliseconds; below it starting threads would cost more than it saves.
constexpr qsizetype CharactersWorthAThread = 512 * 1024;

/// How many threads are to read beside the calling one.
int helpersFor(const QXSC::ThemeCollection &themes)
{
    qsizetype characters = 0;
    for (const QXSC::ThemeRecordPtr &theme : themes)
        characters += theme->wizardXml.size();
    const qsizetype most = QThread::idealThreadCount() - 1;
    return int(std::clamp<qsizetype>(characters / CharactersWorthAThread, 0, most));
}

} // namespace

ThemeRules::ThemeRules(const QString &appVersion, const QString &flags)
    : m_appVersion(versionOf(appVersion))
{
    if (flags.isEmpty())
        return;
    for (const QString &flag : flags.split(u';')) {
        const QStringList pieces = flag.split(u':');
        m_flags.append({!flag.isEmpty(), pieces.first(), pieces.value(1)});
        m_fieldNames.append(pieces.first());
    }
}

std::optional<ThemeRules::Version> ThemeRules::versionOf(const QString &text)
{
    const QStringList parts = text.split(u'.');
    Version version{};
    if (parts.size() < qsizetype(version.size()))
        return std::nullopt;
    try {
        for (size_t i = 0; i < version.size(); ++i)
            version[i] = Zel::int16From(parts.at(qsizetype(i)), QLocale::c());
    } catch (const Zel::RuntimeError &) {
        return std::nullopt;
    }
    return version;
}

bool ThemeRules::allowsVersion(const QString &version) const
{
    if (version.isEmpty())
        return true;
    const std::optional<Version> needed = versionOf(version);
    return needed && m_appVersion && *needed <= *m_appVersion;
}

ThemeCompatibility ThemeRules::testFlags(const QHash<QString, QString> &fields) const
{
    ThemeCompatibility result;
    for (const Flag &flag : m_flags) {
        const auto field = flag.namesField ? fields.constFind(flag.name) : fields.constEnd();
        if (field == fields.constEnd()) {
            result = {.reason = Reason::FieldMissing, .field = flag.name};
            continue;
        }
        if (!flag.values.contains(*field))
            return {.reason = Reason::FieldNotMatching,
                    .field = flag.name,
                    .text = *field,
                    .values = flag.values};
        result = {};
    }
    return result;
}

ThemeCompatibility ThemeRules::judge(const QString &wizardXml) const
{
    if (wizardXml.isEmpty())
        return {.reason = Reason::NoDefinition};
    const std::optional<ThemeDefinition> definition = readThemeDefinition(wizardXml, m_fieldNames);
    if (!definition)
        return {.reason = Reason::Unreadable};
    if (!allowsVersion(definition->studioVersion))
        return {.reason = Reason::VersionNeeded, .version = definition->studioVersion};
    return testFlags(definition->fields);
}

QList<ThemeCompatibility> ThemeRules::judgeAll(const QXSC::ThemeCollection &themes) const
{
    QList<ThemeCompatibility> verdicts(themes.count());
    ThemeCompatibility *const out = verdicts.data();
    std::atomic<qsizetype> next = 0;
    const auto work = [&] {
        for (qsizetype i = next++; i < themes.count(); i = next++)
            out[i] = judge(themes.item(i + 1)->wizardXml);
    };
    // A pool of its own: in one that others keep busy this would wait for them.
    QThreadPool helpers;
    const int count = helpersFor(themes);
    helpers.setMaxThreadCount(count);
    for (int i = 0; i < count; ++i)
        helpers.start(work);
    work();
    helpers.waitForDone();
    return verdicts;
}

} // namespace ZelWebServiceControls
