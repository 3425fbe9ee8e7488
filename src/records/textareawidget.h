// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/widgets/control.h"
#include "platform/widgets/kepttext.h"
#include "records/editedfield.h"

class QLabel;
class QPlainTextEdit;

namespace ZelWebServiceControls {

/// A field of several lines of text: a label on the left, a text box on the right.
///
/// The value comes back code unit for code unit; after an edit what a person did not touch is still
/// as it came, whatever its line breaks are. The Tab key goes to the next field. Lengths are twips;
/// the layout is that of `TextWidget`, but the label keeps its height.
class ZEL_EXPORT TextAreaWidget : public Zel::Control, public EditedField
{
    Q_OBJECT

public:
    explicit TextAreaWidget(QWidget *parent = nullptr);
    ~TextAreaWidget() override;

    Q_INVOKABLE void SetLabel(const QString &val);
    Q_INVOKABLE void setValue(const QString &val);
    Q_INVOKABLE QString GetLabel() const;
    Q_INVOKABLE QString GetValue() const;
    /// Lays the field out for a label of that width; 0 or less changes nothing. Error 6 for more
    /// than 32617, with the label as wide as asked for.
    Q_INVOKABLE void SetLabelWidth(qint16 w);

    QSize sizeHint() const override;

protected:
    void resized() override;
    void appearanceChanged() override;

private:
    double firstHeight() const;
    void placeLabel();
    void takeEdit();

    QLabel *m_label;
    QPlainTextEdit *m_value;
    Zel::KeptText m_text;
    bool m_setting = false;
};

} // namespace ZelWebServiceControls
