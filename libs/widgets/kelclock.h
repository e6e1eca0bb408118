/// \file
/// A time picker for fingers.
#pragma once

#include <QTime>
#include <QWidget>
#include <kelwidgetsexport.h>

class QPropertyAnimation;

/// Two clock faces side by side: the left one picks the hour from two rings of numbers, the right one
/// the minute from one ring. A tap picks a multiple of five minutes, a drag any minute. Both faces show
/// both hands, which move to the picked time with an animation; their own hand is opaque.
///
/// A new clock reads as 00:00 and has no number highlighted. Before a face has been painted for the
/// first time it does not know where its rings are and ignores the pointer. GUI thread only.
///
/// Wires that carry numbers take the time in two parts: hourChanged() and minuteChanged() tell what is new
/// in it, setHour() and setMinute() set it.
class KEL_WIDGETS_EXPORT KelClock : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(bool readOnly READ readOnly WRITE setReadOnly)
    Q_PROPERTY(QTime time READ time WRITE setTime)
    Q_PROPERTY(float h__anim0 READ h__anim0 WRITE s_anim0 DESIGNABLE false STORED false)
    Q_PROPERTY(float h__anim1 READ h__anim1 WRITE s_anim1 DESIGNABLE false STORED false)

public:
    /// A hand. Lengths are shares of a face's radius, angles radians clockwise from 12 o'clock.
    struct Arrow {
        float width;
        float length;
        float opacity;
        float targetAngle = 0.0F;
        float currentAngle = 0.0F; ///< As shown.
    };

    class _NumericCircle; ///< A face; the children in the clock's layout are of this class.

    explicit KelClock(QWidget *parent = nullptr);

    bool readOnly() const;  ///< Deaf to the mouse; code still sets the time.
    QTime time() const;     ///< The picked hour and minute; seconds are always 0.
    float h__anim0() const; ///< Angle of the minute hand as shown, radians clockwise from 12 o'clock.
    float h__anim1() const; ///< Angle of the hour hand as shown, radians clockwise from 12 o'clock.

    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int w) const override; ///< The width that the clock has now, whatever \a w is.

public Q_SLOTS:
    void enable();
    void disable();
    void setReadOnly(bool y);
    void setTime(QTime t);      ///< A time that is not valid, or that time() has already, is ignored.
    void setHour(int hour);     ///< 0 to 23, others are ignored; the minute stays.
    void setMinute(int minute); ///< 0 to 59, others are ignored; the hour stays.

Q_SIGNALS:
    void timeChanged(QTime time);   ///< A number was picked or a new time was set; the hands are on their way.
    void hourChanged(int hour);     ///< Shortly before timeChanged(), when the hour is another one.
    void minuteChanged(int minute); ///< Shortly before timeChanged(), when the minute is another one.

protected:
    void changeEvent(QEvent *event) override;

private Q_SLOTS:
    void s_anim0(float v);
    void s_anim1(float v);
    void numSelected();

private:
    void init();
    void dressFaces();
    void animate();
    void announce();

    _NumericCircle *m_hours = nullptr;
    _NumericCircle *m_minutes = nullptr;
    QPropertyAnimation *m_minuteAnimation = nullptr;
    QPropertyAnimation *m_hourAnimation = nullptr;
    QTime m_announced = QTime(0, 0);
};
