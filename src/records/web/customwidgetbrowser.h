// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "records/componentdialog.h"

#include <QPointer>
#include <QSize>
#include <QTimer>
#include <QVariant>

#include <functional>
#include <memory>
#include <optional>

class QWebEngineProfile;
class QWebEngineView;

namespace ZelWebServiceControls {

class clsForward;
class ComponentPage;
class TextAssetWidget;

/// The dialog in which a web page served by the platform edits a field.
///
///     ComponentDialog &dialog = componentDialog();
///     dialog.ShowModalDialog(client, url, "Colours", value, dependencies);
///     dialog.resize(800, 600);
///     dialog.showModal(this);
///     if (dialog.returnCode() == 1)
///         use(dialog.GetValue(), dialog.getAssetDependencies());
///
/// The page is handed the value by its `external_load`, may ask for the asset picker by opening a
/// window with `childWindowType` 0, and ends the dialog by closing itself or by going to an address
/// whose last segment is "close"; its `returnValue` then is the result (pageresult.h).
///
/// Every use is a page of its own: nothing of one reaches the next. A page or frame that cannot be
/// had ends the dialog with a message, so does a page whose process ends or that does not answer
/// within five seconds when it closes, and a result of more than 16 million characters is an error;
/// the value is kept then. A server that never answers leaves an empty dialog that the person
/// closes.
class ZEL_EXPORT CustomWidgetBrowser : public ComponentDialog
{
    Q_OBJECT

public:
    explicit CustomWidgetBrowser(QWidget *parent = nullptr);
    ~CustomWidgetBrowser() override;

    Q_INVOKABLE void ShowModalDialog(QXSC::ServiceClient *qxs, const QString &URL,
                                     const QString &dialogLabel, const QString &m_properties,
                                     const QString &m_assetDependencies = QString()) override;
    /// Sizes the dialog to the page's content. From then on the page has the size it asked for,
    /// whatever becomes of the dialog's.
    Q_INVOKABLE void ResizeCallback();
    Q_INVOKABLE QString GetValue() override;
    Q_INVOKABLE QString getAssetDependencies() override;
    /// A script object with a length above 0 (a list, or a map with a member "length") as the list
    /// of its members "0", "1" and so on, each read the same way; any other value unchanged.
    Q_INVOKABLE QVariant parseReturn(const QVariant &val);

    qint16 returnCode() const override { return m_returnCode; }

    void done(int result) override;

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void build();
    void openPage(const QUrl &address);
    void dropPage();
    template <typename Signal, typename Step>
    void onPage(Signal signal, Step step);
    /// Runs a script in the page and then `step` with its answer, unless the use has ended.
    void askPage(const QString &script, const std::function<void(const QString &)> &step);

    void pageLoaded();
    void pageResized(const QSize &size, bool byWindow);
    void fitTo(const QSize &content);
    void layOutPage();

    void pickForWindow();
    QString pickAsset(const QString &kind, const QString &text);
    void runPicker(const QString &type, QString &answer);

    void endWithResult();
    void takeResult(const QString &written);
    void endCancelled(const QString &text, const QString &title);
    void navigationError();
    void pageCrashed();

    QPointer<QXSC::ServiceClient> m_qxs;
    QString m_value;
    QString m_dependencies;
    qint16 m_returnCode = 2;
    bool m_navigationFailed = false;
    bool m_resizedByPage = false;
    bool m_isPicking = false;
    /// Counts uses and ends: what was begun under another number is not finished.
    quint64 m_use = 0;
    QSize m_sizeWhenLoaded;             // of the view
    std::optional<QSize> m_contentSize; // as the page told it, until it is used
    QTimer m_patience;
    std::shared_ptr<QWebEngineProfile> m_profile;
    QWebEngineView *m_view;
    TextAssetWidget *m_assetWidget;
    clsForward *m_forward;
    QPointer<ComponentPage> m_page;
    QList<QPointer<ComponentPage>> m_formerPages; // some wait for their end still
};

} // namespace ZelWebServiceControls

/// Makes the dialog for whoever loads this module.
extern "C" ZEL_EXPORT ZelWebServiceControls::ComponentDialog *zelMakeComponentDialog();
