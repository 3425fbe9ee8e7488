// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "webcontrols/webimage.h"

#include "webcontrols/graphicinterface.h"
#include "webcontrols/pictureplace.h"
#include "webcontrols/webimagesource.h"
#include "webcontrols/webimagetexts.h"

#include <QPainter>

namespace ZelWebControls {

namespace {

constexpr int SettleMilliseconds = 150;

} // namespace

WebImage::WebImage(QWidget *parent)
    : Zel::Control(parent)
{
    announceAsGraphic(WebImage::staticMetaObject);
    m_settle.setSingleShot(true);
    m_settle.setInterval(SettleMilliseconds);
    connect(&m_settle, &QTimer::timeout, this, &WebImage::load);
    describe();
}

WebImage::~WebImage()
{
    giveUp();
}

void WebImage::setSource(WebImageSource *source)
{
    m_source = source;
}

WebImageSource *WebImage::source() const
{
    return m_source ? m_source.data() : WebImageSource::shared();
}

void WebImage::setFailurePicture(const QIcon &picture)
{
    m_failure = picture;
    update();
}

void WebImage::setUrl(const QString &url)
{
    forget();
    m_url = url;
    if (!url.isEmpty() && mode() == Mode::Run) {
        if (WebImageSource::isFetchable(QUrl(url)))
            load();
        else
            m_problem =
                WebImageTexts::tr("\"%1\" is not an address that pictures are fetched from.")
                    .arg(url.left(200));
    }
    describe();
}

void WebImage::setPicture(const QPixmap &picture)
{
    forget();
    m_local = picture;
    m_shown = picture;
    describe();
}

void WebImage::forget()
{
    giveUp();
    m_settle.stop();
    m_url.clear();
    m_local = QPixmap();
    m_shown = QPixmap();
    m_problem.clear();
    m_loadedFor = QSize();
}

void WebImage::giveUp()
{
    if (m_fetch != 0 && m_from)
        m_from->cancel({m_fetch});
    m_fetch = 0;
}

QSize WebImage::pixels() const
{
    return (QSizeF(size()) * devicePixelRatioF()).toSize().expandedTo({1, 1});
}

void WebImage::load()
{
    giveUp();
    m_loadedFor = pixels();
    m_from = source();
    if (!m_from)
        return;
    if (const std::optional<QImage> image = m_from->remembered(QUrl(m_url), m_loadedFor)) {
        m_shown = QPixmap::fromImage(*image);
        m_shown.setDevicePixelRatio(devicePixelRatioF());
        describe();
        return;
    }
    m_fetch = m_from->fetch(
        QUrl(m_url), m_loadedFor,
        [this](const QImage &image, const QString &problem) { take(image, problem); });
}

void WebImage::take(const QImage &image, const QString &problem)
{
    m_fetch = 0;
    const bool isFirst = m_shown.isNull();
    if (!image.isNull()) {
        m_shown = QPixmap::fromImage(image);
        m_shown.setDevicePixelRatio(devicePixelRatioF());
    } else if (isFirst) {
        m_problem = problem;
    }
    describe();
    // A picture made anew for another room is no news; this may be deleted by who hears of it.
    if (!isFirst)
        return;
    if (image.isNull())
        emit Failed();
    else
        emit Arrived();
}

/// Asks for the picture in its new size, once the size stays for a moment.
void WebImage::lookAtRoom()
{
    const bool hasPicture = !m_url.isEmpty() && m_problem.isEmpty() && mode() == Mode::Run;
    if (hasPicture && !m_loadedFor.isEmpty() && pixels() != m_loadedFor)
        m_settle.start();
}

bool WebImage::event(QEvent *event)
{
    const bool taken = Zel::Control::event(event);
    if (event->type() == QEvent::Resize || event->type() == QEvent::ScreenChangeInternal ||
        event->type() == QEvent::Show)
        lookAtRoom();
    return taken;
}

void WebImage::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    if (!m_shown.isNull())
        paintPicture(&painter, rect(), m_shown, isEnabled() ? 1.0 : 0.5);
    else if (!m_problem.isEmpty() && m_failure.isNull())
        paintBrokenPlace(&painter, rect());
    else if (!m_problem.isEmpty())
        paintPicture(&painter, rect(), m_failure.pixmap(size(), devicePixelRatioF()), 1.0);
    else if (!m_url.isEmpty() || mode() == Mode::Design)
        paintPlace(&painter, rect());
}

void WebImage::appearanceChanged()
{
    Zel::Control::appearanceChanged();
    update();
}

void WebImage::describe()
{
    if (accessibleName().isEmpty())
        setAccessibleName(WebImageTexts::tr("Picture"));
    QString text = m_problem;
    if (m_problem.isEmpty() && m_shown.isNull())
        text = m_url.isEmpty() ? WebImageTexts::tr("No picture") : WebImageTexts::tr("Loading");
    setAccessibleDescription(text);
    setToolTip(m_problem);
    update();
}

QSize WebImage::sizeHint() const
{
    return {160, 120};
}

} // namespace ZelWebControls
