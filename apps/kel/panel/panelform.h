/// \file
/// A form file, looked over before anything is built from it.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVector>

/// One wire of a form, as Qt Designer writes it.
struct FormConnection {
    QString sender;
    QString signal;
    QString receiver;
    QString slot;
    int line = 0; ///< Of the form file.
};

/// A form that is safe to hand to the form loader, or the line that says why not.
struct PanelForm {
    /// The form without its connections: these are made one by one afterwards, so that each that does not
    /// fit can be named.
    QByteArray text;
    QVector<FormConnection> connections;
    QString error; ///< "FILE:LINE: what is wrong", empty when the form is good.

    static constexpr int MaxSize = 16 * 1024 * 1024; ///< Bytes of the file.

    /// Looks \a text over: it has to be within FormLimits, and every class that it builds in \a knownClasses. \a
    /// fileName appears in the error only. Any bytes are safe to give.
    static PanelForm fromText(const QByteArray &text, const QString &fileName, const QStringList &knownClasses);
};
