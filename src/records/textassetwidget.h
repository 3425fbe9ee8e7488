// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "assets/foldernames.h"
#include "common/contract/serviceclient.h"
#include "platform/widgets/control.h"
#include "records/editedfield.h"

#include <QPointer>

class QLabel;
class QLineEdit;
class QPushButton;

namespace ZelWebServiceControls {

class AssetPicker;

/// A field that holds an asset: a label, a text box with what the asset is called there, and a
/// button that lets a person pick one.
///
///     field->setQXS(&client);
///     field->setExt("jpg,png");
///     field->setValue("opening.png");
///     field->setGuid("5f0c...");
///
/// The text may be edited and the guid stays; emptying the box, by typing or by code, forgets the
/// guid. A host that sets both sets the value first. Lengths are twips; the layout is that of
/// `TextWidget` with the button at the right edge.
class ZEL_EXPORT TextAssetWidget : public Zel::Control, public EditedField
{
    Q_OBJECT

public:
    explicit TextAssetWidget(QWidget *parent = nullptr);
    ~TextAssetWidget() override;

    /// The guid of the asset, empty when there is none.
    Q_INVOKABLE QString getGuid() const;
    Q_INVOKABLE void setQXS(QXSC::ServiceClient *qxs);
    Q_INVOKABLE void setGuid(const QString &val);
    Q_INVOKABLE void SetLabel(const QString &val);
    /// Sets what is shown, which is not the guid.
    Q_INVOKABLE void setValue(const QString &val);
    /// The formats that can be picked, extensions parted by commas; empty, the default, is all.
    Q_INVOKABLE void setExt(const QString &val);
    /// Names of folders that are not offered; null, the default, offers all.
    Q_INVOKABLE void setRestrictedFolders(const ZelWebServiceControls::FolderNamesPtr &val);
    Q_INVOKABLE QString GetLabel() const;
    Q_INVOKABLE QString GetValue() const;
    /// What a click on the button does: lets a person pick an asset and takes its guid and value.
    /// Without a client a message box says so, and the picker is opened all the same.
    Q_INVOKABLE void ShowAssetPicker();
    /// As `TextWidget::SetLabelWidth`.
    Q_INVOKABLE void SetLabelWidth(qint16 w);

    QSize sizeHint() const override;

protected:
    void resized() override;
    void appearanceChanged() override;

private:
    void begin(AssetPicker &picker) const;

    QPointer<QXSC::ServiceClient> m_client;
    QString m_guid;
    QString m_ext;
    FolderNamesPtr m_restrictedFolders;
    QLabel *m_label;
    QLineEdit *m_value;
    QPushButton *m_button;
};

} // namespace ZelWebServiceControls
