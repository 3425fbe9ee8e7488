// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
// The pages by which fields of data records are edited, as files of this program.
#include "service/daemon/assetcalls.h"
#include "service/daemon/filesection.h"
#include "service/daemon/handlers.h"

#include <QCryptographicHash>
#include <QDirIterator>
#include <QFile>
#include <QHash>

#include <array>

namespace Zel::Service {

namespace {

struct ComponentFile
{
    QByteArray contentType;
    QByteArray tag;
    QByteArray bytes;
};

struct Form
{
    QLatin1String suffix;
    const char *contentType;
};

constexpr std::array forms{
    Form{QLatin1String(".html"), "text/html; charset=utf-8"},
    Form{QLatin1String(".css"), "text/css; charset=utf-8"},
    Form{QLatin1String(".js"), "text/javascript; charset=utf-8"},
};

QByteArray contentTypeOf(const QString &name)
{
    for (const Form &form : forms) {
        if (name.endsWith(form.suffix))
            return form.contentType;
    }
    return QByteArrayLiteral("application/octet-stream");
}

QHash<QString, ComponentFile> readFiles()
{
    const QString root = QStringLiteral(":/zel/components/");
    QHash<QString, ComponentFile> files;
    QDirIterator found(root, QDir::Files, QDirIterator::Subdirectories);
    while (found.hasNext()) {
        const QString path = found.next();
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly))
            continue;
        const QByteArray bytes = file.readAll();
        const QByteArray tag =
            QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex().left(32);
        files.insert(path.mid(root.size()), {contentTypeOf(path), '"' + tag + '"', bytes});
    }
    return files;
}

/// All files by their path. What is not among them does not exist, however it is written.
const QHash<QString, ComponentFile> &files()
{
    static const QHash<QString, ComponentFile> all = readFiles();
    return all;
}

} // namespace

HttpResponse componentFile(const Call &call)
{
    const QString path = call.parameters.first();
    // Where pages navigate to say that they are done. Whoever shows them does not follow.
    if (path.section(QLatin1Char('/'), -1) == QLatin1String("close"))
        return noContent();
    const auto found = files().constFind(path);
    if (found == files().constEnd())
        throw notFound(QStringLiteral("There is no such component page."));
    HttpResponse response;
    response.headers = {
        {"ETag", found->tag},
        {"Cache-Control", "no-cache"}, // ask each time: the next version may have others
        {"Referrer-Policy", "no-referrer"},
        {"Content-Security-Policy",
         "default-src 'none'; script-src 'self'; style-src 'self'; img-src 'self'; "
         "base-uri 'none'; form-action 'none'; frame-ancestors 'none'"}};
    if (isUnchanged(call.request, found->tag)) {
        response.status = 304;
        return response;
    }
    response.contentType = found->contentType;
    response.body = found->bytes;
    return response;
}

} // namespace Zel::Service
