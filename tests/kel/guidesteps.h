/// \file
/// What a guide asks its reader to do, read out of its text.
#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

/// One thing to do, in the order of the text.
struct GuideStep {
    enum Kind { SaveFile, Run, GoesOn, ByHand };

    Kind kind = Run;
    int line = 0;      ///< Where it stands, from 1.
    QString file;      ///< SaveFile: its name.
    QString text;      ///< SaveFile: its contents. Otherwise shell commands.
    QStringList shown; ///< What the commands print, as far as the guide shows it.
};

/// The steps of \a guide. "Save this as `NAME`" makes the fenced block after it a file; a link to a file of
/// the examples, whose text is \a example of its path, is a file too. A block "sh" is run, unless a comment
/// before it says "by hand" or that it "goes on"; a block without a language right behind it is what it prints.
QVector<GuideStep> guideSteps(const QString &guide, QString (*example)(const QString &path));

/// What is wrong with \a printed where \a shown is to be seen: the first line that is missing or differs.
/// A line "…" stands for any lines, "…" at a line's end for any rest, and a time of day for any other.
QString guideDifference(const QStringList &shown, const QStringList &printed);
