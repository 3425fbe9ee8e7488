// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/widgets/form.h"

#include "platform/widgets/errorreport.h"

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
    if (m_inUse || isVisible())
        return;
    m_inUse = true;
    m_caller = caller;
    const QPointer<Form> self(this);
    try {
        load();
    } catch (...) {
        if (self)
            release();
        throw;
    }
    // Whoever lets messages through while loading or being shown may lose the form.
    if (!self)
        return;
    setParent(m_caller ? m_caller->window() : nullptr, windowFlags());
    exec();
    if (self)
        release();
}

void Form::release()
{
    if (parent())
        setParent(nullptr, windowFlags());
    m_caller = nullptr;
    m_inUse = false;
}

void Form::guard(const std::function<void()> &action)
{
    guardUserAction(this, action);
}

} // namespace Zel
