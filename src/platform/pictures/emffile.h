// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QRectF>
#include <QSizeF>
#include <QString>

#include <functional>

namespace Zel {

/// An enhanced metafile, as a list of records.
///
/// Layout: [MS-EMF]. Whether the numbers inside each record agree with its length is checked by
/// libuemf.
class EmfFile
{
public:
    explicit EmfFile(const QByteArray &bytes);

    /// Why the file is refused; empty when all of it is sound.
    QString problem() const { return m_problem; }

    /// The picture's section of the screen it was recorded for, in pixels.
    QRectF frame() const { return m_frame; }

    /// The picture's size at 96 dots an inch.
    QSizeF size() const { return m_size; }

    QSizeF screenPixels() const { return m_pixels; }

    QSizeF screenMillimetres() const { return m_millimetres; }

    /// Hands out record after record, with its type, until one is answered with false.
    void each(const std::function<bool(quint32 type, QByteArrayView record)> &take) const;

private:
    QString readHeader();
    QString checkRecords() const;

    QByteArray m_bytes;
    QString m_problem;
    QRectF m_frame;
    QSizeF m_size;
    QSizeF m_pixels;
    QSizeF m_millimetres;
};

} // namespace Zel
