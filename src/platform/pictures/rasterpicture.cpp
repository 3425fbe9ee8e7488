// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/pictures/rasterpicture.h"

#include "platform/pictures/iconentries.h"
#include "platform/pictures/picturesize.h"
#include "platform/pictures/picturestructure.h"
#include "platform/pictures/picturetexts.h"

#include <QBuffer>
#include <QImageReader>

#include <mutex>

namespace Zel {

namespace {

/// Qt's own limit (128 MB unless a program sets another) is below what the limits here allow: 100
/// megapixels of four bytes each. A program that allows more, or everything, keeps its setting.
void allowEnoughMemory()
{
    constexpr int Megabytes = 512;
    static std::once_flag once;
    std::call_once(once, [] {
        const int limit = QImageReader::allocationLimit();
        if (limit > 0 && limit < Megabytes)
            QImageReader::setAllocationLimit(Megabytes);
    });
}

QByteArray formatOf(PictureForm form, const QByteArray &bytes)
{
    switch (form) {
    case PictureForm::Png:
        return "png";
    case PictureForm::Jpeg:
        return "jpeg";
    case PictureForm::Gif:
        return "gif";
    case PictureForm::Bmp:
        return "bmp";
    case PictureForm::Icon:
        return IconEntries(bytes).isCursor() ? "cur" : "ico";
    default:
        return {};
    }
}

/// Whether one of Qt's readers may have a file whose form is not known here. Drawings go through
/// their own gate, and a document is no picture.
bool isWelcome(const QByteArray &format)
{
    return format != "svg" && format != "svgz" && format != "pdf";
}

/// A reader of a damaged file may seek anywhere; QBuffer would write that to the log.
class QuietBuffer : public QBuffer
{
public:
    bool seek(qint64 position) override
    {
        return position >= 0 && position <= size() && QBuffer::seek(position);
    }
};

/// A reader over bytes, set to the picture to show.
class Reader
{
public:
    Reader(const QByteArray &bytes, const PictureLimits &limits, const QSize &target)
        : m_form(formOf(bytes))
    {
        m_info.problem = structureProblem(m_form, bytes, limits);
        if (!m_info.problem.isEmpty())
            return;
        allowEnoughMemory();
        m_buffer.setData(bytes);
        m_buffer.open(QIODevice::ReadOnly);
        m_reader.setDevice(&m_buffer);
        m_reader.setAutoTransform(true);
        const QByteArray format = formatOf(m_form, bytes);
        if (format.isEmpty())
            m_reader.setDecideFormatFromContent(true);
        else
            m_reader.setFormat(format);
        look(bytes, limits, target);
    }

    const PictureInfo &info() const { return m_info; }

    Picture read(const QSize &target)
    {
        const bool isTooLarge =
            !target.isEmpty() &&
            (m_info.size.width() > target.width() || m_info.size.height() > target.height());
        const QSize fitted = isTooLarge ? fittedSize(m_info.size, target) : m_info.size;
        const bool scalesAfterwards = isTooLarge && isScaledFasterAsAWhole();
        if (isTooLarge && !scalesAfterwards)
            m_reader.setScaledSize(isTurned() ? fitted.transposed() : fitted);
        Picture picture;
        if (!m_reader.read(&picture.image) || picture.image.isNull()) {
            picture.image = {};
            picture.problem = PictureTexts::damaged(m_reader.errorString());
        } else if (scalesAfterwards) {
            picture.image =
                picture.image.scaled(fitted, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        }
        return picture;
    }

private:
    void look(const QByteArray &bytes, const PictureLimits &limits, const QSize &target)
    {
        if (!m_reader.canRead()) {
            m_info.problem = m_form == PictureForm::Other ? PictureTexts::unknownForm()
                                                          : PictureTexts::damaged();
            return;
        }
        if (!isWelcome(m_reader.format())) {
            m_info.problem = PictureTexts::unknownForm();
            return;
        }
        if (m_reader.supportsAnimation() && m_form == PictureForm::Other &&
            m_reader.imageCount() > limits.frames) {
            m_info.problem = PictureTexts::tooManyFrames();
            return;
        }
        m_info.size = m_reader.size();
        // Qt tells that a bitmap begins with its first row by a height below zero.
        m_info.size.setHeight(std::abs(m_info.size.height()));
        if (m_form == PictureForm::Icon) {
            const IconEntries entries(bytes);
            const int position = entries.best(target);
            m_info.size = entries.size(position);
            m_reader.jumpToImage(position);
        }
        if (m_info.size.isEmpty())
            m_info.problem = PictureTexts::noSize();
        else if (!isWithin(m_info.size, limits))
            m_info.problem = PictureTexts::tooManyPixels(m_info.size);
        if (!m_info.problem.isEmpty())
            return;
        m_info.format = m_reader.format();
        if (m_info.format.isEmpty())
            m_info.problem = PictureTexts::damaged();
        if (isTurned())
            m_info.size.transpose();
    }

    /// Qt's PNG reader takes a quarter longer when it scales row by row; what it saves is the memory
    /// for the whole picture, which only counts for large ones.
    bool isScaledFasterAsAWhole() const
    {
        constexpr qint64 MostPixels = 4'000'000;
        return m_form == PictureForm::Png &&
               qint64(m_info.size.width()) * m_info.size.height() <= MostPixels;
    }

    bool isTurned() const
    {
        return m_reader.transformation().testFlag(QImageIOHandler::TransformationRotate90);
    }

    PictureForm m_form;
    QuietBuffer m_buffer;
    QImageReader m_reader;
    PictureInfo m_info;
};

} // namespace

Picture loadRaster(const QByteArray &bytes, const PictureLimits &limits, const QSize &target)
{
    Reader reader(bytes, limits, target);
    if (reader.info().isNull())
        return {QImage(), reader.info().problem};
    return reader.read(target);
}

PictureInfo probeRaster(const QByteArray &bytes, const PictureLimits &limits)
{
    return Reader(bytes, limits, {}).info();
}

} // namespace Zel
