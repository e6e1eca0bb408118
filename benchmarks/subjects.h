/// \file
/// What is compared, a file and a function for each subject.
#pragma once

/// Each adds the comparisons of its subject. What they need lives as long as the contenders.
void benchAnimation();
void benchAnswer();
void benchCatalogue();
void benchClock();
void benchCodec();
void benchExpression();
void benchPaint();
void benchPin();
void benchPlot();
void benchStart();
void benchTabs();
void benchThermometer();

/// Every subject, in the order of the table.
struct Subject {
    const char *name;
    void (*add)();
};
constexpr Subject Subjects[] = {
    {"codec", benchCodec},
    {"expression", benchExpression},
    {"answer", benchAnswer},
    {"catalogue", benchCatalogue},
    {"pin", benchPin},
    {"paint", benchPaint},
    {"clock", benchClock},
    {"tabs", benchTabs},
    {"thermometer", benchThermometer},
    {"plot", benchPlot},
    {"animation", benchAnimation},
    {"start", benchStart},
};
