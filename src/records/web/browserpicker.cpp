// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
// The asset picker, when a component page asks for it.
#include "records/web/customwidgetbrowser.h"

#include "records/textassetwidget.h"
#include "records/web/componentpage.h"
#include "records/web/pageresult.h"
#include "records/web/pagescripts.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace ZelWebServiceControls {

namespace {

FolderNamesPtr pickerFolders()
{
    return std::make_shared<FolderNames>(FolderNames{QStringLiteral("QXStudio")});
}

/// The script's name of the type and the value's text, as the page wrote them.
std::pair<QString, QString> writtenType(const QString &written)
{
    const QJsonArray parts = QJsonDocument::fromJson(written.toUtf8()).array();
    return {parts.at(0).toString(), parts.at(1).toString()};
}

} // namespace

/// Lets a person pick an asset; what the page is to be called back with, empty for no call.
QString CustomWidgetBrowser::pickAsset(const QString &kind, const QString &text)
{
    if (m_isPicking || !isVisible() || !asksForPicker(kind, text))
        return {};
    const QPointer<CustomWidgetBrowser> self(this);
    const quint64 use = m_use;
    QString answer;
    m_isPicking = true;
    guard([&] { runPicker(text, answer); });
    if (self)
        self->m_isPicking = false;
    return self && use == self->m_use ? answer : QString();
}

void CustomWidgetBrowser::runPicker(const QString &type, QString &answer)
{
    const QPointer<CustomWidgetBrowser> self(this);
    m_assetWidget->setQXS(m_qxs);
    m_assetWidget->setExt(type);
    m_assetWidget->setRestrictedFolders(pickerFolders());
    m_assetWidget->ShowAssetPicker();
    if (!self)
        return;
    const QString value = m_assetWidget->GetValue();
    if (value.isEmpty())
        return;
    answer = QString::fromUtf8(
        QJsonDocument(QJsonArray{value, m_assetWidget->getGuid()}).toJson(QJsonDocument::Compact));
}

/// A wish for a window that no script waits for: a link, a form, a frame.
void CustomWidgetBrowser::pickForWindow()
{
    askPage(dialogCall(QStringLiteral("childWindowType()")), [this](const QString &written) {
        const auto [kind, text] = writtenType(written);
        const QString answer = pickAsset(kind, text);
        if (answer.isEmpty() || !m_page)
            return;
        m_page->runJavaScript(dialogCall(QStringLiteral("picked(...%1)").arg(answer)),
                              QWebEngineScript::MainWorld);
    });
}

} // namespace ZelWebServiceControls
