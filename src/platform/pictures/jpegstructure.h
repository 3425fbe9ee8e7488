// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/pictures/picturelimits.h"

#include <QByteArray>
#include <QString>

namespace Zel {

/// Goes through the segments of a JPEG file and says what is wrong with it; empty when all is well.
///
/// A file whose end mark is missing is cut off. A progressive picture may be sent in any number of
/// scans, each of which goes over all pixels again: a small file with thousands of them would keep
/// a processor busy for minutes.
QString jpegProblem(const QByteArray &bytes, const PictureLimits &limits);

} // namespace Zel
