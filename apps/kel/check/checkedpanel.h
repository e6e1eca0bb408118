/// \file
/// A panel whose wires are looked up in its classes, without any widget of it.
#pragma once

#include "check/formmodel.h"
#include "panel/formwidgets.h"
#include "panel/formwire.h"

#include <QSet>

#include <map>
#include <memory>

/// One connection of the form with what its ends turned out to be.
struct CheckedWire {
    const FormConnection *text = nullptr;
    /// Null when it is not on the form, or a part of another widget.
    const FormObject *sender = nullptr;
    const FormObject *receiver = nullptr;
    bool hasSender = true; ///< Whether there is such an object at all; so with the next.
    bool hasReceiver = true;
    FormWire ends; ///< Looked up when both are there.

    /// Whether it can be made.
    bool isGood() const { return hasSender && hasReceiver && ends.fit == FormWire::Fit::Good; }

    /// The name of the signal as the form writes it, known or not: "clickedID".
    QString signalName() const;
    QString slotName() const;
};

/// A panel's objects, classes and wires. The widgets are not made; of each class there is one, hidden
/// and empty, that is asked for signals, slots and first values. GUI thread only.
class CheckedPanel
{
public:
    /// Reads \a text; \a file is how errors call it. Throws a CommandError when the text is no form that
    /// could be loaded.
    CheckedPanel(const QByteArray &text, const QString &file);
    ~CheckedPanel();

    const QString &file() const { return m_file; }
    const FormModel &form() const { return m_form; }
    const QVector<CheckedWire> &wires() const { return m_wires; }

    /// The wires that begin at \a object.
    QVector<const CheckedWire *> wiresFrom(const FormObject &object) const { return m_wiresFrom.value(&object); }
    /// The wires that end at \a object.
    QVector<const CheckedWire *> wiresTo(const FormObject &object) const { return m_wiresTo.value(&object); }

    /// The object called \a name, the first if there are several; null when there is none.
    const FormObject *object(const QString &name) const { return m_byName.value(name); }

    const QMetaObject &classOf(const FormObject &object) const;
    /// Whether \a object is a \a className or made from it.
    bool isA(const FormObject &object, const char *className) const;
    bool hasProperty(const FormObject &object, const QString &property) const;
    /// The whole number that \a property begins with, by the form or else by the class.
    int numberOf(const FormObject &object, const QString &property) const;
    /// Whether a wire ends at the slot that sets \a property, so that its value is not known.
    bool isSetByWire(const FormObject &object, const QString &property) const;

private:
    const QObject &exampleOf(const FormObject &object) const;
    const QMetaObject *classOfPart(const QString &name) const;
    void readConnections();
    CheckedWire wireOf(const FormConnection &connection) const;

    QString m_file;
    std::unique_ptr<FormWidgets> m_widgets;
    FormModel m_form;
    QVector<FormConnection> m_connections;
    QVector<CheckedWire> m_wires;
    QHash<QString, const FormObject *> m_byName;
    QHash<const FormObject *, QVector<const CheckedWire *>> m_wiresFrom;
    QHash<const FormObject *, QVector<const CheckedWire *>> m_wiresTo;
    QSet<QString> m_slotsWithWires;                                 ///< "object slot".
    mutable std::map<QString, std::unique_ptr<QObject>> m_examples; ///< By class.
};
