/// \file
/// Digital pins of the machine.
#pragma once

#include <kelprimitivesexport.h>

#include <memory>

/// Sets up pins and drives them. Every function may be called from any thread; calls are serialised.
class KEL_PRIMITIVES_EXPORT PIGPIO
{
public:
    enum Direction { In, Out };

    /// What does the work. Calls never overlap. An exception that leaves it counts as a failure.
    class KEL_PRIMITIVES_EXPORT Backend
    {
    public:
        virtual ~Backend();

        virtual bool initPin(int pin, Direction direction) = 0; ///< True when the pin can be used.
        virtual bool pinSet(int pin, bool high) = 0;            ///< True when the level is on the pin.
    };

    /// Makes \a pin an input or an output. False, with a line on standard error, when it cannot.
    static bool initPin(int pin, Direction direction);

    /// Drives \a pin, an output by initPin(). False when it cannot; the first failure of a pin in a
    /// row is reported on standard error.
    static bool pinSet(int pin, bool high);

    /// Replaces what does the work and destroys the one before. Null brings back the default: the
    /// kernel's GPIO chip named by the environment variable `KEL_GPIO_CHIP`, else "gpiochip0".
    static void setBackend(std::unique_ptr<Backend> backend);
};
