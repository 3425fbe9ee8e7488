// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/pictures/pictureloader.h"

#include "platform/pictures/gunzip.h"
#include "platform/pictures/metafilepicture.h"
#include "platform/pictures/pictureform.h"
#include "platform/pictures/picturetexts.h"
#include "platform/pictures/rasterpicture.h"
#include "platform/pictures/svgpicture.h"

#include <QFile>
#include <QFileInfo>

namespace Zel {

namespace {

/// The bytes of a picture, or why there are none.
struct Content
{
    QByteArray bytes;
    QString problem;
};

Content readFile(const QString &path, const PictureLimits &limits)
{
    if (!QFileInfo(path).isFile())
        return {{}, PictureTexts::tr("There is no such file.")};
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {{}, PictureTexts::tr("The file cannot be opened: %1.").arg(file.errorString())};
    if (file.size() > limits.bytes)
        return {{}, PictureTexts::tooManyBytes(limits)};
    Content content{file.read(limits.bytes + 1), QString()};
    if (file.error() != QFileDevice::NoError)
        content.problem = PictureTexts::tr("The file cannot be read: %1.").arg(file.errorString());
    return content;
}

Content unpacked(const QByteArray &bytes, const PictureLimits &limits)
{
    if (bytes.isEmpty())
        return {{}, PictureTexts::tr("The file is empty.")};
    if (bytes.size() > limits.bytes)
        return {{}, PictureTexts::tooManyBytes(limits)};
    if (formOf(bytes) != PictureForm::Packed)
        return {bytes, QString()};
    const std::optional<QByteArray> plain = gunzip(bytes, limits.bytes);
    if (!plain)
        return {{}, PictureTexts::damaged()};
    const PictureForm form = formOf(*plain);
    const bool isDrawing =
        form == PictureForm::Svg || form == PictureForm::Wmf || form == PictureForm::Emf;
    return isDrawing ? Content{*plain, QString()} : Content{{}, PictureTexts::unknownForm()};
}

} // namespace

PictureLoader::PictureLoader(const PictureLimits &limits)
    : m_limits(limits)
{
}

Picture PictureLoader::load(const QByteArray &bytes, const QSize &target) const
{
    const Content content = unpacked(bytes, m_limits);
    if (!content.problem.isEmpty())
        return {QImage(), content.problem};
    switch (formOf(content.bytes)) {
    case PictureForm::Svg:
        return loadSvg(content.bytes, m_limits, target);
    case PictureForm::Wmf:
    case PictureForm::Emf:
        return loadMetafile(content.bytes, m_limits, target);
    default:
        return loadRaster(content.bytes, m_limits, target);
    }
}

Picture PictureLoader::loadFile(const QString &path, const QSize &target) const
{
    const Content content = readFile(path, m_limits);
    return content.problem.isEmpty() ? load(content.bytes, target)
                                     : Picture{QImage(), content.problem};
}

PictureInfo PictureLoader::probe(const QByteArray &bytes) const
{
    const Content content = unpacked(bytes, m_limits);
    if (!content.problem.isEmpty())
        return {{}, {}, content.problem};
    switch (formOf(content.bytes)) {
    case PictureForm::Svg:
        return probeSvg(content.bytes, m_limits);
    case PictureForm::Wmf:
    case PictureForm::Emf:
        return probeMetafile(content.bytes, m_limits);
    default:
        return probeRaster(content.bytes, m_limits);
    }
}

PictureInfo PictureLoader::probeFile(const QString &path) const
{
    const Content content = readFile(path, m_limits);
    return content.problem.isEmpty() ? probe(content.bytes) : PictureInfo{{}, {}, content.problem};
}

bool PictureLoader::canRead(const QString &path)
{
    // Every byte is decoded; the small target only keeps the memory for the result small.
    constexpr QSize Small(256, 256);
    return !PictureLoader().loadFile(path, Small).isNull();
}

} // namespace Zel
