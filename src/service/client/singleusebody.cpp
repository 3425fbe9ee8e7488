// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/client/singleusebody.h"

namespace QXSC {

SingleUseBody::SingleUseBody(const QByteArray &body, QObject *parent)
    : QIODevice(parent)
{
    m_buffer.setData(body);
    m_buffer.open(QIODevice::ReadOnly);
    open(QIODevice::ReadOnly | QIODevice::Unbuffered);
}

bool SingleUseBody::seek(qint64 position)
{
    return position >= m_buffer.pos() && QIODevice::seek(position) && m_buffer.seek(position);
}

qint64 SingleUseBody::readData(char *data, qint64 maximum)
{
    return m_buffer.read(data, maximum);
}

qint64 SingleUseBody::writeData(const char *, qint64)
{
    return -1;
}

} // namespace QXSC
