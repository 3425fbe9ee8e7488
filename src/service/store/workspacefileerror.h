// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QByteArray>
#include <QString>

#include <exception>

namespace Zel {

/// A place in a file that is taken in.
struct FilePlace
{
    QString file;
    int line = 0; ///< from 1; 0 means the file as a whole
};

/// A file that cannot be taken in; `what()` reads "file:line: sentence".
class ZEL_EXPORT WorkspaceFileError : public std::exception
{
public:
    WorkspaceFileError(const FilePlace &place, const QString &sentence);
    ~WorkspaceFileError() override;
    WorkspaceFileError(const WorkspaceFileError &);
    WorkspaceFileError &operator=(const WorkspaceFileError &);

    const char *what() const noexcept override { return m_text.constData(); }

    /// What is wrong, without the place.
    const QString &sentence() const { return m_sentence; }

private:
    QByteArray m_text;
    QString m_sentence;
};

} // namespace Zel
