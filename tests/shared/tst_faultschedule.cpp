#include "faultbench.h"
#include "testmain.h"

#include <algorithm>
#include <cerrno>
#include <mutex>
#include <random>
#include <thread>

using Kind = FaultyLine::Kind;
using Answer = FaultyLine::Answer;
using Call = FaultyLine::Call;

namespace
{

constexpr int Schedules = 3000;
constexpr int MostSteps = 24;

/// So fast that a block needs no time, or fast enough for a short hold.
constexpr int Speeds[] = {2000000000, 2000000000, 2000000000, 1000000};

class Dice
{
public:
    explicit Dice(unsigned seed)
        : m_engine(seed)
    {
    }

    /// From 0 to \a below - 1. Any thread.
    int roll(int below)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return std::uniform_int_distribution<int>(0, below - 1)(m_engine);
    }
    bool percent(int chance) { return roll(100) < chance; }

private:
    std::mutex m_mutex;
    std::mt19937 m_engine;
};

/// One device, what happens to it in an order that the seed decides, and its books.
class Schedule
{
public:
    explicit Schedule(unsigned seed)
        : m_dice(seed)
        , m_bench(Speeds[seed % 4])
    {
    }
    ~Schedule() { endTicker(); }

    /// What is wrong at the end; empty when nothing is.
    QString run();

    size_t blocks() const { return m_bench.books.count(); }
    int reported() const { return m_bench.lines("is lost:"); }
    int departures() const { return m_bench.lines("went away:"); }

private:
    void step();
    void goWrong();
    void closeWhileStuck();
    void startTicker();
    void endTicker();
    QString sendRest();
    Answer answer(const Call &call);

    Dice m_dice;
    FaultBench m_bench;
    std::atomic<bool> m_isEnough{false};
    std::thread m_ticker;
};

QString Schedule::run()
{
    if (m_dice.percent(75))
        m_bench.serial->open();
    if (m_dice.percent(30))
        startTicker();
    for (int steps = m_dice.roll(MostSteps); steps >= 0; --steps)
        step();
    endTicker();
    if (!m_bench.line.pty().isConnected())
        m_bench.line.comeBack();
    const QString unsent = m_dice.percent(60) ? sendRest() : QString();
    return unsent.isEmpty() ? m_bench.finish() : unsent;
}

void Schedule::step()
{
    const int choice = m_dice.roll(200);
    if (choice < 70)
        m_bench.writeSeveral(1 + m_dice.roll(3), m_dice.roll(60));
    else if (choice < 130)
        m_bench.tick(1 + m_dice.roll(3));
    else if (choice < 150)
        m_bench.serial->openQuietly();
    else if (choice < 164)
        m_bench.serial->close();
    else if (choice < 180)
        goWrong();
    else if (choice < 190)
        m_bench.line.readTaken();
    else if (choice < 191 && m_dice.percent(40)) // each takes its time
        closeWhileStuck();
    else if (m_bench.line.pty().isConnected())
        m_bench.line.vanish();
    else
        m_bench.line.comeBack();
}

void Schedule::goWrong()
{
    if (m_dice.percent(25))
        m_bench.line.setScript(nullptr);
    else
        m_bench.line.setScript([this](const Call &call) { return answer(call); });
}

Answer Schedule::answer(const Call &call)
{
    const int choice = m_dice.roll(100);
    switch (call.kind) {
    case Kind::Write:
        return choice < 40   ? Answer::limit(1 + m_dice.roll(8))
               : choice < 50 ? Answer::fail(EAGAIN)
               : choice < 60 ? Answer::fail(EINTR)
               : choice < 63 ? Answer::fail(EIO)
                             : Answer::pass();
    case Kind::Open:
        return choice < 20 ? Answer::fail(EINTR) : choice < 30 ? Answer::fail(EIO) : Answer::pass();
    case Kind::Read:
    case Kind::Poll:
        return choice < 20 ? Answer::fail(EINTR) : Answer::pass();
    case Kind::Ioctl:
    case Kind::Flock:
    case Kind::Watch:
    case Kind::Close:
        break;
    }
    return Answer::pass();
}

/// A tick that gets no further, or not from its begin on, until the close comes.
void Schedule::closeWhileStuck()
{
    endTicker();
    std::atomic<int> left{m_dice.roll(3)};
    m_bench.line.setScript([&](const Call &call) {
        return call.kind != Kind::Write ? Answer::pass() : left-- > 0 ? Answer::limit(2) : Answer::fail(EAGAIN);
    });
    std::thread ticker([this] { m_bench.tick(1); });
    m_bench.serial->close();
    ticker.join();
    m_bench.line.setScript(nullptr);
}

void Schedule::startTicker()
{
    m_ticker = std::thread([this] {
        while (!m_isEnough) {
            m_bench.tick(1);
            std::this_thread::sleep_for(std::chrono::microseconds(100));
        }
    });
}

void Schedule::endTicker()
{
    m_isEnough = true;
    if (m_ticker.joinable())
        m_ticker.join();
}

/// Once all is well again nothing may be left. A fresh opening spares the wait for the port.
QString Schedule::sendRest()
{
    if (m_dice.percent(99))
        m_bench.serial->close();
    if (!m_bench.sendAll())
        return QStringLiteral("does not open again");
    m_bench.serial.reset();
    return m_bench.lines("is no longer used") == 0 ? QString() : QStringLiteral("not all was sent");
}

} // namespace

class tst_FaultSchedule : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void booksAreRight();
};

/// KEL_FAULT_SEED=<number> plays the schedule of that number first.
void tst_FaultSchedule::booksAreRight()
{
    bool isGiven = false;
    const unsigned given = qEnvironmentVariable("KEL_FAULT_SEED").toUInt(&isGiven);
    const unsigned first = isGiven ? given : std::random_device()();
    size_t blocks = 0;
    int reported = 0;
    int departures = 0;
    for (unsigned i = 0; i < Schedules; ++i) {
        const unsigned seed = first + i;
        Schedule schedule(seed);
        const QString mistake = schedule.run();
        QVERIFY2(mistake.isEmpty(), qPrintable(QStringLiteral("KEL_FAULT_SEED=%1: %2").arg(seed).arg(mistake)));
        blocks += schedule.blocks();
        reported += schedule.reported();
        departures += schedule.departures();
    }
    qInfo("seeds %u to %u: %zu blocks, %d reported lost, %d times the port went away", first, first + Schedules - 1,
          blocks, reported, departures);
    QVERIFY(blocks > 5 * Schedules && reported > 0 && departures > 0);
}

KEL_TEST_MAIN(tst_FaultSchedule)
#include "tst_faultschedule.moc"
