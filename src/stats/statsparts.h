// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>

class QDateTimeEdit;
class QFrame;
class QGroupBox;
class QLabel;
class QPushButton;
class QTabBar;
class QTimer;
class QWidget;

namespace ZelWebServiceControls {

/// The child controls of a statistics control that belong to no tab, under the names hosts find
/// them by.
struct StatsParts
{
    /// Makes and arranges them in `parent`.
    explicit StatsParts(QWidget *parent);

    QGroupBox *Frame1;
    QDateTimeEdit *startDateTime;
    QDateTimeEdit *endDateTime;
    QPushButton *runReportCmd;
    QGroupBox *Frame2;
    QTabBar *reportsTabs;
    std::array<QFrame *, 6> reportsTabFrame;
    QTimer *Timer1;
    QLabel *excelTemplate;

private:
    void makeParameters(QWidget *parent);
    QDateTimeEdit *makePicker(const char *name, const char *labelName, const char *caption);
    void makeTabs(QWidget *parent);
    void arrange(QWidget *parent);
};

} // namespace ZelWebServiceControls
