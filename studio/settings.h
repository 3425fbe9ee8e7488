// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "studio/appearance.h"

#include <QByteArray>
#include <QList>
#include <QSettings>

#include <optional>

namespace Studio {

/// What Studio remembers between starts, in the person's configuration folder. Never a password.
class Settings
{
public:
    QString server() const;
    void setServer(const QString &address);
    /// A file of certificate authorities to trust besides the system's; empty for none.
    QString caFile() const;
    void setCaFile(const QString &path);
    QString userName() const;
    void setUserName(const QString &name);
    Appearance appearance() const;
    void setAppearance(Appearance appearance);
    QByteArray windowGeometry() const;
    void setWindowGeometry(const QByteArray &geometry);
    /// The property bag of the project list, as text; none before a person has switched a column.
    /// The text of a bag that holds nothing is empty.
    std::optional<QString> projectListBag() const;
    void setProjectListBag(const QString &text);
    /// The widths of the project list's columns in twips, as a person dragged them; empty before,
    /// or when what is stored are no widths.
    QList<double> projectColumnWidths() const;
    void setProjectColumnWidths(const QList<double> &twips);
    /// The same of the asset list.
    QList<double> assetColumnWidths() const;
    void setAssetColumnWidths(const QList<double> &twips);
    /// Whether the assets are shown as a table instead of as thumbnails.
    bool showsAssetTable() const;
    void setShowsAssetTable(bool table);
    QString projectType() const;
    void setProjectType(const QString &typeID);

    /// Forgets everything.
    void reset();

private:
    QList<double> widths(const QString &key) const;
    void setWidths(const QString &key, const QList<double> &twips);

    QSettings m_store{QSettings::IniFormat, QSettings::UserScope, QStringLiteral("zel"),
                      QStringLiteral("studio")};
};

} // namespace Studio
