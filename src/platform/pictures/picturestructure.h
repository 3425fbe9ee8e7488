// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/pictures/pictureform.h"
#include "platform/pictures/picturelimits.h"

#include <QString>

namespace Zel {

/// Goes through a file from mark to mark, decoding nothing, and says what is wrong: cut off, too
/// many pictures, sizes that cannot be. Empty when all is well. Qt's readers show what they have of
/// a file that is cut off, so this has to be found before.
QString structureProblem(PictureForm form, const QByteArray &bytes, const PictureLimits &limits);

} // namespace Zel
