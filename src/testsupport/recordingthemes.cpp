// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
// The theme operations of the recording client.

#include "testsupport/recordingclient.h"

namespace ZelTest {

void RecordingClient::callListMethod(const QString &applicationKind, const QString &methodName,
                                     QXSC::ThemeCollectionPtr &list)
{
    record(QStringLiteral("callListMethod"), {applicationKind, methodName});
    list = themeLists.value(methodName);
}

void RecordingClient::getTemplate(const QString &templateKey, const QString &templateVersionKey,
                                  QXSC::TemplateRecordPtr &result)
{
    record(QStringLiteral("getTemplate"), {templateKey, templateVersionKey});
    result = templates.value({templateKey, templateVersionKey});
}

QXSC::ThemeCollectionPtr themeList(const QList<QXSC::ThemeRecord> &themes)
{
    auto list = std::make_shared<QXSC::ThemeCollection>();
    for (const QXSC::ThemeRecord &theme : themes) {
        auto record = std::make_shared<QXSC::ThemeRecord>(theme);
        if (!record->templates)
            record->templates = std::make_shared<QXSC::ThemeTemplateCollection>();
        list->add(record);
    }
    return list;
}

QXSC::ThemeTemplateCollectionPtr themeTemplates(const QList<QXSC::ThemeTemplate> &templates)
{
    auto list = std::make_shared<QXSC::ThemeTemplateCollection>();
    for (const QXSC::ThemeTemplate &entry : templates)
        list->add(std::make_shared<QXSC::ThemeTemplate>(entry));
    return list;
}

} // namespace ZelTest
