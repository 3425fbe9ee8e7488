// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "fieldtesting.h"
#include "platform/widgets/twips.h"
#include "platform/widgets/vscroll.h"
#include "records/datarecordmanager.h"
#include "testsupport/errornumber.h"
#include "testsupport/recordingclient.h"

#include <QFrame>
#include <QTest>

/// An entry of a data record.
inline QXSC::DataRecordEntry entry(const char *type, const QString &label,
                                   const QString &text = QString())
{
    QXSC::DataRecordEntry result;
    result.type = QString::fromLatin1(type);
    result.label = label;
    result.value.text = text;
    return result;
}

/// A data record manager, 8000 by 5000 twips unless told, on a form that is shown.
class RecordFixture
{
public:
    RecordFixture()
        : manager(new ZelWebServiceControls::DataRecordManager(&form))
    {
        ZelWebServiceControls::introduceFieldWidgets();
        form.resize(800, 700);
        size(8000, 5000);
        manager->Init(&client);
        form.show();
        form.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&form));
    }

    Q_DISABLE_COPY_MOVE(RecordFixture)

    void size(double width, double height) const
    {
        FieldTesting::let(manager, "Width", width);
        FieldTesting::let(manager, "Height", height);
    }

    QXSC::DataRecordPtr load(const QList<QXSC::DataRecordEntry> &entries)
    {
        client.dataRecords["theme"] = ZelTest::dataRecord(entries);
        manager->LoadThemeDataRecord("theme");
        return manager->GetDataRecord();
    }

    int loadError(const QList<QXSC::DataRecordEntry> &entries)
    {
        return ZelTest::errorNumber([&] { load(entries); });
    }

    /// The field of that name, null when there is none.
    QWidget *field(const char *name) const { return field(QString::fromUtf8(name)); }

    QWidget *field(const QString &name) const
    {
        return frame()->findChild<QWidget *>(name, Qt::FindDirectChildrenOnly);
    }

    /// The names of all fields, from top to bottom.
    QStringList fields() const
    {
        QList<QWidget *> all =
            frame()->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly);
        std::stable_sort(all.begin(), all.end(), [](const QWidget *a, const QWidget *b) {
            return Zel::twipsGeometry(a).top < Zel::twipsGeometry(b).top;
        });
        QStringList names;
        for (const QWidget *widget : all)
            names << widget->objectName();
        return names;
    }

    QString value(const char *name) const { return FieldTesting::text(field(name), "GetValue"); }

    QWidget *box(const char *name) const { return FieldTesting::child(field(name), "widgetValue"); }

    QFrame *frame() const { return FieldTesting::child<QFrame>(manager, "drFrame"); }

    QFrame *container() const { return FieldTesting::child<QFrame>(manager, "drContainer"); }

    Zel::VScroll *scroll() const { return FieldTesting::child<Zel::VScroll>(manager, "drVScroll"); }

    Zel::TwipsRect placeOf(const QWidget *widget) const { return Zel::twipsGeometry(widget); }

    ZelTest::RecordingClient client;
    QWidget form;
    QPointer<ZelWebServiceControls::DataRecordManager> manager;
};
