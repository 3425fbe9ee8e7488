// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/contract/serviceclient.h"
#include "platform/widgets/form.h"

#include <functional>

namespace ZelWebServiceControls {

/// The modal dialog that shows a component page. Implemented by a module that is loaded when it is
/// first needed.
class ZEL_EXPORT ComponentDialog : public Zel::Form
{
    Q_OBJECT

public:
    using Zel::Form::Form;
    ~ComponentDialog() override;

    /// Prepares a use: the page at `URL` gets `m_properties`. Then size the form and show it with
    /// `showModal`.
    virtual void ShowModalDialog(QXSC::ServiceClient *qxs, const QString &URL,
                                 const QString &dialogLabel, const QString &m_properties,
                                 const QString &m_assetDependencies) = 0;
    /// 1: the page ended the dialog with a result; 2: cancelled.
    virtual qint16 returnCode() const = 0;
    /// The value that the page gave back, else the one it was given.
    virtual QString GetValue() = 0;
    /// What the page said its value depends on, else what came in.
    virtual QString getAssetDependencies() = 0;
};

/// The one shared dialog, made at the first call and deleted when the application quits. Throws
/// RuntimeError 429 with a sentence that says why there is none: the module is not installed or
/// does not load, the program began without shared OpenGL contexts, or it runs as root without
/// having switched the engine's sandbox off.
ZEL_EXPORT ComponentDialog &componentDialog();

/// From now on `componentDialog` hands out what `make` makes instead of the module's dialog, for a
/// host with a browser of its own; an empty function brings the module back. The dialog in use so
/// far is deleted.
ZEL_EXPORT void setComponentDialogMaker(std::function<ComponentDialog *()> make);

} // namespace ZelWebServiceControls
