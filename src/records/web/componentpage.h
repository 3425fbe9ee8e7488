// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QPointer>
#include <QSize>
#include <QWebEnginePage>

#include <functional>
#include <memory>

class QWebEngineView;

namespace ZelWebServiceControls {

/// One component page in one use of the dialog: what the page does, told as signals.
///
/// The signals come from inside the engine, where nothing may wait and nothing may be deleted:
/// receivers connect queued. The two exceptions, where a page waits for a person, are the asset
/// picker and the page's own messages; while such a handler runs, `retire` only notes that the page
/// is to go.
class ComponentPage : public QWebEnginePage
{
    Q_OBJECT

public:
    /// Answers the page's wish for a new window: what to give back to its script, empty for
    /// nothing. Called while the page waits.
    using Picker = std::function<QString(const QString &kind, const QString &text)>;
    /// Shows a message of the page, while it waits.
    using Speaker = std::function<void(const QString &text)>;

    /// @param address where the page comes from; it cannot be left for another origin
    /// @param style what its style sheets can use of the program's, see rootStyle
    ComponentPage(const std::shared_ptr<QWebEngineProfile> &profile, const QUrl &address,
                  const QString &style);

    void setPicker(const Picker &picker) { m_picker = picker; }

    void setSpeaker(const Speaker &speaker) { m_speaker = speaker; }

    void open() { load(m_address); }

    /// Ends the use: the page is heard no more and deleted as soon as it may be.
    void retire();
    /// Ends the use and deletes the page, unless it waits: then it takes the view along and deletes
    /// it with itself afterwards.
    void retireNow(QWebEngineView *view);

signals:
    /// The page is complete.
    void loaded();
    /// The page or one of its frames could not be had.
    void failed();
    /// The process that runs the page ended.
    void crashed();
    /// The page has set its result and wants to be closed.
    void ended();
    /// The page's content has this size in its own pixels, told because the page's window got
    /// another size or because the page wants to be fitted.
    void contentResized(const QSize &size, bool byWindow);
    /// The page wants a new window, in a way that its script does not wait for.
    void windowWanted();

protected:
    bool acceptNavigationRequest(const QUrl &url, NavigationType type, bool isMainFrame) override;
    bool javaScriptPrompt(const QUrl &securityOrigin, const QString &msg,
                          const QString &defaultValue, QString *result) override;
    void javaScriptAlert(const QUrl &securityOrigin, const QString &msg) override;
    bool javaScriptConfirm(const QUrl &securityOrigin, const QString &msg) override;
    void javaScriptConsoleMessage(JavaScriptConsoleMessageLevel level, const QString &message,
                                  int lineNumber, const QString &sourceID) override;
    QStringList chooseFiles(FileSelectionMode mode, const QStringList &oldFiles,
                            const QStringList &acceptedMimeTypes) override;

private:
    class Waiting;

    ~ComponentPage() override;

    void addScripts(const QString &style);
    void listen();
    void setLimits();
    QString hear(const QString &message);
    bool mayAsk();
    void disposeWhenQuiet();
    void dispose();

    QUrl m_address;
    QString m_token;      // names the dialog's side of the contract to the page's world
    QString m_frameToken; // known to the frames' watch only
    Picker m_picker;
    Speaker m_speaker;
    bool m_hasLoaded = false;
    bool m_isRetired = false;
    int m_waiting = 0; // handlers of ours on the stack for which the page waits
    int m_messages = 0;
    std::shared_ptr<QWebEngineProfile> m_profile; // has to outlive the page
    QPointer<QWebEngineView> m_ownView;
};

/// Whether a navigation to this address is the page's way to end the dialog: the raw text after the
/// last "/" is "close".
ZEL_EXPORT bool isCloseAddress(const QUrl &url);

} // namespace ZelWebServiceControls
