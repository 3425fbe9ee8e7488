// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/problem.h"

#include "common/contract/serviceerror.h"

#include <QCoreApplication>

namespace Studio {

namespace {

using QXSC::ServiceError;

QString text(const char *source)
{
    return QCoreApplication::translate("Studio::Problem", source);
}

QString adviceFor(ServiceError::Kind kind)
{
    switch (kind) {
    case ServiceError::Kind::Unreachable:
        return text("Check the server address and your connection, then try again.");
    case ServiceError::Kind::TimedOut:
        return text("The service may be busy. Try again in a moment.");
    case ServiceError::Kind::ConnectionLost:
        return text("What was asked may or may not have been done. Try again.");
    case ServiceError::Kind::BadAnswer:
        return text("Check that the address is the one of the service, then try again.");
    case ServiceError::Kind::SignedOut:
        return text("Sign in again to go on; what is on screen stays.");
    case ServiceError::Kind::Refused:
        return text("Ask the owner of the account for the right to do this.");
    case ServiceError::Kind::NotFound:
        return text("It may have been removed by somebody else. Refresh the list.");
    case ServiceError::Kind::Conflict:
        return text("Refresh to see the present state, then decide again.");
    case ServiceError::Kind::Invalid:
        return text("Correct what was entered and try again.");
    case ServiceError::Kind::TooManyAttempts:
        return text("Wait a little before the next attempt.");
    case ServiceError::Kind::Unavailable:
        return text("The service has trouble of its own. Try again in a moment.");
    }
    return {};
}

/// Where the first sentence ends, -1 when there is no other. A name in quotes may hold anything.
qsizetype firstSentenceEnd(const QString &description)
{
    const QString ending = QStringLiteral(". ");
    qsizetype end = description.indexOf(ending);
    while (end >= 0 && QStringView(description).left(end).count(QLatin1Char('"')) % 2 != 0)
        end = description.indexOf(ending, end + 1);
    return end;
}

Problem describeServiceError(const ServiceError &error)
{
    Problem problem;
    // A service error says what happened in its first sentence and what to do in the others.
    const qsizetype end = firstSentenceEnd(error.description());
    problem.what = end < 0 ? error.description() : error.description().left(end + 1);
    if (problem.what.isEmpty())
        problem.what = text("The service could not do this.");
    problem.advice = end < 0 ? adviceFor(error.kind()) : error.description().mid(end + 2);
    problem.canRetry = error.isTransient();
    problem.isConnection = error.kind() == ServiceError::Kind::Unreachable ||
                           error.kind() == ServiceError::Kind::ConnectionLost;
    // A session without an account gets one by signing in, as no session does.
    problem.needsSignIn = error.kind() == ServiceError::Kind::SignedOut ||
                          error.code() == QLatin1String("no-account");
    QStringList details{QStringLiteral("Error %1 (%2)").arg(error.number()).arg(error.source())};
    if (!error.code().isEmpty() && !error.details().contains(error.code()))
        details << QStringLiteral("Code: %1").arg(error.code());
    if (!error.details().isEmpty())
        details << error.details();
    problem.details = details.join(QLatin1Char('\n'));
    return problem;
}

} // namespace

Problem describeError(const Zel::RuntimeError &error)
{
    if (const auto *serviceError = dynamic_cast<const ServiceError *>(&error))
        return describeServiceError(*serviceError);
    Problem problem;
    problem.what = text("This could not be done: %1")
                       .arg(error.description().isEmpty()
                                ? Zel::RuntimeError::standardDescription(error.number())
                                : error.description());
    problem.advice = text("If this happens again, copy the details and send them to support.");
    problem.details = QStringLiteral("Error %1").arg(error.number());
    if (!error.source().isEmpty())
        problem.details += QStringLiteral(" (%1)").arg(error.source());
    problem.canRetry = true;
    return problem;
}

} // namespace Studio
