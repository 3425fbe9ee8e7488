// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QProcess>
#include <QString>

/// The files of a folder over HTTP, given by the service's own server in a process of its own.
class PictureService
{
public:
    static constexpr const char *serveOption = "--serve";

    explicit PictureService(const QString &folder);
    ~PictureService();

    /// "http://127.0.0.1:port". Whatever stands between it and the file's name is passed over.
    QString address() const { return m_address; }

    /// What the other process does: serves until its input ends.
    static int serve(const QString &folder);

private:
    QProcess m_process;
    QString m_address;
};
