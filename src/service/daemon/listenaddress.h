// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace Zel::Service {

/// Where `serve` listens, as --listen says it.
struct ListenAddress
{
    QString host; ///< an address in numbers
    quint16 port = 0;
    bool encrypted = false;

    /// Reads "127.0.0.1:8080", "[::1]:0" or "localhost:8080"; with encryption also other machines'
    /// ways to this one: "0.0.0.0:8443", "[::]:8443" or a name that has an address. Throws
    /// `UsageError`, and `std::runtime_error` for a name that cannot be found.
    static ListenAddress parse(const QString &text, bool encrypted);

    /// "https://127.0.0.1:8443", with the port that was got.
    QString shown(quint16 actualPort) const;
};

} // namespace Zel::Service
