/// \file
/// Brings the answers of a panel's devices to its plots.
#pragma once

#include <QString>
#include <QStringList>
#include <QWidget>

/// The answer argument whose values a plot shows, as the left text of a plotted variable names it:
/// "device.number".
struct PlotSource {
    QString device; ///< Object name of a LocalDevice.
    int argument = -1;
    QString error; ///< What is wrong with the text; empty when it is good.

    /// Splits \a text at its last dot. The number is decimal.
    static PlotSource fromText(const QString &text);
};

/// From now on every value that a device of \a window reads out of an answer becomes a point of the
/// curves that show it, at the present time, and counts as that variable's data. Every plot with
/// variables starts anew, so that its progress icon turns until all of them have come. Returns a line for
/// each variable that cannot be fed; the others are. GUI thread only.
QStringList feedPlots(QWidget &window);
