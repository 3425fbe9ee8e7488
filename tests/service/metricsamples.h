// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QMap>

namespace ZelTest {

/// The samples of a text in the form of Prometheus, by name with labels as they stand there:
/// `zel_http_requests_total{method="GET",route="-",status="404"}`. Throws `std::runtime_error` with
/// the line for a text that breaks that form: a sample without HELP and TYPE before it, one that is
/// there twice, a histogram whose buckets do not add up.
QMap<QByteArray, double> metricSamples(const QByteArray &text);

} // namespace ZelTest
