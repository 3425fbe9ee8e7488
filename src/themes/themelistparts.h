// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QString>

class QFrame;
class QGroupBox;
class QLabel;
class QRadioButton;
class QScrollArea;
class QStackedLayout;
class QTabBar;
class QWidget;

namespace Zel {
class ListView;
}

namespace ZelWebControls {
class WebImage;
}

namespace ZelWebServiceControls {

/// The child controls of a theme list, under the names hosts find them by.
struct ThemeListParts
{
    /// The tabs in their order.
    enum Tab
    {
        Details,
        Templates
    };

    /// Makes and arranges them in `parent`.
    explicit ThemeListParts(QWidget *parent);

    QList<QRadioButton *> options() const;
    /// Lets the Tab key stop at the chosen option alone; Qt does so only once one had the focus.
    void keepOneTabStop() const;
    /// Shows a description from its beginning.
    void showDescription(const QString &text) const;
    /// Shows the preview at the address; for an empty one says that there is none.
    void showPreview(const QString &url) const;
    /// Shows the frame of a tab and hides the other.
    void showPage(int tab) const;

    QGroupBox *ThemeListFrame;
    Zel::ListView *ThemeListView;
    QRadioButton *accountOption;
    QRadioButton *allOption;
    QRadioButton *globalOption;
    QRadioButton *userOption;

    QFrame *PreviewFrame;
    ZelWebControls::WebImage *ThemePreview;

    QTabBar *TabStrip1;
    QGroupBox *DetailsFrame;
    QLabel *descriptionTxt;
    QLabel *widthTxt;
    QLabel *heightTxt;
    QLabel *createdTxt;
    QLabel *modifiedTxt;
    QFrame *TemplatesFrame;
    Zel::ListView *TemplateListView;

private:
    void makeList(QWidget *parent);
    void makeTabs(QWidget *parent);
    void makeDetails(QWidget *parent);
    void makeTemplates(QWidget *parent);
    void makePreview(QWidget *parent);
    void arrange(QWidget *parent);

    QScrollArea *m_description;
    QLabel *m_noPreview;
    QStackedLayout *m_pages;
};

} // namespace ZelWebServiceControls
