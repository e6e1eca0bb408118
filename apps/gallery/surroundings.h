/// \file
/// The same looks on every machine, for programs that make documents.
#pragma once

/// Leaves out what would show where the program runs: scale, style, time zone, language, and what Qt says
/// of a screen that is none. Call it before the application is made.
void forgetSurroundings();

/// Puts on the style and the font of all pictures. False when the font is missing.
bool dress();
