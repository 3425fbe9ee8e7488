// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/sampleworkspace.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace Studio {

namespace {

QString accountsNote(qsizetype accounts)
{
    if (accounts == 0)
        return QCoreApplication::translate("Studio::SamplePerson", "no account yet");
    if (accounts == 1)
        return QCoreApplication::translate("Studio::SamplePerson", "1 account");
    return QCoreApplication::translate("Studio::SamplePerson", "%1 accounts").arg(accounts);
}

} // namespace

QString sampleFolder()
{
    const QString installed =
        QCoreApplication::applicationDirPath() + QStringLiteral("/../share/zel-studio/workspace");
    for (const QString &folder : {installed, QStringLiteral(ZEL_SAMPLES "/workspace")}) {
        if (QFileInfo(folder).isDir())
            return QFileInfo(folder).canonicalFilePath();
    }
    return {};
}

QList<SamplePerson> samplePeople(const QString &folder)
{
    QFile file(folder + QStringLiteral("/people.json"));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll());
    QList<SamplePerson> people;
    const QJsonArray entries = document.isArray()
                                   ? document.array()
                                   : document.object().value(QStringLiteral("people")).toArray();
    for (const QJsonValue &value : entries) {
        const QJsonObject person = value.toObject();
        people << SamplePerson{
            person.value(QStringLiteral("user")).toString(),
            person.value(QStringLiteral("displayName")).toString(),
            person.value(QStringLiteral("password")).toString(),
            accountsNote(person.value(QStringLiteral("accounts")).toArray().size())};
    }
    return people;
}

} // namespace Studio
