// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QList>
#include <QSslCertificate>

namespace QXSC {

/// The certificate authorities this machine trusts, each once. Qt reads their files anew whenever it
/// is asked, which takes longer than most calls; here they are read once for the whole process, so
/// one that is added counts from the next start. Any thread may ask.
ZEL_EXPORT const QList<QSslCertificate> &systemAuthorities();

} // namespace QXSC
