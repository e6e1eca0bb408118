#include "commonpalette.h"

#include <algorithm>
#include <vector>

namespace
{

/// A panel has few colours at a time. Those that fade look up one for each frame.
constexpr size_t MostKept = 16;

} // namespace

QPalette commonPalette(const QPalette &palette)
{
    static std::vector<QPalette> recent; // the last one asked for at the front
    const auto isSame = [&palette](const QPalette &other) {
        return other == palette && other.currentColorGroup() == palette.currentColorGroup();
    };
    auto found = std::find_if(recent.begin(), recent.end(), isSame);
    if (found == recent.end()) {
        if (recent.size() == MostKept)
            recent.pop_back();
        found = recent.insert(recent.end(), palette);
    }
    std::rotate(recent.begin(), found, found + 1);
    return recent.front();
}
