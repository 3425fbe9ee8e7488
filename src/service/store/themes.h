// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <functional>
#include <optional>

namespace Zel {

class Database;

/// One template that a theme uses, named by its two keys.
struct TemplateUse
{
    QString key;
    QString versionKey;
    bool required = false;

    bool operator==(const TemplateUse &) const = default;
};

struct Template
{
    QString key;
    QString versionKey;
    QString name;
    QString description;

    bool operator==(const Template &) const = default;
};

/// A preview picture whose bytes lie in the blob store.
struct ThemePreview
{
    QString sha; ///< empty: no preview
    QString mime;
    qint64 size = 0;

    bool operator==(const ThemePreview &) const = default;
};

/// A preview that was looked for, and whose it is: the account's or, with 0, every account's.
struct FoundPreview
{
    qint64 accountId = 0;
    ThemePreview preview;
};

/// A theme as it is stored. Times are milliseconds UTC.
struct Theme
{
    qint64 accountId = 0; ///< 0: of every account
    QString guid;
    QString ownerId; ///< the user whose own it is; empty for everybody's
    QString name;
    QString description;
    qint64 width = 0; ///< of the page, in pixels
    qint64 height = 0;
    qint64 createdAt = 0;
    qint64 modifiedAt = 0;
    QString definition; ///< XML, not checked; empty: none yet
    ThemePreview preview;

    bool operator==(const Theme &) const = default;
};

/// Who asks for themes.
struct ThemeUser
{
    qint64 accountId = 0;
    QString userId;
};

/// Themes and templates: those of one account, those of every account, and each person's own within
/// an account.
class ZEL_EXPORT Themes
{
public:
    static constexpr qsizetype longestName = 1000;
    static constexpr qsizetype longestDescription = 10000;
    static constexpr qsizetype longestKey = 256; ///< of a template, each
    static constexpr qsizetype mostTemplates = 100;
    /// The longest definition, in bytes of UTF-8. Clients take a longer one for unusable.
    static constexpr qint64 largestDefinition = 8LL * 1024 * 1024;
    static constexpr qint64 largestPreview = 4LL * 1024 * 1024;

    enum class Scope
    {
        Account, ///< of the account, nobody's own
        Global,  ///< of every account
        User,    ///< the person's own in the account
        Full     ///< all of these
    };

    explicit Themes(Database &database);

    using Visitor = std::function<void(const Theme &, const QList<TemplateUse> &)>;

    /// Where a theme stands in a list; one without texts comes before all others.
    struct Place
    {
        QString nameKey;
        QString guid;
        qint64 accountId = -1;
    };

    using PageVisitor =
        std::function<bool(const Theme &, const QList<TemplateUse> &, const Place &)>;

    /// Shows the themes of a scope that come after a place, with their templates, in order of name,
    /// then guid, to `visit`, until it returns false. A few are read at a time, because definitions
    /// may be long. Only inside a snapshot of the caller's, which may be run again from its start.
    void visitAfter(const ThemeUser &user, Scope scope, const Place &after,
                    const PageVisitor &visit);
    /// Shows all of them.
    void list(const ThemeUser &user, Scope scope, const Visitor &visit);

    /// The template with these keys of the account, else of every account.
    std::optional<Template> findTemplate(qint64 accountId, const QString &key,
                                         const QString &versionKey);

    /// The template with these keys that was stored for exactly that account (0: every account).
    std::optional<Template> ownTemplate(qint64 accountId, const QString &key,
                                        const QString &versionKey);

    /// Whether a person sees the theme in their full list.
    bool isVisible(const ThemeUser &user, const QString &guid);

    /// The preview of a theme that the account sees, whoever asks: for addresses that carry their
    /// permission in themselves. Nothing for a theme that is not there or has none.
    std::optional<FoundPreview> preview(qint64 accountId, const QString &guid);

    /// The themes of that guid, of whatever account.
    QList<Theme> withGuid(const QString &guid);
    QList<TemplateUse> templatesOf(qint64 accountId, const QString &guid);

    // The following change the database and are called inside a transaction only.
    void add(const Theme &theme);
    void change(const Theme &theme);
    void setTemplates(qint64 accountId, const QString &guid, const QList<TemplateUse> &templates);
    void storeTemplate(qint64 accountId, const Template &entry);

private:
    void notePreview(const Theme &theme);

    Database &m_database;
};

} // namespace Zel
