// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/pictures/svgattributes.h"

#include "platform/pictures/picturetexts.h"
#include "platform/pictures/rasterpicture.h"

#include <QHash>
#include <QRegularExpression>

#include <cmath>

namespace Zel {

namespace {

/// A length in pixels at 96 an inch; zero for none, percentages and nonsense.
double length(QStringView text)
{
    static const QHash<QString, double> units{{QString(), 1.0},
                                              {QStringLiteral("px"), 1.0},
                                              {QStringLiteral("pt"), 96.0 / 72},
                                              {QStringLiteral("pc"), 16.0},
                                              {QStringLiteral("mm"), 96.0 / 25.4},
                                              {QStringLiteral("cm"), 96.0 / 2.54},
                                              {QStringLiteral("in"), 96.0}};
    const QString trimmed = text.trimmed().toString();
    qsizetype end = trimmed.size();
    while (end > 0 && (trimmed[end - 1].isLetter() || trimmed[end - 1] == QLatin1Char('%')))
        --end;
    bool isNumber = false;
    const double number = trimmed.left(end).toDouble(&isNumber);
    const double length = number * units.value(trimmed.mid(end).toLower(), 0.0);
    return isNumber && std::isfinite(length) && length > 0 ? length : 0;
}

QRectF section(QStringView text)
{
    static const QRegularExpression separators(QStringLiteral("[\\s,]+"));
    const QStringList parts = text.toString().split(separators, Qt::SkipEmptyParts);
    if (parts.size() != 4)
        return {};
    double numbers[4];
    for (int i = 0; i < 4; ++i) {
        numbers[i] = parts[i].toDouble();
        if (!std::isfinite(numbers[i]))
            return {};
    }
    return {numbers[0], numbers[1], numbers[2], numbers[3]};
}

/// Whether a value names something outside the document. "url(#paint)" is inside.
bool pointsOutside(QStringView value)
{
    qsizetype at = 0;
    while ((at = value.indexOf(QLatin1String("url("), at, Qt::CaseInsensitive)) >= 0) {
        at += 4;
        while (at < value.size() && (value[at].isSpace() || value[at] == QLatin1Char('"') ||
                                     value[at] == QLatin1Char('\'')))
            ++at;
        if (at >= value.size() || value[at] != QLatin1Char('#'))
            return true;
    }
    return false;
}

/// Dashes shorter than a thousandth of a pixel would make millions of pieces out of one line.
bool isTooFine(QStringView dashes)
{
    static const QRegularExpression number(QStringLiteral("[-+]?[0-9.]+(?:[eE][-+]?[0-9]+)?"));
    double sum = 0;
    bool any = false;
    for (auto it = number.globalMatch(dashes.toString()); it.hasNext(); any = true)
        sum += std::abs(it.next().captured().toDouble());
    return any && sum < 1e-3;
}

bool isDashes(QStringView name, QStringView value)
{
    return name == QLatin1String("stroke-dasharray") ||
           (name == QLatin1String("style") && value.contains(QLatin1String("stroke-dasharray")));
}

QStringView dashesOf(QStringView name, QStringView value)
{
    if (name != QLatin1String("style"))
        return value;
    const qsizetype at = value.indexOf(QLatin1String("stroke-dasharray"));
    const qsizetype end = value.indexOf(QLatin1Char(';'), at);
    return value.mid(at, end < 0 ? -1 : end - at);
}

} // namespace

SvgFrame::SvgFrame(const QXmlStreamAttributes &attributes)
    : size(length(attributes.value(QLatin1String("width"))),
           length(attributes.value(QLatin1String("height"))))
    , viewBox(section(attributes.value(QLatin1String("viewBox"))))
{
    if (viewBox.isEmpty()) {
        viewBox = QRectF(QPointF(), size);
    } else if (size.isEmpty()) {
        // One edge given: the other follows from the proportions; none: units are pixels.
        const double ratio = viewBox.width() / viewBox.height();
        if (size.width() > 0)
            size.setHeight(size.width() / ratio);
        else if (size.height() > 0)
            size.setWidth(size.height() * ratio);
        else
            size = viewBox.size();
    }
}

QString SvgFrame::viewBoxText() const
{
    return QStringLiteral("%1 %2 %3 %4")
        .arg(viewBox.x(), 0, 'g', 15)
        .arg(viewBox.y(), 0, 'g', 15)
        .arg(viewBox.width(), 0, 'g', 15)
        .arg(viewBox.height(), 0, 'g', 15);
}

SvgAttributes::Kept SvgAttributes::keep(const QString &element,
                                        const QXmlStreamAttributes &attributes)
{
    Kept kept;
    const bool isRoot = element == QLatin1String("svg");
    for (const QXmlStreamAttribute &attribute : attributes) {
        const QStringView name = attribute.name();
        const QStringView value = attribute.value();
        if (name == QLatin1String("href")) {
            keepReference(element, value.trimmed().toString(), kept);
            continue;
        }
        // Size and section of the document are written anew; handlers of events draw nothing.
        const bool isFrame =
            isRoot && (name == QLatin1String("width") || name == QLatin1String("height") ||
                       name == QLatin1String("viewBox"));
        if (!attribute.namespaceUri().isEmpty() || isFrame ||
            name.startsWith(QLatin1String("on")) || pointsOutside(value))
            continue;
        if (name == QLatin1String("id"))
            kept.id = value.toString();
        if (isDashes(name, value) && isTooFine(dashesOf(name, value)))
            kept.problem = PictureTexts::tooIntricate();
        kept.attributes.append(name.toString(), value.toString());
    }
    return kept;
}

void SvgAttributes::keepReference(const QString &element, const QString &target, Kept &kept)
{
    const bool isInside = target.startsWith(QLatin1Char('#'));
    if (element == QLatin1String("use") && isInside)
        kept.used = target.mid(1);
    if (element == QLatin1String("image") ? isPicture(target, kept) : isInside)
        kept.attributes.append(QStringLiteral("xlink:href"), target);
}

bool SvgAttributes::isPicture(const QString &target, Kept &kept)
{
    const qsizetype comma = target.indexOf(QLatin1Char(','));
    if (!target.startsWith(QLatin1String("data:")) || comma < 0 ||
        !target.left(comma).endsWith(QLatin1String(";base64")))
        return false;
    const QByteArray bytes = QByteArray::fromBase64(QStringView(target).mid(comma + 1).toLatin1());
    const PictureInfo info = probeRaster(bytes, m_limits);
    if (info.isNull())
        return false;
    m_pixels += qint64(info.size.width()) * info.size.height();
    if (m_pixels > m_limits.pixels)
        kept.problem = PictureTexts::tooManyPixels(info.size);
    return true;
}

} // namespace Zel
