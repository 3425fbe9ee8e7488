// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace Studio {

/// Takes the pictures and lists of an earlier tour out of a folder; other files stay.
void clearTourFolder(const QString &folder);

/// Adds a picture to the list the index is made from.
void addToTourList(const QString &folder, const QString &part, const QString &file,
                   const QString &caption);

/// Writes index.html from the lists of all parts and returns how many pictures it shows.
int writeTourIndex(const QString &folder);

} // namespace Studio
