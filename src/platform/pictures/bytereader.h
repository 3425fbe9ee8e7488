// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QtEndian>

namespace Zel {

/// Reads numbers out of bytes that somebody else wrote. What lies beyond the end reads as zero and
/// is remembered: `isGood` turns false.
class ByteReader
{
public:
    explicit ByteReader(QByteArrayView bytes)
        : m_bytes(bytes)
    {
    }

    bool isGood() const { return m_good; }

    qsizetype size() const { return m_bytes.size(); }

    qsizetype position() const { return m_at; }

    qsizetype left() const { return m_bytes.size() - m_at; }

    void seek(qint64 position)
    {
        if (position < 0 || position > m_bytes.size())
            m_good = false;
        else
            m_at = qsizetype(position);
    }

    void skip(qint64 count) { seek(m_at + count); }

    template <typename Number>
    Number little()
    {
        return read<Number>([](const char *at) { return qFromLittleEndian<Number>(at); });
    }

    template <typename Number>
    Number big()
    {
        return read<Number>([](const char *at) { return qFromBigEndian<Number>(at); });
    }

    quint8 u8() { return little<quint8>(); }

    quint16 u16() { return little<quint16>(); }

    qint16 s16() { return little<qint16>(); }

    quint32 u32() { return little<quint32>(); }

    qint32 s32() { return little<qint32>(); }

    /// The next `count` bytes; fewer, and no longer good, at the end.
    QByteArrayView bytes(qint64 count)
    {
        if (count < 0 || count > left()) {
            m_good = false;
            count = 0;
        }
        const QByteArrayView part = m_bytes.sliced(m_at, qsizetype(count));
        m_at += qsizetype(count);
        return part;
    }

private:
    template <typename Number, typename Convert>
    Number read(Convert convert)
    {
        if (left() < qsizetype(sizeof(Number))) {
            m_good = false;
            m_at = m_bytes.size();
            return Number(0);
        }
        const Number number = convert(m_bytes.data() + m_at);
        m_at += qsizetype(sizeof(Number));
        return number;
    }

    QByteArrayView m_bytes;
    qsizetype m_at = 0;
    bool m_good = true;
};

} // namespace Zel
