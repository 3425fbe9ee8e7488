// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCoreApplication>
#include <QSize>

namespace Zel {

struct PictureLimits;

/// The sentences in which a picture is refused.
struct PictureTexts
{
    Q_DECLARE_TR_FUNCTIONS(Zel::PictureLoader)

public:
    static QString unknownForm();
    static QString cutOff();
    static QString damaged();
    /// @param reason of the reader, in its own words; may be empty
    static QString damaged(const QString &reason);
    static QString tooManyBytes(const PictureLimits &limits);
    static QString tooManyPixels(const QSize &size);
    static QString tooManyFrames();
    static QString tooIntricate();
    static QString noSize();
    static QString outOfMemory();
};

} // namespace Zel
