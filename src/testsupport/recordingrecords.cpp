// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
// The data record operations of the recording client.

#include "testsupport/recordingclient.h"

namespace ZelTest {

QXSC::DataRecordPtr RecordingClient::GetThemeDataRecord(const QString &themeGuid)
{
    record(QStringLiteral("GetThemeDataRecord"), {themeGuid});
    return dataRecords.value(themeGuid);
}

QXSC::DataRecordSave RecordingClient::saveThemeDataRecord(const QString &themeGuid,
                                                          const QXSC::DataRecord &record)
{
    QVariantList arguments{themeGuid, record.version};
    if (record.entries) {
        for (const QXSC::DataRecordEntryPtr &entry : *record.entries)
            arguments << QString(entry->label + QLatin1Char('=') + entry->value.text);
    }
    this->record(QStringLiteral("saveThemeDataRecord"), arguments);
    return recordSave;
}

QXSC::DataRecordPtr dataRecord(const QList<QXSC::DataRecordEntry> &entries)
{
    auto list = std::make_shared<QXSC::DataRecordEntryCollection>();
    for (const QXSC::DataRecordEntry &entry : entries)
        list->add(std::make_shared<QXSC::DataRecordEntry>(entry));
    auto record = std::make_shared<QXSC::DataRecord>();
    record->entries = list;
    record->version = 1;
    return record;
}

} // namespace ZelTest
