// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/hiddenthemes.h"

#include "studio/textlabel.h"

#include <QCoreApplication>
#include <QHeaderView>
#include <QScreen>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace Studio {

using ZelWebServiceControls::HiddenTheme;
using ZelWebServiceControls::ThemeCompatibility;

namespace {

constexpr qsizetype QuotedText = 60;
constexpr qsizetype LongestName = 200;
constexpr int MostLines = 9;
constexpr int Inset = 8;

QString text(const char *source)
{
    return QCoreApplication::translate("Studio::HiddenThemes", source);
}

QString quoted(const QString &value)
{
    return QLatin1Char('"') + shortened(value, QuotedText) + QLatin1Char('"');
}

bool looksLikeVersion(const QString &version)
{
    const QStringList parts = version.split(QLatin1Char('.'));
    bool isVersion = parts.size() >= 3;
    for (qsizetype i = 0; i < 3 && isVersion; ++i)
        parts[i].toShort(&isVersion);
    return isVersion;
}

QString whyNotMatching(const ThemeCompatibility &why)
{
    return text("Its field %1 is %2; this Studio takes %3.")
        .arg(quoted(why.field), quoted(why.text),
             shortened(why.values, QuotedText).replace(QLatin1Char(','), QStringLiteral(", ")));
}

} // namespace

QString whyHidden(const ThemeCompatibility &why)
{
    using Reason = ThemeCompatibility::Reason;
    switch (why.reason) {
    case Reason::Usable:
        return {};
    case Reason::NoDefinition:
        return text("It has no definition yet.");
    case Reason::Unreadable:
        return text("Its definition cannot be read.");
    case Reason::VersionNeeded:
        return looksLikeVersion(why.version)
                   ? text("It needs Studio %1 or later.").arg(shortened(why.version, QuotedText))
                   : text("The version it asks for, %1, cannot be understood.")
                         .arg(quoted(why.version));
    case Reason::FieldMissing:
        return text("It does not have the field %1.").arg(quoted(why.field));
    case Reason::FieldNotMatching:
        return whyNotMatching(why);
    }
    return {};
}

QString hiddenSummary(qsizetype count)
{
    if (count == 0)
        return {};
    return count == 1 ? text("1 theme is not shown") : text("%1 themes are not shown").arg(count);
}

HiddenThemesPopup::HiddenThemesPopup(QWidget *parent)
    : QFrame(parent, Qt::Popup)
    , m_list(new QTreeWidget(this))
{
    setObjectName(QStringLiteral("hiddenThemes"));
    setFrameShape(QFrame::StyledPanel);
    m_list->setObjectName(QStringLiteral("hiddenThemeList"));
    m_list->setAccessibleName(tr("Themes that are not shown"));
    m_list->setHeaderLabels({tr("Theme"), tr("Why it is not shown")});
    m_list->setRootIsDecorated(false);
    m_list->setUniformRowHeights(true);
    m_list->setFrameShape(QFrame::NoFrame);
    m_list->setTabKeyNavigation(false);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(Inset, Inset, Inset, Inset);
    column->addWidget(m_list);
}

void HiddenThemesPopup::open(const QList<HiddenTheme> &themes, const QWidget &anchor)
{
    m_list->clear();
    for (const HiddenTheme &hidden : themes) {
        const QString why = whyHidden(hidden.why);
        auto *line = new QTreeWidgetItem(m_list, {shortened(hidden.theme->name, LongestName), why});
        line->setToolTip(1, why);
    }
    m_list->setCurrentItem(m_list->topLevelItem(0));
    m_list->setColumnWidth(0, anchor.width() / 3);
    const int line = qMax(m_list->sizeHintForRow(0), m_list->fontMetrics().lineSpacing());
    const int lines = static_cast<int>(qMin<qsizetype>(MostLines, themes.size()));
    const int height = m_list->header()->sizeHint().height() + lines * line + 4 * Inset;
    const QPoint place = anchor.mapToGlobal(QPoint(0, anchor.height() - height));
    const int top = qMax(place.y(), anchor.screen()->availableGeometry().top());
    setGeometry(place.x(), top, anchor.width(), height);
    show();
    m_list->setFocus(Qt::PopupFocusReason);
}

} // namespace Studio
