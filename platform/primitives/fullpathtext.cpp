#include "fullpathtext.h"

#include <string>

PIString fullPathField(const std::vector<PIString> &fields, size_t index)
{
    return index < fields.size() ? fields[index].trimmed() : PIString();
}

bool isNumberOrEmpty(const PIString &text)
{
    std::string digits = text.trimmed().toLowerCase().toUtf8();
    if (digits.empty())
        return true;
    if (digits[0] == '-' || digits[0] == '+')
        digits.erase(0, 1);

    const char *allowed = "0123456789";
    if (digits.compare(0, 2, "0x") == 0) {
        allowed = "0123456789abcdef";
        digits.erase(0, 2);
    } else if (digits.compare(0, 2, "0b") == 0) {
        allowed = "01";
        digits.erase(0, 2);
    }
    return !digits.empty() && digits.find_first_not_of(allowed) == std::string::npos;
}
