// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QBuffer>

namespace QXSC {

/// A request body that can be read once only.
///
/// Qt sends any request again by itself when a connection closes before the answer, a POST too. It
/// rewinds the body for that; a body that will not be rewound turns the second sending into an
/// error, so the caller learns that the answer was lost and decides.
class SingleUseBody : public QIODevice
{
    Q_OBJECT

public:
    explicit SingleUseBody(const QByteArray &body, QObject *parent = nullptr);

    qint64 size() const override { return m_buffer.size(); }

    bool atEnd() const override { return m_buffer.atEnd(); }

    bool seek(qint64 position) override;

protected:
    qint64 readData(char *data, qint64 maximum) override;
    qint64 writeData(const char *data, qint64 length) override;

private:
    QBuffer m_buffer;
};

} // namespace QXSC
