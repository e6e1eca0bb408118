/// \file
/// What widgets that look alike make only once. Not installed.
#pragma once

#include <QCache>
#include <kelwidgetsexport.h>

#include <algorithm>

/// Calls \a forget whenever the application's fonts become others, and before the application ends. Made to be called
/// again and again with the same function.
KEL_WIDGETS_EXPORT void forgetWithFonts(void (*forget)());

/// The parts that were made last for each look. A panel has rows of widgets of one size; the first one makes
/// what does not move, the others take a copy of it, which shares its data. What a widget shows lives on with it, so
/// \a MostKibibytes only limits how many looks are there without making them anew. Only for the thread of the widgets.
template <typename Look, typename Parts, int MostKibibytes = 4 * 1024>
class SharedLooks
{
public:
    /// What was made for \a look, or null. Valid until the next call.
    static const Parts *find(const Look &look) { return cache().object(look); }

    /// Keeps a copy of \a parts, which occupy \a kibibytes. What is larger than all that may be kept is not.
    static void keep(const Look &look, const Parts &parts, int kibibytes)
    {
        forgetWithFonts([] { cache().clear(); });
        cache().insert(look, new Parts(parts), std::max(1, kibibytes));
    }

private:
    static QCache<Look, Parts> &cache()
    {
        static QCache<Look, Parts> looks(MostKibibytes);
        return looks;
    }
};
