// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QHash>
#include <QString>
#include <QStringList>

#include <optional>

namespace ZelWebServiceControls {

/// What a theme's definition says about who can use the theme.
struct ThemeDefinition
{
    /// The version of Studio the theme was made with; empty when the definition does not say.
    QString studioVersion;
    /// The fields asked for that the definition has, by name, each with its text as it stands.
    QHash<QString, QString> fields;
};

/// The most a definition may be: this many bytes of UTF-8, elements this deep inside each other.
constexpr qsizetype MostDefinitionBytes = 8 * 1024 * 1024;
constexpr int MostDefinitionDepth = 256;

/// Reads a definition, an XML document like
///
///     <WIZARD studio_version="3.2.10">
///       <CUSTOMFIELDS><FIELD name="type">video</FIELD></CUSTOMFIELDS>
///     </WIZARD>
///
/// A field is a FIELD directly in a CUSTOMFIELDS directly in the root; its text is all text inside
/// it, that of elements in it included, blanks too. Of two fields with one name the first counts.
/// Elements in a namespace are others than these. A document with another root has neither version
/// nor fields.
///
/// Nothing when the text is no well-formed document from its first character to its last, goes
/// beyond the limits, declares entities or refers in its texts to one it does not have. Nothing
/// from outside is ever read: of a document type that lies elsewhere nothing is known, and in an
/// attribute a reference to an entity of it stays as it stands. Since the text is one of characters
/// already, an encoding that it declares says nothing, and one byte order mark at its start is
/// skipped.
///
/// May be called from any thread.
///
/// @param fieldNames the fields wanted; reading others would only cost time
ZEL_EXPORT std::optional<ThemeDefinition> readThemeDefinition(const QString &xml,
                                                              const QStringList &fieldNames);

} // namespace ZelWebServiceControls
