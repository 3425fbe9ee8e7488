// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/contract/serviceclient.h"
#include "platform/widgets/form.h"

namespace ZelWebServiceControls {

/// The modal dialog that shows a component page. Implemented by a module that is loaded when it is
/// first needed.
class ZEL_EXPORT ComponentDialog : public Zel::Form
{
    Q_OBJECT

public:
    using Zel::Form::Form;
    ~ComponentDialog() override;

    /// Prepares a use; then size the form and show it modally (Form::showModal).
    virtual void ShowModalDialog(QXSC::ServiceClient *qxs, const QString &URL,
                                 const QString &dialogLabel, const QString &m_properties,
                                 const QString &m_assetDependencies) = 0;
    /// 1 accepted, 2 cancelled.
    virtual qint16 returnCode() const = 0;
    virtual QString GetValue() = 0;
    virtual QString getAssetDependencies() = 0;
};

/// The shared dialog; loads its module at the first call. Throws RuntimeError with a sentence that
/// says why it cannot be had (module not installed, AA_ShareOpenGLContexts missing, root without
/// the sandbox switch).
ZEL_EXPORT ComponentDialog &componentDialog();

} // namespace ZelWebServiceControls
