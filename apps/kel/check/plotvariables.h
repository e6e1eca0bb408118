/// \file
/// The variables that the plots of a panel show.
#pragma once

#include "check/checkedpanel.h"
#include "panel/plotfeed.h"

/// One variable of a plot.
struct PlotVariable {
    const FormObject *plot = nullptr;
    int line = 0;
    QString name; ///< As the form writes it: "device.number".
    PlotSource source;
};

/// Every variable of every plot, in the order of the form.
QVector<PlotVariable> plotVariables(const CheckedPanel &panel);
