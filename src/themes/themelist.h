// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/contract/serviceclient.h"
#include "platform/widgets/control.h"
#include "themes/themecompatibility.h"

#include <QPointer>

#include <functional>
#include <memory>

namespace ZelWebServiceControls {

struct ThemeListParts;

/// Lets a person choose the theme of a new project: the themes of the account, the global ones, the
/// person's own or all of them, with preview, details and templates of the one clicked.
///
///     auto *themes = new ThemeList(this);
///     connect(themes, &ThemeList::ThemeSelected, this, &Window::takeTheme);
///     themes->Init(&client, "3.2.10", "type:video,audio");
///
/// Shown are the themes this version of the host and its flags can use, as ThemeRules has it; of
/// the others nothing is said here (a host may ask with `hiddenThemes`). A load selects the first
/// line without choosing it: a click chooses, and so do moving to a line by keyboard and Enter.
///
/// Without a client, or after it is gone, whatever needs it fails with error 91.
class ZEL_EXPORT ThemeList : public Zel::Control
{
    Q_OBJECT

public:
    explicit ThemeList(QWidget *parent = nullptr);
    ~ThemeList() override;

    /// The record of the theme last chosen (QXSC::ThemeRecordPtr), an invalid variant until then.
    /// Stays when the list is loaded again.
    Q_INVOKABLE QVariant getSelectedTheme();
    /// Keeps all three, shows the details and loads all themes, once.
    ///
    /// @param appVersion version of the host, "major.minor.build"
    /// @param flags what the host can do, "name:values;name:values"; empty allows every theme
    Q_INVOKABLE void Init(QXSC::ServiceClient *m_qxs, const QString &appVersion,
                          const QString &flags = QString());
    /// Fills the list from the list operation of this name, "getFullThemeList_Array" for one. The
    /// options stay as they are.
    Q_INVOKABLE void LoadThemes(const QString &methodStr);

    /// The themes the last load has left out, in the service's order.
    QList<HiddenTheme> hiddenThemes() const { return m_hidden; }

    /// Called at the end of every load that has filled or emptied the list, whoever asked for it.
    void setLoadHandler(std::function<void()> handler);

    QSize sizeHint() const override;

signals:
    /// A theme was chosen; `getSelectedTheme` answers it.
    void ThemeSelected();

private:
    QXSC::ServiceClient &client() const;
    void connectUser();
    void loadScope(bool isChosen);
    void showThemes(const QXSC::ThemeCollectionPtr &themes);
    void chooseTheme(qsizetype row);
    void confirmTheme(qsizetype row);
    QXSC::ThemeRecordPtr themeAt(qsizetype row) const;
    void showDetails(const QXSC::ThemeRecord &theme);
    [[nodiscard]] bool showTemplates(const QXSC::ThemeRecord &theme);
    void keepRequired(qsizetype row);
    void showTab(int tab);

    QPointer<QXSC::ServiceClient> m_client;
    QString m_appVersion;
    QString m_flags;
    QXSC::ThemeRecordPtr m_selectedTheme;
    QList<HiddenTheme> m_hidden;
    std::function<void()> m_loadHandler;
    std::unique_ptr<ThemeListParts> m_parts;
};

} // namespace ZelWebServiceControls
