// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "records/componentdialog.h"

#include "records/componentmodule.h"

#include <QCoreApplication>
#include <QPointer>

namespace ZelWebServiceControls {

namespace {

struct Shared
{
    std::function<ComponentDialog *()> make;
    QPointer<ComponentDialog> dialog;
};

Shared &shared()
{
    static Shared one;
    return one;
}

} // namespace

ComponentDialog::~ComponentDialog() = default;

ComponentDialog &componentDialog()
{
    QPointer<ComponentDialog> &dialog = shared().dialog;
    if (!dialog) {
        dialog = shared().make ? shared().make() : ComponentModule().makeDialog();
        if (!dialog)
            throw Zel::RuntimeError(Zel::RuntimeError::CannotCreateObject);
        QObject::connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit,
                         dialog.data(), [made = dialog] { delete made.data(); });
    }
    return *dialog;
}

void setComponentDialogMaker(std::function<ComponentDialog *()> make)
{
    delete shared().dialog.data();
    shared().make = std::move(make);
}

} // namespace ZelWebServiceControls
