// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QHash>
#include <QIcon>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QSize>
#include <QString>

#include <memory>

namespace ZelWebControls {

class WebImageSource;
struct WebIconState;

/// A list of pictures under keys, some at hand and some fetched by their addresses, for a view that
/// shows them as large icons.
///
///     m_thumbnails.clear();
///     m_thumbnails.addPicture("1", icon);
///     m_thumbnails.addUrl("2", "https://server/thumbnails/2.png");
///     list->setLargeImages(m_thumbnails.images());
///     list->setLargeIcon(row, m_thumbnails.indexOf("2"));
///
/// Icons change by themselves when their picture arrives; the view then has to be painted again,
/// which `arrived` is for. A picture that cannot be had shows `failurePicture` and counts as
/// arrived. Signals come from the event loop only, never from within a call. What is still under
/// way when the list is cleared or destroyed is given up and never heard of again.
class ZEL_EXPORT WebImageList : public QObject
{
    Q_OBJECT
    /// Shown for a picture that cannot be had; a crossed-out frame unless set.
    Q_PROPERTY(QIcon failurePicture READ failurePicture WRITE setFailurePicture)

public:
    /// The index of a key that is not in the list, and all above it.
    static constexpr int Absent = 65535;

    explicit WebImageList(QObject *parent = nullptr);
    ~WebImageList() override;

    /// Where pictures come from; null (the default) for the program's shared source. Applies to
    /// what is added from then on.
    void setSource(WebImageSource *source);

    /// The size in which a view shows the pictures, in device-independent pixels, and the pixel
    /// ratio of its screen; 96 x 96 and 1 unless set. Pictures keep their proportions and are never
    /// enlarged. Those that are there already are made anew where the room has changed; meanwhile
    /// they are shown as they are.
    void setView(const QSize &size, qreal devicePixelRatio);

    QSize viewSize() const { return *m_size; }

    QIcon failurePicture() const { return *m_failure; }

    void setFailurePicture(const QIcon &picture);

    /// Empties the list and gives up what is under way.
    void clear();
    /// Adds a picture that is at hand. Error 457 when the key is taken, 6 when the list is full
    /// (65,534 pictures).
    void addPicture(const QString &key, const QIcon &picture);
    /// Adds a picture to be fetched over http or https; any other address fails at once. Errors as
    /// for `addPicture`.
    void addUrl(const QString &key, const QString &url);

    int count() const { return int(m_entries.size()); }

    /// Whether every picture is there or has failed.
    bool hasAllArrived() const { return m_pending == 0; }

    /// The pictures in the order of their adding.
    QList<QIcon> images() const;
    /// The position of a key among them, from 1; `Absent` when there is no such key.
    int indexOf(const QString &key) const;
    /// Why the picture of a key is not there; empty while it is under way or there.
    QString problem(const QString &key) const;

signals:
    /// A picture is there, has failed, or has been made anew for another view.
    void arrived(const QString &key);
    /// The last picture that was under way has arrived.
    void allArrived();

private:
    struct Entry
    {
        QString key;
        QString url;
        std::shared_ptr<WebIconState> state;
        QString problem;
        QPointer<WebImageSource> from;
        quint64 fetch = 0;
        bool isPending = false;
    };

    Entry &add(const QString &key);
    bool showRemembered(Entry &entry) const;
    void fetch(int position);
    void take(int position, const QImage &image, const QString &problem);
    void show(Entry &entry, const QImage &image, const QString &problem) const;
    void settle(Entry &entry);
    void loseSource();
    void cancelAll();
    WebImageSource *source() const;
    QSize pixels() const;

    QPointer<WebImageSource> m_source;
    QList<Entry> m_entries;
    QHash<QString, int> m_positions;
    std::shared_ptr<QSize> m_size;
    std::shared_ptr<QIcon> m_failure;
    qreal m_ratio = 1;
    int m_pending = 0;
};

} // namespace ZelWebControls
