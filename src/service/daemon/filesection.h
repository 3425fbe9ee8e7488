// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"
#include "service/daemon/httpmessage.h"

namespace Zel::Service {

/// Whether the client has what goes with that tag already (`If-None-Match`), so that 304 answers
/// it.
bool isUnchanged(const HttpRequest &request, const QByteArray &quotedTag);

/// The answer that gives a file, or the one section of it that is asked for (RFC 9110, 14); without
/// `file` there is none.
/// @param tag tells versions of the file apart
ZEL_EXPORT HttpResponse fileResponse(const HttpRequest &request,
                                     const std::shared_ptr<ByteSource> &file, const QByteArray &tag,
                                     const QByteArray &contentType);

} // namespace Zel::Service
