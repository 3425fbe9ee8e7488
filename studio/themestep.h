// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/contract/serviceclient.h"

#include <QWidget>

class QToolButton;

namespace Zel {
class ListView;
class RuntimeError;
} // namespace Zel

namespace ZelWebServiceControls {
class ThemeList;
}

namespace Studio {

class ErrorCenter;
class HiddenThemesPopup;

/// The first step of a new project: the themes, and below them how many cannot be used here and
/// why.
class ThemeStep : public QWidget
{
    Q_OBJECT

public:
    ThemeStep(QXSC::ServiceClient &client, ErrorCenter &errors, QWidget *parent);
    ~ThemeStep() override;

    /// Loads the themes this version of Studio can use. Errors propagate.
    void load();

    /// The theme a person has chosen; null before.
    QXSC::ThemeRecordPtr chosen() const { return m_chosen; }

    void takeFocus();

signals:
    /// Another theme was chosen, or the choice has gone.
    void choiceChanged();
    /// The choice was made and is to be gone on with: Enter or a double click.
    void confirmed();

private:
    void failed(const Zel::RuntimeError &error);
    void themesLoaded();
    void choose();
    QString chosenScope() const;

    QXSC::ServiceClient &m_client;
    ErrorCenter &m_errors;
    ZelWebServiceControls::ThemeList *m_themes;
    Zel::ListView *m_list;
    QToolButton *m_hidden;
    HiddenThemesPopup *m_popup;
    QXSC::ThemeRecordPtr m_chosen;
    /// The option whose themes are listed.
    QString m_listedScope;
};

} // namespace Studio
