#include "kelbutton.h"

#include "animation.h"
#include "kelbuttoncommand.h"

#include <kelglobals.h>

#include <QMouseEvent>
#include <QTimerEvent>

#include <utility>

namespace
{

// Of the animation as it is made; each run brings its own.
constexpr int InitialDurationMs = 350;

QWidget *outermostAncestor(QWidget *widget)
{
    while (widget->parentWidget() != nullptr)
        widget = widget->parentWidget();
    return widget;
}

} // namespace

KelButton::KelButton(QWidget *parent)
    : QToolButton(parent)
{
    init();
}

KelButton::KelButton(int id, const QString &text)
    : m_clickID(id)
    , m_yesID(id)
    , m_noID(id)
{
    init();
    setText(text);
}

void KelButton::init()
{
    m_topParent = outermostAncestor(this);
    if (parentWidget() != nullptr)
        m_topParent->installEventFilter(this);

    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    connect(this, &KelButton::clicked, this, &KelButton::_clicked);
    connect(this, &KelButton::toggled, this, &KelButton::_toggled);

    m_animation = new QPropertyAnimation(this, "h__currentColor", this);
    m_animation->setEasingCurve(QEasingCurve::OutSine);
    m_animation->setDuration(InitialDurationMs);

    m_upColor = m_grayColor = m_stateColor = palette().color(QPalette::Button);
    showColor(m_stateColor);
}

bool KelButton::buttonVisible() const
{
    return designMode ? m_buttonVisible : isVisible();
}

QEasingCurve::Type KelButton::animationCurve() const
{
    return m_animation->easingCurve().type();
}

void KelButton::applyState(State state)
{
    if (state == m_state)
        return;

    const State previous = m_state;
    const QPointer<KelButton> alive(this);
    m_state = state;
    emit stateChanged(state, previous);
    if (alive)
        emit stateChangedID(m_clickID, state, previous);
}

void KelButton::animateColor(const QColor &color, bool slow)
{
    if (m_animated)
        animateTo(*m_animation, color, slow ? m_releaseDuration : m_animationDuration);
    else
        setCurrentColor(color);
}

void KelButton::blink(const QColor &color)
{
    m_blinkColor = color;
    if (m_blinkTimer > 0)
        killTimer(m_blinkTimer);
    m_blinkTimer = startTimer(qMax(0, m_blinkDelay), Qt::CoarseTimer);
}

void KelButton::checkConnected()
{
    if (m_command.isEmpty())
        return;

    QString object;
    QString method;
    parseCommand(m_command, &object, &method, nullptr);
    m_connected = Kel::commandsDB.database.isOpen() && Kel::commandsDB.hasPacket(object, method);
    update();
}

bool KelButton::autoConnect()
{
    m_topParent = outermostAncestor(this);
    return false;
}

void KelButton::parseCommand(QString command, QString *object, QString *method, QVector<QVariant> *arguments)
{
    parseButtonCommand(command, object, method, arguments);
}

void KelButton::goTo(State state)
{
    const QPointer<KelButton> alive(this);
    m_stateColor = colorOf(state);
    applyState(state);
    // A handler may have gone to another state: its colour is the one to settle on.
    if (alive)
        animateColor(m_stateColor, false);
}

QColor KelButton::colorOf(State state) const
{
    switch (state) {
    case Yes:
        return m_yesColor;
    case No:
        return m_noColor;
    case Gray:
        break;
    }
    return m_grayColor;
}

// The style paints the face in the palette's Button colour. The rest of the palette stays the widget's own.
void KelButton::showColor(const QColor &color)
{
    m_currentColor = color;
    QPalette colored = palette();
    colored.setColor(QPalette::Button, color);
    setPalette(colored);
}

void KelButton::enable()
{
    setEnabled(true);
}

void KelButton::disable()
{
    const QPointer<KelButton> alive(this);
    goTo(Gray);
    if (alive)
        setEnabled(false);
}

void KelButton::setClickID(int id)
{
    m_clickID = id;
    checkConnected();
}

void KelButton::setYesID(int id)
{
    m_yesID = id;
}

void KelButton::setNoID(int id)
{
    m_noID = id;
}

void KelButton::setButtonVisible(bool yes)
{
    if (!designMode) {
        setVisible(yes);
        return;
    }
    m_buttonVisible = yes;
    update();
}

void KelButton::setCommand(QString cmd)
{
    m_command = std::move(cmd);
    checkConnected();
}

void KelButton::setDownColor(QColor col)
{
    m_downColor = col;
}

void KelButton::setUpColor(QColor col)
{
    m_upColor = col;
}

void KelButton::setGrayColor(QColor col)
{
    m_grayColor = col;
}

void KelButton::setYesColor(QColor col)
{
    m_yesColor = col;
}

void KelButton::setNoColor(QColor col)
{
    m_noColor = col;
}

void KelButton::setState(State s)
{
    if (s >= Gray && s <= No)
        goTo(s);
}

void KelButton::setStateGray()
{
    goTo(Gray);
}

void KelButton::setStateYes()
{
    goTo(Yes);
}

void KelButton::setStateNo()
{
    goTo(No);
}

void KelButton::setStateYesOrNo(bool yes)
{
    goTo(yes ? Yes : No);
}

void KelButton::setStateYesOrGray(bool yes)
{
    goTo(yes ? Yes : Gray);
}

void KelButton::setStateNoOrYes(bool no)
{
    goTo(no ? No : Yes);
}

void KelButton::setStateNoOrGray(bool no)
{
    goTo(no ? No : Gray);
}

void KelButton::blinkYes()
{
    blink(m_yesColor);
}

void KelButton::blinkNo()
{
    blink(m_noColor);
}

void KelButton::blinkYesOrNo(bool yes)
{
    blink(yes ? m_yesColor : m_noColor);
}

void KelButton::blinkNoOrYes(bool no)
{
    blink(no ? m_noColor : m_yesColor);
}

void KelButton::setColor(QColor col)
{
    m_stateColor = col;
    animateColor(m_stateColor, false);
}

void KelButton::setCurrentColor(QColor col)
{
    m_animation->stop();
    showColor(col);
}

void KelButton::setAutoGray(bool yes)
{
    m_autoGray = yes;
}

void KelButton::setAnimated(bool yes)
{
    m_animated = yes;
    if (!yes)
        m_animation->stop();
}

void KelButton::setAnimationDuration(int dur)
{
    m_animationDuration = dur;
}

void KelButton::setReleaseDuration(int dur)
{
    m_releaseDuration = dur;
}

void KelButton::setBlinkDelay(int dur)
{
    m_blinkDelay = dur;
}

void KelButton::setAnimationCurve(QEasingCurve::Type curve)
{
    // A custom curve needs a function, which a property cannot bring.
    if (curve < QEasingCurve::Linear || curve >= QEasingCurve::Custom)
        return;
    QEasingCurve easing(curve);
    // Nor can it bring the points of a spline, which is no curve without any: a straight line.
    if (curve == QEasingCurve::BezierSpline) {
        easing.addCubicBezierSegment({0.25, 0.25}, {0.75, 0.75}, {1.0, 1.0});
    } else if (curve == QEasingCurve::TCBSpline) {
        easing.addTCBSegment({0.0, 0.0}, 0.0, 0.0, 0.0);
        easing.addTCBSegment({1.0, 1.0}, 0.0, 0.0, 0.0);
    }
    m_animation->setEasingCurve(easing);
}

void KelButton::delayedClick()
{
    QMetaObject::invokeMethod(this, "click", Qt::QueuedConnection);
}

void KelButton::delayedToggle()
{
    QMetaObject::invokeMethod(this, "toggle", Qt::QueuedConnection);
}

void KelButton::_clicked()
{
    emit clickedID(m_clickID);
}

void KelButton::_toggled(bool on)
{
    const QPointer<KelButton> alive(this);
    if (!on && m_autoGray)
        goTo(Gray);
    if (alive)
        emit toggledID(m_clickID, on);
}

bool KelButton::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::User || event->type() == QEvent::Polish) {
        autoConnectPending = false;
        if (autoConnect())
            watched->removeEventFilter(this);
    }
    return false;
}

// Somebody gave the button another palette: it brings its roles, but not the face.
void KelButton::changeEvent(QEvent *event)
{
    QToolButton::changeEvent(event);
    if (event->type() != QEvent::PaletteChange)
        return;

    const QPalette now = palette();
    for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
        if (now.color(group, QPalette::Button) != m_currentColor) {
            showColor(m_currentColor);
            return;
        }
    }
}

// Inside setChecked() the base class goes on with the button after its signal. A click announces the
// toggling afterwards, so that its handlers may delete the button as those of the other signals may.
void KelButton::nextCheckState()
{
    if (!isCheckable() || group() != nullptr || defaultAction() != nullptr || signalsBlocked()) {
        QToolButton::nextCheckState();
        return;
    }

    const bool before = isChecked();
    blockSignals(true);
    QToolButton::nextCheckState();
    blockSignals(false);
    if (isChecked() != before)
        emit toggled(isChecked());
}

void KelButton::timerEvent(QTimerEvent *event)
{
    if (event->timerId() == m_blinkTimer) {
        killTimer(m_blinkTimer);
        m_blinkTimer = 0;
        setCurrentColor(m_blinkColor);
        animateColor(m_stateColor, false);
    } else if (event->timerId() == connectCheckTimer) {
        checkConnected();
    } else {
        QToolButton::timerEvent(event);
    }
}

// The handlers of a press or release may delete the button.
void KelButton::mousePressEvent(QMouseEvent *event)
{
    const QPointer<KelButton> alive(this);
    animateColor(m_downColor, false);
    QToolButton::mousePressEvent(event);
    if (alive)
        emit pressedID(m_clickID);
    if (!alive)
        event->accept(); // the parent of what is gone is not asked
}

void KelButton::mouseReleaseEvent(QMouseEvent *event)
{
    const QPointer<KelButton> alive(this);
    setCurrentColor(m_downColor);
    animateColor(m_stateColor, true);
    QToolButton::mouseReleaseEvent(event);
    if (alive)
        emit releasedID(m_clickID);
    if (!alive)
        event->accept(); // the parent of what is gone is not asked
}
