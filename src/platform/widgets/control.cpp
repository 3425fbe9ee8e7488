// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/widgets/control.h"

#include "platform/widgets/errorreport.h"

#include <QEvent>
#include <QScopedValueRollback>

namespace Zel {

Control::Control(QWidget *parent)
    : QWidget(parent)
{
}

Control::~Control() = default;

void Control::setMode(Mode mode)
{
    m_mode = mode;
}

void Control::readPropertyBag(const PropertyBag &bag)
{
    m_propertyProblems.clear();
    {
        const QScopedValueRollback<bool> reading(m_reading, true);
        readProperties(bag);
    }
    m_propertyProblems = bag.problems();
}

PropertyBag Control::writePropertyBag() const
{
    PropertyBag bag;
    writeProperties(bag);
    return bag;
}

QString Control::propertyBagText() const
{
    return writePropertyBag().toText();
}

void Control::setPropertyBagText(const QString &text)
{
    readPropertyBag(PropertyBag::fromText(text));
}

QStringList Control::eventNames(const QMetaObject *metaObject)
{
    QStringList names;
    for (int i = Control::staticMetaObject.methodCount(); i < metaObject->methodCount(); ++i) {
        const QMetaMethod method = metaObject->method(i);
        // A default argument makes a second entry for the same event.
        const bool clone = method.attributes() & QMetaMethod::Cloned;
        if (method.methodType() == QMetaMethod::Signal && !clone)
            names << QString::fromLatin1(method.name());
    }
    return names;
}

void Control::readProperties(const PropertyBag &) {}

void Control::writeProperties(PropertyBag &) const {}

void Control::resized() {}

void Control::appearanceChanged() {}

void Control::markChanged()
{
    // What a container hands back to the control is not a change of its document.
    if (!m_reading)
        emit changed();
}

void Control::requireDesignTime() const
{
    if (m_mode == Mode::Run)
        throw RuntimeError(RuntimeError::PropertySetAtRunTime,
                           RuntimeError::standardDescription(RuntimeError::PropertySetAtRunTime),
                           QString::fromLatin1(metaObject()->className()));
}

void Control::guard(const std::function<void()> &action)
{
    guardUserAction(this, action);
}

void Control::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    const TwipsRect place = twipsGeometry(this);
    const TwipsRect settled{0, 0, place.width, place.height};
    if (settled == m_settled)
        return;
    m_settled = settled;
    // An event handler has no caller that could catch what goes wrong.
    guard([this] { resized(); });
}

void Control::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::StyleChange ||
        event->type() == QEvent::FontChange)
        guard([this] { appearanceChanged(); });
}

} // namespace Zel
