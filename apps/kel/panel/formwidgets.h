/// \file
/// The widgets that a panel's form may hold.
#pragma once

#include <QCoreApplication>
#include <QStringList>
#include <QUiLoader>

/// Empties the library paths until restore(): the loader would load every plugin that it finds there.
class WithoutLibraryPaths
{
public:
    WithoutLibraryPaths();
    void restore();

private:
    QStringList m_paths;
};

/// Qt's form loader with this library's widgets and without any plugin. GUI thread only.
class FormWidgets : private WithoutLibraryPaths, public QUiLoader
{
public:
    FormWidgets();

    /// Every class that a `<widget>` of a form may have.
    QStringList knownClasses() const;

    QWidget *createWidget(const QString &className, QWidget *parent, const QString &name) override;
};
