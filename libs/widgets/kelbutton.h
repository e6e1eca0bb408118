/// \file
/// The panel's push button.
#pragma once

#include <QColor>
#include <QEasingCurve>
#include <QPointer>
#include <QToolButton>
#include <QVariant>
#include <QVector>
#include <kelwidgetsexport.h>

class QPropertyAnimation;

/// Tool button whose face is coloured by a state of three values, so that a device's answer can
/// light it green or red after a press. Colour changes are animated; a press or release only
/// animates the face and never changes the state. Its clicks are fanned out as numbered signals and
/// its state is set by numbered slots, which act only for their own number. GUI thread only.
class KEL_WIDGETS_EXPORT KelButton : public QToolButton
{
    Q_OBJECT
    Q_PROPERTY(QColor downColor READ downColor WRITE setDownColor)
    Q_PROPERTY(QColor upColor READ upColor WRITE setUpColor)
    Q_PROPERTY(QColor grayColor READ grayColor WRITE setGrayColor)
    Q_PROPERTY(QColor yesColor READ yesColor WRITE setYesColor)
    Q_PROPERTY(QColor noColor READ noColor WRITE setNoColor)
    Q_PROPERTY(QColor h__currentColor READ h__currentColor WRITE showColor DESIGNABLE false STORED false)
    Q_PROPERTY(State state READ state WRITE setState)
    Q_PROPERTY(bool buttonVisible READ buttonVisible WRITE setButtonVisible)
    Q_PROPERTY(bool autoGray READ autoGray WRITE setAutoGray)
    Q_PROPERTY(bool animated READ animated WRITE setAnimated)
    Q_PROPERTY(int animationDuration READ animationDuration WRITE setAnimationDuration)
    Q_PROPERTY(int releaseDuration READ releaseDuration WRITE setReleaseDuration)
    Q_PROPERTY(QEasingCurve::Type animationCurve READ animationCurve WRITE setAnimationCurve)
    Q_PROPERTY(int blinkDelay READ blinkDelay WRITE setBlinkDelay)
    Q_PROPERTY(int clickID READ clickID WRITE setClickID)
    Q_PROPERTY(int yesID READ yesID WRITE setYesID)
    Q_PROPERTY(int noID READ noID WRITE setNoID)
    Q_PROPERTY(QString command READ command WRITE setCommand)

public:
    /// What the face says: nothing, a good answer, a bad one.
    enum State : int { Gray = 0, Yes = 1, No = 2 };
    Q_ENUM(State)

    explicit KelButton(QWidget *parent = nullptr);

    /// A button without parent that shows \a text; \a id becomes clickID, yesID and noID.
    KelButton(int id, const QString &text);

    QColor downColor() const { return m_downColor; } ///< Face while pressed.
    QColor upColor() const { return m_upColor; }     ///< Kept for panels that store it; nothing draws it.
    QColor grayColor() const { return m_grayColor; } ///< Face of Gray; so with the next two.
    QColor yesColor() const { return m_yesColor; }
    QColor noColor() const { return m_noColor; }
    QColor h__currentColor() const { return m_currentColor; } ///< Face as shown now.
    State state() const { return m_state; }
    bool buttonVisible() const; ///< In design mode the stored wish, otherwise isVisible().
    bool autoGray() const { return m_autoGray; }
    bool animated() const { return m_animated; }
    int animationDuration() const { return m_animationDuration; } ///< Ordinary colour changes, ms.
    int releaseDuration() const { return m_releaseDuration; }     ///< Fade after a release, ms.
    QEasingCurve::Type animationCurve() const;
    int blinkDelay() const { return m_blinkDelay; } ///< From blink() to the flash, ms.
    int clickID() const { return m_clickID; }       ///< Carried by every numbered signal.
    int yesID() const { return m_yesID; }           ///< Number that the `yes_id` slots listen to.
    int noID() const { return m_noID; }             ///< Number that the `no_id` slots listen to.
    QString command() const { return m_command; }   ///< Bound device command: object.method(arguments).

    QSize sizeHint() const override; ///< Leaves a little room around the icon.

    /// Stores \a state and announces it; nothing happens when it is the state already. The colour stays.
    void applyState(State state);

    /// Moves the face to \a color over releaseDuration (\a slow) or animationDuration, from what it
    /// shows now; at once when not animated.
    void animateColor(const QColor &color, bool slow);

    /// After blinkDelay the face jumps to \a color and fades back to the colour that it settles on.
    /// A blink that is still pending is replaced. The state does not change.
    void blink(const QColor &color);

    /// Looks the command up in the open catalogue and shows the answer in design mode.
    void checkConnected();

    /// Finds the outermost ancestor again. Always false: there is nothing left to wait for.
    bool autoConnect();

    /// Draws the button as it stands, with an icon that is scaled down to fit, onto \a painter.
    void drawButton(QPainter &painter);

    /// Takes a command text apart. An argument list, as it stands between the brackets, is split at
    /// "," and appended to \a arguments untrimmed. \a object and \a method are set when the rest
    /// holds a full stop and are left alone otherwise. Each pointer may be null.
    static void parseCommand(QString command, QString *object, QString *method, QVector<QVariant> *arguments);

    bool designMode = false;        ///< Set by a designer: marks the button instead of hiding it.
    int connectCheckTimer = -1;     ///< Id of a timer that the host starts on this button: each expiry re-checks.
    bool autoConnectPending = true; ///< Until the outermost ancestor is polished; for the host to read.

public Q_SLOTS:
    void enable();
    void disable(); ///< Goes to Gray first.
    void setClickID(int id);
    void setYesID(int id);
    void setNoID(int id);
    void setButtonVisible(bool yes);
    void setCommand(QString cmd);
    void setDownColor(QColor col); ///< As the other stored colours: seen with the next change of state.
    void setUpColor(QColor col);
    void setGrayColor(QColor col);
    void setYesColor(QColor col);
    void setNoColor(QColor col);
    void setState(State s); ///< Goes to \a s, with its animation even when it is the state already.
    void setStateGray();
    void setStateYes();
    void setStateNo();
    void setStateYesOrNo(bool yes);
    void setStateYesOrGray(bool yes);
    void setStateNoOrYes(bool no);
    void setStateNoOrGray(bool no);
    void blinkYes();
    void blinkNo();
    void blinkYesOrNo(bool yes);
    void blinkNoOrYes(bool no);
    void setColor(QColor col);        ///< The face settles on \a col until the next change of state.
    void setCurrentColor(QColor col); ///< Shows \a col at once; a running animation ends there.
    void setAutoGray(bool yes);       ///< Whether toggling off goes to Gray.
    void setAnimated(bool yes);       ///< Off ends a running animation where it is.
    void setAnimationDuration(int dur);
    void setReleaseDuration(int dur);
    void setBlinkDelay(int dur);
    void setAnimationCurve(QEasingCurve::Type curve); ///< A number that is no curve is ignored.
    void delayedClick();                              ///< Clicks after the current event.
    void delayedToggle();                             ///< Toggles after the current event.

    /// Numbered twins: they act as the plain slot when the number is yesID (`yes_id`) or noID (`no_id`).
    void enableID(int yes_id);
    void disableID(int yes_id);
    void setStateID(int yes_id, State s);
    void setStateGrayID(int yes_id);
    void setStateYesID(int yes_id);
    void setStateNoID(int no_id);
    void setStateYesOrNoID(int yes_id, bool yes);
    void setStateYesOrGrayID(int yes_id, bool yes);
    void setStateNoOrYesID(int no_id, bool no);
    void setStateNoOrGrayID(int no_id, bool no);
    void blinkYesID(int yes_id);
    void blinkYesOrNoID(int yes_id, bool yes);
    void blinkNoID(int no_id);
    void blinkNoOrYesID(int no_id, bool no);
    void delayedClickID(int yes_id);
    void delayedToggleID(int yes_id);

    /// These choose between two states by the number, so every number does something.
    void setStateYesIDOrGray(int yes_id);
    void setStateYesIDOrNo(int yes_id);
    void setStateNoIDOrYes(int no_id);
    void setStateNoIDOrGray(int no_id);

Q_SIGNALS:
    void clickedID(int id);
    void pressedID(int id);  ///< Any mouse button went down on the button, after that was handled.
    void releasedID(int id); ///< Any mouse button went up, wherever that was.
    void toggledID(int id, bool on);
    void stateChanged(State state, State prev_state);
    void stateChangedID(int id, State state, State prev_state);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void changeEvent(QEvent *event) override;
    void nextCheckState() override;
    void timerEvent(QTimerEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private Q_SLOTS:
    void _clicked();
    void _toggled(bool on);

private:
    void init();
    void goTo(State state);
    QColor colorOf(State state) const;
    void showColor(const QColor &color);
    void drawConnection(QPainter &painter) const;

    QColor m_downColor = Qt::yellow;
    QColor m_upColor;
    QColor m_grayColor;
    QColor m_yesColor = Qt::green;
    QColor m_noColor = Qt::red;
    QColor m_currentColor;
    QColor m_stateColor; // What the face settles on.
    QColor m_blinkColor;
    QPropertyAnimation *m_animation = nullptr;
    QString m_command;
    QPointer<QWidget> m_topParent;
    State m_state = Gray;
    int m_clickID = -1;
    int m_yesID = -1;
    int m_noID = -1;
    int m_blinkDelay = 500;
    int m_blinkTimer = 0;
    int m_animationDuration = 300;
    int m_releaseDuration = 1000;
    bool m_animated = true;
    bool m_autoGray = true;
    bool m_connected = true;
    bool m_buttonVisible = true;
};
