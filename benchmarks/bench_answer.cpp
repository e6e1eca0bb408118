// Finding the answer that a message is, beside a plain walk over patterns that lie side by side. Both fill
// the same map with what the message says.
#include "comparison.h"
#include "subjects.h"

#include <localdevice.h>

#include <cstdint>
#include <memory>
#include <vector>

namespace
{

constexpr int Answers = 1000;
constexpr int Loops = 20;

/// Answers of one device: a head, its number, the answer's number in two bytes, and two values.
QMap<int, QVector<int>> patterns()
{
    QMap<int, QVector<int>> all;
    for (int i = 0; i < Answers; ++i)
        all[i] = {0xAA, 0x05, i >> 8, i & 0xFF, ~0, ~1};
    return all;
}

/// The last of all answers.
QByteArray message()
{
    const QByteArray head = QByteArray::fromHex("aa05");
    return head + char((Answers - 1) >> 8) + char((Answers - 1) & 0xFF) + "\x11\x22";
}

class Device : public LocalDevice
{
public:
    Device() { answers = patterns(); }

    int find(const QByteArray &data)
    {
        int id = -1;
        findAnswer(data, id);
        return id;
    }

    const QMap<int, int> &captured() const { return answerArguments; }
};

/// Each pattern's bytes and, where they are to be read, the number of the value.
class PlainPatterns
{
public:
    explicit PlainPatterns(const QMap<int, QVector<int>> &patterns)
    {
        for (auto it = patterns.cbegin(); it != patterns.cend(); ++it) {
            m_entries.push_back({it.key(), m_elements.size(), it->size()});
            for (const int element : *it)
                m_elements.push_back({std::uint8_t(element), std::int8_t(element < 0 ? ~element : -1)});
        }
    }

    int find(const QByteArray &data)
    {
        m_captured.clear();
        for (const Entry &entry : m_entries) {
            if (entry.size == data.size() && matches(&m_elements[entry.first], data))
                return entry.id;
        }
        return -1;
    }

    const QMap<int, int> &captured() const { return m_captured; }

private:
    struct Element {
        std::uint8_t byte;
        std::int8_t value;
    };
    struct Entry {
        int id;
        std::size_t first;
        int size;
    };

    bool matches(const Element *elements, const QByteArray &data)
    {
        const char *bytes = data.constData();
        for (int i = 0; i < data.size(); ++i) {
            const auto byte = static_cast<std::uint8_t>(bytes[i]);
            if (elements[i].value >= 0)
                m_captured.insert(elements[i].value, byte);
            else if (elements[i].byte != byte)
                return false;
        }
        return true;
    }

    std::vector<Element> m_elements;
    std::vector<Entry> m_entries;
    QMap<int, int> m_captured;
};

template <typename Finder>
Contender finding(const std::string &name, const std::shared_ptr<Finder> &finder)
{
    const QByteArray data = message();
    return {name,
            [finder, data] {
                int sum = 0;
                for (int i = 0; i < Loops; ++i)
                    sum += finder->find(data);
                require(sum == Loops * (Answers - 1), "an answer was not found");
            },
            Loops,
            [finder, data] {
                QString words = QString::number(finder->find(data));
                for (auto it = finder->captured().cbegin(); it != finder->captured().cend(); ++it)
                    words += QStringLiteral(" %1:%2").arg(it.key()).arg(it.value());
                return words.toStdString();
            }};
}

} // namespace

void benchAnswer()
{
    compare("answer among 1,000", finding("LocalDevice", std::make_shared<Device>()),
            finding("walk over bytes", std::make_shared<PlainPatterns>(patterns())), 1.2);
}
