/// \file
/// Whether a connection of a form can be made.
#pragma once

#include "panel/panelform.h"

#include <QMetaMethod>

/// What the two ends of a FormConnection come to.
struct FormWire {
    enum class Fit { Good, NoSignal, NoSlot, OtherArguments };

    Fit fit = Fit::Good;
    QMetaMethod signal; ///< Valid unless there is none.
    QMetaMethod slot;   ///< Valid when both were found. A signal that receives is passed on.
    QString problem;    ///< Half a sentence that names class and method; empty when it fits.

    /// Looks \a connection up in the classes of its ends.
    static FormWire find(const FormConnection &connection, const QMetaObject &sender, const QMetaObject &receiver);
};

/// The text of a connection's end that is not on the form.
QString missingEnd(const QString &end, const QString &name);

/// The connection in a line: "button clicked() -> lamp setOn()".
QString describe(const FormConnection &connection);
