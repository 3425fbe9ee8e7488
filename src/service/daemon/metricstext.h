// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QByteArray>

#include <initializer_list>
#include <utility>

namespace Zel::Service {

/// Writes figures in the text form of Prometheus, version 0.0.4.
class ZEL_EXPORT MetricsText
{
public:
    using Labels = std::initializer_list<std::pair<const char *, QByteArray>>;

    static constexpr const char *contentType = "text/plain; version=0.0.4; charset=utf-8";

    /// Begins a metric; its values follow. `type` is "counter", "gauge" or "histogram".
    MetricsText &metric(const char *name, const char *type, const char *help);
    /// A value of the metric that was begun, with a suffix to its name ("_bucket") if wanted.
    MetricsText &value(qint64 value, Labels labels = {}, const char *suffix = "");
    MetricsText &value(double value, Labels labels = {}, const char *suffix = "");

    const QByteArray &text() const { return m_text; }

private:
    void write(const QByteArray &number, Labels labels, const char *suffix);

    QByteArray m_text;
    QByteArray m_name;
};

} // namespace Zel::Service
