#include "tabbench.h"
#include "testmain.h"

#include <QPointer>
#include <QRandomGenerator>

#include <functional>
#include <memory>

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

constexpr int SchedulesPerRow = 40;
constexpr int StepsPerSchedule = 40;

/// A widget in a panel, and one schedule of random steps.
class Schedule
{
public:
    explicit Schedule(quint32 seed)
        : m_dice(seed)
    {
        m_panel.resize(320, 200);
        m_widget = new KelTabWidget(&m_panel);
        m_bar = static_cast<KelTabBar *>(m_widget->tabBar());
        m_widget->resize(300, 120);
        for (int i = below(25); i > 0; --i)
            addTab();
        m_panel.show();
    }

    void run()
    {
        for (int i = 0; i < StepsPerSchedule && m_widget; ++i) {
            const int index = below(20);
            m_trace << QByteArray::number(index);
            step(index);
            if (m_widget)
                check();
        }
    }

    QByteArray trouble; ///< The first thing that was wrong, empty if nothing was.

private:
    int below(int bound) { return static_cast<int>(m_dice.bounded(static_cast<quint32>(bound))); }

    void addTab()
    {
        m_widget->insertTab(below(m_widget->count() + 1), new QLabel(QStringLiteral("page")),
                            QString(1 + below(8), QLatin1Char('m')));
    }

    void send(QEvent::Type type, Qt::MouseButton button, Qt::MouseButtons held)
    {
        // What is left to lay out comes first, for no widget survives its deletion while it is resized.
        QCoreApplication::sendPostedEvents(m_widget, QEvent::LayoutRequest);
        const QPoint at(below(320) - 10 - m_bar->x(), below(40) - 4);
        QMouseEvent event(type, at, m_bar->mapToGlobal(at), button, held, Qt::NoModifier);
        m_isPointed = true;
        QApplication::sendEvent(m_bar, &event);
        m_isPointed = false;
    }

    void step(int index)
    {
        switch (index) {
        case 0:
        case 1:
        case 2:
            return send(QEvent::MouseButtonPress, Qt::LeftButton, Qt::LeftButton);
        case 3:
        case 4:
        case 5:
        case 6:
            return send(QEvent::MouseMove, Qt::NoButton, Qt::LeftButton);
        case 7:
        case 8:
            return send(QEvent::MouseButtonRelease, Qt::LeftButton, Qt::NoButton);
        case 9:
            return send(QEvent::MouseButtonDblClick, Qt::LeftButton, Qt::LeftButton);
        case 10:
            return send(QEvent::MouseButtonPress, Qt::RightButton, Qt::RightButton);
        case 11:
            return m_widget->setVisible(!m_widget->isVisible());
        case 12:
            return m_widget->setEnabled(!m_widget->isEnabled());
        default:
            return changeTabs(index);
        }
    }

    void changeTabs(int index)
    {
        switch (index) {
        case 13:
            return addTab();
        case 14:
            return m_widget->removeTab(below(m_widget->count() + 1));
        case 15:
            return m_widget->resize(below(500), below(300));
        case 16:
            return m_widget->setTabPosition(static_cast<QTabWidget::TabPosition>(below(4)));
        case 17:
            return m_widget->setAutoSide(below(2) == 0);
        case 18:
            return below(3) == 0 ? plan() : m_widget->setCurrentIndex(below(m_widget->count() + 2) - 1);
        default:
            m_panel.grab();
            return QCoreApplication::processEvents();
        }
    }

    // Something happens in the middle of the next step of the pointer that moves the bar or chooses a page.
    void plan()
    {
        const int what = below(4);
        const auto happen = [this, what] {
            if (!m_widget || m_hasHappened || !m_isPointed)
                return;
            m_hasHappened = true;
            if (what == 0)
                m_widget->deleteLater();
            else if (what == 1)
                m_widget->clear();
            else if (what == 2)
                m_widget->hide();
            else
                delete m_widget;
        };
        m_hasHappened = false;
        QObject::connect(m_bar, &KelTabBar::needMoveBar, m_widget, happen);
        if (what != 3) // Qt's own bar goes on after it has announced a page.
            QObject::connect(m_widget, &QTabWidget::currentChanged, m_widget, happen);
    }

    void check()
    {
        const auto expect = [this](bool isTrue, const char *what) {
            if (!isTrue && trouble.isEmpty())
                trouble = QByteArray(what) + " after " + m_trace.join(' ');
        };
        expect(m_widget->currentIndex() < m_widget->count(), "a page that is not there");
        expect(m_widget->count() == 0 || m_widget->currentIndex() >= 0, "no page");
        const auto side = m_widget->tabPosition();
        if ((side != QTabWidget::North && side != QTabWidget::South) || !m_widget->isVisible() || m_widget->width() < 1)
            return;
        QCoreApplication::sendPostedEvents(m_widget, QEvent::LayoutRequest);
        const int width = qMax(m_widget->width(), m_bar->sizeHint().width());
        expect(m_bar->width() == width, "a bar of another width");
        expect(m_bar->x() <= 0, "a gap before the first tab");
        expect(m_bar->x() >= qMin(0, m_widget->width() - width), "a gap behind the last tab");
    }

    QWidget m_panel;
    QPointer<KelTabWidget> m_widget;
    QPointer<KelTabBar> m_bar;
    QRandomGenerator m_dice;
    QByteArrayList m_trace;
    bool m_hasHappened = false;
    bool m_isPointed = false;
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
        Schedule schedule(seed + i);
        schedule.run();
        QVERIFY2(schedule.trouble.isEmpty(), schedule.trouble.constData());
    }
}

KEL_TEST_MAIN(tst_TabWidgetSchedule)
#include "tst_tabwidgetschedule.moc"
