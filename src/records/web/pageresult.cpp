// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "records/web/pageresult.h"

#include "platform/core/numbertext.h"
#include "platform/core/rounding.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <cmath>

namespace ZelWebServiceControls {

namespace {

QVariant unwritten(const QJsonArray &tagged)
{
    const QString kind = tagged.at(0).toString();
    const QJsonValue content = tagged.at(1);
    if (kind == QLatin1String("string"))
        return content.toString();
    if (kind == QLatin1String("number"))
        return content.toDouble();
    if (kind == QLatin1String("boolean"))
        return content.toBool();
    if (kind == QLatin1String("undefined"))
        return {};
    if (kind == QLatin1String("null"))
        return QVariant::fromValue(nullptr);
    if (kind == QLatin1String("array")) {
        QVariantList elements;
        for (int i = 1; i < tagged.size(); ++i)
            elements << unwritten(tagged.at(i).toArray());
        return elements;
    }
    return QVariantMap();
}

std::optional<QString> textOf(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::QString:
        return value.toString();
    case QMetaType::Bool:
        return value.toBool() ? QStringLiteral("True") : QStringLiteral("False");
    case QMetaType::Double:
    case QMetaType::Int:
    case QMetaType::LongLong:
        return Zel::invariantNumberText(value.toDouble());
    default:
        return std::nullopt;
    }
}

/// The text of an element of an element.
std::optional<QString> textAt(const QVariant &value, int outer, int inner)
{
    return textOf(value.toList().value(outer).toList().value(inner));
}

} // namespace

PageValue pageValueFrom(const QString &written)
{
    const QJsonArray tagged = QJsonDocument::fromJson(written.toUtf8()).array();
    PageValue result;
    result.isTooLarge = tagged.at(0) == QLatin1String("too large");
    result.hasAnswer = !tagged.isEmpty();
    if (result.hasAnswer && !result.isTooLarge)
        result.value = unwritten(tagged);
    return result;
}

std::optional<PageResult> pageResultFrom(const QVariant &parsed)
{
    if (parsed.typeId() == QMetaType::QString)
        return PageResult{parsed.toString(), std::nullopt};
    const std::optional<QString> value = textAt(parsed, 0, 0);
    if (!value)
        return std::nullopt;
    return PageResult{*value, textAt(parsed, 1, 1)};
}

bool asksForPicker(const QString &kind, const QString &text)
{
    if (kind != QLatin1String("number") && kind != QLatin1String("string"))
        return false;
    const std::optional<double> number = Zel::numberFromText(text, QLocale::c());
    return number && std::isfinite(*number) && Zel::roundHalfEven(*number) == 0;
}

} // namespace ZelWebServiceControls
