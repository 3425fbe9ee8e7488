// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QString>

class QCommandLineParser;

namespace Zel::Service {

/// A whole number in plain decimal digits; throws `UsageError` with `what` ("--account") for
/// anything else and for one out of range.
qint64 numberIn(const QString &text, const QString &what, qint64 least, qint64 most);

/// The number of an account.
qint64 accountNumberIn(const QString &text, const QString &what);

/// All numbers of --account.
QList<qint64> accountNumbers(const QCommandLineParser &parser);

} // namespace Zel::Service
