// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QString>

namespace Studio {

/// One of the people of the sample workspace, for the sign-in page.
struct SamplePerson
{
    QString userName;
    QString displayName;
    QString password;
    /// What this person shows: how many accounts they have.
    QString note;
};

/// The folder with the sample content: beside the installed program, else in the source tree. Empty
/// when there is none.
QString sampleFolder();

/// The people named in a sample folder; empty when the file is missing or unreadable.
QList<SamplePerson> samplePeople(const QString &folder);

} // namespace Studio
