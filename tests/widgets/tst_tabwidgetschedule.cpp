#include "tabbench.h"
#include "testmain.h"
#include "widgetschedule.h"

#include <QPointer>

/// Whatever happens to the widget, and whenever in a drag, nothing goes wrong.
class tst_TabWidgetSchedule : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void schedule_data();
    void schedule();
};

namespace
{

constexpr int SchedulesPerRow = 60;
constexpr int StepsPerSchedule = 40;

/// What happens to a tab widget beyond what happens to every widget.
class TabDeeds
{
public:
    explicit TabDeeds(WidgetSchedule &schedule)
        : m_schedule(schedule)
        , m_widget(static_cast<KelTabWidget *>(schedule.widget()))
        , m_bar(static_cast<KelTabBar *>(m_widget->tabBar()))
    {
        for (int i = below(25); i > 0; --i)
            addTab();
        schedule.addDeed(
            "add tab", [this] { addTab(); }, 4);
        schedule.addDeed(
            "remove tab", [this] { m_widget->removeTab(below(m_widget->count() + 1)); }, 4);
        schedule.addDeed(
            "choose", [this] { m_widget->setCurrentIndex(below(m_widget->count() + 2) - 1); }, 4);
        schedule.addDeed(
            "drag", [this] { drag(); }, 16);
        schedule.setCheck([this] { return mistake(); });
        QObject::connect(m_bar, &KelTabBar::needMoveBar, m_widget, [this] { happen(4); });
        // Qt's own bar goes on after it has announced a page.
        QObject::connect(m_widget, &QTabWidget::currentChanged, m_widget, [this] { happen(3); });
    }

private:
    int below(int bound) { return m_schedule.below(bound); }

    void addTab()
    {
        m_widget->insertTab(below(m_widget->count() + 1), new QLabel(QStringLiteral("page")),
                            QString(1 + below(8), QLatin1Char('m')));
    }

    /// A drag of the bar, and maybe something in the middle of it.
    void drag()
    {
        // What is left to lay out comes first, for no widget survives its deletion while it is resized.
        QCoreApplication::sendPostedEvents(m_widget, QEvent::LayoutRequest);
        m_happensIn = below(12);
        const QPointer<KelTabBar> bar = m_bar;
        send(QEvent::MouseButtonPress, Qt::LeftButton);
        for (int i = below(5); i > 0 && bar; --i)
            send(QEvent::MouseMove, Qt::NoButton);
        if (bar)
            send(QEvent::MouseButtonRelease, Qt::LeftButton);
        m_happensIn = -1;
    }

    void send(QEvent::Type type, Qt::MouseButton button)
    {
        const QPoint at(below(320) - 10 - m_bar->x(), below(40) - 4);
        const Qt::MouseButtons held = type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
        QMouseEvent event(type, at, m_bar->mapToGlobal(at), button, held, Qt::NoModifier);
        QApplication::sendEvent(m_bar, &event);
    }

    void happen(int choices)
    {
        if (m_happensIn < 0 || m_happensIn-- > 0)
            return;
        const int what = below(choices);
        if (what == 0)
            m_widget->deleteLater();
        else if (what == 1)
            m_widget->clear();
        else if (what == 2)
            m_widget->hide();
        else
            delete m_widget;
    }

    QByteArray mistake()
    {
        if (m_widget->currentIndex() >= m_widget->count())
            return "a page that is not there";
        if (m_widget->count() > 0 && m_widget->currentIndex() < 0)
            return "no page";
        const auto side = m_widget->tabPosition();
        if ((side != QTabWidget::North && side != QTabWidget::South) || !m_bar->isVisible() || m_widget->width() < 1)
            return {};
        QCoreApplication::sendPostedEvents(m_widget, QEvent::LayoutRequest);
        const int width = qMax(m_widget->width(), m_bar->sizeHint().width());
        if (m_bar->width() != width)
            return "a bar of another width";
        if (m_bar->x() > 0)
            return "a gap before the first tab";
        return m_bar->x() < qMin(0, m_widget->width() - width) ? "a gap behind the last tab" : QByteArray();
    }

    WidgetSchedule &m_schedule;
    const QPointer<KelTabWidget> m_widget;
    const QPointer<KelTabBar> m_bar;
    int m_happensIn = -1; ///< Moves of the bar until something happens; below 0 for never.
};

} // namespace

void tst_TabWidgetSchedule::initTestCase()
{
    QApplication::setStartDragDistance(TapWay / 2);
}

void tst_TabWidgetSchedule::schedule_data()
{
    QTest::addColumn<quint32>("seed");

    for (quint32 row = 0; row < 10; ++row)
        QTest::addRow("%d schedules from %u", SchedulesPerRow, row * 1000) << row * 1000;
}

void tst_TabWidgetSchedule::schedule()
{
    QFETCH(quint32, seed);
    for (quint32 i = 0; i < SchedulesPerRow; ++i) {
        WidgetSchedule schedule(seed + i, [](QWidget *parent) { return new KelTabWidget(parent); });
        TabDeeds deeds(schedule);
        schedule.run(StepsPerSchedule);
        schedule.comeToRest();
        QVERIFY2(schedule.trouble().isEmpty(), schedule.trouble().constData());
    }
}

KEL_TEST_MAIN(tst_TabWidgetSchedule)
#include "tst_tabwidgetschedule.moc"
