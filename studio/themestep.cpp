// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/themestep.h"

#include "platform/widgets/listview.h"
#include "platform/widgets/taborder.h"
#include "studio/errorcenter.h"
#include "studio/hiddenthemes.h"
#include "studio/pageheader.h"
#include "themes/themelist.h"

#include <QGroupBox>
#include <QRadioButton>
#include <QToolButton>
#include <QVBoxLayout>

namespace Studio {

using ZelWebServiceControls::ThemeList;

namespace {

/// What a theme for this Studio may be about.
constexpr QLatin1String Flags("type:webcast,video,audio");

} // namespace

ThemeStep::ThemeStep(QXSC::ServiceClient &client, ErrorCenter &errors, QWidget *parent)
    : QWidget(parent)
    , m_client(client)
    , m_errors(errors)
    , m_themes(new ThemeList(this))
    , m_popup(new HiddenThemesPopup(this))
{
    m_themes->setObjectName(QStringLiteral("themes"));
    m_themes->layout()->setContentsMargins(0, 0, 0, 0);
    m_list = m_themes->findChild<Zel::ListView *>(QStringLiteral("ThemeListView"));
    m_hidden = makeTool(this, "hiddenThemesButton", QStringLiteral("information"), QString(),
                        tr("Show which themes are not shown, and why"));
    m_hidden->setToolButtonStyle(Qt::ToolButtonTextOnly);
    m_hidden->hide();
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(8);
    column->addWidget(m_themes, 1);
    column->addWidget(m_hidden, 0, Qt::AlignLeft);
    Zel::setTabChain({m_themes, m_hidden});
    connect(m_hidden, &QToolButton::clicked, this,
            [this] { m_popup->open(m_themes->hiddenThemes(), *m_themes); });
    connect(m_themes, &ThemeList::ThemeSelected, this, &ThemeStep::choose);
    connect(m_themes, &ThemeList::runtimeError, this, &ThemeStep::failed);
    connect(m_list, &Zel::ListView::lineDoubleClicked, this, [this](qsizetype row) {
        if (m_chosen && m_list->tag(row).value<QXSC::ThemeRecordPtr>() == m_chosen)
            emit confirmed();
    });
    m_themes->setLoadHandler([this] { themesLoaded(); });
}

ThemeStep::~ThemeStep()
{
    m_themes->setLoadHandler({});
    m_themes->disconnect(this);
    m_list->disconnect(this);
}

void ThemeStep::load()
{
    m_themes->Init(&m_client, QStringLiteral(ZEL_VERSION), Flags);
}

void ThemeStep::takeFocus()
{
    m_list->setFocus(Qt::OtherFocusReason);
}

void ThemeStep::themesLoaded()
{
    m_listedScope = chosenScope();
    const QString summary = hiddenSummary(m_themes->hiddenThemes().size());
    m_hidden->setText(summary);
    m_hidden->setVisible(!summary.isEmpty());
}

void ThemeStep::choose()
{
    m_chosen = m_themes->getSelectedTheme().value<QXSC::ThemeRecordPtr>();
    m_errors.clear();
    emit choiceChanged();
}

QString ThemeStep::chosenScope() const
{
    const QList<QRadioButton *> options = m_themes->findChildren<QRadioButton *>();
    for (const QRadioButton *option : options) {
        if (option->isChecked())
            return option->objectName();
    }
    return {};
}

void ThemeStep::failed(const Zel::RuntimeError &error)
{
    const QString scope = chosenScope();
    if (scope != m_listedScope) {
        // Only the option that becomes the chosen one loads.
        m_errors.report(error, [this, scope] {
            if (auto *option = m_themes->findChild<QRadioButton *>(scope))
                emit option->toggled(true);
        });
        return;
    }
    // What the details show is not what was chosen before, and not all of it is there.
    m_chosen.reset();
    emit choiceChanged();
    m_errors.report(error, [this] { emit m_list->lineClicked(m_list->selectedRow()); });
}

} // namespace Studio
