// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/dropsummary.h"

#include "studio/textlabel.h"

#include <QCoreApplication>
#include <QLocale>

namespace Studio {

namespace {

constexpr qsizetype MostNamed = 3;
constexpr qsizetype QuotedName = 60;

struct Texts
{
    Q_DECLARE_TR_FUNCTIONS(Studio::DropSummary)
};

QString number(qsizetype count)
{
    return QLocale().toString(count);
}

QString named(const QStringList &paths)
{
    QStringList names;
    for (const QString &path : paths.mid(0, MostNamed)) {
        const QString name = path.section(QLatin1Char('/'), -1, -1, QString::SectionSkipEmpty);
        names << QStringLiteral("\"%1\"").arg(shortened(name, QuotedName));
    }
    const qsizetype more = paths.size() - names.size();
    const QString list = names.join(QStringLiteral(", "));
    return more > 0 ? Texts::tr("%1 and %2 more").arg(list, number(more)) : list;
}

QString told(const DropContents &contents)
{
    const qsizetype refused = contents.refused.size();
    const qsizetype all = refused + contents.pictures.size();
    if (all == 0)
        return Texts::tr("There are no files to upload in what was dropped.");
    if (refused == 0)
        return contents.isCut ? Texts::tr("More was dropped than can be taken at once.")
                              : QString();
    if (all == 1)
        return Texts::tr("The file cannot be read as a picture and was left out.");
    return refused == 1 ? Texts::tr("1 of %1 files cannot be read as a picture and was left out.")
                              .arg(number(all))
                        : Texts::tr("%1 of %2 files cannot be read as pictures and were left out.")
                              .arg(number(refused), number(all));
}

} // namespace

Problem dropSummary(const DropContents &contents)
{
    Problem problem;
    problem.what = told(contents);
    QStringList advice;
    if (!contents.refused.isEmpty())
        advice << named(contents.refused) + QLatin1Char('.');
    if (contents.isCut)
        advice << Texts::tr("Only the first %1 files of the drop were looked at; drop the others "
                            "afterwards.")
                      .arg(number(DroppedFiles::Most));
    problem.advice = advice.join(QLatin1Char(' '));
    problem.details = contents.refused.join(QLatin1Char('\n'));
    return problem;
}

Problem refusedDrop(const QString &reason)
{
    Problem problem;
    problem.what = Texts::tr("Nothing was taken of what was dropped.");
    problem.advice = reason + QLatin1Char('.');
    return problem;
}

} // namespace Studio
