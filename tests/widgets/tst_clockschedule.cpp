// A KelClock to which everything happens at the worst moment.
#include "clockbench.h"
#include "testmain.h"

#include <QPointer>

#include <random>

class tst_ClockSchedule : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anythingAtAnyFrame_data();
    void anythingAtAnyFrame();
    void deletedAtAnyFrame_data();
    void deletedAtAnyFrame();
};

namespace
{

/// Does one thing after another to a clock, which may end with its deletion.
class Schedule
{
public:
    explicit Schedule(unsigned seed)
        : m_random(seed)
        , m_clock(new KelClock(&m_window))
    {
        m_window.resize(400, 300);
        m_clock->setGeometry(0, 0, 300, 150);
        m_window.show();
        QObject::connect(m_clock, &KelClock::timeChanged, &m_window, [this](QTime time) {
            m_lastAnnounced = time;
            if (m_deletesAtSignal)
                delete m_clock;
        });
    }

    KelClock *clock() const { return m_clock; }
    QTime lastAnnounced() const { return m_lastAnnounced; }
    void deleteAtTheNextSignal() { m_deletesAtSignal = true; }

    void step()
    {
        switch (below(16)) {
        case 0:
            return m_clock->setTime(QTime(below(24), below(60)));
        case 1:
            return m_clock->setTime(QTime(below(30), below(70))); // sometimes no time at all
        case 2:
        case 3:
            return pointer(QEvent::MouseButtonPress);
        case 4:
        case 5:
        case 6:
            return pointer(QEvent::MouseMove);
        case 7:
            return pointer(QEvent::MouseButtonRelease);
        case 8:
        case 9:
            return advance();
        case 10:
            return m_clock->setVisible(below(2) == 0);
        case 11:
            return m_clock->setEnabled(below(3) > 0);
        case 12:
            return m_clock->setReadOnly(below(3) == 0);
        case 13:
            return m_clock->resize(below(320), below(200));
        case 14:
            return changeFont();
        default:
            QCoreApplication::processEvents();
            paint();
        }
    }

    /// Moves the hands on to some frame of their way.
    void advance()
    {
        for (auto *animation : m_clock->findChildren<QPropertyAnimation *>()) {
            if (animation->state() == QAbstractAnimation::Running)
                animation->setCurrentTime(animation->currentTime() + below(120));
        }
    }

    int below(int bound) { return static_cast<int>(m_random() % static_cast<unsigned>(bound)); }

private:
    void pointer(QEvent::Type type)
    {
        QWidget *face = faceOf(*m_clock, below(2));
        const QPointF position(below(face->width() + 20) - 10, below(face->height() + 20) - 10);
        if (type == QEvent::MouseMove)
            dragMouse(face, position);
        else
            ClockBench::send(face, type, position, Qt::LeftButton);
    }

    void paint()
    {
        if (m_clock->size().isEmpty())
            return;
        for (int face = 0; face < 2; ++face) {
            if (!faceOf(*m_clock, face)->size().isEmpty())
                rendered(*faceOf(*m_clock, face));
        }
    }

    void changeFont()
    {
        QFont font = m_clock->font();
        font.setPointSize(6 + below(20));
        font.setItalic(below(2) == 0);
        m_clock->setFont(font);
    }

    std::mt19937 m_random;
    QWidget m_window;
    QPointer<KelClock> m_clock;
    QTime m_lastAnnounced{0, 0};
    bool m_deletesAtSignal = false;
};

float angleOf(int part, int whole)
{
    return static_cast<float>(2.0 * static_cast<double>(3.1415927F) * part / whole);
}

void addSeeds(int count)
{
    QTest::addColumn<unsigned>("seed");
    for (int i = 1; i <= count; ++i)
        QTest::addRow("schedule %d", i) << static_cast<unsigned>(i);
}

} // namespace

void tst_ClockSchedule::anythingAtAnyFrame_data()
{
    addSeeds(200);
}

void tst_ClockSchedule::anythingAtAnyFrame()
{
    QFETCH(unsigned, seed);
    Schedule schedule(seed);
    KelClock &clock = *schedule.clock();
    for (int i = 0; i < 60; ++i) {
        schedule.step();
        QVERIFY(clock.time().isValid());
        QCOMPARE(schedule.lastAnnounced(), clock.time());
    }

    // Whatever happened: the clock ends as one to which only the last time ever happened.
    const QTime last(7, schedule.below(59) + 1);
    clock.setTime(last);
    clock.resize(300, 150);
    clock.show();
    clock.enable();
    finishAnimations(clock);
    QCOMPARE(clock.time(), last);
    QCOMPARE(clock.h__anim0(), angleOf(last.minute(), 60));
    QCOMPARE(clock.h__anim1(), angleOf(7, 12));

    KelClock fresh;
    fresh.setFont(clock.font());
    fresh.resize(clock.size());
    fresh.layout()->activate();
    clock.layout()->activate();
    fresh.setTime(last);
    finishAnimations(fresh);
    for (int face = 0; face < 2; ++face)
        QCOMPARE(rendered(*faceOf(clock, face)), rendered(*faceOf(fresh, face)));
}

void tst_ClockSchedule::deletedAtAnyFrame_data()
{
    addSeeds(200);
}

// Half of them by who hears of a new time, while the clock is still busy telling.
void tst_ClockSchedule::deletedAtAnyFrame()
{
    QFETCH(unsigned, seed);
    Schedule schedule(seed);
    const int steps = schedule.below(40);
    for (int i = 0; i < steps; ++i)
        schedule.step();
    if (schedule.below(2) == 0) {
        delete schedule.clock();
    } else {
        schedule.deleteAtTheNextSignal();
        schedule.clock()->setReadOnly(false);
        for (int i = 0; i < 100 && schedule.clock() != nullptr; ++i)
            schedule.step();
        if (schedule.clock() != nullptr)
            schedule.clock()->setTime(QTime(1, 2, 3));
    }
    QVERIFY(schedule.clock() == nullptr);
    QCoreApplication::processEvents();
}

KEL_TEST_MAIN(tst_ClockSchedule)
#include "tst_clockschedule.moc"
