// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/pictures/picturetexts.h"

#include "platform/pictures/picturelimits.h"

#include <QLocale>

namespace Zel {

QString PictureTexts::unknownForm()
{
    return tr("This is not a picture in a form that can be read.");
}

QString PictureTexts::cutOff()
{
    return tr("The picture is cut off: its end is missing.");
}

QString PictureTexts::damaged()
{
    return tr("The picture is damaged.");
}

QString PictureTexts::damaged(const QString &reason)
{
    return reason.isEmpty() ? damaged() : tr("The picture is damaged (%1).").arg(reason);
}

QString PictureTexts::tooManyBytes(const PictureLimits &limits)
{
    return tr("The picture is larger than %1.").arg(QLocale().formattedDataSize(limits.bytes));
}

QString PictureTexts::tooManyPixels(const QSize &size)
{
    return tr("The picture says that it is %1 by %2 pixels large, which is more than can be shown.")
        .arg(size.width())
        .arg(size.height());
}

QString PictureTexts::tooManyFrames()
{
    return tr("The file holds more pictures than can be read.");
}

QString PictureTexts::tooIntricate()
{
    return tr("The picture is too intricate to be drawn.");
}

QString PictureTexts::noSize()
{
    return tr("The picture does not say how large it is.");
}

QString PictureTexts::outOfMemory()
{
    return tr("There is not enough memory for the picture.");
}

} // namespace Zel
