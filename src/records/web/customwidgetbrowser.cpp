// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "records/web/customwidgetbrowser.h"

#include "platform/widgets/messageboxes.h"
#include "platform/widgets/twips.h"
#include "platform/widgets/twipsgeometry.h"
#include "records/clsforward.h"
#include "records/textassetwidget.h"
#include "records/web/componentpage.h"
#include "records/web/pageresult.h"
#include "records/web/pagescripts.h"

#include <QWebEngineProfile>
#include <QWebEngineView>

#include <chrono>

using namespace std::chrono_literals;

namespace ZelWebServiceControls {

namespace {

/// What lies below the page in the dialog. Twips.
constexpr double MarginBelow = 300;

/// How long a page that closes has to tell its result.
constexpr auto Patience = 5s;

QUrl addressOf(const QString &text)
{
    const QUrl url(text + QStringLiteral("?stylesheet=studio.css"), QUrl::TolerantMode);
    const bool isWeb =
        url.scheme() == QLatin1String("http") || url.scheme() == QLatin1String("https");
    // For the engine an address without a host is no navigation at all: it would tell nothing.
    return url.isValid() && isWeb && !url.host().isEmpty() ? url : QUrl();
}

} // namespace

CustomWidgetBrowser::CustomWidgetBrowser(QWidget *parent)
    : ComponentDialog(parent)
    , m_profile(std::make_shared<QWebEngineProfile>()) // without a name: nothing is kept on disk
    , m_view(new QWebEngineView(this))
    , m_assetWidget(new TextAssetWidget(this))
    , m_forward(new clsForward(this))
{
    build();
}

CustomWidgetBrowser::~CustomWidgetBrowser()
{
    ++m_use;
    // Pages go before the profile, which the last of them keeps.
    dropPage();
    const QPointer<QWebEngineView> view = m_view;
    for (const QPointer<ComponentPage> &page : std::as_const(m_formerPages)) {
        if (page)
            page->retireNow(view);
    }
    if (view && view->parent() == this)
        delete view;
}

void CustomWidgetBrowser::build()
{
    setWindowFlag(Qt::WindowMaximizeButtonHint);
    m_view->setObjectName(QStringLiteral("WebBrowser1"));
    m_view->setContextMenuPolicy(Qt::NoContextMenu);
    m_assetWidget->setObjectName(QStringLiteral("assetWidget"));
    m_assetWidget->hide();
    m_forward->Set_Destination(this, QStringLiteral("ResizeCallback"));
    m_patience.setSingleShot(true);
    connect(&m_patience, &QTimer::timeout, this, [this] {
        endCancelled(tr("The page did not answer. The value is kept as it was."), windowTitle());
    });
}

void CustomWidgetBrowser::ShowModalDialog(QXSC::ServiceClient *qxs, const QString &URL,
                                          const QString &dialogLabel, const QString &m_properties,
                                          const QString &m_assetDependencies)
{
    ++m_use;
    m_patience.stop();
    m_qxs = qxs;
    m_value = m_properties;
    m_dependencies = m_assetDependencies;
    m_returnCode = 2;
    m_navigationFailed = false;
    m_resizedByPage = false;
    m_contentSize.reset();
    m_assetWidget->setValue(QString());
    m_assetWidget->setGuid(QString());
    setWindowTitle(QStringLiteral("  ") + dialogLabel);
    m_view->setAccessibleName(dialogLabel);
    m_view->show();
    layOutPage();
    openPage(addressOf(URL));
}

QString CustomWidgetBrowser::GetValue()
{
    return m_value;
}

QString CustomWidgetBrowser::getAssetDependencies()
{
    return m_dependencies;
}

QVariant CustomWidgetBrowser::parseReturn(const QVariant &val)
{
    QVariantList elements;
    if (val.typeId() == QMetaType::QVariantList) {
        elements = val.toList();
    } else if (val.typeId() == QMetaType::QVariantMap) {
        const QVariantMap members = val.toMap();
        const int length = members.value(QStringLiteral("length")).toInt();
        for (int i = 0; i < std::min(length, MostResultElements); ++i)
            elements << members.value(QString::number(i));
    }
    if (elements.isEmpty())
        return val;
    for (QVariant &element : elements)
        element = parseReturn(element);
    return elements;
}

template <typename Signal, typename Step>
void CustomWidgetBrowser::onPage(Signal signal, Step step)
{
    // Queued: the engine is not to be called back while it calls.
    connect(
        m_page, signal, this,
        [this, step, use = m_use](const auto &...arguments) {
            if (use == m_use)
                (this->*step)(arguments...);
        },
        Qt::QueuedConnection);
}

void CustomWidgetBrowser::askPage(const QString &script,
                                  const std::function<void(const QString &)> &step)
{
    // The answer of a page that is dropped comes from its destructor, when this may be gone.
    m_page->runJavaScript(script, QWebEngineScript::MainWorld,
                          [self = QPointer(this), step, use = m_use](const QVariant &answer) {
                              if (!self || use != self->m_use)
                                  return;
                              QTimer::singleShot(0, self, [self, step, use, answer] {
                                  if (use == self->m_use)
                                      step(answer.toString());
                              });
                          });
}

void CustomWidgetBrowser::openPage(const QUrl &address)
{
    dropPage();
    if (address.isEmpty()) {
        QTimer::singleShot(0, this, [this, use = m_use] {
            if (use == m_use)
                navigationError();
        });
        return;
    }
    m_page = new ComponentPage(m_profile, address, rootStyle(*this));
    m_view->setPage(m_page); // never deletes the one before
    m_page->setPicker(
        [this](const QString &kind, const QString &text) { return pickAsset(kind, text); });
    m_page->setSpeaker([this](const QString &text) { Zel::informUser(this, text, windowTitle()); });
    onPage(&ComponentPage::loaded, &CustomWidgetBrowser::pageLoaded);
    onPage(&ComponentPage::failed, &CustomWidgetBrowser::navigationError);
    onPage(&ComponentPage::ended, &CustomWidgetBrowser::endWithResult);
    onPage(&ComponentPage::contentResized, &CustomWidgetBrowser::pageResized);
    onPage(&ComponentPage::windowWanted, &CustomWidgetBrowser::pickForWindow);
    onPage(&ComponentPage::crashed, &CustomWidgetBrowser::pageCrashed);
    m_page->open();
}

void CustomWidgetBrowser::dropPage()
{
    m_formerPages.removeIf([](const QPointer<ComponentPage> &page) { return !page; });
    if (!m_page)
        return;
    m_page->retire();
    m_formerPages << m_page;
    m_page = nullptr;
}

void CustomWidgetBrowser::done(int result)
{
    ++m_use;
    m_patience.stop();
    dropPage();
    ComponentDialog::done(result);
}

void CustomWidgetBrowser::pageLoaded()
{
    m_view->setFocus();
    m_sizeWhenLoaded = m_view->size();
    QString script = dialogCall(QStringLiteral("attach()")) + u';';
    if (!m_navigationFailed)
        script += QStringLiteral("try { window.external_load(%1) } catch (e) {}")
                      .arg(scriptText(m_value));
    m_page->runJavaScript(script, QWebEngineScript::MainWorld);
}

void CustomWidgetBrowser::pageResized(const QSize &size, bool byWindow)
{
    // A fast page is complete before it has heard of the size that the dialog was opened with.
    if (byWindow && m_view->size() == m_sizeWhenLoaded)
        return;
    m_contentSize = size;
    m_forward->My_Default_Method();
}

void CustomWidgetBrowser::ResizeCallback()
{
    m_resizedByPage = true;
    if (m_contentSize)
        fitTo(*std::exchange(m_contentSize, std::nullopt));
    else if (m_page) // called by somebody else: the page tells its size and calls again
        m_page->runJavaScript(dialogCall(QStringLiteral("resized()")), QWebEngineScript::MainWorld);
}

void CustomWidgetBrowser::fitTo(const QSize &content)
{
    const int dpi = Zel::logicalDpi(this);
    const double zoom = m_page ? m_page->zoomFactor() : 1;
    const double width = Zel::twipsFromPixels(content.width() * zoom, dpi);
    const double height = Zel::twipsFromPixels(content.height() * zoom, dpi) + MarginBelow;
    resize(Zel::pixelsFromTwips(width, dpi), Zel::pixelsFromTwips(height, dpi));
}

void CustomWidgetBrowser::resizeEvent(QResizeEvent *event)
{
    ComponentDialog::resizeEvent(event);
    layOutPage();
}

void CustomWidgetBrowser::layOutPage()
{
    if (m_resizedByPage)
        return;
    const int dpi = Zel::logicalDpi(this);
    Zel::setTwipsGeometry(m_view, {0, 0, Zel::twipsFromPixels(width(), dpi),
                                   Zel::twipsFromPixels(height(), dpi) - MarginBelow});
}

void CustomWidgetBrowser::endWithResult()
{
    const bool isAnswering = m_page && !m_navigationFailed;
    ++m_use; // the first end counts
    m_returnCode = 2;
    if (!isAnswering)
        return reject();
    m_patience.start(Patience);
    askPage(dialogCall(QStringLiteral("result()")),
            [this](const QString &written) { takeResult(written); });
}

void CustomWidgetBrowser::takeResult(const QString &written)
{
    m_patience.stop();
    const PageValue answer = pageValueFrom(written);
    if (answer.isTooLarge) {
        const QPointer<CustomWidgetBrowser> self(this);
        guard([] {
            throw Zel::RuntimeError(
                Zel::RuntimeError::Overflow,
                tr("The result of the page is larger than 16 million characters. The value is "
                   "kept as it was."));
        });
        if (self)
            reject();
        return;
    }
    const auto result = pageResultFrom(parseReturn(answer.value));
    if (!answer.hasAnswer || !result)
        return reject();
    m_value = result->value;
    if (result->dependencies)
        m_dependencies = *result->dependencies;
    m_returnCode = 1;
    accept();
}

void CustomWidgetBrowser::endCancelled(const QString &text, const QString &title)
{
    ++m_use;
    m_patience.stop();
    m_returnCode = 2;
    m_view->hide();
    const QPointer<CustomWidgetBrowser> self(this);
    Zel::informUser(this, text, title);
    if (self)
        reject();
}

void CustomWidgetBrowser::navigationError()
{
    m_navigationFailed = true;
    if (m_page)
        m_page->triggerAction(QWebEnginePage::Stop);
    endCancelled(tr("Unable to connect to the requested resource"), tr("Connection error"));
}

void CustomWidgetBrowser::pageCrashed()
{
    m_navigationFailed = true;
    endCancelled(tr("The page has stopped working. The value is kept as it was."), windowTitle());
}

} // namespace ZelWebServiceControls

ZelWebServiceControls::ComponentDialog *zelMakeComponentDialog()
{
    return new ZelWebServiceControls::CustomWidgetBrowser;
}
