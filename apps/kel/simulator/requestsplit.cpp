#include "simulator/requestsplit.h"

#include <algorithm>

namespace
{

/// More than that hardly comes between two looks at the line, and the cuts of much take long.
constexpr int MaxCutSize = 256;

bool matches(const AnswerPattern &pattern, const QByteArray &bytes)
{
    QMap<int, int> captures;
    return pattern.match(bytes, captures);
}

/// How long the piece at each place is so that the rest can be cut too; 0 where there is none.
QVector<int> piecesBackwards(const QByteArray &bytes, const QVector<AnswerPattern> &patterns)
{
    QVector<int> pieces(bytes.size() + 1, 0);
    for (int place = bytes.size() - 1; place >= 0; --place) {
        for (const AnswerPattern &pattern : patterns) {
            const int size = pattern.elements().size();
            const int end = place + size;
            const bool canGoOn = end == bytes.size() || (end < bytes.size() && pieces.at(end) > 0);
            if (size == 0 || !canGoOn || !matches(pattern, bytes.mid(place, size)))
                continue;
            pieces[place] = size;
            break;
        }
    }
    return pieces;
}

} // namespace

QVector<QByteArray> requestsIn(const QByteArray &bytes, const QVector<AnswerPattern> &patterns)
{
    const auto isWhole = [&bytes](const AnswerPattern &pattern) { return matches(pattern, bytes); };
    if (bytes.size() > MaxCutSize || std::any_of(patterns.cbegin(), patterns.cend(), isWhole))
        return {bytes};

    const QVector<int> pieces = piecesBackwards(bytes, patterns);
    if (pieces.at(0) == 0)
        return {bytes};
    QVector<QByteArray> requests;
    for (int place = 0; place < bytes.size(); place += pieces.at(place))
        requests << bytes.mid(place, pieces.at(place));
    return requests;
}
