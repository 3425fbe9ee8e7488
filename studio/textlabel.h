// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLabel>

namespace Studio {

/// A text that came from elsewhere (a service, a file, a person): plain, wrapping, to be selected
/// with the mouse.
///
/// Whatever its length, it never makes the window wider: a long word is broken between any two of
/// its characters, and a text beyond `longest` characters is shown shortened.
class TextLabel : public QLabel
{
    Q_OBJECT

public:
    /// @param longest the most characters shown
    TextLabel(const char *name, qsizetype longest, QWidget *parent);

    void showText(const QString &text);

private:
    qsizetype m_longest;
};

/// The text as it is, or its first `longest` characters and an ellipsis.
QString shortened(const QString &text, qsizetype longest);

/// The text with invisible places to break a line in words too long for any line.
QString breakable(const QString &text);

} // namespace Studio
