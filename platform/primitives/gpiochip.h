/// \file
/// Pins of a GPIO chip of the kernel.
#pragma once

#include "pigpio.h"

#include <map>
#include <string>

struct gpiod_chip;
struct gpiod_line;

/// Drives the lines of one chip, which is opened on first use. Lines stay requested until the end.
class GpioChip : public PIGPIO::Backend
{
public:
    explicit GpioChip(std::string name);
    ~GpioChip() override;

    bool initPin(int pin, PIGPIO::Direction direction) override;
    bool pinSet(int pin, bool high) override;

private:
    bool openChip();

    std::string m_name;
    gpiod_chip *m_chip = nullptr;
    std::map<int, gpiod_line *> m_lines;
};
