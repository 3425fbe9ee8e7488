// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"
#include "service/store/clock.h"

#include <QList>
#include <QString>

#include <functional>
#include <optional>

namespace Zel {

class Database;
class Themes;

struct ProjectKind
{
    QString typeId;
    QString name;
    qint64 position = 0; ///< where it is offered among the others
};

/// A project as it is stored. Times are milliseconds UTC; empty means "not set".
struct Project
{
    QString guid;
    QString typeId;
    QString name;
    QString description;
    std::optional<qint64> createdAt;
    std::optional<qint64> modifiedAt;
    QString createdById;
    QString createdBy; ///< the display name of that user
    std::optional<qint64> eventAt;
    bool published = false;
    QString themeGuid; ///< the theme it was made from; empty for none

    bool operator==(const Project &) const = default;
};

/// Projects and their types, always within one account.
class ZEL_EXPORT Projects
{
public:
    static constexpr qsizetype longestName = 10000;

    enum class Creation
    {
        Created,
        Existing,    ///< the same project was made before by the same user: the call was repeated
        Conflict,    ///< the guid belongs to another project of the account
        UnknownType, ///< the account has no such project type
        UnknownTheme ///< the person sees no such theme in the account
    };

    Projects(Database &database, Themes &themes, const Clock &clock);

    /// Where a project stands in the list of its type; one without texts comes before all others.
    struct Place
    {
        QString nameKey;
        QString guid;
    };

    using Visitor = std::function<bool(const Project &, const Place &)>;

    QList<ProjectKind> types(qint64 accountId);
    /// Shows the projects of a type that come after a place, in order of name, then guid, to
    /// `visit`, until it returns false. False when there is no such type. Only inside a snapshot
    /// of the caller's, which may be run again from its start.
    bool visitAfter(qint64 accountId, const QString &typeId, const Place &after,
                    const Visitor &visit);
    /// The projects of a type in order of name, then guid; nothing when there is no such type.
    std::optional<QList<Project>> list(qint64 accountId, const QString &typeId);
    std::optional<Project> find(qint64 accountId, const QString &guid);
    /// Whether a project is published; nothing when the account has no such project.
    std::optional<bool> isPublished(qint64 accountId, const QString &guid);
    /// Makes a project that is created now by `createdById`; guid, type, name, description,
    /// event and theme are taken from `project`, which then shows what is stored.
    Creation create(qint64 accountId, Project &project);

    // The following change the database and are called inside a transaction only.
    void storeType(qint64 accountId, const ProjectKind &type);
    void add(qint64 accountId, const Project &project);
    void change(qint64 accountId, const Project &project);

private:
    Database &m_database;
    Themes &m_themes;
    Clock m_clock;
};

} // namespace Zel
