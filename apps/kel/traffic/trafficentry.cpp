#include "traffic/trafficentry.h"

#include "printable.h"

#include <QRegularExpression>
#include <QStringList>

namespace
{

using Direction = TrafficEntry::Direction;

const QString TimeFormat = QStringLiteral("HH:mm:ss.zzz");
const QLatin1String NoBytes("nothing");
const QLatin1String Gap("  "); ///< Between the bytes and the remark.

QLatin1String arrowOf(Direction direction)
{
    switch (direction) {
    case Direction::Received:
        return QLatin1String("<-");
    case Direction::Sent:
        return QLatin1String("->");
    case Direction::Unknown:
        return QLatin1String("<>");
    case Direction::Note:
        break;
    }
    return QLatin1String("--");
}

/// Reads "A1 01" or "nothing".
bool readBytes(const QString &text, QByteArray &bytes)
{
    bytes.clear();
    if (text == NoBytes)
        return true;
    if (text.isEmpty() || text.size() % 3 != 2)
        return false;
    bytes.reserve((text.size() + 1) / 3);
    for (int i = 0; i < text.size(); i += 3) {
        bool isByte = false;
        const QChar first = text.at(i);
        const int byte = text.midRef(i, 2).toInt(&isByte, 16);
        const bool isSign = first == QLatin1Char('+') || first == QLatin1Char('-') || first.isSpace();
        if (!isByte || isSign || text.at(i + 1).isSpace())
            return false;
        if (i + 2 < text.size() && text.at(i + 2) != QLatin1Char(' '))
            return false;
        bytes.append(char(byte));
    }
    return true;
}

} // namespace

bool TrafficEntry::isRequest() const
{
    return direction == (end == QLatin1String("device") ? Direction::Received : Direction::Sent);
}

QString TrafficEntry::text() const
{
    const QString plain = printable(remark.simplified());
    QString said = direction == Direction::Note ? plain : hexText(bytes);
    if (direction != Direction::Note && !plain.isEmpty())
        said += Gap + plain;
    const QString line =
        QStringLiteral("%1  %2 %3 ").arg(time.toString(TimeFormat), end.leftJustified(6), arrowOf(direction));
    return line + said; // its own step, since the text may hold what arg() would fill in
}

bool TrafficEntry::readLine(const QString &given, QString *error)
{
    const QString line = given.endsWith(QLatin1Char('\r')) ? given.chopped(1) : given;
    static const QRegularExpression Shape(QStringLiteral("^([0-9:.]{12})  (panel|device|line) *(<-|->|<>|--) (.*)$"));
    *this = TrafficEntry();
    if (line.trimmed().isEmpty() || line.startsWith(QLatin1Char('#')))
        return true;
    const QRegularExpressionMatch match = Shape.match(line);
    time = QTime::fromString(match.captured(1), TimeFormat);
    if (!match.hasMatch() || !time.isValid()) {
        *error = QStringLiteral("no line of traffic, as \"22:57:18.832  device <- A1 01\"");
        return false;
    }
    end = match.captured(2);
    for (const Direction known : {Direction::Received, Direction::Sent, Direction::Unknown, Direction::Note}) {
        if (match.captured(3) == arrowOf(known))
            direction = known;
    }
    const QString said = match.captured(4);
    if (direction == Direction::Note) {
        remark = said;
        return true;
    }
    const int gap = said.indexOf(Gap);
    remark = gap < 0 ? QString() : said.mid(gap + Gap.size());
    if (readBytes(gap < 0 ? said : said.left(gap), bytes))
        return true;
    *error = QStringLiteral("\"%1\" are no bytes, as \"A1 01\" or \"nothing\"").arg(printable(said.left(40)));
    return false;
}

TrafficRecord TrafficRecord::fromText(const QByteArray &text, const QString &fileName)
{
    TrafficRecord record;
    const auto fail = [&](int line, const QString &what) {
        record.entries.clear();
        record.error = QStringLiteral("%1:%2: %3").arg(printable(fileName), QString::number(line), what);
    };
    if (text.size() > MaxSize) {
        fail(1, QStringLiteral("larger than %1 MiB").arg(MaxSize / 1024 / 1024));
        return record;
    }
    int number = 0;
    for (int begin = 0; begin < text.size();) {
        const int found = text.indexOf('\n', begin);
        const int end = found < 0 ? text.size() : found;
        ++number;
        TrafficEntry entry;
        QString error = QStringLiteral("longer than %1 KiB").arg(TrafficEntry::MaxLineSize / 1024);
        if (end - begin > TrafficEntry::MaxLineSize ||
            !entry.readLine(QString::fromUtf8(text.constData() + begin, end - begin), &error)) {
            fail(number, error);
            return record;
        }
        entry.line = number;
        if (!entry.end.isEmpty())
            record.entries.append(entry);
        begin = end + 1;
    }
    return record;
}

QString hexText(const QByteArray &bytes)
{
    return bytes.isEmpty() ? QString(NoBytes) : QString::fromLatin1(bytes.toHex(' ').toUpper());
}
