// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/client/themereader.h"

#include "service/client/tablereader.h"

namespace QXSC {

namespace {

constexpr std::array themeFields{
    QLatin1String("guid"),      QLatin1String("name"),      QLatin1String("description"),
    QLatin1String("width"),     QLatin1String("height"),    QLatin1String("created"),
    QLatin1String("modified"),  QLatin1String("wizardXml"), QLatin1String("previewUrl"),
    QLatin1String("templates"),
};

/// A list of [key, version key, required].
ThemeTemplateCollectionPtr readUses(const QJsonValue &value, QLatin1String name)
{
    auto templates = std::make_shared<ThemeTemplateCollection>();
    readEach(readList(value, name), "template", [&](const QJsonValue &entry) {
        constexpr qsizetype values = 3;
        const QJsonArray list = readList(entry, QLatin1String("template"));
        if (list.size() != values)
            throw AnswerProblem{
                QStringLiteral("%1 values instead of %2").arg(list.size()).arg(values)};
        auto use = std::make_shared<ThemeTemplate>();
        use->templateKey = readText(list.at(0), QLatin1String("templateKey"));
        use->templateVersionKey = readText(list.at(1), QLatin1String("templateVersionKey"));
        use->required = readFlag(list.at(2), QLatin1String("required"));
        templates->add(use);
    });
    return templates;
}

} // namespace

ThemeCollectionPtr readThemes(const QJsonObject &answer)
{
    auto themes = std::make_shared<ThemeCollection>();
    const auto take = [&](const auto &valueAt) {
        auto record = std::make_shared<ThemeRecord>();
        record->guid = readText(valueAt(0), themeFields[0]);
        record->name = readText(valueAt(1), themeFields[1]);
        record->description = readText(valueAt(2), themeFields[2]);
        record->width = readInt32(valueAt(3), themeFields[3]);
        record->height = readInt32(valueAt(4), themeFields[4]);
        record->created = readTime(valueAt(5), themeFields[5]).value_or(QDateTime());
        record->modified = readTime(valueAt(6), themeFields[6]).value_or(QDateTime());
        record->wizardXml = readText(valueAt(7), themeFields[7]);
        record->previewUrl = readText(valueAt(8), themeFields[8]);
        record->templates = readUses(valueAt(9), themeFields[9]);
        themes->add(record);
    };
    if (!readTable(answer, QLatin1String("themes"), themeFields, take))
        return nullptr;
    return themes;
}

TemplateRecordPtr readTemplate(const QByteArray &body)
{
    const QLatin1String member("template");
    const QLatin1String name("name");
    const QLatin1String description("description");
    const QJsonValue value = readMember(readObject(body), member);
    if (value.isNull())
        return nullptr;
    const QJsonObject object = readObject(value, member);
    auto record = std::make_shared<TemplateRecord>();
    record->name = readText(readMember(object, name), name);
    record->description = readText(readMember(object, description), description);
    return record;
}

} // namespace QXSC
