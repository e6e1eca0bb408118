/// \file
/// The variables that the plots of a panel show.
#pragma once

#include "check/checkedpanel.h"

/// One variable of a plot.
struct PlotVariable {
    const FormObject *plot = nullptr;
    int line = 0;
    QString name; ///< As the form writes it: "device.number".
    QString device;
    int argument = -1;
    QString problem; ///< What is wrong with the name; empty when it is good.
};

/// Every variable of every plot, in the order of the form.
QVector<PlotVariable> plotVariables(const CheckedPanel &panel);
