// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "service/client/message.h"

namespace QXSC {

/// What the service itself says about a refusal; all empty when the answer is none of its refusals.
struct Problem
{
    QString code;
    QString detail;
    QString requestId;
};

Problem problemOf(const Reply &reply);

/// Text of the other side for a message box: one line, of bounded length, without control
/// characters, and without the token should the other side send it back.
QString tidy(QString text, const Request &request);

/// What helps support to find a failed call again: method, address without its query, status, words
/// of the service, request id.
/// @param extra what this side has to say about it
QString detailsOf(const Request &request, const Reply &reply, const QString &extra = QString());

} // namespace QXSC
