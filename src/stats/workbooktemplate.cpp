// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "stats/workbooktemplate.h"

namespace ZelWebServiceControls {

namespace {

// clang-format off
#define ZEL_WORKBOOK_HEAD \
    u"<?xml version=\"1.0\"?>\r\n" \
    u"<?mso-application progid=\"Excel.Sheet\"?>\r\n" \
    u"<Workbook xmlns=\"urn:schemas-microsoft-com:office:spreadshe\r\n" \
    u"et\"\r\n" \
    u" xmlns:o=\"urn:schemas-microsoft-com:office:office\"\r\n" \
    u" xmlns:x=\"urn:schemas-microsoft-com:office:excel\"\r\n" \
    u" xmlns:ss=\"urn:schemas-microsoft-com:office:spreads\r\n" \
    u"heet\"\r\n" \
    u" xmlns:html=\"http://www.w3.org/TR/REC-html40\">\r\n" \
    u" <DocumentProperties xmlns=\"urn:schemas-microsoft-com:office:office\">\r\n" \
    u"  <Author>Studio</Author>\r\n" \
    u"  <Created>2007-01-25T12:54:31Z</Created>\r\n" \
    u"  <LastSaved>2007-01-25T17:51:00Z</LastSaved>\r\n" \
    u"  <Version>11.6568</Version>\r\n" \
    u" </DocumentProperties>\r\n" \
    u" <ExcelWorkbook xmlns=\"urn:schemas-microsoft-com:office:excel\">\r\n" \
    u"  <WindowHeight>12075</WindowHeight>\r\n" \
    u"  <WindowWidth>14805</WindowWidth>\r\n" \
    u"  <WindowTopX>0</WindowTopX>\r\n" \
    u"  <WindowTopY>1560</WindowTopY>\r\n" \
    u"  <ProtectStructure>False</ProtectStructure>\r\n" \
    u"  <ProtectWindows>False</ProtectWindows>\r\n" \
    u" </ExcelWorkbook>\r\n" \
    u" <Styles>\r\n" \
    u"  <Style ss:ID=\"Default\" ss:Name=\"Normal\">\r\n" \
    u"   <Alignment ss:Vertical=\"Bottom\"/>\r\n" \
    u"   <Borders/>\r\n" \
    u"   <Font/>\r\n" \
    u"   <Interior/>\r\n" \
    u"   <NumberFormat/>\r\n" \
    u"   <Protection/>\r\n" \
    u"  </Style>\r\n" \
    u"  <Style ss:ID=\"s20\" ss:Name=\"Percent\">\r\n" \
    u"   <NumberFormat ss:Format=\"0%\"/>\r\n" \
    u"  </Style>\r\n" \
    u"  <Style ss:ID=\"s21\">\r\n" \
    u"   <Font ss:Bold=\"1\"/>\r\n" \
    u"  </Style>\r\n" \
    u"  <Style ss:ID=\"s28\">\r\n" \
    u"   <Alignment ss:Horizontal=\"Center\" ss:Vertical=\"Bottom\"/>\r\n" \
    u"   <Borders>\r\n" \
    u"    <Border ss:Position=\"Bottom\" ss:LineStyle=\"Continuous\" ss:Weight=\"1\"/>\r\n" \
    u"    <Border ss:Position=\"Left\" ss:LineStyle=\"Continuous\" ss:Weight=\"1\"/>\r\n" \
    u"    <Border ss:Position=\"Right\" ss:LineStyle=\"Continuous\" ss:Weight=\"1\"/>\r\n" \
    u"    <Border ss:Position=\"Top\" ss:LineStyle=\"Continuous\" ss:Weight=\"1\"/>\r\n" \
    u"   </Borders>\r\n" \
    u"   <Font ss:Color=\"#339966\"/>\r\n" \
    u"   <Interior ss:Color=\"#CCFFCC\" ss:Pattern=\"Solid\"/>\r\n" \
    u"  </Style>\r\n" \
    u"  <Style ss:ID=\"s29\">\r\n" \
    u"   <Alignment ss:Horizontal=\"Center\" ss:Vertical=\"Bottom\"/>\r\n" \
    u"   <Borders>\r\n" \
    u"    <Border ss:Position=\"Bottom\" ss:LineStyle=\"Continuous\" ss:Weight=\"1\"/>\r\n" \
    u"    <Border ss:Position=\"Left\" ss:LineStyle=\"Continuous\" ss:Weight=\"1\"/>\r\n" \
    u"    <Border ss:Position=\"Right\" ss:LineStyle=\"Continuous\" ss:Weight=\"1\"/>\r\n" \
    u"    <Border ss:Position=\"Top\" ss:LineStyle=\"Continuous\" ss:Weight=\"1\"/>\r\n" \
    u"   </Borders>\r\n" \
    u"   <Interior ss:Color=\"#FFFFFF\" ss:Pattern=\"Solid\"/>\r\n" \
    u"  </Style>\r\n" \
    u"  <Style ss:ID=\"s32\">\r\n" \
    u"   <Borders>\r\n" \
    u"    <Border ss:Position=\"Bottom\" ss:LineStyle=\"Continuous\" ss:Weight=\"1\"/>\r\n" \
    u"    <Border ss:Position=\"Left\" ss:LineStyle=\"Continuous\" ss:Weight=\"1\"/>\r\n" \
    u"    <Border ss:Position=\"Right\" ss:LineStyle=\"Continuous\" ss:Weight=\"1\"/>\r\n" \
    u"    <Border ss:Position=\"Top\" ss:LineStyle=\"Continuous\" ss:Weight=\"1\"/>\r\n" \
    u"   </Borders>\r\n" \
    u"   <Interior ss:Color=\"#CCFFCC\" ss:Pattern=\"Solid\"/>\r\n" \
    u"  </Style>\r\n" \
    u"  <Style ss:ID=\"s34\">\r\n" \
    u"   <Borders/>\r\n" \
    u"  </Style>\r\n" \
    u"  <Style ss:ID=\"s36\">\r\n" \
    u"   <Alignment ss:Horizontal=\"Center\" ss:Vertical=\"Bottom\"/>\r\n" \
    u"   <Font ss:Bold=\"1\"/>\r\n" \
    u"  </Style>\r\n" \
    u"  <Style ss:ID=\"s40\">\r\n" \
    u"   <Alignment ss:Horizontal=\"Center\" ss:Vertical=\"Bottom\"/>\r\n" \
    u"   <Font ss:Color=\"#339966\"/>\r\n" \
    u"   <Interior ss:Color=\"#FFCC99\" ss:Pattern=\"Solid\"/>\r\n" \
    u"  </Style>\r\n" \
    u"  <Style ss:ID=\"s41\">\r\n" \
    u"   <Alignment ss:Horizontal=\"Center\" ss:Vertical=\"Bottom\" ss:WrapText=\"1\"/>\r\n" \
    u"   <Font x:Family=\"Swiss\" ss:Bold=\"1\"/>\r\n" \
    u"  </Style>\r\n" \
    u"  <Style ss:ID=\"s45\">\r\n" \
    u"   <Alignment ss:Horizontal=\"Right\" ss:Vertical=\"Bottom\"/>\r\n" \
    u"   <Font x:Family=\"Swiss\" ss:Bold=\"1\"/>\r\n" \
    u"  </Style>\r\n" \
    u"  <Style ss:ID=\"s53\">\r\n" \
    u"   <Alignment ss:Horizontal=\"Center\" ss:Vertical=\"Bottom\"/>\r\n" \
    u"   <Interior ss:Color=\"#C0C0C0\" ss:Pattern=\"Solid\"/>\r\n" \
    u"  </Style>\r\n" \
    u"  <Style ss:ID=\"s55\">\r\n" \
    u"   <Alignment ss:Horizontal=\"Center\" ss:Vertical=\"Bottom\"/>\r\n" \
    u"   <Interior ss:Color=\"#969696\" ss:Pattern=\"Solid\"/>\r\n" \
    u"   <NumberFormat ss:Format=\"0.0%\"/>\r\n" \
    u"  </Style>\r\n" \
    u"  <Style ss:ID=\"s56\" ss:Parent=\"s20\">\r\n" \
    u"   <Alignment ss:Horizontal=\"Center\" ss:Vertical=\"Bottom\"/>\r\n" \
    u"   <Interior ss:Color=\"#969696\" ss:Pattern=\"Solid\"/>\r\n" \
    u"  </Style>\r\n" \
    u" </Styles>\r\n"

#define ZEL_WORKBOOK_TAIL \
    u"\r\n</Workbook>\r\n" \
    u"\t"
// clang-format on

constexpr QStringView placeholder = u"<Worksheet/>";

} // namespace

QStringView workbookTemplate()
{
    return ZEL_WORKBOOK_HEAD u"<Worksheet/>" ZEL_WORKBOOK_TAIL;
}

QStringView workbookTemplateHead()
{
    return workbookTemplate().first(workbookTemplate().indexOf(placeholder));
}

QStringView workbookTemplateTail()
{
    const QStringView head = workbookTemplateHead();
    return workbookTemplate().sliced(head.size() + placeholder.size());
}

} // namespace ZelWebServiceControls
