// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QRectF>
#include <QSizeF>
#include <QString>

#include <functional>

namespace Zel {

/// A 16-bit Windows metafile, as a list of records. Layout: [MS-WMF].
class WmfFile
{
public:
    explicit WmfFile(const QByteArray &bytes);

    /// Why the file is refused; empty when every record lies within it and the last one is there.
    QString problem() const { return m_problem; }

    /// The section of the records' coordinates that is the picture.
    QRectF window() const { return m_window; }

    /// The picture's size at 96 dots an inch.
    QSizeF size() const { return m_size; }

    /// Hands out record after record, with its function, until one is answered with false. A record
    /// begins behind its function.
    void each(const std::function<bool(quint16 function, QByteArrayView record)> &take) const;

private:
    QString readPlaceable();
    QString checkRecords();
    void takeWindow();

    QByteArray m_bytes;
    qsizetype m_start = 0; ///< of the first record
    bool m_isPlaceable = false;
    QString m_problem;
    QRectF m_window;
    QSizeF m_size;
};

} // namespace Zel
