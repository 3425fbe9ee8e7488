// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/widgets/control.h"

#include <QIcon>
#include <QPixmap>
#include <QPointer>
#include <QTimer>

namespace ZelWebControls {

class WebImageSource;

/// Shows one picture, fetched by its address or given by the host, in its proportions, as large as
/// there is room but never enlarged.
///
///     auto *preview = new WebImage(this);
///     preview->setUrl("https://server/previews/7.png");
///
/// While a picture is on its way its place is shown, and when it cannot be had the failure picture,
/// with the reason as tool tip and accessible description. In design mode nothing is fetched. To
/// show many pictures use `WebImageList` and a view.
class ZEL_EXPORT WebImage : public Zel::Control
{
    Q_OBJECT
    /// The address of the picture, http or https; empty (the default) for none. Setting it takes
    /// `Picture` away.
    Q_PROPERTY(QString Url READ Url WRITE setUrl STORED false)
    /// A picture of the host's; null (the default) for none. Setting it takes `Url` away.
    Q_PROPERTY(QPixmap Picture READ Picture WRITE setPicture STORED false)

public:
    explicit WebImage(QWidget *parent = nullptr);
    ~WebImage() override;

    QString Url() const { return m_url; }

    void setUrl(const QString &url);

    QPixmap Picture() const { return m_local; }

    void setPicture(const QPixmap &picture);

    /// Where pictures come from; null (the default) for the program's shared source. Applies to the
    /// next address.
    void setSource(WebImageSource *source);
    /// Shown for a picture that cannot be had; a crossed-out frame unless set.
    void setFailurePicture(const QIcon &picture);

    /// Why there is no picture; empty while it is under way, there, or nobody asked for one.
    QString problem() const { return m_problem; }

    bool isLoading() const { return m_fetch != 0; }

    QSize sizeHint() const override;

signals:
    /// The picture of the address is shown.
    void Arrived();
    /// The picture of the address cannot be had; `problem` says why.
    void Failed();

protected:
    void paintEvent(QPaintEvent *event) override;
    bool event(QEvent *event) override;
    void appearanceChanged() override;

private:
    void load();
    void take(const QImage &image, const QString &problem);
    void giveUp();
    void lookAtRoom();
    void describe();
    void forget();
    QSize pixels() const;
    WebImageSource *source() const;

    QPointer<WebImageSource> m_source;
    QPointer<WebImageSource> m_from; ///< of the fetch under way
    QString m_url;
    QPixmap m_local;
    QPixmap m_shown;
    QIcon m_failure;
    QString m_problem;
    QSize m_loadedFor; ///< the room, in pixels of the screen, that was last asked for
    QTimer m_settle;   ///< while a person drags an edge
    quint64 m_fetch = 0;
};

} // namespace ZelWebControls
