// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/widgets/listview.h"
#include "testsupport/errornumber.h"
#include "testsupport/messageboxdriver.h"
#include "testsupport/recordingclient.h"
#include "themes/themelist.h"
#include "webcontrols/webimage.h"

#include "../platform/widgets/listtesting.h"

#include <QAbstractItemModelTester>
#include <QFrame>
#include <QGroupBox>
#include <QLabel>
#include <QPointer>
#include <QRadioButton>
#include <QTabBar>
#include <QTest>

/// A definition with a version.
inline QString wizard(const char *version = "1.0.0")
{
    return QStringLiteral("<WIZARD studio_version='%1'/>").arg(QLatin1String(version));
}

/// A usable theme: its name, a guid and a description made from it.
inline QXSC::ThemeRecord theme(const char *name, const QString &wizardXml = wizard())
{
    QXSC::ThemeRecord record;
    record.name = QString::fromUtf8(name);
    record.guid = QStringLiteral("guid-") + record.name;
    record.description = QStringLiteral("about ") + record.name;
    record.wizardXml = wizardXml;
    return record;
}

inline QXSC::TemplateRecordPtr templateRecord(const char *name)
{
    auto record = std::make_shared<QXSC::TemplateRecord>();
    record->name = QString::fromUtf8(name);
    record->description = QStringLiteral("makes ") + record->name;
    return record;
}

/// The entry that names a template by the keys "<name>-key" and "<name>-version".
inline QXSC::ThemeTemplate entry(const char *name, bool required = false)
{
    const QString text = QString::fromUtf8(name);
    return {text + QStringLiteral("-key"), text + QStringLiteral("-version"), required};
}

/// A theme list on a form, not loaded yet, and a trail of calls, events and errors. The service has
/// the themes Blue, Green and Red.
class ThemeListFixture
{
public:
    ThemeListFixture()
        : themes(new ZelWebServiceControls::ThemeList(&form))
        , m_listTester(list().model(), QAbstractItemModelTester::FailureReportingMode::QtTest)
        , m_templatesTester(templates().model(),
                            QAbstractItemModelTester::FailureReportingMode::QtTest)
    {
        using ZelWebServiceControls::ThemeList;
        client.themeLists[full] = ZelTest::themeList({theme("Blue"), theme("Green"), theme("Red")});
        client.atCall = [this](const QString &call) {
            trail << call;
            if (atCall)
                atCall(call);
        };
        QObject::connect(themes, &ThemeList::ThemeSelected,
                         [this] { trail << QStringLiteral("ThemeSelected ") + selected(); });
        QObject::connect(themes, &ThemeList::runtimeError, [this](const Zel::RuntimeError &error) {
            trail << QStringLiteral("error %1").arg(error.number());
        });
        form.resize(1000, 650);
        themes->resize(form.size());
        form.show();
        form.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&form));
    }

    ~ThemeListFixture()
    {
        // The trail must not be written to while the members go.
        client.atCall = {};
        delete themes;
    }

    Q_DISABLE_COPY_MOVE(ThemeListFixture)

    void init(const QString &flags = QString())
    {
        themes->Init(&client, QStringLiteral("3.2.10"), flags);
        trail.clear();
    }

    /// Loads these themes as all.
    void load(const QList<QXSC::ThemeRecord> &records, const QString &flags = QString())
    {
        client.themeLists[full] = ZelTest::themeList(records);
        init(flags);
    }

    /// Loads a theme with these template entries alone, and clicks it.
    void choose(const QList<QXSC::ThemeTemplate> &entries)
    {
        QXSC::ThemeRecord record = theme("Blue");
        record.templates = ZelTest::themeTemplates(entries);
        load({record});
        ListTesting::click(list(), 0);
    }

    /// Lets the service know templates of these names, under the keys of `entry`.
    void addTemplates(const QList<const char *> &names)
    {
        for (const char *name : names) {
            const QXSC::ThemeTemplate keys = entry(name);
            client.templates[{keys.templateKey, keys.templateVersionKey}] = templateRecord(name);
        }
    }

    void clickOption(const char *name)
    {
        QTest::mouseClick(option(name), Qt::LeftButton, {}, QPoint(8, option(name)->height() / 2));
    }

    void clickTab(int index)
    {
        QTest::mouseClick(&tabs(), Qt::LeftButton, {}, tabs().tabRect(index).center());
    }

    template <typename Widget>
    Widget *child(const char *name) const
    {
        return themes->findChild<Widget *>(QLatin1String(name));
    }

    Zel::ListView &list() const { return *child<Zel::ListView>("ThemeListView"); }

    Zel::ListView &templates() const { return *child<Zel::ListView>("TemplateListView"); }

    QTabBar &tabs() const { return *child<QTabBar>("TabStrip1"); }

    QRadioButton *option(const char *name) const { return child<QRadioButton>(name); }

    ZelWebControls::WebImage &preview() const
    {
        return *child<ZelWebControls::WebImage>("ThemePreview");
    }

    /// The text boxes of the details.
    QStringList details() const
    {
        QStringList texts;
        for (const char *name :
             {"descriptionTxt", "widthTxt", "heightTxt", "createdTxt", "modifiedTxt"})
            texts << child<QLabel>(name)->text();
        return texts;
    }

    /// A column's texts from top to bottom.
    QStringList shown(int column = 0) const { return ListTesting::shownTexts(list(), column); }

    QXSC::ThemeRecordPtr selectedRecord() const
    {
        return themes->getSelectedTheme().value<QXSC::ThemeRecordPtr>();
    }

    /// The name of the theme last chosen.
    QString selected() const
    {
        const QXSC::ThemeRecordPtr record = selectedRecord();
        return record ? record->name : QStringLiteral("nothing");
    }

    QStringList takeTrail() { return std::exchange(trail, {}); }

    static inline const QString full = QStringLiteral("getFullThemeList_Array");
    static inline const QString fullCall =
        QStringLiteral("callListMethod(\"Studio\", \"getFullThemeList_Array\")");

    ZelTest::RecordingClient client;
    ZelTest::MessageBoxDriver boxes;
    QWidget form;
    QPointer<ZelWebServiceControls::ThemeList> themes;
    QStringList trail;
    std::function<void(const QString &)> atCall;

private:
    QAbstractItemModelTester m_listTester;
    QAbstractItemModelTester m_templatesTester;
};
