// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QJsonObject>

namespace ZelTest {

/// A schema of the interface (JSON Schema 2020-12) as the validator reads it (draft 7): references
/// are replaced by what they name, `prefixItems` by the former `items`.
///
/// Objects are closed on the way: what the document says nothing of must not be in an answer,
/// although clients are told to pass over it.
/// @param components the schemas that references name
QJsonObject validatorForm(const QJsonObject &schema, const QJsonObject &components);

} // namespace ZelTest
