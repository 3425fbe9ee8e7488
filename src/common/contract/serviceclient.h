// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/contract/assetoperations.h"
#include "common/contract/projectoperations.h"
#include "common/contract/serviceerror.h"
#include "common/contract/sessionoperations.h"
#include "common/contract/themeoperations.h"

#include <QObject>

namespace QXSC {

/// The one road to the service. A host creates one, hands it to the `Init` of every control it
/// shows and keeps it alive; controls hold it weakly, so a client that is gone counts as not set.
///
/// Every operation is synchronous: it returns with the answer or throws `ServiceError`. No user
/// input is handled and no timer fires on the calling thread meanwhile.
class ZEL_EXPORT ServiceClient : public QObject,
                                 public SessionOperations,
                                 public ProjectOperations,
                                 public AssetOperations,
                                 public ThemeOperations
{
    Q_OBJECT

public:
    explicit ServiceClient(QObject *parent = nullptr);
    ~ServiceClient() override;

signals:
    /// How far the upload of a file is, 0 to 100; raised on the calling thread during
    /// `CreateAsset`, never going back, 100 once at the end of each file. `filename` is its local
    /// path.
    void CreateAssetFileProgress(qint32 percentComplete, const QString &filename);
};

} // namespace QXSC
