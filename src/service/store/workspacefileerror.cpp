// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/workspacefileerror.h"

namespace Zel {

WorkspaceFileError::WorkspaceFileError(const FilePlace &place, const QString &sentence)
    : m_text((place.line > 0
                  ? QStringLiteral("%1:%2: %3").arg(place.file).arg(place.line).arg(sentence)
                  : QStringLiteral("%1: %2").arg(place.file, sentence))
                 .toUtf8())
    , m_sentence(sentence)
{
}

WorkspaceFileError::~WorkspaceFileError() = default;
WorkspaceFileError::WorkspaceFileError(const WorkspaceFileError &) = default;
WorkspaceFileError &WorkspaceFileError::operator=(const WorkspaceFileError &) = default;

} // namespace Zel
