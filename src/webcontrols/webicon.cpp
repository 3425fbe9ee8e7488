// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "webcontrols/webicon.h"

#include "webcontrols/pictureplace.h"

#include <QPainter>

namespace ZelWebControls {

void WebIconEngine::paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State)
{
    paintAt(painter, rect, mode, painter->device()->devicePixelRatioF());
}

QPixmap WebIconEngine::pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state)
{
    return scaledPixmap(size, mode, state, 1.0);
}

QPixmap WebIconEngine::scaledPixmap(const QSize &size, QIcon::Mode mode, QIcon::State, qreal scale)
{
    QPixmap pixmap(size);
    pixmap.fill(Qt::transparent);
    pixmap.setDevicePixelRatio(scale);
    QPainter painter(&pixmap);
    const QSize logical = (QSizeF(size) / scale).toSize();
    paintAt(&painter, QRect(QPoint(), logical), mode, scale);
    painter.end();
    pixmap.setDevicePixelRatio(1.0); // whoever asked sets it
    return pixmap;
}

void WebIconEngine::paintAt(QPainter *painter, const QRect &rect, QIcon::Mode mode,
                            qreal ratio) const
{
    switch (m_state->shows) {
    case WebIconState::Shows::Nothing:
        paintPlace(painter, rect);
        break;
    case WebIconState::Shows::Picture:
        paintPicture(painter, rect, m_state->picture, mode == QIcon::Disabled ? 0.5 : 1.0);
        break;
    case WebIconState::Shows::Local:
    case WebIconState::Shows::Failure: {
        const QIcon &icon =
            m_state->shows == WebIconState::Shows::Local ? m_state->local : *m_state->failure;
        if (icon.isNull())
            paintBrokenPlace(painter, rect);
        else
            paintPicture(painter, rect, icon.pixmap(rect.size(), ratio, mode), 1.0);
        break;
    }
    }
}

QSize WebIconEngine::actualSize(const QSize &size, QIcon::Mode, QIcon::State)
{
    return m_state->size->boundedTo(size);
}

QString WebIconEngine::key() const
{
    return QStringLiteral("ZelWebControls::WebIconEngine");
}

QIconEngine *WebIconEngine::clone() const
{
    return new WebIconEngine(m_state);
}

bool WebIconEngine::isNull()
{
    return false;
}

} // namespace ZelWebControls
