#include "gpiochip.h"

#include "picout.h"

#include <cerrno>
#include <cstring>
#include <gpiod.h>
#include <utility>

namespace
{

constexpr const char *Consumer = "kel";

int levelOf(gpiod_line *line)
{
    if (gpiod_line_request_input(line, Consumer) != 0)
        return -1;
    const int level = gpiod_line_get_value(line);
    gpiod_line_release(line);
    return level;
}

/// An output starts at the level that the pin has, so that taking it makes no pulse.
bool requestOutput(gpiod_line *line)
{
    const int level = levelOf(line);
    return level >= 0 && gpiod_line_request_output(line, Consumer, level) == 0;
}

} // namespace

GpioChip::GpioChip(std::string name)
    : m_name(std::move(name))
{
}

GpioChip::~GpioChip()
{
    if (m_chip)
        gpiod_chip_close(m_chip);
}

bool GpioChip::openChip()
{
    if (!m_chip)
        m_chip = gpiod_chip_open_lookup(m_name.c_str());
    if (!m_chip)
        PICout(piDebug) << "GPIO chip" << m_name.c_str() << "does not open:" << std::strerror(errno);
    return m_chip != nullptr;
}

bool GpioChip::initPin(int pin, PIGPIO::Direction direction)
{
    if (pin < 0 || !openChip())
        return false;

    gpiod_line *line = gpiod_chip_get_line(m_chip, static_cast<unsigned int>(pin));
    if (line && m_lines.erase(pin) > 0)
        gpiod_line_release(line);
    const bool isTaken =
        line && (direction == PIGPIO::Out ? requestOutput(line) : gpiod_line_request_input(line, Consumer) == 0);
    if (isTaken)
        m_lines[pin] = line;
    else
        PICout(piDebug) << "Pin" << pin << "of" << m_name.c_str() << "cannot be used:" << std::strerror(errno);
    return isTaken;
}

bool GpioChip::pinSet(int pin, bool high)
{
    const auto line = m_lines.find(pin);
    return line != m_lines.end() && gpiod_line_set_value(line->second, high ? 1 : 0) == 0;
}
