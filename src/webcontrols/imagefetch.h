// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/network/networkroads.h"
#include "webcontrols/imagejob.h"

#include <QNetworkReply>
#include <QTimer>

namespace ZelWebControls {

/// One request for a picture and what comes of it. Emits `ended` once, also when it is aborted.
class ImageFetch : public QObject
{
    Q_OBJECT

public:
    enum class Ending
    {
        Bytes,     ///< the picture came
        Unchanged, ///< the one in memory is still the server's
        Moved,     ///< it is elsewhere
        Failed
    };

    /// @param known what is known of the picture in memory, to ask whether it has changed; null for
    /// none
    ImageFetch(const ImageJob &job, const ImageSettings &settings, const ImageValidity *known,
               QObject *parent);

    /// @param road null when the policy cannot be kept
    void begin(const QXSC::NetworkRoads::Road *road);
    void abort();

    const ImageJob &job() const { return m_job; }

    Ending ending() const { return m_ending; }

    const QByteArray &bytes() const { return m_bytes; }

    const ImageValidity &validity() const { return m_validity; }

    QUrl target() const { return m_target; }

    QString problem() const { return m_problem; }

signals:
    void ended(ZelWebControls::ImageFetch *fetch);

private:
    QNetworkRequest request(const QXSC::NetworkRoads::Road &road) const;
    void readHead();
    void readBody();
    void readEnd();
    void giveUp(const QString &problem);
    void end(Ending ending, const QString &problem = QString());

    const ImageJob m_job;
    const ImageSettings m_settings;
    const std::optional<ImageValidity> m_known;
    QNetworkReply *m_reply = nullptr;
    QTimer m_clock;
    QByteArray m_bytes;
    ImageValidity m_validity;
    QUrl m_target;
    QString m_problem;
    Ending m_ending = Ending::Failed;
    bool m_hasEnded = false;
};

} // namespace ZelWebControls
