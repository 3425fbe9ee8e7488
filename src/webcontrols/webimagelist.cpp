// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "webcontrols/webimagelist.h"

#include "platform/core/runtimeerror.h"
#include "webcontrols/webicon.h"
#include "webcontrols/webimagesource.h"
#include "webcontrols/webimagetexts.h"

namespace ZelWebControls {

namespace {

QString endedText()
{
    return WebImageTexts::tr("The program does not fetch pictures any more.");
}

} // namespace

WebImageList::WebImageList(QObject *parent)
    : QObject(parent)
    , m_size(std::make_shared<QSize>(96, 96))
    , m_failure(std::make_shared<QIcon>())
{
}

WebImageList::~WebImageList()
{
    cancelAll();
}

void WebImageList::setSource(WebImageSource *source)
{
    m_source = source;
}

WebImageSource *WebImageList::source() const
{
    return m_source ? m_source.data() : WebImageSource::shared();
}

QSize WebImageList::pixels() const
{
    return (QSizeF(*m_size) * m_ratio).toSize().expandedTo({1, 1});
}

void WebImageList::setView(const QSize &size, qreal devicePixelRatio)
{
    const QSize former = pixels();
    *m_size = size;
    m_ratio = devicePixelRatio;
    if (pixels() == former)
        return;
    for (int position = 0; position < count(); ++position) {
        const Entry &entry = m_entries[position];
        if (entry.url.isEmpty() || !entry.problem.isEmpty())
            continue;
        if (entry.isPending || !showRemembered(m_entries[position]))
            fetch(position);
    }
}

void WebImageList::setFailurePicture(const QIcon &picture)
{
    *m_failure = picture;
}

void WebImageList::clear()
{
    cancelAll();
    m_entries.clear();
    m_positions.clear();
    m_pending = 0;
}

void WebImageList::cancelAll()
{
    QHash<WebImageSource *, QList<quint64>> fetches;
    for (const Entry &entry : std::as_const(m_entries)) {
        if (entry.fetch != 0 && entry.from)
            fetches[entry.from] << entry.fetch;
    }
    for (auto it = fetches.cbegin(); it != fetches.cend(); ++it)
        it.key()->cancel(it.value());
}

WebImageList::Entry &WebImageList::add(const QString &key)
{
    if (m_positions.contains(key))
        throw Zel::RuntimeError(Zel::RuntimeError::KeyInUse);
    if (count() >= Absent - 1)
        throw Zel::RuntimeError(Zel::RuntimeError::Overflow);
    m_positions.insert(key, count());
    Entry entry;
    entry.key = key;
    entry.state = std::make_shared<WebIconState>();
    entry.state->failure = m_failure;
    entry.state->size = m_size;
    m_entries << entry;
    return m_entries.last();
}

void WebImageList::addPicture(const QString &key, const QIcon &picture)
{
    Entry &entry = add(key);
    entry.state->local = picture;
    entry.state->shows = WebIconState::Shows::Local;
}

void WebImageList::addUrl(const QString &key, const QString &url)
{
    Entry &entry = add(key);
    entry.url = url;
    if (!WebImageSource::isFetchable(QUrl(url))) {
        show(entry, QImage(),
             WebImageTexts::tr("\"%1\" is not an address that pictures are fetched from.")
                 .arg(url.left(200)));
        return;
    }
    if (showRemembered(entry))
        return;
    if (!source()) {
        show(entry, QImage(), endedText());
        return;
    }
    entry.isPending = true;
    ++m_pending;
    fetch(count() - 1);
}

bool WebImageList::showRemembered(Entry &entry) const
{
    const std::optional<QImage> image =
        source() ? source()->remembered(QUrl(entry.url), pixels()) : std::nullopt;
    if (image)
        show(entry, *image, QString());
    return image.has_value();
}

void WebImageList::fetch(int position)
{
    Entry &entry = m_entries[position];
    if (entry.fetch != 0 && entry.from)
        entry.from->cancel({entry.fetch});
    entry.fetch = 0;
    entry.from = source();
    if (!entry.from)
        return;
    connect(entry.from, &QObject::destroyed, this, &WebImageList::loseSource, Qt::UniqueConnection);
    entry.fetch = entry.from->fetch(QUrl(entry.url), pixels(),
                                    [this, position](const QImage &image, const QString &problem) {
                                        take(position, image, problem);
                                    });
}

void WebImageList::take(int position, const QImage &image, const QString &problem)
{
    Entry &entry = m_entries[position];
    entry.fetch = 0;
    // One that is shown already stays, should it be out of reach when the view changes.
    if (entry.isPending || !image.isNull())
        show(entry, image, problem);
    settle(entry);
}

void WebImageList::show(Entry &entry, const QImage &image, const QString &problem) const
{
    entry.problem = problem;
    if (image.isNull()) {
        entry.state->shows = WebIconState::Shows::Failure;
        return;
    }
    QPixmap picture = QPixmap::fromImage(image);
    picture.setDevicePixelRatio(m_ratio);
    entry.state->picture = picture;
    entry.state->shows = WebIconState::Shows::Picture;
}

void WebImageList::settle(Entry &entry)
{
    const QString key = entry.key;
    const bool isLast = entry.isPending && m_pending == 1;
    if (entry.isPending) {
        entry.isPending = false;
        --m_pending;
    }
    // Whoever hears of it may clear or delete the list.
    const QPointer<WebImageList> self(this);
    emit arrived(key);
    if (self && isLast && hasAllArrived())
        emit allArrived();
}

void WebImageList::loseSource()
{
    const QPointer<WebImageList> self(this);
    for (int position = 0; self && position < count(); ++position) {
        if (m_entries[position].isPending && !m_entries[position].from)
            take(position, QImage(), endedText());
    }
}

QList<QIcon> WebImageList::images() const
{
    QList<QIcon> images;
    images.reserve(m_entries.size());
    for (const Entry &entry : m_entries)
        images << QIcon(new WebIconEngine(entry.state));
    return images;
}

int WebImageList::indexOf(const QString &key) const
{
    const auto found = m_positions.constFind(key);
    return found == m_positions.cend() ? Absent : *found + 1;
}

QString WebImageList::problem(const QString &key) const
{
    const auto found = m_positions.constFind(key);
    return found == m_positions.cend() ? QString() : m_entries[*found].problem;
}

} // namespace ZelWebControls
