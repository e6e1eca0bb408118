/// \file
/// The command text of a button: object, full stop, method and an optional argument list.
#pragma once

#include <QString>
#include <QVariant>
#include <QVector>
#include <kelwidgetsexport.h>

/// Takes \a command apart, for example `lamp.set(1, 2)`. Each pointer may be null. What stands in the
/// brackets is split at "," and appended to \a arguments as it stands, blanks included; empty brackets
/// are one empty argument, and a bracket at the very beginning opens no list. \a object and \a method
/// get the first two of the parts that full stops make of the rest; with one part only they keep
/// what they held.
KEL_WIDGETS_EXPORT void parseButtonCommand(QString command, QString *object, QString *method,
                                           QVector<QVariant> *arguments);
