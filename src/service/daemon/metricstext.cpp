// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/metricstext.h"

namespace Zel::Service {

namespace {

QByteArray escaped(QByteArray text)
{
    return text.replace('\\', "\\\\").replace('"', "\\\"").replace('\n', "\\n");
}

} // namespace

MetricsText &MetricsText::metric(const char *name, const char *type, const char *help)
{
    m_name = name;
    m_text += "# HELP " + m_name + ' ' + help + "\n# TYPE " + m_name + ' ' + type + '\n';
    return *this;
}

MetricsText &MetricsText::value(qint64 value, Labels labels, const char *suffix)
{
    write(QByteArray::number(value), labels, suffix);
    return *this;
}

MetricsText &MetricsText::value(double value, Labels labels, const char *suffix)
{
    write(QByteArray::number(value, 'g', 15), labels, suffix);
    return *this;
}

void MetricsText::write(const QByteArray &number, Labels labels, const char *suffix)
{
    m_text += m_name + suffix;
    char before = '{';
    for (const auto &[name, text] : labels) {
        m_text += before;
        m_text += name;
        m_text += "=\"" + escaped(text) + '"';
        before = ',';
    }
    if (before == ',')
        m_text += '}';
    m_text += ' ' + number + '\n';
}

} // namespace Zel::Service
