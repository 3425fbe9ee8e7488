// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/client/callfailure.h"

#include "service/client/problem.h"

#include <QCoreApplication>
#include <QLocale>

#include <array>

namespace QXSC {

namespace {

using Kind = ServiceError::Kind;

struct Texts
{
    Q_DECLARE_TR_FUNCTIONS(QXSC::ServiceError)
};

// Sentences ---------------------------------------------------------------------------------------

QString seconds(std::chrono::milliseconds time)
{
    if (time == std::chrono::seconds(1))
        return Texts::tr("1 second");
    return Texts::tr("%1 seconds").arg(QLocale().toString(double(time.count()) / 1000.0, 'g', 6));
}

QString waitSentence(const Reply &reply)
{
    bool isNumber = false;
    const int wait = reply.retryAfter.toInt(&isNumber);
    if (!isNumber || wait <= 0)
        return Texts::tr("Wait a while and try again.");
    if (wait == 1)
        return Texts::tr("Wait 1 second and try again.");
    if (wait <= 120)
        return Texts::tr("Wait %1 seconds and try again.").arg(wait);
    return Texts::tr("Wait %1 minutes and try again.").arg((wait - 1) / 60 + 1);
}

// Failures of the network -------------------------------------------------------------------------

ServiceError error(Kind kind, const QString &sentence, const Request &request, const Reply &reply)
{
    return ServiceError(kind, sentence.arg(request.server.display()), QString(),
                        detailsOf(request, reply));
}

ServiceError givenUp(const Request &request, const Reply &reply, const NetworkPolicy &policy)
{
    const bool silent = reply.ending == Reply::Ending::Silent;
    const QString sentence =
        silent
            ? Texts::tr(
                  "The service at %1 did not answer within %2. Check the connection and try again.")
            : Texts::tr(
                  "The service at %1 was still answering after %2, and the call was given up. Try "
                  "again "
                  "when the connection is faster.");
    const auto limit = silent ? policy.inactivityLimit : policy.callLimit;
    return ServiceError(Kind::TimedOut, sentence.arg(request.server.display(), seconds(limit)),
                        QString(), detailsOf(request, reply));
}

/// Qt reports a proxy that refuses as an unknown network failure, so what the call was allowed to
/// take counts as well.
bool mayBeTheProxy(const Request &request, const Reply &reply, const NetworkPolicy &policy)
{
    const auto code = reply.networkError;
    if (code == QNetworkReply::UnknownNetworkError)
        return policy.useSystemProxy && !request.server.isLoopback();
    return code >= QNetworkReply::ProxyConnectionRefusedError &&
           code <= QNetworkReply::UnknownProxyError;
}

ServiceError networkFailure(const Request &request, const Reply &reply, const NetworkPolicy &policy)
{
    if (mayBeTheProxy(request, reply, policy))
        return error(Kind::Unreachable,
                     Texts::tr("The service at %1 cannot be reached through the proxy. Check the "
                               "connection and the system's proxy settings, and try again."),
                     request, reply);
    switch (reply.networkError) {
    case QNetworkReply::ConnectionRefusedError:
        return error(
            Kind::Unreachable,
            Texts::tr("Nothing answers at %1. Check the server address and that the service is "
                      "running, and try again."),
            request, reply);
    case QNetworkReply::HostNotFoundError:
        return error(Kind::Unreachable,
                     Texts::tr("The server of %1 was not found. Check the server address and the "
                               "connection, and try again."),
                     request, reply);
    case QNetworkReply::SslHandshakeFailedError:
        return error(
            Kind::Unreachable,
            Texts::tr("It is not certain that %1 is the service it claims to be, so nothing was "
                      "sent. Check the server address, or ask those who run the service for the "
                      "certificate to trust."),
            request, reply);
    case QNetworkReply::RemoteHostClosedError:
    case QNetworkReply::ContentReSendError:
        return error(
            Kind::ConnectionLost,
            Texts::tr("The connection to the service at %1 ended before a whole answer was "
                      "there. Try again; if it happens again, check the server address."),
            request, reply);
    case QNetworkReply::ProtocolUnknownError:
    case QNetworkReply::ProtocolInvalidOperationError:
    case QNetworkReply::ProtocolFailure:
        return badAnswer(request, reply, QStringLiteral("it is not HTTP"));
    default:
        return error(
            Kind::Unreachable,
            Texts::tr("The service at %1 cannot be reached. Check the connection and try again."),
            request, reply);
    }
}

// Refusals by the service -------------------------------------------------------------------------

struct KnownCode
{
    QLatin1String code;
    Kind kind;
};

constexpr std::array knownCodes{
    KnownCode{QLatin1String("signed-out"), Kind::SignedOut},
    KnownCode{QLatin1String("bad-credentials"), Kind::Refused},
    KnownCode{QLatin1String("account-refused"), Kind::Refused},
    KnownCode{QLatin1String("no-account"), Kind::Refused},
    KnownCode{QLatin1String("too-many-attempts"), Kind::TooManyAttempts},
    KnownCode{QLatin1String("not-found"), Kind::NotFound},
    KnownCode{QLatin1String("conflict"), Kind::Conflict},
    KnownCode{QLatin1String("not-empty"), Kind::Conflict},
    KnownCode{QLatin1String("checksum"), Kind::Conflict},
    KnownCode{QLatin1String("not-allowed"), Kind::Refused},
    KnownCode{QLatin1String("storage-full"), Kind::Refused},
    KnownCode{QLatin1String("invalid"), Kind::Invalid},
    KnownCode{QLatin1String("key-reused"), Kind::Invalid},
    KnownCode{QLatin1String("invalid-text"), Kind::Invalid},
    KnownCode{QLatin1String("too-large"), Kind::Invalid},
    KnownCode{QLatin1String("bad-json"), Kind::Invalid},
    KnownCode{QLatin1String("no-route"), Kind::BadAnswer},
    KnownCode{QLatin1String("method-not-allowed"), Kind::BadAnswer},
    KnownCode{QLatin1String("internal"), Kind::Unavailable},
    KnownCode{QLatin1String("unavailable"), Kind::Unavailable},
};

/// A refusal with a word of its own that this client does not know yet: the status tells.
Kind kindOfStatus(int status)
{
    switch (status) {
    case 401:
        return Kind::SignedOut;
    case 403:
        return Kind::Refused;
    case 404:
        return Kind::NotFound;
    case 409:
    case 412:
        return Kind::Conflict;
    case 429:
        return Kind::TooManyAttempts;
    default:
        return status >= 500 ? Kind::Unavailable : Kind::Invalid;
    }
}

Kind kindOf(const Problem &problem, int status)
{
    for (const KnownCode &known : knownCodes) {
        if (problem.code == known.code)
            return known.kind;
    }
    if (!problem.code.isEmpty())
        return kindOfStatus(status);
    // Not the service speaks but something before it; what that says of users and objects is not
    // ours, only that it is busy or broken.
    const bool isPassing = status == 429 || status >= 500;
    return isPassing ? kindOfStatus(status) : Kind::BadAnswer;
}

/// What a person is told where the service does not say it better itself.
QString ownSentence(Kind kind, const Problem &problem, const Reply &reply)
{
    switch (kind) {
    case Kind::SignedOut:
        return Texts::tr("Your session at %1 has ended. Sign in again.");
    case Kind::TooManyAttempts:
        return Texts::tr("There were too many attempts at %1.") + QLatin1Char(' ') +
               waitSentence(reply);
    case Kind::Unavailable:
        if (problem.code == QLatin1String("internal"))
            return Texts::tr(
                "The service at %1 failed to do this. Try again; if it fails again, pass the "
                "details to those who run the service.");
        return Texts::tr("The service at %1 cannot answer now. Try again in a moment.");
    case Kind::BadAnswer:
        return Texts::tr(
            "The service at %1 does not know this call. It may be older or newer than this "
            "program.");
    case Kind::NotFound:
        return Texts::tr(
            "The service at %1 has nothing of that name any more. Refresh what is shown.");
    case Kind::Conflict:
        return Texts::tr(
            "The service at %1 holds something else under that name. Refresh what is shown.");
    case Kind::Refused:
        if (problem.code == QLatin1String("no-account"))
            return Texts::tr("No account is chosen at %1. Sign in again and choose one.");
        return Texts::tr("The service at %1 does not let you do this.");
    default:
        return Texts::tr("The service at %1 does not accept this. Check the values and try again.");
    }
}

/// Whether only the service can say what is wrong: which value it does not accept, what exactly is
/// not allowed.
bool isForTheServiceToExplain(Kind kind, const Problem &problem)
{
    return kind == Kind::Invalid || kind == Kind::Conflict ||
           (kind == Kind::Refused && problem.code != QLatin1String("no-account"));
}

ServiceError refusal(const Request &request, const Reply &reply)
{
    const Problem problem = problemOf(reply);
    const Kind kind = kindOf(problem, reply.status);
    if (problem.code.isEmpty() && kind == Kind::BadAnswer)
        return badAnswer(request, reply, QStringLiteral("HTTP status %1").arg(reply.status));
    QString sentence;
    if (isForTheServiceToExplain(kind, problem))
        sentence = tidy(problem.detail, request);
    if (sentence.isEmpty())
        sentence = ownSentence(kind, problem, reply).arg(request.server.display());
    return ServiceError(kind, sentence, tidy(problem.code, request), detailsOf(request, reply));
}

ServiceError redirected(const Request &request, const Reply &reply)
{
    const QUrl target = QUrl::fromEncoded(reply.location);
    return ServiceError(
        Kind::BadAnswer,
        Texts::tr(
            "The server at %1 sends calls on to another address, which is not followed. Check the "
            "server address.")
            .arg(request.server.display()),
        QString(),
        detailsOf(request, reply,
                  QLatin1String("sent on to ") +
                      target.toString(QUrl::RemoveQuery | QUrl::RemoveUserInfo)));
}

} // namespace

QString refusalCode(const Reply &reply)
{
    return problemOf(reply).code;
}

ServiceError failureOf(const Request &request, const Reply &reply, const NetworkPolicy &policy)
{
    switch (reply.ending) {
    case Reply::Ending::Silent:
    case Reply::Ending::Overdue:
        return givenUp(request, reply, policy);
    case Reply::Ending::Failed:
        return networkFailure(request, reply, policy);
    case Reply::Ending::TooLong:
        return badAnswer(request, reply,
                         QStringLiteral("it is longer than %1")
                             .arg(QLocale::c().formattedDataSize(policy.answerLimit)));
    case Reply::Ending::BadCaFile:
        return ServiceError(
            Kind::Invalid,
            Texts::tr("The file of certificate authorities %1 cannot be read or holds "
                      "none. Check the network settings.")
                .arg(policy.caFile));
    case Reply::Ending::Closed:
        return error(Kind::ConnectionLost, Texts::tr("The call of the service at %1 was given up."),
                     request, reply);
    case Reply::Ending::Answered:
        break;
    }
    if (reply.status >= 300 && reply.status < 400)
        return redirected(request, reply);
    if (reply.status >= 400)
        return refusal(request, reply);
    return badAnswer(request, reply, QStringLiteral("HTTP status %1").arg(reply.status));
}

ServiceError badAnswer(const Request &request, const Reply &reply, const QString &problem)
{
    QString what = problem;
    if (reply.ending == Reply::Ending::Answered && !reply.contentType.isEmpty() &&
        !reply.contentType.contains("json"))
        what = QStringLiteral("%1 instead of JSON; %2")
                   .arg(QString::fromLatin1(reply.contentType.left(60)), problem);
    return ServiceError(
        Kind::BadAnswer,
        Texts::tr(
            "The answer from %1 is not one of the service (%2). Check the server address; if it is "
            "right, try again.")
            .arg(request.server.display(), tidy(what, request)),
        QString(), detailsOf(request, reply, what));
}

ServiceError signedOut()
{
    return ServiceError(Kind::SignedOut, Texts::tr("You are not signed in. Sign in first."));
}

} // namespace QXSC
