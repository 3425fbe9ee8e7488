// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/endurance/rawsession.h"

#include <QCryptographicHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRandomGenerator>

#include <stdexcept>

namespace ZelTest {

namespace {

QByteArray json(const QJsonObject &object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

QByteArray headOf(quint16 port, const QByteArray &method, const QByteArray &target, qint64 length)
{
    return method + ' ' + target + " HTTP/1.1\r\nHost: 127.0.0.1:" + QByteArray::number(port) +
           "\r\nContent-Length: " + QByteArray::number(length) + "\r\n";
}

QByteArray signInBody(const Person &person)
{
    return json({{QStringLiteral("user"), person.user},
                 {QStringLiteral("password"), person.password},
                 {QStringLiteral("appName"), QStringLiteral("Endurance tests")}});
}

} // namespace

RawSession::RawSession(quint16 port, const Person &person, qint64 account)
    : m_port(port)
{
    const HttpReply reply = HttpProbe::request(port, "POST", "/v1/sessions", signInBody(person));
    m_token = reply.json().value(QLatin1String("token")).toString().toLatin1();
    const QByteArray body = json({{QStringLiteral("accountId"), QString::number(account)}});
    if (call("PUT", "/v1/sessions/current/account", body).status != 204)
        throw std::runtime_error(qPrintable(person.user + QLatin1String(" may not sign in")));
}

QByteArray RawSession::signInRequest(quint16 port, const Person &person)
{
    const QByteArray body = signInBody(person);
    return headOf(port, "POST", "/v1/sessions", body.size()) + "\r\n" + body;
}

HttpReply RawSession::call(const QByteArray &method, const QByteArray &target,
                           const QByteArray &body) const
{
    return HttpProbe::request(m_port, method, target, body, {"Authorization: Bearer " + m_token});
}

QByteArray RawSession::head(const QByteArray &method, const QByteArray &target, qint64 length) const
{
    return headOf(m_port, method, target, length) + "Authorization: Bearer " + m_token + "\r\n\r\n";
}

HttpReply RawSession::askForUpload(const QByteArray &name, qint64 size) const
{
    const QJsonObject file{{QStringLiteral("name"), QString::fromUtf8(name)},
                           {QStringLiteral("size"), size}};
    return call("POST", "/v1/uploads",
                json({{QStringLiteral("name"), QString::fromUtf8(name)},
                      {QStringLiteral("detail"), QString()},
                      {QStringLiteral("folderId"), 0},
                      {QStringLiteral("files"), QJsonArray{file}}}));
}

QByteArray RawSession::pathIn(const HttpReply &answer)
{
    return "/v1/uploads/" + answer.json().value(QLatin1String("uploadId")).toString().toLatin1();
}

QByteArray RawSession::reserve(const QByteArray &name, qint64 size) const
{
    const HttpReply answer = askForUpload(name, size);
    if (answer.status != 201)
        throw std::runtime_error("an upload is refused: " + answer.body.toStdString());
    return pathIn(answer);
}

HttpReply RawSession::commit(const QByteArray &upload, const QByteArray &sha256) const
{
    const QJsonArray checksums{QString::fromLatin1(sha256)};
    return call("POST", upload + "/commit", json({{QStringLiteral("checksums"), checksums}}));
}

QByteArrayList RawSession::addressesOf(const QString &guid) const
{
    const QJsonArray files = call("GET", "/v1/assets/" + guid.toLatin1() + "/value")
                                 .json()
                                 .value(QLatin1String("files"))
                                 .toArray();
    QByteArrayList addresses;
    for (const QJsonValue &file : files)
        addresses << file.toObject().value(QLatin1String("value")).toString().toLatin1();
    return addresses;
}

QByteArray projectBody(const QString &guid)
{
    return json({{QStringLiteral("guid"), guid},
                 {QStringLiteral("name"), QStringLiteral("Project ") + guid},
                 {QStringLiteral("typeID"), QStringLiteral("session")},
                 {QStringLiteral("description"), QString()},
                 {QStringLiteral("eventDate"), QJsonValue()}});
}

QByteArray noise(qsizetype size, quint32 seed)
{
    QRandomGenerator random(seed);
    QByteArray bytes(size + 3, Qt::Uninitialized);
    random.fillRange(reinterpret_cast<quint32 *>(bytes.data()), bytes.size() / 4);
    bytes.truncate(size);
    return bytes;
}

QByteArray sha256(const QByteArray &bytes)
{
    return QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex();
}

} // namespace ZelTest
