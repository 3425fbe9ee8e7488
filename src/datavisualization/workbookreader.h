// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "datavisualization/workbook.h"

namespace ZelDataVisualization {

/// A workbook, or why there is none.
struct WorkbookAnswer
{
    std::optional<Workbook> workbook;
    QString problem; ///< a sentence; empty when there is a workbook
};

/// The longest text that is read, in UTF-16 units: of our own workbooks, and of any other.
constexpr qsizetype MostKeptCharacters = 0x7FFFFFFF;
constexpr qsizetype MostStrictCharacters = 256 * 1024 * 1024;

/// Reads an XML Spreadsheet 2003 text.
///
/// The results workbook that the statistics control keeps has two namespace values broken by a line
/// end and texts that nobody escaped; no XML reader takes it, so `readKeptWorkbook` does. What is
/// not such a text goes to `readStrictWorkbook`.
ZEL_EXPORT WorkbookAnswer readWorkbook(const QString &text);

/// Whether a text begins as our own workbooks do: the default namespace of its root element is
/// broken by a line end.
ZEL_EXPORT bool isKeptWorkbook(QStringView text);

/// Reads our own workbook as it is written: the text of a cell runs to "</Data></Cell>" and is
/// taken as it stands, "&" and "<" included; a formula runs to "'></Cell>". Sheets, rows and cells
/// have no other elements. A cell of type Number whose text is no number is a text.
ZEL_EXPORT WorkbookAnswer readKeptWorkbook(const QString &text);

/// Reads any other workbook. Names count without their prefix. Refused are a document that is not
/// well-formed, one that declares a document type, and what only an attack has: elements 64 inside
/// each other, names of more than 4,096 characters, more than 64 attributes of an element or 64
/// declarations of namespaces.
ZEL_EXPORT WorkbookAnswer readStrictWorkbook(const QString &text);

} // namespace ZelDataVisualization
