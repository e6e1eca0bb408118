/// \file
/// The widgets of this library, named once for all who offer them: the form loader, the designer, tests.
#pragma once

#include <QSize>
#include <QString>
#include <QVector>

#include <kelwidgetsexport.h>

class QWidget;

/// One widget as people choose it from a list.
struct KelWidgetInfo {
    QString className;
    QString group;     ///< Where a list shows it, "Kel Widgets".
    QString icon;      ///< Path of its picture in the resources.
    QString toolTip;   ///< What it is, in a few words.
    QString whatsThis; ///< What it is for, in a sentence or two.
    QSize firstSize;   ///< Size when it is dropped on a form.
    bool isContainer = false;
    QWidget *(*create)(QWidget *parent) = nullptr; ///< Makes one; the caller owns it through \a parent.
};

/// Every widget that can be put on a form, in the order that lists show.
KEL_WIDGETS_EXPORT const QVector<KelWidgetInfo> &kelWidgetList();
