// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "records/textareawidget.h"

#include "platform/widgets/twips.h"
#include "platform/widgets/twipsgeometry.h"
#include "records/fieldparts.h"

#include <QLabel>
#include <QPlainTextEdit>
#include <QScopedValueRollback>
#include <QTextDocument>

namespace ZelWebServiceControls {

namespace {

constexpr int Lines = 4;
/// Around the text, in pixels: it begins where that of a line begins.
constexpr int TextMargin = 2;
constexpr int Height = 3 * FieldParts::Height; // twips

} // namespace

TextAreaWidget::TextAreaWidget(QWidget *parent)
    : Control(parent)
    , m_label(FieldParts::makeLabel(this))
    , m_value(new QPlainTextEdit(this))
{
    m_value->setObjectName(QStringLiteral("widgetValue"));
    m_value->setTabChangesFocus(true);
    m_value->document()->setDocumentMargin(TextMargin);
    FieldParts::setFirstSize(this, firstHeight(), m_value, FieldParts::Width);
    placeLabel();
    connect(m_value, &QPlainTextEdit::textChanged, this, &TextAreaWidget::takeEdit);
}

TextAreaWidget::~TextAreaWidget() = default;

double TextAreaWidget::firstHeight() const
{
    return FieldParts::fieldHeight(this, Lines, Height);
}

void TextAreaWidget::placeLabel()
{
    // At the first line of the text.
    const double margins = m_value->frameWidth() + m_value->document()->documentMargin();
    FieldParts::placeLabel(m_label, FieldParts::Inset +
                                        Zel::twipsFromPixels(margins, Zel::logicalDpi(this)));
}

void TextAreaWidget::SetLabel(const QString &val)
{
    FieldParts::setCaption(m_label, m_value, val);
}

void TextAreaWidget::setValue(const QString &val)
{
    const QScopedValueRollback setting(m_setting, true);
    m_value->setPlainText(val);
    m_text.set(val, m_value->document()->toRawText());
}

QString TextAreaWidget::GetLabel() const
{
    return m_label->text();
}

QString TextAreaWidget::GetValue() const
{
    return m_text.text();
}

void TextAreaWidget::SetLabelWidth(qint16 w)
{
    FieldParts::setLabelWidth(m_label, w);
    if (w < 1)
        return;
    FieldParts::spanValue(m_value, FieldParts::valueLeft(w), Zel::twipsGeometry(this).width);
}

void TextAreaWidget::takeEdit()
{
    if (m_setting)
        return;
    m_text.edit(m_value->document()->toRawText());
    tellEdited();
}

QSize TextAreaWidget::sizeHint() const
{
    return FieldParts::sizeHint(this, firstHeight());
}

void TextAreaWidget::resized()
{
    SetLabelWidth(FieldParts::usualLabelWidth(this));
}

void TextAreaWidget::appearanceChanged()
{
    placeLabel();
}

} // namespace ZelWebServiceControls
