// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QJsonObject>

namespace Zel::Service {

/// The component schemas of the interface by name, from openapi/*.json, in JSON Schema 2020-12.
///
/// What stands there as {"table": [{"column": "guid", "type": "string"}, ...]} becomes the schema
/// of a table: the columns' names once, then rows of one value for each.
ZEL_EXPORT const QJsonObject &componentSchemas();

/// The document without paths and schemas: openapi/document.json.
ZEL_EXPORT QJsonObject documentFrame();

/// {"$ref": "#/components/KIND/NAME"}
QJsonObject reference(const char *kind, const QByteArray &name);

} // namespace Zel::Service
