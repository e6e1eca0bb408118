#include "picout.h"

#include "pibytearray.h"
#include "pivariant.h"

#include <cerrno>
#include <unistd.h>

namespace
{

// One write call per line keeps it whole, also against other writers to the same terminal or file.
// What the system takes only in part is completed; a closed standard error is nobody's trouble.
void writeLine(const std::string &line)
{
    std::string_view rest = line;
    while (!rest.empty()) {
        const ssize_t written = ::write(STDERR_FILENO, rest.data(), rest.size());
        if (written > 0)
            rest.remove_prefix(size_t(written));
        else if (errno != EINTR)
            return;
    }
}

void appendEscaped(std::string &line, std::string_view utf8)
{
    for (const char c : utf8) {
        if (c == '\n')
            line += "\\n";
        else if (c == '\r')
            line += "\\r";
        else
            line += c;
    }
}

} // namespace

PICout::PICout(PICoutChannel) {}

PICout::~PICout()
{
    m_line += '\n';
    writeLine(m_line);
}

PICout &PICout::operator<<(std::string_view utf8)
{
    if (!utf8.empty() && !m_line.empty())
        m_line += ' ';
    appendEscaped(m_line, utf8);
    return *this;
}

PICout &PICout::operator<<(const char *utf8)
{
    return *this << std::string_view(utf8 ? utf8 : "");
}

PICout &PICout::operator<<(const PIString &text)
{
    return *this << text.toUtf8();
}

PICout &PICout::operator<<(const PIByteArray &bytes)
{
    static constexpr char Digits[] = "0123456789ABCDEF";
    std::string text;
    for (const unsigned char byte : bytes) {
        if (!text.empty())
            text += ' ';
        text += Digits[byte >> 4];
        text += Digits[byte & 0x0F];
    }
    return *this << text;
}

PICout &PICout::operator<<(const PIVariant &value)
{
    return *this << value.toString();
}

PICout &PICout::addReal(double value)
{
    return *this << QString::number(value, 'g', 15).toStdString();
}
