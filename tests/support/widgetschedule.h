/// \file
/// A widget to which chance does what operators, programs and panels may do, at any moment.
#pragma once

#include "frameclock.h"

#include <QByteArrayList>
#include <QEvent>
#include <QMetaMethod>
#include <QPointer>
#include <QRandomGenerator>
#include <QSet>
#include <QVector>
#include <QWidget>

#include <functional>

/// One schedule: a widget on a panel and a row of deeds, all of them chosen by a seed, so that the same seed does the
/// same again. Time passes only by deeds: frames of animations, and timers that expire.
///
/// The deeds that every widget knows are there from the start: pointer, wheel and keys on it or inside it, frames,
/// timers, hiding, disabling, another parent, another size (0 too), fonts, painting, any property set to anything, any
/// slot called with anything, and deletion, also from inside its own signals. A test may add deeds of its own.
class WidgetSchedule : public QObject
{
    Q_OBJECT

public:
    using Maker = std::function<QWidget *(QWidget *parent)>;

    WidgetSchedule(quint32 seed, const Maker &make);
    ~WidgetSchedule() override;

    QWidget *widget() const { return m_widget; } ///< Null once it is deleted.
    QWidget &panel() { return m_panel; }

    /// \a deed may happen too, \a weight times as often as one of weight 1. The widget lives when it is called.
    void addDeed(const char *name, std::function<void()> deed, int weight = 1);
    /// The property or slot \a name is left alone.
    void leaveAlone(const char *name) { m_leftAlone.insert(name); }
    /// Whether deletion is among the deeds; at first it is.
    void setDeletes(bool deletes) { m_deletes = deletes; }
    /// Called after each deed that the widget outlives; what it returns is wrong, empty for nothing.
    void setCheck(std::function<QByteArray()> check) { m_check = std::move(check); }

    /// Does up to \a steps deeds; ends when the widget is deleted or something is wrong.
    void run(int steps);
    void step(); ///< One deed.
    /// Hides what is left of the widget and lets seconds pass: nothing may be painted or go on moving.
    void comeToRest();

    /// What was wrong and the deeds that led to it, empty when nothing was.
    QByteArray trouble() const { return m_trouble; }

    /// What has happened so far.
    QByteArray trace() const { return m_trace.join(", "); }

    int below(int bound) { return int(m_dice.bounded(bound)); } ///< A number from 0 to \a bound - 1.
    double number();                                            ///< Any number, at times none.
    FrameClock &clock() { return m_clock; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private Q_SLOTS:
    void hearSignal();

private:
    struct Deed {
        const char *name;
        std::function<void()> act;
        int weight;
        bool mayDelete; ///< Whether the widget may go away inside, as far as Qt is concerned.
    };

    void addCommonDeeds();
    void addPointerDeeds();
    void listen();
    void fail(const QByteArray &what);
    QWidget *anyPart();
    void sendMouse(QEvent::Type type);
    void sendWheel();
    void sendKey();
    void expireTimer();
    void changeSize();
    void changeFont();
    void changeParent();
    void paint();
    void setAnyProperty();
    void callAnySlot();
    QVariant anyValue(const QMetaProperty &property);
    QVariant anyValue(int type);
    void interrupt(bool mayDelete);

    QRandomGenerator m_dice;
    FrameClock m_clock;
    QWidget m_panel;
    QWidget m_otherPanel;
    QPointer<QWidget> m_widget;
    QVector<Deed> m_deeds;
    QVector<QMetaProperty> m_properties;
    QVector<QMetaMethod> m_slots;
    QSet<QByteArray> m_leftAlone;
    std::function<QByteArray()> m_check;
    QByteArrayList m_trace;
    QByteArray m_trouble;
    Qt::MouseButton m_button = Qt::NoButton; ///< The one that is held.
    QPointer<QWidget> m_grabber;             ///< Where it was pressed.
    int m_weights = 0;
    int m_signalsLeft = -1; ///< Until one is interrupted; below 0 for never.
    bool m_deletes = true;
    bool m_mayDelete = false; ///< In the deed that is under way.
};
