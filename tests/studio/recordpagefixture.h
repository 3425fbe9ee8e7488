// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/widgets/listview.h"
#include "records/datarecordmanager.h"
#include "studio/errorcenter.h"
#include "studio/recorddrafts.h"
#include "studio/recordmerge.h"
#include "studio/recordpage.h"
#include "tests/studio/studiotesting.h"
#include "testsupport/recordingclient.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTemporaryDir>

inline QXSC::DataRecordEntry recordField(const char *type, const QString &label,
                                         const QString &text = QString())
{
    QXSC::DataRecordEntry entry;
    entry.type = QString::fromLatin1(type);
    entry.label = label;
    entry.value.text = text;
    return entry;
}

/// A client whose records are copies, as those of a real service are.
class RecordClient : public ZelTest::RecordingClient
{
public:
    QXSC::DataRecordPtr GetThemeDataRecord(const QString &themeGuid) override
    {
        const QXSC::DataRecordPtr stored = RecordingClient::GetThemeDataRecord(themeGuid);
        return stored ? copyOf(*stored) : nullptr;
    }

    QXSC::DataRecordSave saveThemeDataRecord(const QString &themeGuid,
                                             const QXSC::DataRecord &record) override
    {
        const QXSC::DataRecordSave scripted =
            RecordingClient::saveThemeDataRecord(themeGuid, record);
        if (answersNoRecord)
            return scripted;
        const QXSC::DataRecordPtr stored = dataRecords.value(themeGuid);
        if (stored->version != record.version)
            return {false, stored->version, copyOf(*stored)};
        dataRecords[themeGuid] = copyOf(record);
        dataRecords[themeGuid]->version = record.version + 1;
        return {true, record.version + 1, nullptr};
    }

    static QXSC::DataRecordPtr copyOf(const QXSC::DataRecord &record)
    {
        QList<QXSC::DataRecordEntry> entries;
        for (const QXSC::DataRecordEntryPtr &entry : *record.entries)
            entries << *entry;
        const QXSC::DataRecordPtr copy = ZelTest::dataRecord(entries);
        copy->version = record.version;
        return copy;
    }

    /// Whether a save answers as scripted.
    bool answersNoRecord = false;
};

/// The record page with three themes: "Stage" has a record of four fields, "Bare" none, "Hidden"
/// one without a field.
class RecordPageFixture
{
public:
    RecordPageFixture()
        : drafts(folder.path())
        , page(client, client, errors, drafts, &window)
    {
        ZelWebServiceControls::introduceFieldWidgets();
        drafts.setOwner({QStringLiteral("server"), QStringLiteral("maja")});
        client.themeLists[QStringLiteral("getFullThemeList_Array")] =
            ZelTest::themeList({makeTheme("Stage"), makeTheme("Bare"), makeTheme("Hidden")});
        client.dataRecords[QStringLiteral("guid of Stage")] = ZelTest::dataRecord(fields());
        QXSC::DataRecordEntry hidden = recordField("TEXT", "Secret", "s");
        hidden.hidden = true;
        client.dataRecords[QStringLiteral("guid of Hidden")] = ZelTest::dataRecord({hidden});
        window.resize(1200, 800);
        page.resize(1200, 800);
        StudioTesting::show(window);
        errors.attempt([this] { page.open(); });
        page.setFocus();
        client.takeCalls();
    }

    static QList<QXSC::DataRecordEntry> fields()
    {
        return {recordField("TEXT", "Title", "Spring"),
                recordField("TEXTAREA", "Welcome", "Good\r\nmorning"),
                recordField("CHECKBOX", "Agenda", "True"),
                recordField("TEXT", "Place", "Boathouse")};
    }

    static QXSC::ThemeRecord makeTheme(const QString &name)
    {
        QXSC::ThemeRecord theme;
        theme.guid = QStringLiteral("guid of ") + name;
        theme.name = name;
        theme.wizardXml = QStringLiteral("<WIZARD studio_version=\"0.0.1\"><CUSTOMFIELDS><FIELD "
                                         "name=\"type\">video</FIELD></CUSTOMFIELDS></WIZARD>");
        return theme;
    }

    bool isShown(const char *name) const { return StudioTesting::child(page, name)->isVisible(); }

    bool isEnabled(const char *name) const { return StudioTesting::child(page, name)->isEnabled(); }

    QString text(const char *label) const
    {
        return StudioTesting::child<QLabel>(page, label)->text();
    }

    void choose(const QString &name) const
    {
        auto *themes = StudioTesting::child<Zel::ListView>(page, "ThemeListView");
        for (qsizetype row = 0; row < themes->count(); ++row) {
            if (themes->text(row) == name)
                QTest::mouseClick(themes->viewport(), Qt::LeftButton, {},
                                  themes->cellRect(row).center());
        }
    }

    void edit(const QString &name) const
    {
        choose(name);
        StudioTesting::click(page, "editRecord");
    }

    ZelWebServiceControls::DataRecordManager &form() const
    {
        return *StudioTesting::child<ZelWebServiceControls::DataRecordManager>(page, "record");
    }

    /// The box of a field.
    template <typename Box = QLineEdit>
    Box &box(const char *label) const
    {
        auto *field =
            StudioTesting::child(form(), QStringLiteral("widget_") + QLatin1String(label));
        return *StudioTesting::child<Box>(*field, "widgetValue");
    }

    void typeInto(const char *label, const QString &text) const
    {
        QLineEdit &line = box(label);
        line.setFocus();
        line.selectAll();
        QTest::keyClicks(&line, text);
    }

    bool says(const QString &status) const
    {
        return QTest::qWaitFor([&] { return text("recordStatus") == status; });
    }

    QString stored(qsizetype entry) const
    {
        return client.dataRecords[QStringLiteral("guid of Stage")]
            ->entries->item(entry)
            ->value.text;
    }

    /// Somebody else saves the record.
    void saveElsewhere(qsizetype entry, const QString &text)
    {
        QXSC::DataRecordPtr &record = client.dataRecords[QStringLiteral("guid of Stage")];
        record = RecordClient::copyOf(*record);
        record->entries->item(entry)->value.text = text;
        ++record->version;
    }

    /// The record of the theme Stage, as it is now but for its first field.
    Studio::RecordDraft draftOfStage(const QString &text) const
    {
        Studio::RecordDraft draft;
        draft.themeGuid = QStringLiteral("guid of Stage");
        draft.themeName = QStringLiteral("Stage");
        draft.kept = QDateTime::currentDateTimeUtc();
        draft.entries = Studio::draftEntries(*client.dataRecords[draft.themeGuid]);
        draft.entries[0].value.text = text;
        return draft;
    }

    QTemporaryDir folder;
    Studio::ErrorCenter errors;
    Studio::RecordDrafts drafts;
    RecordClient client;
    QWidget window;
    Studio::RecordPage page;
};
