// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
// The children of a theme list and where they are.

#include "themes/themelistparts.h"

#include "platform/widgets/listview.h"
#include "themes/columnfill.h"
#include "themes/themelist.h"
#include "webcontrols/webimage.h"

#include <QBoxLayout>
#include <QGroupBox>
#include <QLabel>
#include <QRadioButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QStackedLayout>
#include <QTabBar>

namespace ZelWebServiceControls {

namespace {

/// Of the columns "Description", in twips.
constexpr double LeastDescription = 3700;

/// Of the height, the share of the list and that of what is told about a theme.
constexpr int UpperShare = 1;
constexpr int LowerShare = 1;
/// Of the width below the list, the share of what the tabs show and that of the preview.
constexpr int PageShare = 7;
constexpr int PreviewShare = 4;

constexpr int LinesOfDescription = 3;
constexpr int BetweenFields = 24; // pixels, device-independent

template <typename Widget>
Widget *named(Widget *widget, const char *name)
{
    widget->setObjectName(QLatin1String(name));
    return widget;
}

QString tr(const char *text)
{
    return ThemeList::tr(text);
}

QRadioButton *makeOption(QWidget *parent, const char *name, const QString &text,
                         const QString &toolTip)
{
    auto *option = named(new QRadioButton(text, parent), name);
    option->setToolTip(toolTip);
    return option;
}

/// A label whose text is the service's.
QLabel *makeValue(QWidget *parent, const char *name)
{
    auto *label = named(new QLabel(parent), name);
    label->setTextFormat(Qt::PlainText);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return label;
}

QLabel *makeCaption(const QString &text, QLabel *value)
{
    auto *label = new QLabel(text, value->parentWidget());
    // Tells a screen reader what the value is.
    label->setBuddy(value);
    return label;
}

} // namespace

ThemeListParts::ThemeListParts(QWidget *parent)
{
    // In the order in which the Tab key goes through them. Setting the focus proxy may move the
    // parent behind the children it has; so it comes before most of them.
    makeList(parent);
    // A host's tab order takes part only when the control says that it takes the focus.
    parent->setFocusPolicy(Qt::StrongFocus);
    parent->setFocusProxy(ThemeListView);
    makeTabs(parent);
    makeDetails(parent);
    makeTemplates(parent);
    makePreview(parent);
    arrange(parent);
    showPreview({});
    m_noPreview->setText(tr("Choose a theme to see its preview"));
}

QList<QRadioButton *> ThemeListParts::options() const
{
    return {accountOption, allOption, globalOption, userOption};
}

void ThemeListParts::keepOneTabStop() const
{
    for (QRadioButton *option : options())
        option->setFocusPolicy(option->isChecked() ? Qt::StrongFocus : Qt::ClickFocus);
}

void ThemeListParts::makeList(QWidget *parent)
{
    ThemeListFrame = named(new QGroupBox(tr("Themes"), parent), "ThemeListFrame");
    ThemeListView = named(new Zel::ListView(ThemeListFrame), "ThemeListView");
    ThemeListView->setAccessibleName(tr("Themes"));
    ThemeListView->setEmptyText(tr("No themes"));
    ThemeListView->addColumn(tr("Name"), 5468);
    ThemeListView->addColumn(tr("Description"), LeastDescription);
    new ColumnFill(*ThemeListView, LeastDescription);
    accountOption = makeOption(ThemeListFrame, "accountOption", tr("Acc&ount"),
                               tr("Show the themes of the account"));
    allOption = makeOption(ThemeListFrame, "allOption", tr("A&ll"), tr("Show all themes"));
    globalOption = makeOption(ThemeListFrame, "globalOption", tr("&Global"),
                              tr("Show the themes that every account has"));
    userOption =
        makeOption(ThemeListFrame, "userOption", tr("&My Own"), tr("Show your own themes"));
}

void ThemeListParts::makePreview(QWidget *parent)
{
    PreviewFrame = named(new QFrame(parent), "PreviewFrame");
    PreviewFrame->setFrameShape(QFrame::StyledPanel);
    PreviewFrame->setMinimumSize(160, 120);
    ThemePreview = named(new ZelWebControls::WebImage(PreviewFrame), "ThemePreview");
    ThemePreview->setAccessibleName(tr("Preview"));
    m_noPreview = new QLabel(PreviewFrame);
    m_noPreview->setAlignment(Qt::AlignCenter);
    m_noPreview->setWordWrap(true);
}

void ThemeListParts::showPreview(const QString &url) const
{
    ThemePreview->setUrl(url);
    m_noPreview->setText(tr("No preview"));
    m_noPreview->setVisible(url.isEmpty());
}

void ThemeListParts::makeTabs(QWidget *parent)
{
    TabStrip1 = named(new QTabBar(parent), "TabStrip1");
    TabStrip1->setAccessibleName(tr("About the theme"));
    TabStrip1->setDrawBase(true);
    TabStrip1->setExpanding(false);
    TabStrip1->addTab(tr("Details"));
    TabStrip1->addTab(tr("Templates"));
    TabStrip1->setTabToolTip(Details, tr("Size and dates of the chosen theme"));
    TabStrip1->setTabToolTip(Templates, tr("The templates of the chosen theme"));
}

void ThemeListParts::showDescription(const QString &text) const
{
    descriptionTxt->setText(text);
    m_description->verticalScrollBar()->setValue(0);
}

void ThemeListParts::showPage(int tab) const
{
    m_pages->setCurrentIndex(tab);
}

void ThemeListParts::makeDetails(QWidget *parent)
{
    DetailsFrame = named(new QGroupBox(tr("Details"), parent), "DetailsFrame");
    auto *scroll = m_description = new QScrollArea(DetailsFrame);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setWidgetResizable(true);
    scroll->setAccessibleName(tr("Description"));
    descriptionTxt = makeValue(scroll, "descriptionTxt");
    descriptionTxt->setWordWrap(true);
    descriptionTxt->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    scroll->setWidget(descriptionTxt);
    scroll->viewport()->setAutoFillBackground(false);
    descriptionTxt->setAutoFillBackground(false);
    // However long the text is, nothing else moves.
    scroll->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Ignored);
    scroll->setMinimumHeight(LinesOfDescription * scroll->fontMetrics().lineSpacing());
    widthTxt = makeValue(DetailsFrame, "widthTxt");
    heightTxt = makeValue(DetailsFrame, "heightTxt");
    createdTxt = makeValue(DetailsFrame, "createdTxt");
    modifiedTxt = makeValue(DetailsFrame, "modifiedTxt");

    auto *grid = new QGridLayout(DetailsFrame);
    grid->addWidget(scroll, 0, 0, 1, 5);
    const auto place = [grid](QLabel *caption, QLabel *value, int row, int column) {
        grid->addWidget(caption, row, column);
        grid->addWidget(value, row, column + 1);
    };
    place(makeCaption(tr("Width"), widthTxt), widthTxt, 1, 0);
    place(makeCaption(tr("Height"), heightTxt), heightTxt, 2, 0);
    place(named(makeCaption(tr("Created"), createdTxt), "createdlabel"), createdTxt, 1, 3);
    place(named(makeCaption(tr("Modified"), modifiedTxt), "modifiedLabel"), modifiedTxt, 2, 3);
    grid->setColumnMinimumWidth(2, BetweenFields);
    grid->setColumnStretch(1, 1);
    grid->setColumnStretch(4, 3);
    grid->setRowStretch(0, 1);
}

void ThemeListParts::makeTemplates(QWidget *parent)
{
    TemplatesFrame = named(new QFrame(parent), "TemplatesFrame");
    TemplatesFrame->setFrameShape(QFrame::NoFrame);
    TemplateListView = named(new Zel::ListView(TemplatesFrame), "TemplateListView");
    TemplateListView->setAccessibleName(tr("Templates"));
    TemplateListView->setEmptyText(tr("No templates"));
    TemplateListView->setCheckBoxes(true);
    TemplateListView->addColumn(tr("Template"), 4235);
    TemplateListView->addColumn(tr("Description"), LeastDescription);
    new ColumnFill(*TemplateListView, LeastDescription);
    auto *column = new QVBoxLayout(TemplatesFrame);
    column->setContentsMargins({});
    column->addWidget(TemplateListView);
}

void ThemeListParts::arrange(QWidget *parent)
{
    auto *scopes = new QHBoxLayout;
    for (QRadioButton *option : options())
        scopes->addWidget(option);
    scopes->addStretch();
    auto *list = new QVBoxLayout(ThemeListFrame);
    list->addWidget(ThemeListView, 1);
    list->addLayout(scopes);

    auto *preview = new QGridLayout(PreviewFrame);
    preview->addWidget(ThemePreview, 0, 0);
    preview->addWidget(m_noPreview, 0, 0);

    m_pages = new QStackedLayout;
    m_pages->addWidget(DetailsFrame);
    m_pages->addWidget(TemplatesFrame);
    auto *page = new QVBoxLayout;
    page->addWidget(TabStrip1);
    page->addLayout(m_pages, 1);
    auto *lower = new QHBoxLayout;
    lower->addLayout(page, PageShare);
    lower->addWidget(PreviewFrame, PreviewShare);
    auto *rows = new QVBoxLayout(parent);
    rows->addWidget(ThemeListFrame, UpperShare);
    rows->addLayout(lower, LowerShare);
}

} // namespace ZelWebServiceControls
