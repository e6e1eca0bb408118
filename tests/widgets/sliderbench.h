/// \file
/// The parts of a KelSlider and what it announces.
#pragma once

#include <QObject>
#include <QStringList>
#include <kelbutton.h>
#include <kelslider.h>

#include <functional>

inline KelButton *button(const KelSlider &slider, const char *name)
{
    return slider.findChild<KelButton *>(QLatin1String(name));
}

inline constexpr const char *ButtonNames[] = {"qt_pbMin", "qt_pbMax", "qt_pbDec", "qt_pbZero", "qt_pbInc"};

/// Everything that the slider announces, in order.
inline QStringList announced(KelSlider &slider, const std::function<void()> &action)
{
    QStringList log;
    QObject guard;
    QObject::connect(&slider, QOverload<double>::of(&KelSlider::valueChanged), &guard,
                     [&log](double value) { log += QStringLiteral("double %1").arg(value); });
    QObject::connect(&slider, QOverload<int>::of(&KelSlider::valueChanged), &guard,
                     [&log](int value) { log += QStringLiteral("int %1").arg(value); });
    QObject::connect(&slider, QOverload<int, double>::of(&KelSlider::valueChangedID), &guard,
                     [&log](int id, double value) { log += QStringLiteral("%1 double %2").arg(id).arg(value); });
    QObject::connect(&slider, QOverload<int, int>::of(&KelSlider::valueChangedID), &guard,
                     [&log](int id, int value) { log += QStringLiteral("%1 int %2").arg(id).arg(value); });
    action();
    return log;
}
