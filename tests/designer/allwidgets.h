/// \file
/// A window with every widget of the list, each of its properties changed.
#pragma once

#include <QMetaEnum>
#include <QWidget>

#include <memory>

/// Makes the window. Every widget stands in it as often as its longest enumeration has names, each time
/// with the next of them, so that every name of every enumeration occurs. Object names are the class with
/// a number behind it ("KelLight_2").
std::unique_ptr<QWidget> makeAllWidgets();

/// Whether the name \a key of \a enumerator says too little alone: curves that need points or a function.
bool needsMore(const QMetaEnum &enumerator, int key);

/// What the designable properties that \a widget's own classes add say, one "name = value" each; numbers
/// in full precision, enumerations by name; and its pages.
QStringList ownProperties(const QWidget &widget);
