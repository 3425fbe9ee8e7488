// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/assetcalls.h"

namespace Zel::Service {

AssetUser assetUserOf(const Call &call)
{
    return {call.session.accountId, call.session.userId, call.session.role};
}

qint64 folderIdOf(const Call &call)
{
    bool ok = false;
    const qint64 id = call.parameters.first().toLongLong(&ok);
    if (!ok || id < 0 || id > AssetFolders::largestId)
        throw notFound(QStringLiteral("There is no such folder."));
    return id;
}

Problem notFound(const QString &what)
{
    return Problem(404, QByteArrayLiteral("not-found"), what);
}

Problem notAllowed(const QString &sentence)
{
    return Problem(403, QByteArrayLiteral("not-allowed"), sentence);
}

void refuseViewers(const Call &call)
{
    if (call.session.role == QLatin1String("viewer"))
        throw notAllowed(QStringLiteral("You may look at this account but not change it."));
}

} // namespace Zel::Service
