#include "linebooks.h"

#include <algorithm>
#include <map>

namespace
{

struct Entry {
    int writer = 0;
    int number = 0;
    int whole = 0;    ///< Times that it came through.
    int begun = 0;    ///< Times that only its begin came through.
    int reported = 0; ///< Times that it was reported lost.
    bool mayBeOut = false;
};

using Entries = std::map<std::string, Entry>;

/// Writer and number as they stand in the block: "<writer.number....>".
Entry entryOf(const std::string &block)
{
    Entry entry;
    entry.writer = std::stoi(block.substr(1));
    entry.number = std::stoi(block.substr(block.find('.') + 1));
    return entry;
}

std::string noteWhole(Entries &entries, std::map<int, int> &last, const std::string &block)
{
    const auto found = entries.find(block);
    if (found == entries.end())
        return "received what nobody wrote: " + block;
    Entry &entry = found->second;
    ++entry.whole;
    if (last.count(entry.writer) && last[entry.writer] >= entry.number)
        return "received out of order or twice: " + block;
    last[entry.writer] = entry.number;
    return {};
}

std::string noteBegun(Entries &entries, const std::string &piece)
{
    const auto found = entries.lower_bound(piece);
    if (found == entries.end() || found->first.compare(0, piece.size(), piece) != 0)
        return "received a piece of no block: " + piece;
    ++found->second.begun;
    return {};
}

std::string noteReceived(Entries &entries, const std::string &received)
{
    std::map<int, int> last;
    size_t begin = 0;
    while (begin < received.size()) {
        const size_t next = std::min(received.find('<', begin + 1), received.size());
        const std::string piece = received.substr(begin, next - begin);
        const std::string mistake = piece.back() == '>' ? noteWhole(entries, last, piece) : noteBegun(entries, piece);
        if (!mistake.empty())
            return mistake;
        begin = next;
    }
    return {};
}

std::string noteReported(Entries &entries, const QStringList &console)
{
    for (const QString &line : console) {
        const int hexadecimal = line.indexOf(QLatin1String("is lost: "));
        if (hexadecimal < 0)
            continue;
        const std::string block = QByteArray::fromHex(line.mid(hexadecimal + 9).toLatin1()).toStdString();
        const auto found = entries.find(block);
        if (found == entries.end())
            return "reported what nobody wrote: " + line.toStdString();
        if (!line.contains(QStringLiteral("a block of %1 bytes").arg(block.size())))
            return "reported with a wrong size: " + line.toStdString();
        ++found->second.reported;
        found->second.mayBeOut = line.contains(QLatin1String("while sending"));
    }
    return {};
}

} // namespace

std::string LineBooks::next(int writer, int size)
{
    if (m_numbers.size() <= size_t(writer))
        m_numbers.resize(size_t(writer) + 1, 0);
    std::string block = "<" + std::to_string(writer) + "." + std::to_string(m_numbers[size_t(writer)]++) + ".";
    block.append(size_t(std::max(size - int(block.size()) - 1, 0)), 'x');
    block += ">";
    m_blocks.push_back(block);
    return block;
}

void LineBooks::add(const LineBooks &other)
{
    m_blocks.insert(m_blocks.end(), other.m_blocks.begin(), other.m_blocks.end());
}

std::string LineBooks::mistake(const std::string &received, const QStringList &console) const
{
    Entries entries;
    for (const std::string &block : m_blocks)
        entries.emplace(block, entryOf(block));
    std::string mistake = noteReceived(entries, received);
    if (mistake.empty())
        mistake = noteReported(entries, console);
    if (!mistake.empty())
        return mistake;
    for (const auto &[block, entry] : entries) {
        if (entry.whole > 1 || entry.reported > 1)
            return "more than once: " + block;
        if (entry.whole + entry.reported == 0)
            return "vanished: " + block;
        if (entry.whole == 1 && entry.reported == 1 && !entry.mayBeOut)
            return "received and reported lost: " + block;
    }
    return {};
}
