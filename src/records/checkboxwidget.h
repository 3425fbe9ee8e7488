// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/widgets/control.h"
#include "records/editedfield.h"

class QCheckBox;
class QLabel;

namespace ZelWebServiceControls {

/// A field that is on or off: a label on the left, a check box on the right. Lengths are twips; the
/// layout is that of `TextWidget`, but the check box keeps its width.
class ZEL_EXPORT CheckboxWidget : public Zel::Control, public EditedField
{
    Q_OBJECT

public:
    explicit CheckboxWidget(QWidget *parent = nullptr);
    ~CheckboxWidget() override;

    Q_INVOKABLE void SetLabel(const QString &val);
    /// "TRUE" in any case checks the box, every other text unchecks it.
    Q_INVOKABLE void setValue(const QString &val);
    Q_INVOKABLE QString GetLabel() const;
    /// "True" or "False".
    Q_INVOKABLE QString GetValue() const;
    /// As `TextWidget::SetLabelWidth`.
    Q_INVOKABLE void SetLabelWidth(qint16 w);

    QSize sizeHint() const override;

protected:
    void resized() override;
    void appearanceChanged() override;

private:
    QLabel *m_label;
    QCheckBox *m_value;
};

} // namespace ZelWebServiceControls
