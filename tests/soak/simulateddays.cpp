#include "simulateddays.h"

#include "faketimers.h"
#include "frameclock.h"
#include "soakdevice.h"
#include "usage.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QPixmapCache>
#include <QVBoxLayout>
#include <gserial.h>
#include <kelbutton.h>
#include <kelclock.h>
#include <kelgraphic.h>
#include <kellight.h>
#include <kelslider.h>
#include <kelswitch.h>
#include <keltabwidget.h>
#include <kelthermometer.h>
#include <piqt.h>
#include <qtimerwidget.h>

#include <cstdio>

namespace
{

constexpr int TickMs = 50;
constexpr qint64 MsPerDay = 86400000;
constexpr qint64 TicksPerSecond = 1000 / TickMs;
constexpr qint64 TicksPerMinute = 60 * TicksPerSecond;
constexpr qint64 TicksPerMessage = 10 * TicksPerSecond; ///< So that the fades after one come to rest before the next.
constexpr qint64 TicksPerPaint = TicksPerMinute;

/// Qt frees what leaves its cache of pixmaps by a timer of its own, which stands still here; we keep nothing in it.
constexpr int PixmapCacheKiB = 0;
constexpr int Samples = 30;
constexpr double HistorySeconds = 600.0;

/// A panel with every widget, wired as panels are.
class SoakPanel
{
public:
    SoakPanel();

    bool live(double days);

private:
    template <typename Widget>
    Widget *add()
    {
        auto *widget = new Widget(&m_panel);
        m_layout.addWidget(widget);
        return widget;
    }

    void wire();
    void tick();
    void sendMessage();
    bool isInOrder(qint64 ticks) const;

    FrameClock m_frames;
    FakeTimers m_timers;
    QWidget m_panel;
    QVBoxLayout m_layout{&m_panel};
    KelButton *m_button = add<KelButton>();
    KelClock *m_clock = add<KelClock>();
    KelGraphic *m_plot = add<KelGraphic>();
    KelLight *m_light = add<KelLight>();
    KelSlider *m_slider = add<KelSlider>();
    KelSwitch *m_switch = add<KelSwitch>();
    KelTabWidget *m_tabs = add<KelTabWidget>();
    KelThermometer *m_thermometer = add<KelThermometer>();
    QTimerWidget *m_timer = add<QTimerWidget>();
    SoakDevice *m_device = add<SoakDevice>();
    PIGSerial m_serial; // never opened: its ticks come from here
    qint64 m_ticks = 0;
    qint64 m_sent = 0;
    qint64 m_answers = 0;
    qint64 m_paints = 0;
};

SoakPanel::SoakPanel()
{
    m_panel.resize(800, 900);
    QPixmapCache::setCacheLimit(PixmapCacheKiB);
    m_plot->setVariables({QStringLiteral("t=Temperature")});
    m_plot->setHistorySize(HistorySeconds);
    m_tabs->addTab(new QWidget, QStringLiteral("one"));
    m_tabs->addTab(new QWidget, QStringLiteral("two"));
    m_timer->setInterval(TickMs);
    wire();
    for (QObject *object : std::initializer_list<QObject *>{m_timer, m_button, m_plot, m_device})
        m_timers.watch(object);
    m_panel.show();
    m_timer->start();
}

void SoakPanel::wire()
{
    QObject::connect(m_timer, &QTimerWidget::tick, &m_panel, [this] { tick(); });
    QObject::connect(m_device, &LocalDevice::sending, &m_panel, [this](const PIByteArray &bytes) {
        ++m_sent;
        m_device->dataReceived(PI2QByteArray(bytes), QString());
    });
    QObject::connect(m_device, &LocalDevice::receivedAnswerArg0, &m_panel, [this](int value) {
        ++m_answers;
        m_light->setByteLevel(value);
        m_thermometer->setValue(value / 10.0);
        m_switch->setChecked(value % 2 == 0);
        m_button->setStateYesOrNo(value % 3 == 0);
        m_plot->addPoint(double(m_timers.now()) / 1000.0, value);
    });
}

void SoakPanel::tick()
{
    ++m_ticks;
    m_serial.tickWrite();
    if (m_ticks % TicksPerMessage == 0)
        sendMessage();
    if (m_ticks % TicksPerMinute != 0)
        return;
    m_clock->setTime(QTime(0, 0).addMSecs(int(m_timers.now() % MsPerDay)));
    m_tabs->setCurrentIndex(int(m_ticks / TicksPerMinute) % 2);
    m_button->blinkYes();
    m_plot->reset();
    m_plot->graphicDone(QStringLiteral("t"));
}

void SoakPanel::sendMessage()
{
    const int value = int(m_ticks / TicksPerMessage % 255);
    m_slider->setValue(value);
    m_device->setArgument0(value);
    m_device->sendCommand(1);
}

bool SoakPanel::live(double days)
{
    const qint64 ticks = qint64(days * double(MsPerDay)) / TickMs;
    UsageLog log(Samples);
    QElapsedTimer elapsed;
    elapsed.start();
    for (qint64 i = 1; i <= ticks; ++i) {
        m_timers.pass(TickMs);
        m_frames.pass(TickMs);
        if (i % TicksPerPaint == 0) {
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            QCoreApplication::processEvents(QEventLoop::X11ExcludeTimers);
            ++m_paints;
        }
        if (i * Samples / ticks != (i - 1) * Samples / ticks)
            log.add("day", double(i) / double(ticks) * days);
    }
    const double seconds = double(elapsed.nsecsElapsed()) / 1e9;
    std::printf("%lld ticks in %.1f s, %.0f a second; %lld messages, %lld paints\n", static_cast<long long>(m_ticks),
                seconds, double(m_ticks) / seconds, static_cast<long long>(m_sent), static_cast<long long>(m_paints));
    return bool(unsigned(isInOrder(ticks)) & unsigned(log.isSteady()));
}

/// Whether every tick came, and every message was answered.
bool SoakPanel::isInOrder(qint64 ticks) const
{
    // A timer that is started at 0 expires for the first time one interval later.
    const bool isRight = m_ticks >= ticks - 1 && m_ticks <= ticks && m_sent == m_ticks / TicksPerMessage &&
                         m_answers == m_sent && m_device->answersCount() == m_sent;
    std::printf("ticks: %lld of %lld, answers: %lld of %lld, counted: %d: %s\n", static_cast<long long>(m_ticks),
                static_cast<long long>(ticks), static_cast<long long>(m_answers), static_cast<long long>(m_sent),
                m_device->answersCount(), isRight ? "right" : "WRONG");
    return isRight;
}

} // namespace

bool soakDays(double days)
{
    return SoakPanel().live(days);
}
