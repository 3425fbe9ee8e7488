// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/service/metricsamples.h"

#include <QRegularExpression>
#include <QStringList>

#include <stdexcept>

namespace ZelTest {

namespace {

const QString name = QStringLiteral("[a-zA-Z_:][a-zA-Z0-9_:]*");
const QString label = QStringLiteral("[a-z_]+=\"(?:[^\"\\\\\\n]|\\\\[\\\\\"n])*\"");

[[noreturn]] void refuse(const QString &line)
{
    throw std::runtime_error(qPrintable(QStringLiteral("not the form of Prometheus: ") + line));
}

/// The metric a sample belongs to.
QString metricOf(const QString &sample, const QMap<QString, QString> &types)
{
    static const QRegularExpression suffix(QStringLiteral("_(bucket|sum|count)$"));
    const QString base = QString(sample).remove(suffix);
    return types.value(base) == QLatin1String("histogram") ? base : sample;
}

} // namespace

QMap<QByteArray, double> metricSamples(const QByteArray &text)
{
    static const QRegularExpression help(QStringLiteral("^# HELP (%1) \\S.*$").arg(name));
    static const QRegularExpression type(
        QStringLiteral("^# TYPE (%1) (counter|gauge|histogram)$").arg(name));
    static const QRegularExpression sample(
        QStringLiteral("^(%1)(\\{%2(?:,%2)*\\})? (-?[0-9.]+(?:e[+-]?[0-9]+)?)$").arg(name, label));
    if (!text.endsWith('\n'))
        refuse(QStringLiteral("no end of line at the end"));
    QMap<QByteArray, double> samples;
    QMap<QString, QString> types;
    QString helped;
    QString current;
    double bucket = 0;
    const QStringList lines = QString::fromUtf8(text).chopped(1).split(QLatin1Char('\n'));
    for (const QString &line : lines) {
        if (const auto match = help.match(line); match.hasMatch()) {
            helped = match.captured(1);
        } else if (const auto found = type.match(line); found.hasMatch()) {
            current = found.captured(1);
            if (current != helped || types.contains(current))
                refuse(line);
            types.insert(current, found.captured(2));
        } else if (const auto value = sample.match(line); value.hasMatch()) {
            const QByteArray key = (value.captured(1) + value.captured(2)).toUtf8();
            const double number = value.captured(3).toDouble();
            if (metricOf(value.captured(1), types) != current || samples.contains(key))
                refuse(line);
            // Each bucket holds those before it, and the last of them everything.
            if (value.captured(1).endsWith(QLatin1String("_bucket"))) {
                const bool isFirst = line.contains(QLatin1String("le=\"0.001\""));
                if (!isFirst && number < bucket)
                    refuse(line);
                bucket = number;
            }
            if (value.captured(1).endsWith(QLatin1String("_seconds_count")) && number != bucket)
                refuse(line);
            samples.insert(key, number);
        } else {
            refuse(line);
        }
    }
    return samples;
}

} // namespace ZelTest
