// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "records/web/componentpage.h"

#include "records/web/pageresult.h"
#include "records/web/pagescripts.h"

#include <QAuthenticator>
#include <QCoreApplication>
#include <QInputDialog>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTimer>
#include <QUuid>
#include <QWebEngineLoadingInfo>
#include <QWebEngineNewWindowRequest>
#include <QWebEngineProfile>
#include <QWebEngineScriptCollection>
#include <QWebEngineSettings>
#include <QWebEngineView>

namespace ZelWebServiceControls {

namespace {

/// So many messages of its own a page may show in one use. Without an end to them a page could keep
/// a person from closing it.
constexpr int MostMessages = 3;
/// What a message box can show of a text.
constexpr int LongestMessage = 1000;
/// The largest side of a page that the dialog follows, in pixels; more than any screen has, and
/// little enough to be painted.
constexpr int LargestSide = 8192;

bool sameOrigin(const QUrl &a, const QUrl &b)
{
    const auto port = [](const QUrl &url) {
        return url.port(url.scheme() == QLatin1String("https") ? 443 : 80);
    };
    return a.scheme() == b.scheme() && a.host() == b.host() && port(a) == port(b);
}

QString newToken()
{
    return QUuid::createUuid().toString(QUuid::WithoutBraces);
}

} // namespace

/// Marks that the page waits for a handler of ours, in which it must not be deleted.
class ComponentPage::Waiting
{
public:
    explicit Waiting(ComponentPage &page)
        : m_page(page)
    {
        ++m_page.m_waiting;
    }

    ~Waiting()
    {
        --m_page.m_waiting;
        if (m_page.m_isRetired)
            m_page.disposeWhenQuiet();
    }

    Q_DISABLE_COPY_MOVE(Waiting)

private:
    ComponentPage &m_page;
};

bool isCloseAddress(const QUrl &url)
{
    const QByteArray text = url.toEncoded();
    return text.mid(text.lastIndexOf('/') + 1) == "close";
}

ComponentPage::ComponentPage(const std::shared_ptr<QWebEngineProfile> &profile, const QUrl &address,
                             const QString &style)
    : QWebEnginePage(profile.get(), nullptr)
    , m_address(address)
    , m_token(newToken())
    , m_frameToken(newToken())
    , m_profile(profile)
{
    setLimits();
    addScripts(style);
    listen();
}

ComponentPage::~ComponentPage() = default;

void ComponentPage::setLimits()
{
    QWebEngineSettings *const limits = settings();
    for (const auto attribute :
         {QWebEngineSettings::LocalContentCanAccessFileUrls, QWebEngineSettings::PluginsEnabled,
          QWebEngineSettings::PdfViewerEnabled, QWebEngineSettings::FullScreenSupportEnabled,
          QWebEngineSettings::NavigateOnDropEnabled, QWebEngineSettings::ScreenCaptureEnabled,
          QWebEngineSettings::HyperlinkAuditingEnabled, QWebEngineSettings::DnsPrefetchEnabled})
        limits->setAttribute(attribute, false);
    // Without it the engine tells nothing of a script's wish for a window.
    limits->setAttribute(QWebEngineSettings::JavascriptCanOpenWindows, true);
    // By its error page a frame is found that could not be loaded.
    limits->setAttribute(QWebEngineSettings::ErrorPageEnabled, true);
    limits->setUnknownUrlSchemePolicy(QWebEngineSettings::DisallowUnknownUrlSchemes);
}

void ComponentPage::addScripts(const QString &style)
{
    scripts().insert(componentPageScript(m_token, style));
    scripts().insert(frameWatchScript(m_frameToken));
}

void ComponentPage::listen()
{
    connect(this, &QWebEnginePage::loadingChanged, this, [this](const QWebEngineLoadingInfo &info) {
        if (info.status() == QWebEngineLoadingInfo::LoadFailedStatus)
            emit failed();
        if (info.status() != QWebEngineLoadingInfo::LoadSucceededStatus)
            return;
        m_hasLoaded = true;
        emit loaded();
    });
    connect(this, &QWebEnginePage::renderProcessTerminated, this, [this] { emit crashed(); });
    connect(this, &QWebEnginePage::windowCloseRequested, this, [this] { emit ended(); });
    // Not opening the request cancels it.
    connect(this, &QWebEnginePage::newWindowRequested, this, [this] { emit windowWanted(); });
    // Answered with nothing, or the engine asks again and again.
    const auto refuse = [](QAuthenticator *authenticator) { *authenticator = QAuthenticator(); };
    connect(this, &QWebEnginePage::authenticationRequired, this,
            [refuse](const QUrl &, QAuthenticator *authenticator) { refuse(authenticator); });
    connect(this, &QWebEnginePage::proxyAuthenticationRequired, this,
            [refuse](const QUrl &, QAuthenticator *authenticator) { refuse(authenticator); });
}

void ComponentPage::retire()
{
    m_isRetired = true;
    m_picker = {};
    m_speaker = {};
    disposeWhenQuiet();
}

void ComponentPage::retireNow(QWebEngineView *view)
{
    m_isRetired = true;
    if (!m_waiting)
        return dispose();
    if (view)
        view->setParent(nullptr);
    m_ownView = view;
}

void ComponentPage::disposeWhenQuiet()
{
    if (m_waiting)
        return;
    QTimer::singleShot(0, this, [this] {
        if (!m_waiting) // asked again when that handler ends
            dispose();
    });
}

void ComponentPage::dispose()
{
    const std::shared_ptr<QWebEngineProfile> profile = m_profile;
    delete m_ownView;
    delete this;
}

bool ComponentPage::acceptNavigationRequest(const QUrl &url, NavigationType, bool isMainFrame)
{
    if (m_isRetired)
        return false;
    if (isCloseAddress(url)) {
        emit ended();
        return false;
    }
    if (!isMainFrame || sameOrigin(url, m_address))
        return true;
    // A page that leads away as a whole is not shown. Before anything is there that is a failure;
    // later the page simply stays.
    if (!m_hasLoaded)
        emit failed();
    return false;
}

bool ComponentPage::javaScriptPrompt(const QUrl &securityOrigin, const QString &msg,
                                     const QString &defaultValue, QString *result)
{
    const Waiting waiting(*this);
    if (m_isRetired)
        return false;
    if (msg == m_token) {
        // An empty document is the page's own: the engine asks nobody whether it may go there.
        const bool isEmpty = url().scheme() == QLatin1String("about");
        if (!isEmpty && !sameOrigin(securityOrigin, m_address))
            return false;
        *result = hear(defaultValue);
        return true;
    }
    if (!mayAsk())
        return false;
    bool ok = false;
    const QString answer =
        QInputDialog::getText(QWebEngineView::forPage(this), QString(), msg.left(LongestMessage),
                              QLineEdit::Normal, defaultValue.left(LongestMessage), &ok);
    *result = answer;
    return ok;
}

/// What the dialog's side of the contract in the page says. Returns the answer for its script.
QString ComponentPage::hear(const QString &message)
{
    const QJsonArray parts = QJsonDocument::fromJson(message.toUtf8()).array();
    const QString kind = parts.at(0).toString();
    if (kind == QLatin1String("open") && m_picker) {
        const QJsonArray type = parts.at(1).toArray();
        const Picker picker = m_picker; // stays whole when the use ends meanwhile
        return picker(type.at(0).toString(), type.at(1).toString());
    }
    if (kind == QLatin1String("close"))
        emit ended();
    if (kind == QLatin1String("resize")) {
        const auto side = [&parts](int index) {
            return qRound(qBound(0.0, parts.at(index).toDouble(), double(LargestSide)));
        };
        emit contentResized(QSize(side(1), side(2)), parts.at(3).toBool());
    }
    return {};
}

bool ComponentPage::mayAsk()
{
    return m_speaker && ++m_messages <= MostMessages;
}

void ComponentPage::javaScriptAlert(const QUrl &, const QString &msg)
{
    const Waiting waiting(*this);
    if (m_isRetired || !mayAsk())
        return;
    const Speaker speaker = m_speaker;
    speaker(msg.left(LongestMessage));
}

bool ComponentPage::javaScriptConfirm(const QUrl &securityOrigin, const QString &msg)
{
    const Waiting waiting(*this);
    if (m_isRetired)
        return false;
    // The engine's own question on leaving a page: a component page ends by leaving it.
    static const QString leaving = QCoreApplication::translate(
        "QWebEnginePage", "Are you sure you want to leave this page? Changes that you made may not "
                          "be saved.");
    if (msg == leaving)
        return true;
    return mayAsk() && QWebEnginePage::javaScriptConfirm(securityOrigin, msg.left(LongestMessage));
}

void ComponentPage::javaScriptConsoleMessage(JavaScriptConsoleMessageLevel, const QString &message,
                                             int, const QString &)
{
    // A control does not log: what a page writes goes nowhere.
    if (!m_isRetired && message == m_frameToken)
        emit failed();
}

QStringList ComponentPage::chooseFiles(FileSelectionMode, const QStringList &, const QStringList &)
{
    return {}; // a page gets assets by the picker, not files of this computer
}

} // namespace ZelWebServiceControls
