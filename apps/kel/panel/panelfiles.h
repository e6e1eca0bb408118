/// \file
/// What a panel is made of, when a project names it.
#pragma once

#include <QString>
#include <QStringList>

/// The files that run as one panel.
struct PanelFiles {
    QString form;
    QString catalogue;   ///< Empty when none is named.
    QStringList ignored; ///< Half a sentence for each part of a project that a panel has no use for.

    /// Of the form or server project \a path. A project names its form, and by its command file its catalogue:
    /// that file is the catalogue itself, or holds the bare path of one (see KvCommands::openFromCmdFile). A
    /// command file that is not there names none. Relative names are relative to the project. Throws a
    /// CommandError that names the file for a damaged project, and for one without a form.
    static PanelFiles of(const QString &path);

    /// The catalogue alone, of a project that needs no form for it; empty for whatever is no project.
    static QString catalogueOf(const QString &path);
};
