/// \file
/// Which numbers the wires of a panel carry, and to which a slot listens.
#pragma once

#include "check/cataloguemodel.h"
#include "check/checkedpanel.h"

#include <QSet>

#include <optional>

/// The numbers that a wire may carry as its first argument.
struct SentNumbers {
    QSet<int> numbers;
    QString source; ///< Where they come from: "clickID of \"button\"", "the answers of \"relay\"".
};

/// A slot that compares its first argument with a property of its widget.
struct NumberedSlot {
    QString property;          ///< "yesID"
    std::optional<int> number; ///< Its value; nothing when a wire sets it.
    bool isChoosing = false;   ///< Every number does something, its own something else.
};

/// The numbers of a panel's wires, which have to be good ones.
class PanelNumbers
{
public:
    /// \a catalogue may be null: what devices send is unknown then. Both have to outlive this object.
    PanelNumbers(const CheckedPanel &panel, CatalogueModel *catalogue);

    /// What \a wire carries; nothing when the form does not say.
    std::optional<SentNumbers> sentBy(const CheckedWire &wire) const;

    /// How the slot of \a wire listens; nothing when it does not by number.
    std::optional<NumberedSlot> heardBy(const CheckedWire &wire) const;

    /// The catalogue's device of the LocalDevice \a object; null when it is unknown or not complete.
    const CatalogueDevice *deviceOf(const FormObject &object) const;

private:
    const CheckedPanel &m_panel;
    CatalogueModel *m_catalogue;
};

/// The arguments that the answer \a text reads.
QSet<int> capturesOf(const QString &text, int deviceID);
