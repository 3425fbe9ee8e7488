// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/contract/themerecord.h"
#include "platform/core/export.h"

namespace QXSC {

/// Listing the themes that the active account may use.
class ZEL_EXPORT ThemeOperations
{
public:
    virtual ~ThemeOperations();

    /// The list that a method names. `applicationKind` is "Studio"; `methodName` is one of
    /// "getAccountThemeList_Array" (themes of the active account), "getGlobalThemeList_Array"
    /// (those of every account), "getUserThemeList_Array" (the user's own) and
    /// "getFullThemeList_Array" (all of them). Throws `ServiceError` for another name. Null when
    /// the service answers nothing.
    virtual void callListMethod(const QString &applicationKind, const QString &methodName,
                                ThemeCollectionPtr &list) = 0;
    /// The template that the two keys of a `ThemeTemplate` name; null when there is none.
    virtual void getTemplate(const QString &templateKey, const QString &templateVersionKey,
                             TemplateRecordPtr &record) = 0;
};

} // namespace QXSC
