/// \file
/// The widgets that a panel's form may hold.
#pragma once

#include <QCoreApplication>
#include <QLayout>
#include <QPointer>
#include <QStringList>
#include <QUiLoader>

#include <vector>

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
    ~FormWidgets() override; ///< Deletes the layouts that found no place in a form.

    /// Every class that a `<widget>` of a form may have.
    QStringList knownClasses() const;

    QWidget *createWidget(const QString &className, QWidget *parent, const QString &name) override;
    QLayout *createLayout(const QString &className, QObject *parent, const QString &name) override;

private:
    std::vector<QPointer<QLayout>> m_layouts;
};
