// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/widgets/form.h"

#include "platform/widgets/errorreport.h"

#include <QApplication>

namespace Zel {

Form::Form(QWidget *parent)
    : QDialog(parent)
{
    setModal(true);
}

Form::~Form() = default;

void Form::load() {}

void Form::showModal(QWidget *caller)
{
    if (isVisible())
        return;
    m_caller = caller;
    QWidget *const window = caller ? caller->window() : nullptr;
    const QPointer<Form> self(this);
    try {
        load();
    } catch (...) {
        m_caller = nullptr;
        throw;
    }
    setParent(window, windowFlags());
    exec();
    if (!self)
        return; // the caller's window was closed for good while the form was open
    setParent(nullptr, windowFlags());
    m_caller = nullptr;
}

void Form::guard(const std::function<void()> &action)
{
    const QPointer<Form> self(this);
    std::unique_ptr<RuntimeError> caught;
    try {
        action();
    } catch (const RuntimeError &error) {
        caught.reset(error.clone());
    }
    if (caught)
        reportRuntimeError(self, *caught);
}

} // namespace Zel
