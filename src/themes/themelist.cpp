// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "themes/themelist.h"

#include "platform/core/datetext.h"
#include "platform/widgets/hourglass.h"
#include "platform/widgets/listview.h"
#include "platform/widgets/twips.h"
#include "themes/templaterows.h"
#include "themes/themelistparts.h"
#include "themes/themerows.h"
#include "webcontrols/webimage.h"

#include <QLabel>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QTabBar>

namespace ZelWebServiceControls {

namespace {

QString fullList()
{
    return QStringLiteral("getFullThemeList_Array");
}

} // namespace

ThemeList::ThemeList(QWidget *parent)
    : Control(parent)
    , m_parts(std::make_unique<ThemeListParts>(this))
{
    connectUser();
}

ThemeList::~ThemeList()
{
    // The children go after the parts, and may still have something to tell.
    for (QObject *child : findChildren<QObject *>())
        child->disconnect(this);
}

QSize ThemeList::sizeHint() const
{
    const int dpi = Zel::logicalDpi(this);
    return QSize(Zel::pixelsFromTwips(13500, dpi), Zel::pixelsFromTwips(8700, dpi));
}

void ThemeList::connectUser()
{
    const ThemeListParts &parts = *m_parts;
    for (QRadioButton *option : parts.options())
        onUser(option, &QRadioButton::toggled, &ThemeList::loadScope);
    onUser(parts.ThemeListView, &Zel::ListView::lineClicked, &ThemeList::chooseTheme);
    onUser(parts.ThemeListView, &Zel::ListView::lineDoubleClicked, &ThemeList::confirmTheme);
    onUser(parts.TemplateListView, &Zel::ListView::lineCheckChanged, &ThemeList::keepRequired);
    onUser(parts.TabStrip1, &QTabBar::currentChanged, &ThemeList::showTab);
}

QXSC::ServiceClient &ThemeList::client() const
{
    if (!m_client)
        throw Zel::RuntimeError(Zel::RuntimeError::ObjectNotSet);
    return *m_client;
}

void ThemeList::setLoadHandler(std::function<void()> handler)
{
    m_loadHandler = std::move(handler);
}

QVariant ThemeList::getSelectedTheme()
{
    return m_selectedTheme ? QVariant::fromValue(m_selectedTheme) : QVariant();
}

void ThemeList::Init(QXSC::ServiceClient *m_qxs, const QString &appVersion, const QString &flags)
{
    m_client = m_qxs;
    m_flags = flags;
    m_appVersion = appVersion;
    {
        const QSignalBlocker quiet(m_parts->TabStrip1);
        m_parts->TabStrip1->setCurrentIndex(ThemeListParts::Details);
    }
    showTab(ThemeListParts::Details);
    {
        // Setting the option loads when a person does it; here its caller is to get the error. It
        // may be set already, and all the same this loads.
        const QSignalBlocker quiet(m_parts->allOption);
        m_parts->allOption->setChecked(true);
    }
    m_parts->keepOneTabStop();
    LoadThemes(fullList());
}

void ThemeList::loadScope(bool isChosen)
{
    if (!isChosen)
        return;
    const ThemeListParts &parts = *m_parts;
    parts.keepOneTabStop();
    if (parts.accountOption->isChecked())
        LoadThemes(QStringLiteral("getAccountThemeList_Array"));
    else if (parts.globalOption->isChecked())
        LoadThemes(QStringLiteral("getGlobalThemeList_Array"));
    else if (parts.userOption->isChecked())
        LoadThemes(QStringLiteral("getUserThemeList_Array"));
    else
        LoadThemes(fullList());
}

void ThemeList::LoadThemes(const QString &methodStr)
{
    const QPointer<ThemeList> self(this);
    const Zel::Hourglass hourglass(this);
    QXSC::ThemeCollectionPtr themes;
    client().callListMethod(QStringLiteral("Studio"), methodStr, themes);
    if (!self)
        return;
    showThemes(themes);
    if (const std::function<void()> handler = m_loadHandler)
        handler();
}

void ThemeList::showThemes(const QXSC::ThemeCollectionPtr &themes)
{
    Zel::ListView &list = *m_parts->ThemeListView;
    list.clear();
    m_hidden.clear();
    if (!themes)
        return;
    for (const QXSC::ThemeRecordPtr &theme : *themes) {
        if (!theme)
            throw Zel::RuntimeError(Zel::RuntimeError::ObjectNotSet);
    }
    const QList<ThemeCompatibility> verdicts = ThemeRules(m_appVersion, m_flags).judgeAll(*themes);
    QList<QXSC::ThemeRecordPtr> usable;
    auto verdict = verdicts.begin();
    for (const QXSC::ThemeRecordPtr &theme : *themes) {
        if (verdict->isUsable())
            usable.append(theme);
        else
            m_hidden.append({theme, *verdict});
        ++verdict;
    }
    list.setRows(std::make_shared<ThemeRows>(usable));
    if (list.count() > 0)
        list.selectRow(list.rowAt(0));
}

QXSC::ThemeRecordPtr ThemeList::themeAt(qsizetype row) const
{
    return m_parts->ThemeListView->tag(row).value<QXSC::ThemeRecordPtr>();
}

void ThemeList::chooseTheme(qsizetype row)
{
    const QXSC::ThemeRecordPtr theme = themeAt(row);
    if (!theme)
        return;
    m_selectedTheme = theme;
    showDetails(*theme);
    if (showTemplates(*theme))
        emit ThemeSelected();
}

void ThemeList::confirmTheme(qsizetype row)
{
    // After two clicks the first has chosen it; Enter on the line that a load selects does it here.
    if (themeAt(row) != m_selectedTheme)
        chooseTheme(row);
}

void ThemeList::showDetails(const QXSC::ThemeRecord &theme)
{
    const ThemeListParts &parts = *m_parts;
    parts.showDescription(theme.description);
    parts.widthTxt->setText(QString::number(theme.width));
    parts.heightTxt->setText(QString::number(theme.height));
    parts.createdTxt->setText(Zel::generalDateText(theme.created));
    parts.modifiedTxt->setText(Zel::generalDateText(theme.modified));
    parts.showPreview(theme.previewUrl);
}

bool ThemeList::showTemplates(const QXSC::ThemeRecord &theme)
{
    const QPointer<ThemeList> self(this);
    const Zel::Hourglass hourglass(this);
    Zel::ListView *const list = m_parts->TemplateListView;
    const auto rows = std::make_shared<TemplateRows>([list] { return list->palette(); });
    list->setRows(rows);
    if (!theme.templates)
        return true;
    // A copy: what is going on must not end when the record does.
    const QXSC::ThemeTemplateCollectionPtr entries = theme.templates;
    for (const QXSC::ThemeTemplatePtr &entry : *entries) {
        if (!entry)
            throw Zel::RuntimeError(Zel::RuntimeError::ObjectNotSet);
        QXSC::TemplateRecordPtr record;
        client().getTemplate(entry->templateKey, entry->templateVersionKey, record);
        if (!self)
            return false;
        if (!record)
            continue;
        rows->add(record, entry->required);
        if (list->rows() == rows.get())
            list->rowsAppended();
    }
    return true;
}

void ThemeList::keepRequired(qsizetype row)
{
    if (m_parts->TemplateListView->isGhosted(row))
        m_parts->TemplateListView->setChecked(row, true);
}

void ThemeList::showTab(int tab)
{
    m_parts->showPage(tab);
}

} // namespace ZelWebServiceControls
