// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QMenu>

namespace ZelWebServiceControls {
class ProjectList;
}

namespace Studio {

class Settings;

/// The menu that switches the columns of a project list. Each switch writes the list's property
/// bag, reads it back and remembers it; the list starts with the bag of the last time.
class ColumnMenu : public QMenu
{
    Q_OBJECT

public:
    ColumnMenu(ZelWebServiceControls::ProjectList &list, Settings &settings,
               QWidget *parent = nullptr);

signals:
    /// A switch is about to change the list; reading a bag gives every column its own width again.
    void aboutToSwitch();
    /// The named property ("ShowCreated") has been switched.
    void switched(const QString &property);

private:
    void readRemembered();
    void switchColumn(const QString &property, bool on, bool onByDefault);

    ZelWebServiceControls::ProjectList &m_list;
    Settings &m_settings;
};

} // namespace Studio
