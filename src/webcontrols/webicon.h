// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QIcon>
#include <QIconEngine>
#include <QPixmap>

#include <memory>

namespace ZelWebControls {

/// What an icon of a `WebImageList` shows at the moment.
struct WebIconState
{
    enum class Shows
    {
        Nothing, ///< not here yet
        Picture,
        Local,
        Failure
    };

    Shows shows = Shows::Nothing;
    QPixmap picture; ///< with the pixel ratio of the screen it was made for
    QIcon local;
    std::shared_ptr<const QIcon> failure; ///< one for the whole list
    std::shared_ptr<const QSize> size;    ///< of the view, one for the whole list
};

/// An icon that changes when its picture arrives: views that have it need only paint again.
class WebIconEngine : public QIconEngine
{
public:
    explicit WebIconEngine(const std::shared_ptr<const WebIconState> &state)
        : m_state(state)
    {
    }

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state) override;
    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override;
    QPixmap scaledPixmap(const QSize &size, QIcon::Mode mode, QIcon::State state,
                         qreal scale) override;
    /// Always that of the view, so that nothing moves when a picture arrives.
    QSize actualSize(const QSize &size, QIcon::Mode mode, QIcon::State state) override;
    QString key() const override;
    QIconEngine *clone() const override;
    bool isNull() override;

private:
    void paintAt(QPainter *painter, const QRect &rect, QIcon::Mode mode, qreal ratio) const;

    std::shared_ptr<const WebIconState> m_state;
};

} // namespace ZelWebControls
