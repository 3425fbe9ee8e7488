// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/pictures/metafilepicture.h"

#include "platform/pictures/emffile.h"
#include "platform/pictures/emfplayer.h"
#include "platform/pictures/pictureform.h"
#include "platform/pictures/picturesize.h"
#include "platform/pictures/picturetexts.h"
#include "platform/pictures/wmffile.h"
#include "platform/pictures/wmfplayer.h"

#include <QElapsedTimer>

namespace Zel {

namespace {

/// Drawing a picture for this long (milliseconds) is more than anybody waits for.
constexpr qint64 MostTime = 10'000;

PictureLimits limitsInside(PictureLimits limits)
{
    // Images inside a drawing are decoded one at a time, but a drawing may hold thousands.
    limits.pixels = std::min<qint64>(limits.pixels, 16'000'000);
    return limits;
}

QImage paper(const QSize &size)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::white);
    return image;
}

QString playEmf(const EmfFile &file, QImage *image, const PictureLimits &limits)
{
    QElapsedTimer clock;
    clock.start();
    MetafileCanvas canvas(image, file.frame());
    canvas.state().mapping.setScreen(file.screenPixels(), file.screenMillimetres());
    EmfPlayer player(&canvas, limits);
    QString problem;
    file.each([&](quint32 type, QByteArrayView record) {
        player.play(type, record);
        if (clock.elapsed() > MostTime)
            problem = PictureTexts::tooIntricate();
        return problem.isEmpty();
    });
    if (problem.isEmpty() && player.hasSeenPlus() && !canvas.hasDrawn())
        return PictureTexts::tr("The picture is drawn in a way (EMF+) that cannot be shown.");
    return problem;
}

QString playWmf(const WmfFile &file, QImage *image, const PictureLimits &limits)
{
    QElapsedTimer clock;
    clock.start();
    MetafileCanvas canvas(image, QRectF(QPointF(), file.size()));
    MetafileMapping &mapping = canvas.state().mapping;
    mapping.setMode(MetafileMapping::Anisotropic);
    mapping.setViewportExtent({file.size().width(), file.size().height()});
    mapping.setWindowOrigin(file.window().topLeft());
    mapping.setWindowExtent({file.window().width(), file.window().height()});
    WmfPlayer player(&canvas, limits);
    QString problem;
    file.each([&](quint16 function, QByteArrayView record) {
        player.play(function, record);
        if (clock.elapsed() > MostTime)
            problem = PictureTexts::tooIntricate();
        return problem.isEmpty();
    });
    return problem;
}

template <typename File, typename Play>
Picture loadWith(const File &file, Play play, const PictureLimits &limits, const QSize &target)
{
    if (!file.problem().isEmpty())
        return {QImage(), file.problem()};
    QImage image = paper(canvasSize(file.size(), target, limits));
    if (image.isNull())
        return {QImage(), PictureTexts::outOfMemory()};
    const QString problem = play(file, &image, limitsInside(limits));
    return problem.isEmpty() ? Picture{image, QString()} : Picture{QImage(), problem};
}

template <typename File>
PictureInfo probeWith(const File &file, const QByteArray &format, const PictureLimits &limits)
{
    if (!file.problem().isEmpty())
        return {{}, {}, file.problem()};
    return {format, canvasSize(file.size(), {}, limits), QString()};
}

} // namespace

Picture loadMetafile(const QByteArray &bytes, const PictureLimits &limits, const QSize &target)
{
    if (formOf(bytes) == PictureForm::Emf)
        return loadWith(EmfFile(bytes), playEmf, limits, target);
    return loadWith(WmfFile(bytes), playWmf, limits, target);
}

PictureInfo probeMetafile(const QByteArray &bytes, const PictureLimits &limits)
{
    if (formOf(bytes) == PictureForm::Emf)
        return probeWith(EmfFile(bytes), "emf", limits);
    return probeWith(WmfFile(bytes), "wmf", limits);
}

} // namespace Zel
