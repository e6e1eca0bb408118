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

    static constexpr int MaxDepth = 200;             ///< Elements inside each other; the loader recurses.
    static constexpr int MaxWidgets = 10000;         ///< Far more than a screen shows.
    static constexpr int MaxCell = 1000;             ///< Rows and columns of a grid; it keeps all of them.
    static constexpr int MaxSize = 16 * 1024 * 1024; ///< Bytes of the file.

    /// Looks \a text over; every class that it builds has to be in \a knownClasses. \a fileName appears
    /// in the error only. Any bytes are safe to give.
    static PanelForm fromText(const QByteArray &text, const QString &fileName, const QStringList &knownClasses);
};
