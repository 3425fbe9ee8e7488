// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/widgets/control.h"
#include "records/editedfield.h"

class QLabel;
class QLineEdit;

namespace ZelWebServiceControls {

/// A field of one line of text: a label on the left, a text box on the right.
///
///     TextWidget title(form);
///     title.SetLabel("Title");
///     title.setValue("Spring launch");
///
/// The value comes back code unit for code unit, line breaks and control characters included; what
/// a person did not change stays as it came. Lengths are twips. The label takes 40 % of the width
/// until `SetLabelWidth` says otherwise, and again after every resize.
class ZEL_EXPORT TextWidget : public Zel::Control, public EditedField
{
    Q_OBJECT

public:
    explicit TextWidget(QWidget *parent = nullptr);
    ~TextWidget() override;

    Q_INVOKABLE void SetLabel(const QString &val);
    Q_INVOKABLE void setValue(const QString &val);
    Q_INVOKABLE QString GetLabel() const;
    Q_INVOKABLE QString GetValue() const;
    /// Lays the field out for a label of that width; 0 or less leaves all but the label's height.
    /// Error 6 for more than 32617, with the label as wide as asked for.
    Q_INVOKABLE void SetLabelWidth(qint16 w);

    QSize sizeHint() const override;

protected:
    void resized() override;
    void appearanceChanged() override;

private:
    QLabel *m_label;
    QLineEdit *m_value;
};

} // namespace ZelWebServiceControls
