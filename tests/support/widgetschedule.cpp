#include "widgetschedule.h"

#include <QAbstractButton>
#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QMouseEvent>
#include <QTime>
#include <QTimerEvent>
#include <QWheelEvent>
#include <pibytearray.h>

#include <cstring>
#include <limits>

namespace
{

const QSize PanelSize(240, 180);
constexpr int RestFrames = 50;
constexpr int RestFrameMs = 100; // longer together than any animation of a panel

/// Timers expire when a schedule says so, never by themselves.
void processEventsButTimers()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents(QEventLoop::X11ExcludeTimers);
}

/// Whether \a widget may be deleted by who hears \a signal. Qt's own classes go on after most of their signals, a plot
/// may tell while it paints, and a button that is switched tells assistive programs after it has told everyone else.
bool outlivesItsSignal(const QWidget *widget, const QMetaMethod &signal)
{
    const QByteArray name = signal.name();
    const QByteArray declaring = signal.enclosingMetaObject()->className();
    if (declaring == "QAbstractButton")
        return name == "pressed" || name == "clicked"; // a loss of the focus releases too, and goes on
    const auto *button = qobject_cast<const QAbstractButton *>(widget);
    if (declaring == "Graphic" || (button && button->isCheckable()))
        return false;
    return !declaring.startsWith('Q') || declaring == "QTimerWidget";
}

} // namespace

WidgetSchedule::WidgetSchedule(quint32 seed, const Maker &make)
    : m_dice(seed)
    , m_widget(make(&m_panel))
{
    m_panel.resize(PanelSize);
    m_otherPanel.resize(PanelSize);
    m_widget->resize(1 + below(PanelSize.width()), 1 + below(PanelSize.height()));
    m_widget->installEventFilter(this);

    const QMetaObject &meta = *m_widget->metaObject();
    for (int i = QWidget::staticMetaObject.propertyCount(); i < meta.propertyCount(); ++i) {
        if (meta.property(i).isWritable())
            m_properties << meta.property(i);
    }
    for (int i = QWidget::staticMetaObject.methodCount(); i < meta.methodCount(); ++i) {
        if (meta.method(i).methodType() == QMetaMethod::Slot && meta.method(i).access() == QMetaMethod::Public)
            m_slots << meta.method(i);
    }
    addCommonDeeds();
    m_panel.show();
}

WidgetSchedule::~WidgetSchedule()
{
    delete m_widget;
}

void WidgetSchedule::addDeed(const char *name, std::function<void()> deed, int weight)
{
    m_deeds.append({name, std::move(deed), weight, true});
    m_weights += weight;
}

void WidgetSchedule::addCommonDeeds()
{
    addPointerDeeds();
    addDeed(
        "frame", [this] { m_clock.pass(1 + below(90)); }, 12);
    addDeed(
        "timer", [this] { expireTimer(); }, 6);
    addDeed(
        "property", [this] { setAnyProperty(); }, 16);
    addDeed(
        "slot", [this] { callAnySlot(); }, 10);
    addDeed("read only", [this] { m_widget->setProperty("readOnly", below(3) == 0); });
    addDeed(
        "plan", [this] { m_signalsLeft = below(4); }, 4);
    addDeed(
        "delete", [this] { interrupt(true); }, 2);

    const int first = m_deeds.size();
    addDeed(
        "hide", [this] { m_widget->setVisible(below(3) > 0); }, 4);
    addDeed("hide panel", [this] { m_panel.setVisible(below(3) > 0); });
    addDeed(
        "disable", [this] { m_widget->setEnabled(below(3) > 0); }, 3);
    addDeed("disable panel", [this] { m_panel.setEnabled(below(3) > 0); });
    addDeed("parent", [this] { changeParent(); });
    addDeed(
        "resize", [this] { changeSize(); }, 4);
    addDeed("font", [this] { changeFont(); });
    addDeed(
        "grab", [this] { paint(); }, 4);
    addDeed("events", processEventsButTimers, 6);
    for (int i = first; i < m_deeds.size(); ++i)
        m_deeds[i].mayDelete = false; // Qt goes on with the widget after it has told it
}

void WidgetSchedule::addPointerDeeds()
{
    addDeed(
        "press", [this] { sendMouse(QEvent::MouseButtonPress); }, 8);
    addDeed("double click", [this] { sendMouse(QEvent::MouseButtonDblClick); });
    addDeed(
        "move", [this] { sendMouse(QEvent::MouseMove); }, 10);
    addDeed(
        "release", [this] { sendMouse(QEvent::MouseButtonRelease); }, 5);
    addDeed(
        "wheel", [this] { sendWheel(); }, 2);
    addDeed(
        "key", [this] { sendKey(); }, 2);
}

void WidgetSchedule::listen()
{
    const QMetaMethod hear = metaObject()->method(metaObject()->indexOfSlot("hearSignal()"));
    const QMetaObject &meta = *m_widget->metaObject();
    for (int i = QWidget::staticMetaObject.methodCount(); i < meta.methodCount(); ++i) {
        const QMetaMethod method = meta.method(i);
        if (method.methodType() == QMetaMethod::Signal && !m_leftAlone.contains(method.name()))
            connect(m_widget, method, this, hear, Qt::UniqueConnection);
    }
}

void WidgetSchedule::run(int steps)
{
    listen();
    for (int i = 0; i < steps && m_widget && m_trouble.isEmpty(); ++i)
        step();
}

void WidgetSchedule::step()
{
    int choice = below(m_weights);
    int index = 0;
    while (choice >= m_deeds.at(index).weight)
        choice -= m_deeds.at(index++).weight;
    const Deed deed = m_deeds.at(index);
    m_trace << deed.name;
    m_mayDelete = deed.mayDelete;
    deed.act();
    m_mayDelete = false;
    if (!m_widget)
        return;
    for (const QMetaProperty &property : qAsConst(m_properties)) {
        const auto type = static_cast<QMetaType::Type>(property.type());
        if ((type == QMetaType::Double || type == QMetaType::Float) && qIsNaN(property.read(m_widget).toDouble()))
            fail(property.name());
    }
    const QByteArray wrong = m_check ? m_check() : QByteArray();
    if (!wrong.isEmpty())
        fail(wrong);
}

void WidgetSchedule::comeToRest()
{
    m_signalsLeft = -1;
    if (m_widget)
        m_widget->hide();
    processEventsButTimers();
    for (int i = 0; i < RestFrames; ++i)
        m_clock.pass(RestFrameMs);
    if (m_clock.isRunning())
        fail(m_widget ? "an animation that never ends" : "an animation of what is deleted");
    processEventsButTimers();
}

void WidgetSchedule::fail(const QByteArray &what)
{
    if (m_trouble.isEmpty())
        m_trouble = what + " after " + trace();
}

double WidgetSchedule::number()
{
    switch (below(12)) {
    case 0:
        return std::numeric_limits<double>::quiet_NaN();
    case 1:
        return below(2) == 0 ? qInf() : -qInf();
    case 2:
        return (m_dice.bounded(2.0) - 1.0) * 1e12;
    case 3:
    case 4:
        return below(7) - 3;
    default:
        return m_dice.bounded(300.0) - 150.0;
    }
}

bool WidgetSchedule::eventFilter(QObject *watched, QEvent *event)
{
    // A grab paints what is hidden too; it is the one deed that may.
    if (event->type() == QEvent::Paint && m_widget && !m_widget->isVisible() &&
        m_trace.value(m_trace.size() - 1) != "grab")
        fail("paint of what is hidden");
    return QObject::eventFilter(watched, event);
}

QWidget *WidgetSchedule::anyPart()
{
    const QPoint place(below(qMax(1, m_widget->width())), below(qMax(1, m_widget->height())));
    QWidget *part = m_widget->childAt(place);
    return part ? part : m_widget.data();
}

void WidgetSchedule::sendMouse(QEvent::Type type)
{
    static const Qt::MouseButton Buttons[] = {Qt::LeftButton, Qt::LeftButton, Qt::LeftButton, Qt::RightButton};
    const bool isPress = type == QEvent::MouseButtonPress || type == QEvent::MouseButtonDblClick;
    const bool isHeld = m_button != Qt::NoButton;
    if (isPress && !isHeld) {
        m_button = Buttons[below(4)];
        m_grabber = anyPart();
    } else if (isPress || (type == QEvent::MouseButtonRelease && !isHeld)) {
        return;
    }
    const QPointer<QWidget> part = isHeld || isPress ? m_grabber.data() : anyPart();
    const Qt::MouseButton button = type == QEvent::MouseMove ? Qt::NoButton : m_button;
    if (type == QEvent::MouseButtonRelease)
        m_button = Qt::NoButton;
    if (!part || !part->isVisible())
        return;

    // A layout without room gives parts a size below zero.
    const QPoint position(below(qMax(0, part->width()) + 40) - 20, below(qMax(0, part->height()) + 40) - 20);
    QMouseEvent event(type, position, part->mapToGlobal(position), button, m_button, Qt::NoModifier);
    QApplication::sendEvent(part, &event);
}

void WidgetSchedule::sendWheel()
{
    QWidget *part = anyPart();
    if (!part->isVisible())
        return;
    const QPoint place = part->rect().center();
    const QPoint angle(0, 120 * (below(9) - 4));
    const auto modifiers = below(3) == 0 ? Qt::ControlModifier : Qt::NoModifier;
    QWheelEvent event(place, part->mapToGlobal(place), QPoint(), angle, Qt::NoButton, modifiers, Qt::NoScrollPhase,
                      false);
    QApplication::sendEvent(part, &event);
}

void WidgetSchedule::sendKey()
{
    static const Qt::Key Keys[] = {Qt::Key_Space, Qt::Key_Home,   Qt::Key_End,  Qt::Key_Left,
                                   Qt::Key_Right, Qt::Key_PageUp, Qt::Key_Down, Qt::Key_Escape};
    const QPointer<QWidget> part = anyPart();
    if (!part->isVisible())
        return;
    const Qt::Key key = Keys[below(8)];
    QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier);
    QApplication::sendEvent(part, &press);
    if (!part)
        return;
    QKeyEvent release(QEvent::KeyRelease, key, Qt::NoModifier);
    QApplication::sendEvent(part, &release);
}

void WidgetSchedule::expireTimer()
{
    QVector<QPair<QObject *, int>> running;
    QObjectList objects = m_widget->findChildren<QObject *>();
    objects << m_widget;
    for (QObject *object : qAsConst(objects)) {
        for (const auto &timer : QAbstractEventDispatcher::instance()->registeredTimers(object))
            running.append({object, timer.timerId});
    }
    if (running.isEmpty())
        return;
    const auto &chosen = running.at(below(running.size()));
    QTimerEvent event(chosen.second);
    QCoreApplication::sendEvent(chosen.first, &event);
}

void WidgetSchedule::changeSize()
{
    if (below(6) == 0)
        m_widget->resize(below(2) * below(100), 0);
    else
        m_widget->resize(below(PanelSize.width()), below(PanelSize.height()));
}

void WidgetSchedule::changeFont()
{
    if (below(2) == 0) {
        QPalette palette = m_widget->palette();
        palette.setColor(below(2) == 0 ? QPalette::Window : QPalette::WindowText, QColor::fromRgb(m_dice.generate()));
        return m_widget->setPalette(palette);
    }
    QFont font = m_widget->font();
    font.setPointSize(6 + below(20));
    font.setBold(below(2) == 0);
    m_widget->setFont(font);
}

void WidgetSchedule::changeParent()
{
    QWidget *const parents[] = {&m_panel, &m_panel, &m_otherPanel, nullptr};
    m_widget->setParent(parents[below(4)]);
    m_widget->setVisible(below(3) > 0);
}

void WidgetSchedule::paint()
{
    if (!m_widget->size().isEmpty())
        m_widget->grab();
}

void WidgetSchedule::setAnyProperty()
{
    if (m_properties.isEmpty())
        return;
    const QMetaProperty property = m_properties.at(below(m_properties.size()));
    const QVariant value = anyValue(property);
    if (m_leftAlone.contains(property.name()) || !value.isValid())
        return;
    m_trace.last() += QByteArray(" ") + property.name() + '=' + value.toString().toUtf8();
    property.write(m_widget, value);
}

void WidgetSchedule::callAnySlot()
{
    if (m_slots.isEmpty())
        return;
    const QMetaMethod slot = m_slots.at(below(m_slots.size()));
    if (m_leftAlone.contains(slot.name()) || slot.parameterCount() > 3)
        return;
    QVariant values[3];
    QGenericArgument arguments[3];
    for (int i = 0; i < slot.parameterCount(); ++i) {
        values[i] = anyValue(slot.parameterType(i));
        if (!values[i].isValid())
            return;
        arguments[i] = QGenericArgument(values[i].typeName(), values[i].constData());
    }
    m_trace.last() += ' ' + slot.methodSignature();
    slot.invoke(m_widget, Qt::DirectConnection, arguments[0], arguments[1], arguments[2]);
}

QVariant WidgetSchedule::anyValue(const QMetaProperty &property)
{
    if (!property.isEnumType())
        return anyValue(property.userType());
    const QMetaEnum keys = property.enumerator();
    int value = keys.value(below(keys.keyCount()));
    if (keys.isFlag())
        value |= keys.value(below(keys.keyCount()));
    return value;
}

QVariant WidgetSchedule::anyValue(int type)
{
    static const QString Texts[] = {QString(),
                                    QStringLiteral("%v"),
                                    QStringLiteral("01 ff"),
                                    QStringLiteral("two\nlines"),
                                    QStringLiteral("relay.on(1,2)"),
                                    QString(200, QLatin1Char('W'))};
    switch (type) {
    case QMetaType::Bool:
        return below(2) == 0;
    case QMetaType::Int:
        return below(3) > 0 ? below(8) - 2 : below(600) - 300;
    case QMetaType::Double:
        return number();
    case QMetaType::Float:
        return static_cast<float>(number());
    case QMetaType::QString:
        return Texts[below(6)];
    case QMetaType::QStringList:
        return QStringList(QStringList{Texts[below(6)], Texts[below(6)]}.mid(below(3)));
    case QMetaType::QByteArray:
        return QByteArray(below(6), char(below(256)));
    case QMetaType::QColor:
        return QColor::fromRgba(m_dice.generate());
    case QMetaType::QSize:
        return QSize(below(80), below(80));
    case QMetaType::QTime:
        return QTime(below(26), below(62));
    default:
        break;
    }
    if (type == qMetaTypeId<PIByteArray>())
        return QVariant::fromValue(PIByteArray("\x01\xff", below(3)));
    return {};
}

void WidgetSchedule::hearSignal()
{
    if (m_signalsLeft < 0 || m_signalsLeft-- > 0)
        return;
    const QMetaMethod signal = m_widget->metaObject()->method(senderSignalIndex());
    m_trace.last() += '{' + signal.name() + '}';
    interrupt(m_mayDelete && outlivesItsSignal(m_widget, signal));
}

/// One more thing happens, maybe while the widget is still busy with another.
void WidgetSchedule::interrupt(bool mayDelete)
{
    const int choice = below(mayDelete ? 8 : 4);
    if (choice == 0)
        return m_widget->hide();
    if (choice == 1)
        return m_widget->setEnabled(false);
    if (choice < 4)
        return m_deletes ? m_widget->deleteLater() : m_widget->clearFocus();
    if (choice == 4)
        return setAnyProperty();
    if (choice == 5)
        return callAnySlot();
    if (!m_deletes)
        return;
    m_trace.last() += '!';
    delete m_widget;
}
