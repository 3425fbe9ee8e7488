// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
//
// A form for a data record, in which a class of the host's own stands for one kind of field.

#include "platform/widgets/controlregistry.h"
#include "records/datarecordmanager.h"
#include "testsupport/recordingclient.h"

#include <QApplication>
#include <QCheckBox>
#include <QTimer>

/// A check box with its label behind it: a field only needs the members a form calls by name.
class CheckField : public QCheckBox
{
    Q_OBJECT

public:
    using QCheckBox::QCheckBox;

    Q_INVOKABLE void SetLabel(const QString &val) { setText(val); }

    Q_INVOKABLE void SetLabelWidth(int) {}

    Q_INVOKABLE void setValue(const QString &val) { setChecked(val == "True"); }

    Q_INVOKABLE bool GetValue() const { return isChecked(); }
};

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    Zel::ControlRegistry::add("ZelWebServiceControls.CheckboxWidget",
                              [](QWidget *parent) -> QWidget * { return new CheckField(parent); });
    ZelWebServiceControls::introduceFieldWidgets(); // the other four

    // A client that plays a service with one theme; see the example "signin" for the real one.
    ZelTest::RecordingClient client;
    QXSC::DataRecordEntry title, live;
    title.type = "TEXT";
    title.label = "Title";
    live.type = "CHECKBOX";
    live.label = "Show it live";
    client.dataRecords["spring"] = ZelTest::dataRecord({title, live});

    ZelWebServiceControls::DataRecordManager form;
    form.show();
    form.Init(&client);
    form.LoadThemeDataRecord("spring"); // throws Zel::RuntimeError when something fails
    form.UpdateDataRecord();            // when the host saves: GetDataRecord() has it all now
    if (QApplication::arguments().contains("--smoke"))
        QTimer::singleShot(0, &app, &QApplication::quit);
    return QApplication::exec();
}

#include "recordform.moc"
