// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/contract/themerecord.h"
#include "platform/core/export.h"

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

#include <array>
#include <optional>

namespace ZelWebServiceControls {

/// Whether a theme can be used, and why not.
struct ThemeCompatibility
{
    enum class Reason
    {
        Usable,
        NoDefinition,    ///< the theme has none yet
        Unreadable,      ///< its definition is no document that can be read
        VersionNeeded,   ///< it needs the version of Studio in `version`
        FieldMissing,    ///< it lacks the field `field`
        FieldNotMatching ///< its field `field` has the text `text`, which is not in `values`
    };

    Reason reason = Reason::Usable;
    /// As the definition has it; also one that is no version at all.
    QString version{};
    /// The name in the flag; empty for an empty flag, which no theme can have a field for.
    QString field{};
    QString text{};
    QString values{};

    bool isUsable() const { return reason == Reason::Usable; }

    bool operator==(const ThemeCompatibility &) const = default;
};

/// A theme that a list does not show.
struct HiddenTheme
{
    QXSC::ThemeRecordPtr theme;
    ThemeCompatibility why;
};

/// Which themes a host can use: those its version and its feature flags allow. Taken apart once for
/// a whole list; may be asked from any thread.
///
/// A version is three numbers, major, minor and build, parted by dots; what follows them says
/// nothing. A theme passes when its version is empty, or no later than the host's. Each number has
/// to be one that 16 bits hold, written as any number is ("3", "03", " 3 "; not "3a" nor ""),
/// whatever the person's language; a version with any other fails against every version, on the
/// theme's side and on the host's.
///
/// Flags are parted by ";", a flag is "name:values". The theme's field of that name has to have a
/// text that occurs in the values as a piece of them, in the same case ("video" in "video,audio",
/// and the empty text in every values). One with another text ends the test: not usable. One that
/// is missing makes the theme not usable too, but the next flag decides anew, so that among fields
/// that match only a last one missing counts. Without flags the version alone decides.
class ZEL_EXPORT ThemeRules
{
public:
    ThemeRules(const QString &appVersion, const QString &flags);

    /// The verdict on a theme by its definition.
    ThemeCompatibility judge(const QString &wizardXml) const;
    /// The verdicts on themes, none of them null, in their order. Reads on several cores when there
    /// is much to read, and returns when all is read.
    QList<ThemeCompatibility> judgeAll(const QXSC::ThemeCollection &themes) const;

private:
    using Version = std::array<qint16, 3>;

    struct Flag
    {
        bool namesField;
        QString name;
        QString values;
    };

    static std::optional<Version> versionOf(const QString &text);
    bool allowsVersion(const QString &version) const;
    ThemeCompatibility testFlags(const QHash<QString, QString> &fields) const;

    std::optional<Version> m_appVersion;
    QList<Flag> m_flags;
    QStringList m_fieldNames;
};

} // namespace ZelWebServiceControls
