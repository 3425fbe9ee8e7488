// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QStringList>

#include <memory>

namespace ZelTest {

/// A schema (draft 7) that texts are held against.
class JsonSchemaCheck
{
public:
    explicit JsonSchemaCheck(const QJsonObject &schema);
    ~JsonSchemaCheck();

    /// What is wrong with a text, each with a JSON pointer: "/projects/rows/0/3: ...". Also when it
    /// is no JSON, or no UTF-8.
    QStringList faultsOf(const QByteArray &json) const;

private:
    Q_DISABLE_COPY_MOVE(JsonSchemaCheck)

    struct Private;
    const std::unique_ptr<Private> d;
};

} // namespace ZelTest
