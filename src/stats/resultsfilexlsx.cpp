// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
// Results as Office Open XML, by libxlsxwriter.
#include "stats/resultsfilecharts.h"
#include "stats/resultsfilewriters.h"
#include "stats/workbooklayout.h"
#include "stats/workbooksink.h"

#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <map>
#include <xlsxwriter.h>

namespace ZelWebServiceControls {

namespace {

constexpr double pixelsPerPoint = 96.0 / 72.0;

/// A text as the library takes it: what readers would decode as the code of a character is written
/// so that they decode it to what stands there.
QByteArray encoded(QString text)
{
    static const QRegularExpression code(QStringLiteral("_(?=x[0-9A-Fa-f]{4}_)"));
    QString safe = text;
    safe.replace(code, QStringLiteral("_x005F_"));
    while (safe.size() > MostCellCharacters) {
        text.chop(safe.size() - MostCellCharacters);
        safe = text;
        safe.replace(code, QStringLiteral("_x005F_"));
    }
    return safe.toUtf8();
}

class XlsxSink final : public WorkbookSink
{
public:
    explicit XlsxSink(lxw_workbook *workbook)
        : m_workbook(workbook)
    {
    }

    bool hasError() const { return m_failed; }

    void beginSheet(const QString &name, const QList<int> &widths) override
    {
        m_sheet = workbook_add_worksheet(m_workbook, name.toUtf8().constData());
        m_row = 0;
        for (qsizetype column = 0; column < widths.size(); ++column) {
            check(worksheet_set_column_pixels(m_sheet, lxw_col_t(column), lxw_col_t(column),
                                              uint32_t(widths[column] * pixelsPerPoint), nullptr));
        }
    }

    void endSheet() override {}

    void beginRow(int height) override
    {
        if (height)
            check(worksheet_set_row(m_sheet, m_row, height, nullptr));
    }

    void endRow() override { ++m_row; }

    void text(qsizetype column, const QString &text, CellLook look) override
    {
        check(worksheet_write_string(m_sheet, m_row, lxw_col_t(column), encoded(text).constData(),
                                     format(look)));
    }

    void number(qsizetype column, double value, CellLook look) override
    {
        check(worksheet_write_number(m_sheet, m_row, lxw_col_t(column), value, format(look)));
    }

    void formula(qsizetype column, const CellFormula &formula, double value, CellLook look) override
    {
        check(worksheet_write_formula_num(m_sheet, m_row, lxw_col_t(column),
                                          formula.absoluteText(m_row, column).toUtf8().constData(),
                                          format(look), value));
    }

    void blank(qsizetype column, CellLook look) override
    {
        check(worksheet_write_blank(m_sheet, m_row, lxw_col_t(column), format(look)));
    }

private:
    void check(lxw_error error) { m_failed = m_failed || error != LXW_NO_ERROR; }

    /// The styles of the kept template.
    lxw_format *format(CellLook look)
    {
        if (look == CellLook::Plain)
            return nullptr;
        lxw_format *&kept = m_formats[look];
        if (!kept)
            kept = made(look);
        return kept;
    }

    lxw_format *made(CellLook look)
    {
        lxw_format *const format = workbook_add_format(m_workbook);
        switch (look) {
        case CellLook::Plain:
            break;
        case CellLook::Bold:
            format_set_bold(format);
            break;
        case CellLook::Right:
            answered(format, 0xCCFFCC);
            format_set_font_color(format, 0x339966);
            break;
        case CellLook::Wrong:
            answered(format, 0xFFFFFF);
            break;
        case CellLook::CorrectChoice:
            filled(format, 0xCCFFCC);
            format_set_border(format, LXW_BORDER_THIN);
            break;
        case CellLook::Heading:
            format_set_bold(format);
            format_set_align(format, LXW_ALIGN_CENTER);
            format_set_text_wrap(format);
            break;
        case CellLook::Label:
            format_set_bold(format);
            format_set_align(format, LXW_ALIGN_RIGHT);
            break;
        case CellLook::Count:
            filled(format, 0xC0C0C0);
            format_set_align(format, LXW_ALIGN_CENTER);
            break;
        case CellLook::Share:
            filled(format, 0x969696);
            format_set_align(format, LXW_ALIGN_CENTER);
            format_set_num_format(format, "0.0%");
            break;
        }
        return format;
    }

    static void filled(lxw_format *format, lxw_color_t color)
    {
        format_set_pattern(format, LXW_PATTERN_SOLID);
        format_set_fg_color(format, color);
    }

    static void answered(lxw_format *format, lxw_color_t color)
    {
        filled(format, color);
        format_set_align(format, LXW_ALIGN_CENTER);
        format_set_border(format, LXW_BORDER_THIN);
    }

    lxw_workbook *m_workbook;
    lxw_worksheet *m_sheet = nullptr;
    lxw_row_t m_row = 0;
    std::map<CellLook, lxw_format *> m_formats;
    bool m_failed = false;
};

bool writeFile(const ResultsModels &models, const WorkbookLayout &layout, const QString &fileName,
               QByteArray folder)
{
    lxw_workbook_options options{};
    options.constant_memory = 1;
    options.tmpdir = folder.data();
    options.use_zip64 = 0;
    lxw_workbook *const workbook =
        workbook_new_opt(QFile::encodeName(fileName).constData(), &options);
    if (!workbook)
        return false;
    lxw_doc_properties properties{};
    QByteArray author = QByteArrayLiteral("Studio");
    properties.author = author.data();
    workbook_set_properties(workbook, &properties);
    XlsxSink sink(workbook);
    writeSheets(models, layout, sink);
    const bool charted = addCharts(workbook, layout);
    return (workbook_close(workbook) == LXW_NO_ERROR) && charted && !sink.hasError();
}

bool copyTo(QIODevice &device, const QString &fileName)
{
    constexpr qsizetype piece = qsizetype(1) << 20;
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    while (!file.atEnd()) {
        const QByteArray bytes = file.read(piece);
        if (bytes.isEmpty() || device.write(bytes) != bytes.size())
            return false;
    }
    return true;
}

} // namespace

bool writeXlsxResults(const ResultsModels &models, const WorkbookLayout &layout, QIODevice &device)
{
    // The library writes files only, and needs room for parts of them meanwhile.
    const QTemporaryDir folder;
    const QString fileName = folder.filePath(QStringLiteral("results.xlsx"));
    return folder.isValid() &&
           writeFile(models, layout, fileName, QFile::encodeName(folder.path())) &&
           copyTo(device, fileName);
}

} // namespace ZelWebServiceControls
