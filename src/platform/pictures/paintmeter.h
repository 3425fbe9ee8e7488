// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/pictures/paintcost.h"

#include <QPaintDevice>
#include <QPaintEngine>

#include <memory>

namespace Zel {

/// A canvas on which painting leaves nothing but its cost. Whoever paints cannot be stopped
/// half-way, so it is let paint here first.
class PaintMeter : public QPaintDevice
{
public:
    explicit PaintMeter(const QSize &canvas);
    ~PaintMeter() override;

    double cost() const;

    QPaintEngine *paintEngine() const override;

protected:
    int metric(PaintDeviceMetric metric) const override;

private:
    class Engine;
    QSize m_canvas;
    std::unique_ptr<Engine> m_engine;
};

} // namespace Zel
