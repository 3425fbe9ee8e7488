// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/tintedicon.h"

#include "studio/appearance.h"

#include <QApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QSvgRenderer>

#include <memory>

namespace Studio {

namespace {

class TintedIconEngine : public QIconEngine
{
public:
    explicit TintedIconEngine(const QString &path)
        : m_path(path)
        , m_renderer(std::make_shared<QSvgRenderer>(path))
    {
    }

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state) override
    {
        const qreal ratio = painter->device() ? painter->device()->devicePixelRatioF() : 1.0;
        painter->drawPixmap(rect, scaledPixmap(rect.size() * ratio, mode, state, 1.0));
    }

    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        return scaledPixmap(size, mode, state, 1.0);
    }

    QPixmap scaledPixmap(const QSize &size, QIcon::Mode mode, QIcon::State state,
                         qreal scale) override
    {
        Q_UNUSED(scale)
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        m_renderer->render(&painter);
        painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
        painter.fillRect(pixmap.rect(), color(mode, state));
        return pixmap;
    }

    QIconEngine *clone() const override { return new TintedIconEngine(m_path); }

private:
    static QColor color(QIcon::Mode mode, QIcon::State state)
    {
        const QPalette palette = QApplication::palette();
        if (mode == QIcon::Disabled)
            return palette.color(QPalette::Disabled, QPalette::ButtonText);
        if (mode == QIcon::Selected)
            return palette.color(QPalette::HighlightedText);
        if (state == QIcon::On)
            return mixed(palette.color(QPalette::Highlight), palette.color(QPalette::ButtonText),
                         0.15);
        return mixed(palette.color(QPalette::ButtonText), palette.color(QPalette::Window), 0.2);
    }

    QString m_path;
    std::shared_ptr<QSvgRenderer> m_renderer;
};

} // namespace

QIcon tintedIcon(const QString &name)
{
    return QIcon(new TintedIconEngine(QStringLiteral(":/studio/icons/%1.svg").arg(name)));
}

} // namespace Studio
