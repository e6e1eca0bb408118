/// \file
/// The server project and its file (docs/formats/project-file.md).
#pragma once

#include <QDir>
#include <QString>
#include <QStringList>
#include <kelwidgetsexport.h>

class QIODevice;

namespace Kv_Designer
{

/// The names of the files that make one server project. A plain value; the files themselves are not touched.
struct KEL_WIDGETS_EXPORT ServerProject {
    /// How reading a project ends.
    enum class ReadResult {
        Good,
        NotAProject,  ///< The magic is not there.
        WrongVersion, ///< No positive version: nothing readable behind the magic, or not meant for us.
    };

    int version = 1;         ///< Of the project file; positive in every file that loads.
    QStringList scriptFiles; ///< In order.
    QString uiFile;          ///< Panel form, ".ui".
    QString dataFile;        ///< Data, ".dat".
    QString varFile;         ///< Variables, ".var".
    QString cmFile;          ///< Commands, ".cm".
    QString mainScript;      ///< The script that runs first: one of scriptFiles, or empty.

    /// Takes over the project in the file \a path. False, with nothing changed, for an empty path and for a
    /// file that cannot be opened or is no project; with \a showMessages a message box says which, except for
    /// the empty path. GUI thread only when messages are shown.
    bool load(const QString &path, bool showMessages);

    /// Writes the project to the file \a path, over what the file held. False for an empty path, silently,
    /// and for a file that cannot be opened, which a message box tells. Errors of the disk are not noticed:
    /// who needs that writes toByteArray() himself. GUI thread only.
    bool save(const QString &path) const;

    /// The content of the project's file.
    QByteArray toByteArray() const;
    /// Takes over the project that \a source holds from here on; nothing is changed unless that is Good.
    ReadResult read(QIODevice &source);

    /// Fills the empty ones of uiFile, dataFile, varFile and cmFile: \a base without its complete suffix, and
    /// the suffix of each.
    void makeEmptyNames(QString base);

    /// Appends a script; false for an empty name and for one that is there already. When there is no main
    /// script, the first script of all becomes it.
    bool addScriptFile(const QString &file);
    /// Removes a script wherever it occurs. When it was the main script, the first remaining one becomes it.
    void removeScriptFile(const QString &file);

    /// The associated files: the scripts, then dataFile, varFile and cmFile, empty or not.
    QStringList getAssFiles() const;

    /// The text of the main script, taken relative to \a dir: UTF-8, up to the first zero byte. Empty when
    /// there is no main script or it cannot be read.
    QString mainScriptText(QDir dir) const;
};

} // namespace Kv_Designer
