/// \file
/// A switch with two positions.
#pragma once

#include <QAbstractButton>
#include <QColor>
#include <QPoint>
#include <kelwidgetsexport.h>

class QPropertyAnimation;

/// Switch whose handle slides from one end of a track to the other. A click toggles it; its handle can
/// be dragged and snaps to the nearer end. It reports through the signals of a checkable button.
/// GUI thread only.
class KEL_WIDGETS_EXPORT KelSwitch : public QAbstractButton
{
    Q_OBJECT
    Q_PROPERTY(bool readOnly READ readOnly WRITE setReadOnly)
    Q_PROPERTY(bool invertedAppearance READ invertedAppearance WRITE setInvertedAppearance)
    Q_PROPERTY(Qt::Orientation orientation READ orientation WRITE setOrientation)
    Q_PROPERTY(SwitchStyle switchStyle READ switchStyle WRITE setSwitchStyle)
    Q_PROPERTY(QColor fillColor READ fillColor WRITE setFillColor)
    Q_PROPERTY(QColor backColor READ backColor WRITE setBackColor)
    Q_PROPERTY(double scale READ scale WRITE setScale)
    Q_PROPERTY(float h__anim READ h__anim WRITE s_anim DESIGNABLE false STORED false)
    Q_PROPERTY(float h__anim_s READ h__anim_s WRITE s_anim_s DESIGNABLE false STORED false)

public:
    /// One handle that rests at either end, or two halves that close in the middle and open to both ends.
    enum SwitchStyle : int { OneSide = 0, Center = 1 };
    Q_ENUM(SwitchStyle)

    explicit KelSwitch(QWidget *parent = nullptr);

    bool readOnly() const { return m_readOnly; }                     ///< Deaf to the mouse; code still switches it.
    bool invertedAppearance() const { return m_invertedAppearance; } ///< The ends change places.
    Qt::Orientation orientation() const { return m_orientation; }
    SwitchStyle switchStyle() const { return m_switchStyle; }
    QColor fillColor() const { return m_fillColor; } ///< When on.
    QColor backColor() const { return m_backColor; } ///< When off.
    double scale() const { return m_scale; }         ///< Of the size hint.
    float h__anim() const { return m_position; }     ///< Handle: 0 on, 1 off.
    float h__anim_s() const { return m_blend; }      ///< Colour of the track: 0 on, 1 off.

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

public Q_SLOTS:
    void enable();
    void disable();
    void setReadOnly(bool y);
    void setInvertedAppearance(bool y);
    void setOrientation(Qt::Orientation o);
    void setSwitchStyle(SwitchStyle s);
    void setFillColor(QColor c);
    void setBackColor(QColor c);
    void setScale(double s); ///< What is not finite is ignored.
    void setOn();
    void setOff();

protected:
    void checkStateSet() override;
    void nextCheckState() override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private Q_SLOTS:
    void s_anim(float v);
    void s_anim_s(float v);

private:
    void animate();
    void dragTo(const QPoint &position);
    void lift(QMouseEvent *event);
    void drawTrack(QPainter &painter, const QRectF &track, qreal penWidth) const;
    void drawHandle(QPainter &painter, qreal halfLength, qreal penWidth) const;

    QColor m_fillColor = {255, 245, 60};
    QColor m_backColor = {216, 216, 216};
    Qt::Orientation m_orientation = Qt::Horizontal;
    SwitchStyle m_switchStyle = OneSide;
    QPropertyAnimation *m_animation;
    QPropertyAnimation *m_animationS;
    QPoint m_pressPoint;
    float m_position = 1.0f;
    float m_blend = 1.0f;
    double m_scale = 1.0;
    bool m_readOnly = false;
    bool m_moved = false;   // A drag has started.
    bool m_pressed = false; // The press was on the track.
    bool m_invertedAppearance = false;
    bool m_leftHalf = false; // The press was on the first half.
};
