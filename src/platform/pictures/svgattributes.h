// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/pictures/picturelimits.h"

#include <QRectF>
#include <QSizeF>
#include <QXmlStreamAttributes>

namespace Zel {

/// What the outermost element says about size and section.
struct SvgFrame
{
    explicit SvgFrame(const QXmlStreamAttributes &attributes);

    /// "left top width height" of the section shown.
    QString viewBoxText() const;

    QSizeF size; ///< at 96 dots an inch; empty when the document gives neither size nor section
    QRectF viewBox;
};

/// Chooses the attributes of an element that may stay.
class SvgAttributes
{
public:
    explicit SvgAttributes(const PictureLimits &limits)
        : m_limits(limits)
    {
    }

    struct Kept
    {
        QXmlStreamAttributes attributes;
        QString id;
        QString used;    ///< the id named by a `use`
        QString problem; ///< why the whole document is refused
    };

    Kept keep(const QString &element, const QXmlStreamAttributes &attributes);

private:
    void keepReference(const QString &element, const QString &target, Kept &kept);
    bool isPicture(const QString &target, Kept &kept);

    const PictureLimits m_limits;
    qint64 m_pixels = 0; ///< of all pictures inside the document
};

} // namespace Zel
