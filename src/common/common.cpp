// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "common/common.h"

#include "platform/core/rounding.h"
#include "platform/core/runtimeerror.h"
#include "platform/core/variantconversion.h"
#include "platform/widgets/commondialog.h"

#include <QXmlStreamAttributes>

#include <array>
#include <cmath>
#include <utility>

namespace ZelWebServiceControls::Common {

namespace {

constexpr int SecondsPerMinute = 60;
constexpr int MinutesPerHour = 60;
constexpr int SecondsPerHour = 3600;

/// The text of a value, empty for one that has none, such as an object.
QString textOf(const QVariant &value)
{
    try {
        return Zel::textFrom(value);
    } catch (const Zel::RuntimeError &) {
        return {};
    }
}

} // namespace

QString XmlUnescape(const QVariant &text)
{
    constexpr std::array entities{
        std::pair{"&amp;", '&'},  std::pair{"&lt;", '<'},    std::pair{"&gt;", '>'},
        std::pair{"&quot;", '"'}, std::pair{"&apos;", '\''},
    };
    QString result = textOf(text);
    for (const auto &[entity, character] : entities)
        result.replace(QLatin1String(entity), QString(QLatin1Char(character)));
    return result;
}

QString ShowOpenFileDialog(Zel::CommonDialog &dialog, const QString &title, const QString &pattern,
                           const QString &filter, const QString &initialFolder, bool multiSelect)
{
    dialog.fileName.clear();
    dialog.cancelError = true;
    dialog.dialogTitle = title;
    dialog.defaultPattern = pattern;
    dialog.filter = filter;
    dialog.initialFolder = initialFolder;
    dialog.flags = multiSelect ? Zel::CommonDialog::ExplorerMultiSelect : 0;
    dialog.showOpen();
    return dialog.fileName;
}

QString FormatDuration(double seconds)
{
    const Zel::Int16 hours = Zel::roundToInt16(std::trunc(seconds / SecondsPerHour));
    const double minutes = std::fmod(std::trunc(seconds / SecondsPerMinute), MinutesPerHour);
    const double rest = std::fmod(Zel::roundHalfEven(seconds), SecondsPerMinute);
    const auto pad = [](double value) { return PadTwoDigits(static_cast<qint16>(value)); };
    return PadTwoDigits(hours.value()) + QLatin1Char(':') + pad(minutes) + QLatin1Char(':') +
           pad(rest);
}

QString PadTwoDigits(qint16 number)
{
    const QString digits = QString::number(number);
    return number < 10 ? QLatin1Char('0') + digits : digits;
}

QString GetAttributeText(const QXmlStreamAttributes *element, const QString &name)
{
    if (!element || !element->hasAttribute(name))
        return {};
    return element->value(name).toString();
}

} // namespace ZelWebServiceControls::Common
