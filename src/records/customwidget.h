// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/contract/serviceclient.h"
#include "platform/widgets/control.h"
#include "records/editedfield.h"

#include <QPointer>

class QLabel;
class QLineEdit;
class QPushButton;

namespace ZelWebServiceControls {

/// A field whose editor is a web page of the service: a label and a button that opens the page in a
/// dialog.
///
///     field->setUrl(client.serverUrl() + "/nexo/tools_v2/Components/color.html");
///     field->SetDimensions(640, 480);
///     field->setQXS(&client);
///     field->setValue("#2762c9");
///
/// The page gets the value and may give another one back, with the assets it depends on; what
/// either text says is between the page and its reader. A page that cannot be shown leaves both as
/// they are; why is told as a run-time error. Lengths are twips; the layout is that of `TextWidget`
/// with the button as wide as its caption.
class ZEL_EXPORT CustomWidget : public Zel::Control, public EditedField
{
    Q_OBJECT

public:
    explicit CustomWidget(QWidget *parent = nullptr);
    ~CustomWidget() override;

    Q_INVOKABLE void SetLabel(const QString &val);
    Q_INVOKABLE void setQXS(QXSC::ServiceClient *qxs);
    Q_INVOKABLE void setValue(const QString &val);
    /// The button's caption, "Edit…" until it is set. Its width follows with the next
    /// `SetLabelWidth`.
    Q_INVOKABLE void setButtonText(const QString &val);
    /// Kept, and used for nothing.
    Q_INVOKABLE void setSource(const QString &val);
    /// The address of the page.
    Q_INVOKABLE void setUrl(const QString &val);
    /// The size of the dialog in pixels; a width of 0 is 800, a height of 0 is 600, which is also
    /// what it is until this is called.
    Q_INVOKABLE void SetDimensions(qint16 Width, qint16 height);
    Q_INVOKABLE QString GetLabel() const;
    /// The value that was set or that the page gave back.
    Q_INVOKABLE QString GetValue() const;
    Q_INVOKABLE QString getAssetDependencies() const;
    Q_INVOKABLE void SetAssetDependencies(const QString &val);
    /// As `TextWidget::SetLabelWidth`.
    Q_INVOKABLE void SetLabelWidth(qint16 w);

    QSize sizeHint() const override;

protected:
    void resized() override;
    void appearanceChanged() override;

private:
    void editInPage();

    QPointer<QXSC::ServiceClient> m_client;
    QString m_source;
    QString m_url;
    QString m_text;
    QString m_assetDependencies;
    QString m_caption;
    qint16 m_width = 800;
    qint16 m_height = 600;
    QLabel *m_label;
    QPushButton *m_button;
    QLineEdit *m_value;
};

} // namespace ZelWebServiceControls
