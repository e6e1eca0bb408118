/// \file
/// Ending a program politely.
#pragma once

/// Ends the event loop of the application object on an interrupt, a hang-up or a request to terminate,
/// so that everything is taken down in order. Call once, after the application object was made.
void quitOnSignals();
