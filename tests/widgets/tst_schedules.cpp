#include "stderrcapture.h"
#include "tempcatalogue.h"
#include "testmain.h"
#include "widgetschedule.h"

#include <QLabel>
#include <QLoggingCategory>
#include <QPropertyAnimation>
#include <QSqlDatabase>
#include <graphic.h>
#include <keltabwidget.h>
#include <localdevice.h>
#include <widgetlist.h>

#include <csignal>
#include <cstdio>
#include <cstring>
#include <memory>
#include <unistd.h>

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/common_interface_defs.h>
#endif

/// Whatever happens to any widget, and whenever, nothing goes wrong: no crash, no warning, no paint of what is hidden,
/// no animation that goes on for nobody.
class tst_Schedules : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void anythingAtAnyTime_data();
    void anythingAtAnyTime();
    void aScheduleRepeats();
    void troubleIsFound();

private:
    std::unique_ptr<TempCatalogue> m_catalogue;
    std::unique_ptr<StderrCapture> m_console;
};

namespace
{

constexpr int StepsPerSchedule = 30;

/// All schedules together; plots are the most costly to make, so they get fewer.
constexpr int Schedules = 10000;
constexpr int PlotSchedules = 280;

/// The schedule that is under way, for whoever has to repeat one that crashed.
char current[128];

void tellCurrent()
{
    const ssize_t written = write(STDOUT_FILENO, current, std::strlen(current));
    Q_UNUSED(written)
}

#if !defined(__SANITIZE_ADDRESS__)
extern "C" void tellSchedule(int signal)
{
    tellCurrent();
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}
#endif

/// KEL_SCHEDULES is the seed of the first schedule of each widget, or "FIRST:COUNT".
QByteArrayList wish()
{
    return qgetenv("KEL_SCHEDULES").split(':');
}

void addWidgetDeeds(WidgetSchedule &schedule)
{
    for (const char *name : {"animateClick", "autoRepeatDelay", "autoRepeatInterval"})
        schedule.leaveAlone(name); // Qt's own, and Qt warns of a time below zero
    if (auto *tabs = qobject_cast<KelTabWidget *>(schedule.widget())) {
        const auto add = [&schedule, tabs] {
            tabs->insertTab(schedule.below(tabs->count() + 1), new QLabel,
                            QString(schedule.below(9), QLatin1Char('m')));
        };
        for (int i = schedule.below(12); i > 0; --i)
            add();
        schedule.addDeed("add tab", add, 3);
        schedule.addDeed(
            "remove tab", [&schedule, tabs] { tabs->removeTab(schedule.below(tabs->count() + 1)); }, 2);
    }
    if (auto *plot = qobject_cast<Graphic *>(schedule.widget())) {
        schedule.leaveAlone("graphicPaintEvent"); // no widget survives its deletion while it is painted
        schedule.leaveAlone("buttons");
        plot->setButtons(Graphic::FitButton | Graphic::CursorButton | Graphic::PauseButton);
        const auto add = [&schedule, plot] { plot->addPoint(schedule.number(), schedule.number(), schedule.below(3)); };
        schedule.addDeed("point", add, 12);
    }
    if (auto *device = qobject_cast<LocalDevice *>(schedule.widget())) {
        schedule.addDeed("status view", [device] { device->buildDebug(); });
        schedule.addDeed(
            "select", [&schedule, device] { device->setCurrentID(schedule.below(4)); }, 3);
        schedule.addDeed(
            "answer", [device] { device->dataReceived("\x01\x07", QString()); }, 8);
    }
}

/// A widget with an animation that nobody stops.
class Restless : public QWidget
{
public:
    explicit Restless(QWidget *parent)
        : QWidget(parent)
        , m_animation(this, "maximumWidth")
    {
        m_animation.setStartValue(1);
        m_animation.setEndValue(100);
        m_animation.setLoopCount(-1);
        m_animation.start();
    }

private:
    QPropertyAnimation m_animation;
};

} // namespace

void tst_Schedules::initTestCase()
{
    m_catalogue = std::make_unique<TempCatalogue>();
    m_catalogue->addDevice(1, QStringLiteral("Relay"));
    for (int row = 1; row < 4; ++row)
        m_catalogue->addCurrent(row, 1, QStringLiteral("relay"), row);
    m_catalogue->addCommand(1, 1, QStringLiteral("01 %0"));
    m_catalogue->addAnswer(1, 1, QStringLiteral("01 %0"));
    QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"));
    database.setDatabaseName(m_catalogue->path());
    QVERIFY(database.open());

    QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false"));
#if defined(__SANITIZE_ADDRESS__)
    __sanitizer_set_death_callback(tellCurrent);
#else
    // Devices tell the console about every message; who repeats schedules wants to see it all.
    if (!qEnvironmentVariableIsSet("KEL_SCHEDULES"))
        m_console = std::make_unique<StderrCapture>();
    for (const int signal : {SIGSEGV, SIGABRT, SIGBUS, SIGFPE})
        std::signal(signal, tellSchedule);
#endif
}

void tst_Schedules::anythingAtAnyTime_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<quint32>("first");
    QTest::addColumn<int>("count");

    const QByteArrayList wished = wish();
    const quint32 first = wished.first().isEmpty() ? 1 : wished.first().toUInt();
    const int others = (Schedules - PlotSchedules) / (kelWidgetList().size() - 1);
    for (int i = 0; i < kelWidgetList().size(); ++i) {
        const QString name = kelWidgetList().at(i).className;
        int count = name == QLatin1String("KelGraphic") ? PlotSchedules : others;
        if (wished.size() > 1)
            count = wished.at(1).toInt();
        QTest::addRow("%s, %d schedules from %u", qPrintable(name), count, first) << i << first << count;
    }
}

void tst_Schedules::anythingAtAnyTime()
{
    QFETCH(int, index);
    QFETCH(quint32, first);
    QFETCH(int, count);
    const KelWidgetInfo &info = kelWidgetList().at(index);
    for (quint32 seed = first; seed < first + quint32(count); ++seed) {
        std::snprintf(current, sizeof current, "\nKEL_SCHEDULES=%u:1 of %s\n", seed, qPrintable(info.className));
        WidgetSchedule schedule(seed, info.create);
        addWidgetDeeds(schedule);
        schedule.run(StepsPerSchedule);
        schedule.comeToRest();
        QVERIFY2(schedule.trouble().isEmpty(), (QByteArray(current) + schedule.trouble()).constData());
    }
    current[0] = '\0';
}

void tst_Schedules::aScheduleRepeats()
{
    for (const KelWidgetInfo &info : kelWidgetList()) {
        QByteArrayList traces;
        for (int i = 0; i < 2; ++i) {
            WidgetSchedule schedule(17, info.create);
            addWidgetDeeds(schedule);
            schedule.run(StepsPerSchedule);
            traces << schedule.trace();
        }
        QCOMPARE(traces.at(0), traces.at(1));
        QVERIFY(!traces.at(0).isEmpty());
    }
}

void tst_Schedules::troubleIsFound()
{
    {
        WidgetSchedule restless(1, [](QWidget *parent) { return new Restless(parent); });
        restless.setDeletes(false);
        restless.run(StepsPerSchedule);
        QVERIFY(restless.trouble().isEmpty());
        restless.comeToRest();
        QVERIFY(restless.trouble().startsWith("an animation that never ends after "));
    }

    WidgetSchedule checked(1, [](QWidget *parent) { return new QWidget(parent); });
    checked.setCheck([] { return QByteArray("a mistake"); });
    checked.run(StepsPerSchedule);
    QVERIFY(checked.trouble().startsWith("a mistake after "));
}

KEL_TEST_MAIN(tst_Schedules)
#include "tst_schedules.moc"
