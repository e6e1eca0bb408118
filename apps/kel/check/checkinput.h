/// \file
/// What each group of rules looks at.
#pragma once

#include "check/cataloguemodel.h"
#include "check/checkedpanel.h"
#include "check/finding.h"

/// A panel and its catalogue, and where findings go.
struct CheckInput {
    const CheckedPanel &panel;
    CatalogueModel *catalogue = nullptr; ///< Null without a catalogue: what needs one is left out.
    Findings &findings;
};

// One function for each group of rules.
void checkConnections(const CheckInput &input); ///< Whether each wire can be made, and names are clear.
void checkNumbers(const CheckInput &input);     ///< Whether numbered wires meet someone of their number.
void checkButtons(const CheckInput &input);     ///< What buttons name in the catalogue.
void checkDevices(const CheckInput &input);     ///< Which devices there are, what they are told and who listens.
void checkTexts(const CheckInput &input);       ///< Command and answer texts of the panel's devices.
void checkPlots(const CheckInput &input);       ///< Variables of plots.
void checkPictures(const CheckInput &input);    ///< Files that the form names.
