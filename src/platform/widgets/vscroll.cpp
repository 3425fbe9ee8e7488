// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/widgets/vscroll.h"

#include "platform/core/runtimeerror.h"

#include <QScopedValueRollback>

#include <algorithm>
#include <limits>

namespace Zel {

namespace {

int checked16(int value)
{
    if (value < std::numeric_limits<qint16>::min() || value > std::numeric_limits<qint16>::max())
        throw RuntimeError(RuntimeError::Overflow);
    return value;
}

} // namespace

VScroll::VScroll(QWidget *parent)
    : QScrollBar(Qt::Vertical, parent)
{
    setRange(0, m_max - m_min);
    setPageStep(m_largeChange);
    setSingleStep(m_smallChange);
    connect(this, &QAbstractSlider::valueChanged, this, [this] {
        if (m_byCode)
            return;
        m_reported = Value();
        emit changed(m_reported);
        emit scrolled(m_reported);
    });
}

VScroll::~VScroll() = default;

int VScroll::Value() const
{
    const int position = QScrollBar::value();
    return m_max < m_min ? m_min - position : m_min + position;
}

void VScroll::setValue(int value)
{
    checked16(value);
    {
        const QScopedValueRollback byCode(m_byCode, true);
        QScrollBar::setValue(m_max < m_min ? m_min - value : value - m_min);
    }
    if (m_reported != Value()) {
        m_reported = Value();
        emit changed(m_reported);
    }
}

void VScroll::setMin(int min)
{
    setLimits(checked16(min), m_max);
}

void VScroll::setMax(int max)
{
    setLimits(m_min, checked16(max));
}

void VScroll::setLimits(int min, int max)
{
    const int value = std::clamp(Value(), std::min(min, max), std::max(min, max));
    {
        const QScopedValueRollback byCode(m_byCode, true);
        m_min = min;
        m_max = max;
        setRange(0, std::abs(max - min));
    }
    setValue(value);
}

void VScroll::setLargeChange(int distance)
{
    m_largeChange = checked16(distance);
    setPageStep(std::max(0, distance));
}

void VScroll::setSmallChange(int distance)
{
    m_smallChange = checked16(distance);
    setSingleStep(std::max(0, distance));
}

} // namespace Zel
