// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/contract/serviceclient.h"
#include "common/contract/studioservice.h"
#include "common/network/networkpolicy.h"
#include "service/client/callreport.h"
#include "service/client/serveraddress.h"
#include "service/client/waitobserver.h"

#include <QJsonArray>

#include <memory>
#include <optional>
#include <vector>

namespace QXSC {

class OperationTime;
struct Reply;
struct Request;
class Transport;
class PieceSource;
class UploadFile;
struct UploadTicket;

/// The service contract over HTTP: the object a host creates once, signs in with and hands to every
/// control.
///
/// All operations run on the thread that calls them and return with the answer; see `Transport` for
/// how the waiting is done. A call made while another one waits (from a wait observer) works. What
/// goes wrong is a `ServiceError`; a call is never repeated behind the caller's back where that
/// could do something twice. Calls that change something carry a key by which the service knows
/// them again, or are known by what they bring: those are sent once more when the connection breaks
/// before the answer is there.
///
/// A long list comes page by page and is handed out as a whole, or not at all.
///
/// The token of the session is kept in memory only. It is forgotten at `signOut`, with every new
/// `authenticate`, and when the service says that the session has ended. Calls that need a session
/// fail as SignedOut without going to the network while there is none.
///
/// Needs a QCoreApplication. Use it from one thread. It logs nothing and writes no file.
class ZEL_EXPORT HttpServiceClient : public ServiceClient, public StudioService
{
    Q_OBJECT

public:
    explicit HttpServiceClient(QObject *parent = nullptr);
    /// Gives up what is under way.
    ~HttpServiceClient() override;

    /// Applies from the next call on. `authenticate` sets `useSystemProxy`.
    void setNetworkPolicy(const NetworkPolicy &policy) { m_policy = policy; }

    const NetworkPolicy &networkPolicy() const { return m_policy; }

    /// The server meant by an empty address in `authenticate`, in any form `ServerAddress` reads.
    /// Empty (the default): there is none. A session at another default server is forgotten: its
    /// token is not for whoever answers there now.
    void setDefaultServer(const QString &address);

    QString defaultServer() const { return m_defaultServer; }

    /// Not owned; null takes the observer away. It must stay alive while it is set.
    void setWaitObserver(WaitObserver *observer);

    /// For finding faults: told of every answer of the service on the calling thread, before the
    /// operation that asked returns. It must not throw; calls made from inside it are told of, too.
    /// An empty function (the default) takes it away.
    void setCallObserver(const CallObserver &observer);

    bool isSignedIn() const { return m_session.has_value(); }

    void authenticate(const QString &serverAddress, const QString &userName,
                      const QString &password, const QString &appName, const QString &reserved,
                      bool useProxy, bool reservedFlag, bool &success) override;
    void getAccounts(AccountCollectionPtr &accounts) override;
    void setActiveAccount(const QString &accountNumber, bool &success) override;

    void getProjectList(const QString &projectType, ProjectCollectionPtr &projects) override;
    void isProjectPublished(const QString &guid, const QString &reserved, bool &published) override;

    AssetFolderCollectionPtr GetAssetFolders(qint16 parentId) override;
    void GetFolderAssets(qint16 folderId, const QString &nameFilter, const QString &formats,
                         qint32 first, qint32 count, AssetCollectionPtr &assets) override;
    /// A file goes up piece by piece; after a broken connection it goes on where the service has
    /// got to, for about a quarter of a minute. Only the last step lists the asset.
    QString CreateAsset(const QString &name, const QString &description, qint16 folderId,
                        const AssetFileCollectionPtr &files, const QString &keywords,
                        const QString &reserved,
                        const AssetFileCollectionPtr &dependencies) override;
    qint16 CreateAssetFolder(qint16 parentId, const QString &name) override;
    QString GetFolderPermissions(qint16 folderId) override;
    void DeleteAssetFolder(qint16 folderId) override;
    void DeleteAsset(const QString &guid) override;
    QString GetAssetValue(const QString &guid) override;

    void callListMethod(const QString &applicationKind, const QString &methodName,
                        ThemeCollectionPtr &list) override;
    void getTemplate(const QString &templateKey, const QString &templateVersionKey,
                     TemplateRecordPtr &record) override;

    DataRecordPtr GetThemeDataRecord(const QString &themeGuid) override;
    /// The server of the session; empty without one.
    QString serverUrl() const override;

    double GetDeploymentStatistic(const QString &deploymentGuid, const QDateTime &start,
                                  const QDateTime &end, const QString &name) override;
    qint16 GetUniqueParticipantCount(const QString &deploymentGuid, const QDateTime &start,
                                     const QDateTime &end) override;
    qint16 GetRegistrantCount(const QString &deploymentGuid) override;
    qint16 GetRegisteredParticipantCount(const QString &deploymentGuid, const QDateTime &start,
                                         const QDateTime &end) override;
    qint16 GetRegisteredNonParticipantCount(const QString &deploymentGuid, const QDateTime &start,
                                            const QDateTime &end) override;
    qint16 GetPageHitCountByAttribute(const QString &deploymentGuid, const QDateTime &start,
                                      const QDateTime &end, const QString &attribute,
                                      const QString &comparison, const QString &value) override;
    ParticipantCollectionPtr GetParticipants(const QString &deploymentGuid, const QDateTime &start,
                                             const QDateTime &end) override;
    RegistrantCollectionPtr GetRegistrants(const QString &deploymentGuid, const QDateTime &start,
                                           const QDateTime &end) override;
    PageViewCollectionPtr GetPageViews(const QString &deploymentGuid, const QDateTime &start,
                                       const QDateTime &end) override;
    QuestionCollectionPtr GetQuestions(const QString &deploymentGuid, const QDateTime &start,
                                       const QDateTime &end) override;
    qint16 UpdateQuestion(const QString &questionGuid, const QString &answer,
                          const QString &question, const QString &reserved1,
                          const QString &reserved2) override;
    qint16 SetQuestionStatus(const QString &questionGuid, const QString &status) override;

    PollQuestionCollectionPtr GetPolls(const QString &deploymentGuid) override;
    PollResponseArray GetPollResponses(const QString &deploymentGuid) override;
    SurveyCollectionPtr GetSurveys(const QString &deploymentGuid) override;
    SurveyResponseArray GetSurveyResponses(const QString &deploymentGuid,
                                           const QString &surveyGuid) override;

    QList<ProjectType> projectTypes() override;
    QList<Deployment> deployments(const QString &projectGuid) override;
    /// An empty guid is replaced by a new one. To repeat the call after a lost answer without
    /// making a second project, choose the guid yourself and send it again.
    ProjectRecordPtr createProject(const NewProject &project) override;
    QString assetAddress(const QString &guid) override;
    DataRecordSave saveThemeDataRecord(const QString &themeGuid, const DataRecord &record) override;
    /// Waits five seconds for the service at the most.
    void signOut() override;

private:
    struct Session
    {
        ServerAddress server;
        QByteArray token;
        bool isAtDefaultServer = false;
    };

    Request sessionRequest(const QByteArray &method, const QByteArray &path,
                           const QByteArray &query = QByteArray(),
                           const QByteArray &body = QByteArray()) const;
    /// The same for a call that changes something: the service does it once, however often it
    /// comes.
    Request changeRequest(const QByteArray &method, const QByteArray &path,
                          const QByteArray &body = QByteArray()) const;
    /// Makes a call. Answers nothing when the service refuses it with the code given, which is an
    /// answer where the contract says so; every other failure is thrown.
    std::optional<Reply> ask(const Request &request, QLatin1String refusal = QLatin1String());
    std::optional<Reply> ask(const Request &request, const OperationTime &time,
                             QLatin1String refusal = QLatin1String());
    /// Makes a call, a second time where that is safe and the connection broke.
    Reply send(const Request &request, const OperationTime &time);
    /// Makes the calls that bring all pages of a list, and joins what `read` makes of them.
    template <typename Read>
    auto readList(Request request, Read read, QLatin1String refusal = QLatin1String());

    std::optional<Reply> taken(const Request &request, const Reply &reply,
                               const NetworkPolicy &policy,
                               QLatin1String refusal = QLatin1String());

    /// The call that asks for something of a deployment.
    Request deploymentRequest(const QString &guid, const QByteArray &path,
                              const QByteArray &query) const;
    /// Asks for something of a deployment and reads it from the answer.
    template <typename Read>
    auto readDeployment(const QString &guid, const QByteArray &path, const QByteArray &query,
                        Read read);
    /// 0, or 1 when the service has no such question.
    qint16 putQuestion(const QString &guid, const QByteArray &path, const QJsonObject &body);

    QByteArray assetPath(const QString &guid) const;
    /// `current` is left at the file it came to.
    QString sendUpload(const UploadTicket &ticket,
                       const std::vector<std::unique_ptr<UploadFile>> &files,
                       const UploadFile *&current);
    void sendFile(const UploadTicket &ticket, int position, UploadFile &file);
    /// Returns how much of the file the service has then.
    qint64 sendPiece(const QByteArray &path, qint64 offset,
                     const std::shared_ptr<PieceSource> &piece);
    QString commitUpload(const UploadTicket &ticket, const QJsonArray &checksums,
                         const std::vector<std::unique_ptr<UploadFile>> &files);
    void dropUpload(const UploadTicket &ticket);
    void reportProgress(int percent, const QString &path);

    std::shared_ptr<Transport> m_transport;
    NetworkPolicy m_policy;
    QString m_defaultServer;
    std::optional<Session> m_session;
};

} // namespace QXSC
