// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/network/networkpolicy.h"
#include "platform/core/export.h"
#include "platform/pictures/picturelimits.h"

#include <QHash>
#include <QImage>
#include <QObject>
#include <QSize>
#include <QUrl>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace ZelWebControls {

class ImageFetcher;
class ImageMemory;

/// Where the pictures of `WebImageList` and `WebImage` come from: fetches them over http and https,
/// six at a time per server, decodes them off the thread that asked, and remembers them.
///
/// Pictures are kept in memory as they are shown, and on disk only where the host gives a folder.
/// What is remembered is shown again while the server's `Cache-Control` calls it fresh; after that
/// the server is asked whether it has changed. Redirections are followed on the same server, and
/// from http to https on the same host, nowhere else.
///
/// A program normally has one source, `shared()`, to which the host gives its network policy and a
/// folder. Use it from the thread of the user interface.
class ZEL_EXPORT WebImageSource : public QObject
{
    Q_OBJECT

public:
    /// A picture, or a sentence that says why there is none.
    using Taker = std::function<void(const QImage &image, const QString &problem)>;

    explicit WebImageSource(QObject *parent = nullptr);
    /// Gives up what is under way; waits for pictures that are being decoded this moment.
    ~WebImageSource() override;

    /// The source of every list and control that was given no other; made when it is first asked
    /// for, gone with the application object. Null while there is none.
    static WebImageSource *shared();

    /// Proxy, authorities and the longest silence of a fetch; from the next fetch on.
    void setNetworkPolicy(const QXSC::NetworkPolicy &policy);
    /// The longest a fetch may take once it has begun; 30 s unless set, zero or less for no limit.
    void setTimeLimit(std::chrono::milliseconds limit);
    /// What a picture may ask for; 32 MiB and 64 megapixels unless set.
    void setPictureLimits(const Zel::PictureLimits &limits);
    /// Where pictures are kept from one run of the program to the next; empty, as it is unless set,
    /// for nowhere.
    /// @param bytes the most the folder may hold
    void setCacheFolder(const QString &folder, qint64 bytes = qint64(128) * 1024 * 1024);
    /// The most memory for decoded pictures nobody shows at the moment; 64 MiB unless set.
    void setMemoryLimit(qint64 bytes);

    /// A picture that is in memory and still fresh.
    /// @param pixels the room it is scaled into, in pixels of the screen
    std::optional<QImage> remembered(const QUrl &url, const QSize &pixels) const;
    /// Fetches a picture; `taker` is called later, from the event loop, once.
    /// @return a number to cancel by
    quint64 fetch(const QUrl &url, const QSize &pixels, const Taker &taker);
    /// Gives fetches up; their takers are not called any more.
    void cancel(const QList<quint64> &numbers);

    /// How many fetches have been asked for and are neither answered nor given up.
    qsizetype pending() const { return m_waiting.size(); }

    /// Whether an address is one that is fetched: http or https, with a host.
    static bool isFetchable(const QUrl &url);

private:
    void configure();
    void deliver(quint64 number, const QImage &image, const QString &problem);

    struct Waiting
    {
        Taker taker;
        std::shared_ptr<std::atomic<bool>> isCancelled;
    };

    struct Private;
    std::unique_ptr<Private> d;
    QHash<quint64, Waiting> m_waiting;
    quint64 m_last = 0;
};

} // namespace ZelWebControls
