// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
// The only file that knows the validator and the reader it works on.
#include "tests/interface/jsonschemacheck.h"

#include <QJsonDocument>

#include <valijson/adapters/rapidjson_adapter.hpp> // before any header of RapidJSON
#include <valijson/schema.hpp>
#include <valijson/schema_parser.hpp>
#include <valijson/validator.hpp>

#include <rapidjson/error/en.h>

#include <stdexcept>

namespace ZelTest {

namespace {

constexpr std::size_t mostFaults = 5;

/// Texts of a wrong encoding are no JSON, so an answer with one is wrong, too.
constexpr unsigned strict = rapidjson::kParseValidateEncodingFlag;

/// From {"<root>", "[rows]", "[0]"} to "/rows/0".
QString pointer(const std::vector<std::string> &context)
{
    QString result;
    for (std::size_t i = 1; i < context.size(); ++i) {
        const QString part = QString::fromStdString(context.at(i));
        result += QLatin1Char('/') + part.mid(1, part.size() - 2);
    }
    return result.isEmpty() ? QStringLiteral("/") : result;
}

} // namespace

struct JsonSchemaCheck::Private
{
    valijson::Schema schema;
};

JsonSchemaCheck::JsonSchemaCheck(const QJsonObject &schema)
    : d(std::make_unique<Private>())
{
    rapidjson::Document document;
    document.Parse(QJsonDocument(schema).toJson().constData());
    if (document.HasParseError())
        throw std::logic_error("a schema is no JSON");
    valijson::SchemaParser parser(valijson::SchemaParser::kDraft7);
    parser.populateSchema(valijson::adapters::RapidJsonAdapter(document), d->schema);
}

JsonSchemaCheck::~JsonSchemaCheck() = default;

QStringList JsonSchemaCheck::faultsOf(const QByteArray &json) const
{
    rapidjson::Document document;
    document.Parse<strict>(json.constData(), static_cast<std::size_t>(json.size()));
    if (document.HasParseError())
        return {QStringLiteral("/: no JSON at byte %1: %2")
                    .arg(document.GetErrorOffset())
                    .arg(QLatin1String(rapidjson::GetParseError_En(document.GetParseError())))};
    const valijson::adapters::RapidJsonAdapter adapter(document);
    // Most texts are right; naming the places costs much more than seeing that. What a validator
    // keeps are the expressions it has compiled, which belong to no schema.
    thread_local valijson::Validator quick(valijson::Validator::kStrongTypes);
    if (quick.validate(d->schema, adapter, nullptr))
        return {};
    valijson::Validator thorough(valijson::Validator::kStrongTypes);
    valijson::ValidationResults results;
    thorough.validate(d->schema, adapter, &results);
    QStringList faults;
    for (const auto &error : results) {
        faults << pointer(error.context) + QLatin1String(": ") +
                      QString::fromStdString(error.description);
        if (results.numErrors() > mostFaults && faults.size() == int(mostFaults))
            break;
    }
    return faults;
}

} // namespace ZelTest
