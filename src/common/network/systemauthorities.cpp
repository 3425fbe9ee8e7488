// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "common/network/systemauthorities.h"

#include <QSet>
#include <QSslConfiguration>

namespace QXSC {

const QList<QSslCertificate> &systemAuthorities()
{
    static const QList<QSslCertificate> all = [] {
        // Many stand both in a file of their own and in the bundle of all.
        const QList<QSslCertificate> read = QSslConfiguration::systemCaCertificates();
        return QSet<QSslCertificate>(read.begin(), read.end()).values();
    }();
    return all;
}

} // namespace QXSC
