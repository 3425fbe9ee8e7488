// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/contract/serviceclient.h"
#include "common/contract/studioservice.h"
#include "studio/page.h"

class QLabel;
class QPushButton;
class QStackedLayout;
class QToolButton;

namespace Studio {

class ErrorCenter;
class RecordDrafts;
class RecordEditor;
struct RecordDraft;
class TextLabel;
class ThemeStep;

/// The records of themes: choose a theme, edit its record.
class RecordPage : public Page
{
    Q_OBJECT

public:
    RecordPage(QXSC::ServiceClient &client, QXSC::StudioService &service, ErrorCenter &errors,
               const RecordDrafts &drafts, QWidget *parent = nullptr);
    ~RecordPage() override;

    QString title() const override;
    QString icon() const override;
    void open() override;
    void leave() override;
    bool holdsChanges() const override;
    bool mayClose() override;
    bool mayLeave() override;

    /// Goes on with a draft, unless the author keeps what is being edited here. Errors propagate.
    void resume(const RecordDraft &draft);

protected:
    void changeEvent(QEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    QWidget *makeChooser();
    QWidget *makeDesk();
    void renewThemes();
    void loadThemes();
    void showChoice();
    void edit();
    void showDesk(const QString &themeName);
    void showChooser();
    void goBack();
    void refresh();
    bool isEditing() const;
    void applyColors();

    QXSC::ServiceClient &m_client;
    ErrorCenter &m_errors;
    QStackedLayout *m_stack;
    QWidget *m_chooser;
    QWidget *m_desk;
    ThemeStep *m_themes = nullptr;
    QLabel *m_choice;
    QPushButton *m_edit;
    QToolButton *m_refresh;
    QToolButton *m_back;
    TextLabel *m_theme;
    RecordEditor *m_editor;
    bool m_isLoaded = false;
};

} // namespace Studio
