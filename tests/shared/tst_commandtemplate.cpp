#include "testmain.h"

#include "allocationcount.h"

#include <commandtemplate.h>

#include <random>

using Kv_Designer::CommandTemplate;
using Values = QVector<QVariant>;

namespace
{

QStringList reports;

void keepReports(QtMsgType, const QMessageLogContext &, const QString &message)
{
    reports.append(message);
}

/// Keeps what goes to the debug stream while it lives.
class ReportKeeper
{
public:
    ReportKeeper()
        : m_usual(qInstallMessageHandler(keepReports))
    {
        reports.clear();
    }
    ~ReportKeeper() { qInstallMessageHandler(m_usual); }

private:
    QtMessageHandler m_usual;
};

/// Random templates, values and data; the same ones in every run.
class Source
{
public:
    int below(int limit) { return int(m_engine() % uint(limit)); }
    bool oneIn(int count) { return below(count) == 0; }

    QString text()
    {
        QString result;
        for (int count = below(9); count > 0; --count)
            result += token() + QLatin1String(oneIn(20) ? "" : " ");
        return result;
    }

    Values values()
    {
        Values result(below(6));
        for (QVariant &value : result)
            value = oneValue();
        return result;
    }

    QByteArray bytes(int size)
    {
        QByteArray result(size, '\0');
        for (char &byte : result)
            byte = char(below(256));
        return result;
    }

private:
    QString pick(const QStringList &list) { return list.at(below(list.size())); }

    QString type()
    {
        static const QStringList words{"byte",   "sbyte", "char",   "word",  "USHORT", "sword",  "short",
                                       "dword",  "uint",  "int",    "qword", "sdword", "ullong", "llong",
                                       "sqword", "float", "double", "wrod",  ""};
        return oneIn(2) ? QString()
                        : '(' + QString(oneIn(3) ? "~" : "") + pick(words) + QString(oneIn(3) ? "~" : "") + ')';
    }

    QString token()
    {
        static const QStringList indices{"",   "0",     "1",     "2",         "3",          "4",          "-6",
                                         "0A", "65535", "65536", "100000000", "2147483647", "2147483648", "x"};
        static const QStringList strings{"\"Hi\"", "\"\\0\\n\"", "\"\u00e9\u0416\"", "\"", "\"a\\", "\"\""};
        switch (below(10)) {
        case 0:
            return QStringLiteral(".");
        case 1:
            return '%' + type() + '.';
        case 2:
            return pick(strings);
        case 3:
            return garbage();
        case 4:
        case 5:
        case 6:
            return type() + QString::number(below(oneIn(4) ? 100000 : 256), 16);
        default:
            return '%' + type() + QString(oneIn(3) ? "[n]" : "") +
                   (oneIn(6) ? pick(indices) : QString::number(below(4)));
        }
    }

    QString garbage()
    {
        static const QString letters = QStringLiteral("%%()[]~.-0x1Fword\t\\\"~é");
        QString result;
        for (int count = below(8); count > 0; --count)
            result += letters.at(below(letters.size()));
        return result;
    }

    QVariant oneValue()
    {
        switch (below(7)) {
        case 0:
            return below(256);
        case 1:
            return int(m_engine());
        case 2:
            return qlonglong(m_engine()) << 20;
        case 3:
            return below(1000) / 7.0;
        case 4:
            return QString::number(below(100000));
        case 5:
            return uint(m_engine());
        default:
            return QVariant();
        }
    }

    std::mt19937 m_engine{20260117};
};

bool sameTypesAndValues(const Values &a, const Values &b)
{
    return std::equal(a.cbegin(), a.cend(), b.cbegin(), b.cend(), [](const QVariant &x, const QVariant &y) {
        const bool areNan = x.toDouble() != x.toDouble() && y.toDouble() != y.toDouble();
        return x.userType() == y.userType() && (areNan || x == y);
    });
}

} // namespace

class tst_CommandTemplate : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void workedExample();
    void withoutText();
    void validity_data();
    void validity();
    void names();
    void namesOfFarReferences();
    void missingValue();
    void outIsReused();
    void sharedOutIsLeftAlone();
    void constantOfSeveralBytes();
    void copiesAreIndependent();
    void equalsTheFreeFunctions();
    void knownLengthCostsNoAllocation();
};

void tst_CommandTemplate::workedExample()
{
    const CommandTemplate compiled = CommandTemplate::fromText(QStringLiteral("AA %(word~)[speed]0 . \"Hi\""));
    QByteArray out;
    Values values;

    QVERIFY(compiled.isValid());
    QCOMPARE(compiled.byteCount(), 6);
    QCOMPARE(compiled.argumentCount(), 1);
    QCOMPARE(compiled.argumentNames(), QStringList{QStringLiteral("speed")});
    QVERIFY(compiled.encode({4660}, out));
    QCOMPARE(out, QByteArray::fromHex("aa1234004869"));
    QVERIFY(compiled.match(QByteArray::fromHex("aa12347f4869"), values));
    QCOMPARE(values, Values{4660});
    QVERIFY(!compiled.match(QByteArray::fromHex("aa12347f4800"), values));
}

void tst_CommandTemplate::withoutText()
{
    QByteArray out("old");
    Values values{1};

    QVERIFY(!CommandTemplate().isValid());
    for (const CommandTemplate &compiled : {CommandTemplate(), CommandTemplate::fromText(QString())}) {
        QCOMPARE(compiled.byteCount(), 0);
        QCOMPARE(compiled.argumentCount(), 0);
        QCOMPARE(compiled.argumentNames(), QStringList());
        QVERIFY(compiled.encode({}, out));
        QCOMPARE(out, QByteArray());
        QVERIFY(compiled.match(QByteArray("x"), values));
        QCOMPARE(values, Values{1});
    }
}

void tst_CommandTemplate::validity_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isValid");

    QTest::newRow("empty text") << QString() << true;
    QTest::newRow("whole grammar") << QStringLiteral("AA (word)12 %(~float)[t]0 %. . \"x\"") << true;
    QTest::newRow("misspelt type") << QStringLiteral("%(wrod)0") << false;
    QTest::newRow("no number") << QStringLiteral("AA XY") << false;
    QTest::newRow("string without an end") << QStringLiteral("AA \"x") << false;
}

void tst_CommandTemplate::validity()
{
    QFETCH(QString, text);
    QFETCH(bool, isValid);

    QCOMPARE(CommandTemplate::fromText(text).isValid(), isValid);
}

void tst_CommandTemplate::names()
{
    const QString text = QStringLiteral("%(word)[b]3 %[a]0 %[c]3 %1 %[w].");

    QCOMPARE(CommandTemplate::fromText(text).argumentNames(), (QStringList{"a", "", "", "b"}));
}

void tst_CommandTemplate::namesOfFarReferences()
{
    const CommandTemplate compiled = CommandTemplate::fromText(QStringLiteral("%[far]2147483647 %[near]0"));

    QCOMPARE(compiled.argumentCount(), std::numeric_limits<int>::max());
    QCOMPARE(compiled.argumentNames().size(), 65536);
    QCOMPARE(compiled.argumentNames().first(), QStringLiteral("near"));
}

void tst_CommandTemplate::missingValue()
{
    const ReportKeeper keeper;
    QByteArray out("old");

    QVERIFY(!CommandTemplate::fromText(QStringLiteral("%0 %2 %3")).encode({1, 2}, out));

    QCOMPARE(out, QByteArray());
    QCOMPARE(reports, QStringList{QStringLiteral("Invalid arguments count!")});
}

void tst_CommandTemplate::outIsReused()
{
    const CommandTemplate compiled = CommandTemplate::fromText(QStringLiteral("AA %0 ."));
    QByteArray out("\1\2\3");
    const void *memory = out.constData();

    QVERIFY(compiled.encode({7}, out));

    QCOMPARE(out, QByteArray::fromHex("aa0700"));
    QCOMPARE(static_cast<const void *>(out.constData()), memory);
}

void tst_CommandTemplate::sharedOutIsLeftAlone()
{
    QByteArray out("abc");
    const QByteArray kept = out;

    QVERIFY(CommandTemplate::fromText(QStringLiteral("AA %0 .")).encode({7}, out));

    QCOMPARE(kept, QByteArray("abc"));
}

void tst_CommandTemplate::constantOfSeveralBytes()
{
    const CommandTemplate compiled = CommandTemplate::fromText(QStringLiteral("AA (word)12 (word)34"));
    QByteArray out;
    Values values;

    QVERIFY(compiled.encode({}, out));
    QCOMPARE(out, QByteArray::fromHex("aa12003400"));
    QVERIFY(!compiled.match(out, values));
    QVERIFY(compiled.match(QByteArray::fromHex("aa12123434"), values));
}

void tst_CommandTemplate::copiesAreIndependent()
{
    CommandTemplate compiled = CommandTemplate::fromText(QStringLiteral("AA %0"));
    const CommandTemplate copy = compiled;
    compiled = CommandTemplate::fromText(QStringLiteral("BB"));
    QByteArray out;

    QVERIFY(copy.encode({1}, out));
    QCOMPARE(out, QByteArray::fromHex("aa01"));
    QVERIFY(compiled.encode({}, out));
    QCOMPARE(out, QByteArray::fromHex("bb"));
}

void tst_CommandTemplate::equalsTheFreeFunctions()
{
    constexpr int Templates = 100000;
    const ReportKeeper keeper;
    Source source;
    int encoded = 0;
    int matched = 0;
    int refused = 0;

    for (int i = 0; i < Templates; ++i) {
        const QString text = source.text();
        const QVector<Kv_Designer::CommandArgument> args = packetArgumentsFromText(text);
        const CommandTemplate compiled = CommandTemplate::fromText(text);
        QVERIFY2(compiled.byteCount() == args.size(), qPrintable(text));
        QVERIFY2(compiled.argumentCount() == customArgumentsCount(args), qPrintable(text));

        const Values given = source.values();
        reports.clear();
        const QByteArray expected = prepareCommand(args, given);
        const QStringList expectedReports = reports;
        reports.clear();
        QByteArray out("old");
        const bool isEncoded = compiled.encode(given, out);
        QVERIFY2(out == expected, qPrintable(text));
        QVERIFY2(reports == expectedReports, qPrintable(text));
        QVERIFY2(isEncoded == expectedReports.isEmpty(), qPrintable(text));
        encoded += isEncoded ? 1 : 0;

        // What was sent, bent a little, makes the likelier answer.
        QByteArray data = isEncoded ? expected : source.bytes(source.below(args.size() + 3));
        if (!data.isEmpty() && source.oneIn(3))
            data[source.below(data.size())] = char(source.below(256));
        if (source.oneIn(5))
            data += source.bytes(1);
        Values captured = source.values();
        Values capturedByTemplate = captured;
        const bool isMatch = parseCommand(data, args, captured);
        QVERIFY2(compiled.match(data, capturedByTemplate) == isMatch, qPrintable(text));
        QVERIFY2(sameTypesAndValues(captured, capturedByTemplate), qPrintable(text));
        matched += isMatch && !args.isEmpty() ? 1 : 0;
        refused += isMatch ? 0 : 1;
    }

    // The templates are worth something only when every way through is taken often.
    QVERIFY2(encoded > Templates / 10 && encoded < Templates, qPrintable(QString::number(encoded)));
    QVERIFY2(matched > Templates / 10, qPrintable(QString::number(matched)));
    QVERIFY2(refused > Templates / 10, qPrintable(QString::number(refused)));
}

void tst_CommandTemplate::knownLengthCostsNoAllocation()
{
    if (!canCountAllocations())
        QSKIP("the sanitizer brings its own memory functions");
    const CommandTemplate compiled = CommandTemplate::fromText(QStringLiteral("AA %(word~)[a]0 %(double)1 \"Hi\""));
    const Values given{1, 2.0};
    QByteArray out;
    Values values(2);
    compiled.encode(given, out);

    QCOMPARE(countAllocations([&] { compiled.encode(given, out); }), 0);
    QCOMPARE(countAllocations([&] { compiled.match(out, values); }), 0);
    QCOMPARE(values, given);
}

KEL_TEST_MAIN(tst_CommandTemplate)
#include "tst_commandtemplate.moc"
