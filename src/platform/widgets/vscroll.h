// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QScrollBar>

namespace Zel {

/// A vertical scroll bar whose value runs from `Min` at the top to `Max` at the bottom, whichever
/// of the two is greater: 0 to -125 is a range like any other. QScrollBar itself cannot hold it;
/// its own range underneath is 0 to the distance between the two, and its own functions speak of
/// that range.
///
/// All values are twips. Each is a 16-bit integer; a greater one is error 6. A value outside the
/// range is brought to the nearer end, also when the range changes.
class ZEL_EXPORT VScroll : public QScrollBar
{
    Q_OBJECT
    Q_PROPERTY(int Min READ Min WRITE setMin)
    Q_PROPERTY(int Max READ Max WRITE setMax)
    Q_PROPERTY(int Value READ Value WRITE setValue NOTIFY changed)
    Q_PROPERTY(int LargeChange READ LargeChange WRITE setLargeChange)
    Q_PROPERTY(int SmallChange READ SmallChange WRITE setSmallChange)

public:
    explicit VScroll(QWidget *parent = nullptr);
    ~VScroll() override;

    /// 0 unless set.
    int Min() const { return m_min; }

    void setMin(int min);

    /// 32767 unless set.
    int Max() const { return m_max; }

    void setMax(int max);

    int Value() const;
    /// Hides the setter of QAbstractSlider, which would take a position.
    void setValue(int value);

    /// How far a click beside the thumb and Page Up and Down go. 1 unless set.
    int LargeChange() const { return m_largeChange; }

    void setLargeChange(int distance);

    /// How far a click on an arrow, an arrow key and a line of the wheel go. 1 unless set.
    int SmallChange() const { return m_smallChange; }

    void setSmallChange(int distance);

signals:
    /// The value is another, by a person or by code.
    void changed(int value);
    /// A person has moved the thumb; comes also while it is being dragged.
    void scrolled(int value);

private:
    void setLimits(int min, int max);

    int m_min = 0;
    int m_max = 32767;
    int m_largeChange = 1;
    int m_smallChange = 1;
    int m_reported = 0;
    bool m_byCode = false;
};

} // namespace Zel
