// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QStringView>

namespace ZelWebServiceControls {

/// The document around the worksheets of a results workbook, an XML Spreadsheet 2003 text.
///
/// Readers of results take it as it stands, line breaks inside two namespace values included: it is
/// kept byte for byte, with CR LF line ends. The element "<Worksheet/>" stands where the worksheets
/// belong, once.
ZEL_EXPORT QStringView workbookTemplate();

/// The template before and after the place of the worksheets.
ZEL_EXPORT QStringView workbookTemplateHead();
ZEL_EXPORT QStringView workbookTemplateTail();

} // namespace ZelWebServiceControls
