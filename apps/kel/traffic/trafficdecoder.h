/// \file
/// What the bytes on a line mean to a catalogue.
#pragma once

#include "catalogue/cataloguerows.h"
#include "traffic/trafficentry.h"

/// Finds the command or the answer of a catalogue that bytes are. Made once for a catalogue; a value class.
class TrafficDecoder
{
public:
    TrafficDecoder() = default; ///< Knows nothing.

    /// Knows the commands and answers of all instances in \a data, or only of the one with the name or number
    /// \a instance. Throws a CommandError when there is none of that name.
    explicit TrafficDecoder(const CatalogueData &data, const QString &instance = QString());

    /// Gives \a entry, if it has bytes that are known, a remark such as "Ceiling: command 12, switch on (%0 = 1)". A
    /// direction that is unknown becomes that of a panel: commands are sent, answers received.
    void explain(TrafficEntry &entry) const;

private:
    /// One command or answer of one instance. An element of \c pattern is a byte, or as in an AnswerPattern
    /// negative for an argument; AnyByte for an expression whose value is not known.
    struct Message {
        bool isCommand = false;
        QVector<int> pattern;
        QString title;
        int fixedBytes = 0;
    };
    static constexpr int AnyByte = -1000000;

    void addTexts(const CatalogueData &data, CatalogueSection section, const CatalogueRow &instance);
    static QVector<int> commandPattern(const QString &text, int deviceId);
    static int expressionElement(const QString &token);
    static bool isMatch(const Message &message, const QByteArray &bytes);
    const Message *find(const QByteArray &bytes, bool isCommand) const;

    QVector<Message> m_messages;
};
