// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QList>
#include <QMap>
#include <QMetaType>
#include <QStringList>

#include <map>
#include <memory>
#include <mutex>
#include <utility>

namespace ZelTest {

class JsonSchemaCheck;

/// A call with its answer.
struct CheckedCall
{
    QByteArray method;
    QByteArray path;        ///< without the query
    QByteArray query;       ///< without "?"
    QByteArray requestBody; ///< empty for none
    int status = 0;
    QList<std::pair<QByteArray, QByteArray>> headers; ///< of the answer
    QByteArray body;                                  ///< of the answer
};

/// Holds calls against the interface as the service publishes it: status, type, headers and body of
/// every answer, and parameters and body of every request that was not refused. May be used by
/// several threads.
class InterfaceCheck
{
public:
    /// Against the document of the service of this build.
    InterfaceCheck();
    explicit InterfaceCheck(const QJsonObject &document);
    ~InterfaceCheck();

    /// What is wrong with a call, a line for each fault; nothing when it is as it should be.
    QStringList faultsOf(const CheckedCall &call);

private:
    Q_DISABLE_COPY_MOVE(InterfaceCheck)

    QJsonObject pathItem(const QByteArray &path) const;
    QStringList answerFaults(const QJsonObject &operation, const CheckedCall &call);
    QStringList bodyFaults(const QJsonObject &response, const CheckedCall &call);
    QStringList headerFaults(const QJsonObject &response, const CheckedCall &call);
    QStringList queryFaults(const QJsonObject &operation, const CheckedCall &call);
    bool fits(const QJsonObject &place, const QByteArray &text);
    QStringList requestFaults(const QJsonObject &operation, const CheckedCall &call);
    QStringList faultsAgainst(const QJsonObject &schema, const QByteArray &json);
    QJsonObject resolved(const QJsonObject &object) const;

    const QJsonObject m_document;
    std::mutex m_mutex;
    std::map<QByteArray, std::unique_ptr<JsonSchemaCheck>> m_schemas; ///< by their text
};

} // namespace ZelTest

Q_DECLARE_METATYPE(ZelTest::CheckedCall)
