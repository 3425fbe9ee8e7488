// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCoreApplication>

namespace ZelWebControls {

/// The sentences that say why a picture did not come.
struct WebImageTexts
{
    Q_DECLARE_TR_FUNCTIONS(ZelWebControls::WebImageSource)
};

} // namespace ZelWebControls
