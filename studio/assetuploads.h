// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "studio/assetcontrols.h"
#include "studio/dropreader.h"
#include "studio/uploadqueue.h"
#include "studio/uploadstrip.h"

#include <memory>
#include <optional>

class QMimeData;

namespace Studio {

class AssetReasons;
class ErrorCenter;
class InputGate;

/// Brings dropped files onto the batch list and the batch to the service: reads what was dropped,
/// tells in one summary what is left out, saves, and shows in the strip how far it is.
class AssetUploads : public QObject
{
    Q_OBJECT

public:
    AssetUploads(ZelWebServiceControls::AssetManager &manager, const AssetControls &controls,
                 const AssetReasons &reasons, ErrorCenter &errors, QWidget *page);
    ~AssetUploads() override;

    UploadStrip *strip() const { return m_strip; }

    UploadQueue &queue() { return m_queue; }

    /// Why nothing can be dropped just now; empty when it can.
    QString againstDropping() const;
    void drop(const QMimeData &data);
    /// Ends all that is under way, as soon as it can be ended.
    void stop();
    /// Forgets what was dropped and not uploaded.
    void forget();

private:
    void connectParts();
    void takeIn(const DropContents &contents);
    void save();
    void goOn();
    void resume();
    void showRest();
    void beginUpload();
    void endUpload();
    void closed();

    AssetControls m_controls;
    const AssetReasons &m_reasons;
    ErrorCenter &m_errors;
    UploadStrip *m_strip;
    UploadQueue m_queue;
    DropReader m_reader;
    std::unique_ptr<InputGate> m_gate;
    /// What was read while a batch was being saved.
    std::optional<DropContents> m_read;
    /// The folder the batch is meant for.
    QString m_folder;
};

} // namespace Studio
