/// \file
/// Makes a window of a form file.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QWidget>

#include <memory>

/// A form as it runs.
struct LoadedForm {
    std::unique_ptr<QWidget> window; ///< Hidden; its size is the form's.

    /// One line for each thing that Qt remarked while it built the form, and for each connection of the
    /// form that could not be made; the others are.
    QStringList complaints;
};

/// The bytes of the form file \a path, up to one more than a form may have. Throws a CommandError that
/// names the file when it cannot be read.
QByteArray readFormFile(const QString &path);

/// Loads the form \a path, made in Qt Designer, with Qt's widgets and this library's. The catalogue has
/// to be open already, since devices look themselves up in it while the form is loaded. Throws a
/// CommandError that names the file when it is missing, no form, or names an unknown class. No plugin
/// is loaded. GUI thread only.
LoadedForm loadForm(const QString &path);
