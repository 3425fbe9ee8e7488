// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "webcontrols/imagejob.h"

#include <QNetworkReply>

namespace ZelWebControls {

/// Reads what the headers of an answer say about how long the picture holds.
ImageValidity validityOf(const QNetworkReply &reply);

/// Whether a redirection may be followed: on the same server, or from http to https on the same
/// host.
bool mayFollow(const QUrl &from, const QUrl &to);

/// Why an answer is no picture; empty when it is one.
QString problemOf(const QNetworkReply &reply);

} // namespace ZelWebControls
