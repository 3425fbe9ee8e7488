// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/collection.h"

#include <QString>

#include <memory>

namespace QXSC {

/// What an entry of a data record holds.
struct DataRecordValue
{
    /// The value shown and edited.
    QString text;
    /// For "TEXTASSET", the chosen asset.
    QString guid;
    /// For "CUSTOM", what its page says the value depends on.
    QString assetDependencies;

    bool operator==(const DataRecordValue &) const = default;
};

/// One field of a data record. Only its value is edited.
struct DataRecordEntry
{
    /// Caption of a "CUSTOM" entry's button.
    QString buttonText;
    /// Formats a "TEXTASSET" entry takes, as `AssetOperations::GetFolderAssets` reads them.
    QString ext;
    /// Has no field in a form.
    bool hidden = false;
    /// The caption, and the key of the entry.
    QString label;
    /// For "CUSTOM", the component page, relative to where the service keeps them.
    QString source;
    /// "TEXT", "TEXTAREA", "CHECKBOX", "TEXTASSET", "CUSTOM"; any other has no field in a form.
    QString type;
    DataRecordValue value;
    /// For "CUSTOM", the size of its dialog in pixels; 0 for the usual one.
    qint16 width = 0;
    qint16 height = 0;
};

/// Shared and edited in place: whoever holds the record sees its values change.
using DataRecordEntryPtr = std::shared_ptr<DataRecordEntry>;
using DataRecordEntryCollection = Zel::Collection<DataRecordEntryPtr>;
using DataRecordEntryCollectionPtr = std::shared_ptr<const DataRecordEntryCollection>;

/// The settings that a theme exposes, in the order of their fields.
struct DataRecord
{
    DataRecordEntryCollectionPtr entries;
    /// Grows by one with every save; what the service compares when the record is saved.
    qint64 version = 0;
};

using DataRecordPtr = std::shared_ptr<DataRecord>;

} // namespace QXSC
