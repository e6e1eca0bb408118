#include "catalogue/tomldepth.h"

#include <algorithm>

namespace
{

/// The position behind the text that begins at \a at with a quote: a text of one line ends with it at the
/// latest, one in three quotes ends with three.
int endOfText(const QByteArray &text, int at)
{
    const char quote = text.at(at);
    const bool hasEscapes = quote == '"';
    const QByteArray three(3, quote);
    const bool isLong = text.mid(at, 3) == three;
    for (int i = at + (isLong ? 3 : 1); i < text.size(); ++i) {
        if (hasEscapes && text.at(i) == '\\')
            ++i;
        else if (isLong && text.mid(i, 3) == three)
            return i + 3;
        else if (!isLong && (text.at(i) == quote || text.at(i) == '\n'))
            return text.at(i) == quote ? i + 1 : i;
    }
    return text.size();
}

} // namespace

int firstDeepTomlLine(const QByteArray &text, int most)
{
    int line = 1;
    int dots = 0;
    for (int i = 0; i < text.size();) {
        const char c = text.at(i);
        if (c == '"' || c == '\'') {
            const int end = endOfText(text, i);
            line += int(std::count(text.cbegin() + i, text.cbegin() + end, '\n'));
            i = end;
            continue;
        }
        if (c == '#') {
            const int end = text.indexOf('\n', i);
            i = end < 0 ? text.size() : end;
            continue;
        }
        dots = c == '\n' ? 0 : c == '.' ? dots + 1 : dots;
        if (dots > most)
            return line;
        line += c == '\n' ? 1 : 0;
        ++i;
    }
    return 0;
}
