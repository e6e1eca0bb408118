/// \file
/// The numbers by which a widget is wired.
#pragma once

#include <QByteArray>
#include <QMetaMethod>
#include <QString>
#include <QVector>

/// One number of a widget: a property such as "clickID", or a parameter such as "cmd_ID" that no property of
/// the widget stands for.
struct WidgetNumber {
    QString name;
    bool isProperty = false;
    QStringList carriedBy;  ///< Names of the signals that carry it.
    QStringList listenedBy; ///< Names of the slots that have it as their first argument.
};

/// The property whose number the argument called \a parameter of a method of \a meta is compared with or
/// carries: "set_id" is "setID", "id" is "emitID" or else "clickID". Empty when it is none of them.
QString numberProperty(const QMetaObject &meta, const QString &parameter);

/// The name of the first argument of \a method if it is a number by which widgets are wired, else empty.
QString numberParameter(const QMetaMethod &method);

/// All numbers of \a meta: its properties in their order, then the others as they first appear.
QVector<WidgetNumber> widgetNumbers(const QMetaObject &meta, const QVector<QMetaMethod> &methods);
