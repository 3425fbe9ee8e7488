// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/collection.h"

#include <QDateTime>
#include <QString>

#include <memory>

namespace QXSC {

/// One template that a theme uses, by the two keys that name it on the server together.
struct ThemeTemplate
{
    QString templateKey;
    QString templateVersionKey;
    /// Whether a project made from the theme always has it.
    bool required = false;
};

using ThemeTemplatePtr = std::shared_ptr<const ThemeTemplate>;
using ThemeTemplateCollection = Zel::Collection<ThemeTemplatePtr>;
using ThemeTemplateCollectionPtr = std::shared_ptr<const ThemeTemplateCollection>;

/// One theme: what a new project can look like.
struct ThemeRecord
{
    QString guid;
    QString name;
    QString description;
    /// Size of the page it is made for, in pixels.
    qint32 width = 0;
    qint32 height = 0;
    /// Local date-times.
    QDateTime created;
    QDateTime modified;
    /// The definition: an XML document whose root is WIZARD; empty when the theme has none yet.
    QString wizardXml;
    /// Never null in an answer of the service.
    ThemeTemplateCollectionPtr templates;
    /// Where its preview picture can be fetched; empty when it has none.
    QString previewUrl;
};

using ThemeRecordPtr = std::shared_ptr<const ThemeRecord>;
using ThemeCollection = Zel::Collection<ThemeRecordPtr>;
using ThemeCollectionPtr = std::shared_ptr<const ThemeCollection>;

/// One template.
struct TemplateRecord
{
    QString name;
    QString description;
};

using TemplateRecordPtr = std::shared_ptr<const TemplateRecord>;

} // namespace QXSC
