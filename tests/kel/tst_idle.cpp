#include "ptypair.h"
#include "testmain.h"

#include <catalogue/catalogue.h>
#include <examples.h>
#include <kelglobals.h>
#include <kellight.h>
#include <localdevice.h>
#include <panel/deviceroutes.h>
#include <panel/formloader.h>
#include <qtimerwidget.h>
#include <widgetlist.h>

#include <QDir>
#include <QEventLoop>
#include <QTemporaryDir>

#include <memory>

namespace
{

constexpr int WatchedMs = 5000;

/// Sleeping and waking of all threads together in that time: the end of the watch, and what the desktop's
/// libraries may do now and then. One timer of 50 ms would bring a hundred.
constexpr int FewWakings = 20;

/// Counts what Qt does on its own behalf and on ours.
class EventCount : public QObject
{
    Q_OBJECT

public:
    EventCount() { qApp->installEventFilter(this); }

    int paints = 0;
    QStringList painted; ///< The classes of what was painted.
    int updateRequests = 0;
    int timers = 0;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        switch (event->type()) {
        case QEvent::Paint:
            ++paints;
            painted << QString::fromLatin1(watched->metaObject()->className());
            break;
        case QEvent::UpdateRequest:
            ++updateRequests;
            break;
        case QEvent::Timer:
            timers += watched == ownTimer ? 0 : 1;
            break;
        default:
            break;
        }
        return false;
    }

public:
    const QObject *ownTimer = nullptr; ///< Ends the watch and is not counted.
};

/// How often the threads of this process gave the processor back to sleep, so far.
int sleeps()
{
    int count = 0;
    const QDir threads(QStringLiteral("/proc/self/task"));
    for (const QString &thread : threads.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QFile status(threads.filePath(thread + QStringLiteral("/status")));
        if (!status.open(QIODevice::ReadOnly))
            continue; // it has just ended
        for (const QByteArray &line : status.readAll().split('\n')) {
            if (line.startsWith("voluntary_ctxt_switches:"))
                count += line.mid(line.indexOf(':') + 1).trimmed().toInt();
        }
    }
    return count;
}

/// Lets the event loop run for \a ms with nothing of the test in it but its end.
void runEventLoop(int ms, EventCount &count)
{
    QEventLoop loop;
    QTimer end;
    end.setSingleShot(true);
    count.ownTimer = &end;
    QObject::connect(&end, &QTimer::timeout, &loop, &QEventLoop::quit);
    end.start(ms);
    loop.exec();
}

void settle()
{
    EventCount unused;
    runEventLoop(1000, unused);
}

} // namespace

/// What a panel does while nobody touches it and no device speaks: nothing.
class tst_Idle : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyWidgetIsStill();
    void everyWidgetIsStillAfterAnAnimation();
    void hallWithOpenPortsIsStill();
    void movingWidgetIsSeen();
};

static void expectStillness()
{
    EventCount count;
    const int before = sleeps();
    runEventLoop(WatchedMs, count);
    const int after = sleeps();
    QCOMPARE(count.painted.join(QLatin1Char(' ')), QString());
    QCOMPARE(count.updateRequests, 0);
    QCOMPARE(count.timers, 0);
    QVERIFY2(after - before <= FewWakings, qPrintable(QStringLiteral("%1 times awake").arg(after - before)));
}

/// Sixty widgets, each class again and again.
static std::unique_ptr<QWidget> panelOfAll()
{
    constexpr int Count = 60;
    constexpr int Columns = 10;
    auto panel = std::make_unique<QWidget>();
    panel->resize(1280, 800);
    const QVector<KelWidgetInfo> &list = kelWidgetList();
    for (int i = 0; i < Count; ++i) {
        QWidget *widget = list.at(i % list.size()).create(panel.get());
        widget->setGeometry(i % Columns * 128, i / Columns * 130, 128, 130);
    }
    panel->show();
    return panel;
}

void tst_Idle::everyWidgetIsStill()
{
    const std::unique_ptr<QWidget> panel = panelOfAll();
    settle();
    expectStillness();
}

/// Each widget is stirred by the slots and properties that it is usually wired to.
void tst_Idle::everyWidgetIsStillAfterAnAnimation()
{
    const std::unique_ptr<QWidget> panel = panelOfAll();
    settle();
    for (QWidget *widget : panel->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly)) {
        for (const char *property : {"value", "level", "temperature"})
            if (widget->property(property).canConvert<double>() && widget->property(property).isValid())
                widget->setProperty(property, 30.0);
        for (const char *slot : {"toggle", "click", "setStateYes"}) {
            const QByteArray signature = QByteArray(slot) + "()";
            if (widget->metaObject()->indexOfMethod(signature.constData()) >= 0)
                QMetaObject::invokeMethod(widget, slot);
        }
    }
    EventCount count;
    runEventLoop(2000, count);
    QVERIFY(count.paints > 0);
    expectStillness();
}

void tst_Idle::hallWithOpenPortsIsStill()
{
    const QTemporaryDir folder;
    const QString catalogue = folder.filePath(QStringLiteral("hall.sqlite"));
    makeCatalogue(examplePath(QStringLiteral("hall/hall.toml")), catalogue);
    openCatalogue(catalogue);
    PtyPair line;
    const QString path = examplePath(QStringLiteral("hall/hall.ui"));
    const LoadedForm form = loadForm(path);
    for (QTimerWidget *timer : form.window->findChildren<QTimerWidget *>())
        timer->stop();
    DeviceRoutes routes(Kel::connection, path);
    routes.setPortName(QStringLiteral("/tmp/kel-hall"), line.path());
    routes.open(*form.window);
    form.window->show();
    settle();
    expectStillness();

    // Awake again when there is something to send.
    auto *device = form.window->findChild<LocalDevice *>(QStringLiteral("tableDevice"));
    QVERIFY(device);
    device->sendCommand(QStringLiteral("01 02 03"));
    QCOMPARE(line.read(3), QByteArray("\x01\x02\x03"));
    settle();
    expectStillness();
}

void tst_Idle::movingWidgetIsSeen()
{
    KelLight light;
    light.resize(100, 100);
    light.show();
    settle();
    light.setLevel(light.level() > 50.0 ? 0.0 : 100.0);
    EventCount count;
    const int before = sleeps();
    runEventLoop(1000, count);
    QVERIFY(count.paints > 0);
    QVERIFY(count.timers > 0);
    QVERIFY(sleeps() > before);
}

KEL_TEST_MAIN(tst_Idle)
#include "tst_idle.moc"
