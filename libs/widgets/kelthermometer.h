/// \file
/// A liquid-in-glass thermometer.
#pragma once

#include <QColor>
#include <QWidget>
#include <kelwidgetsexport.h>

#include <memory>

class QPropertyAnimation;
class ThermometerFace;

/// Thermometer whose column shows a value and whose liquid turns from a cold blue through grey to a warm
/// red. Its value is set from code or, unless it is read-only, by a press or a drag on it. The scale's
/// bounds keep the value; the bounds of the colour only colour. Numbers that are not finite are ignored
/// everywhere. GUI thread only.
class KEL_WIDGETS_EXPORT KelThermometer : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(bool readOnly READ readOnly WRITE setReadOnly)
    Q_PROPERTY(double value READ value WRITE setValue)
    Q_PROPERTY(double minimum READ minimum WRITE setMinimum)
    Q_PROPERTY(double maximum READ maximum WRITE setMaximum)
    Q_PROPERTY(double gradMinimum READ gradMinimum WRITE setGradMinimum)
    Q_PROPERTY(double gradMaximum READ gradMaximum WRITE setGradMaximum)
    Q_PROPERTY(float h__anim READ h__anim WRITE s_anim DESIGNABLE false STORED false)

public:
    explicit KelThermometer(QWidget *parent = nullptr);
    ~KelThermometer() override;

    bool readOnly() const { return m_readOnly; }         ///< Deaf to the mouse; code still sets it.
    double value() const { return m_value; }             ///< Within the scale.
    double minimum() const { return m_minimum; }         ///< Coldest colour.
    double maximum() const { return m_maximum; }         ///< Warmest colour.
    double gradMinimum() const { return m_gradMinimum; } ///< Bottom of the scale.
    double gradMaximum() const { return m_gradMaximum; } ///< Top of the scale.
    float h__anim() const;                               ///< The level that is shown now.

    /// Mixes the colour of the liquid for the level that is shown, and asks for a repaint.
    void calcColor();

    /// Lets the shown level run to the value. A value or a way beyond single precision is shown at once.
    void animate();

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

private Q_SLOTS:
    void s_anim(double v);

public Q_SLOTS:
    void enable();
    void disable();
    void setReadOnly(bool y);
    void setValue(double v);       ///< Kept within the scale, whose bottom counts more. The same value is silent.
    void setMinimum(double v);     ///< May equal or exceed the maximum.
    void setMaximum(double v);     ///< May equal or be below the minimum.
    void setGradMinimum(double v); ///< Pulls the value along.
    void setGradMaximum(double v); ///< Pulls the value along.

Q_SIGNALS:
    void valueChanged(double v); ///< The value is new; the column is still on its way.

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;

private:
    QColor m_liquidColor;
    std::unique_ptr<ThermometerFace> m_face;
    QPropertyAnimation *m_animation;
    double m_value = 0.0;
    double m_minimum = -30.0;
    double m_maximum = 30.0;
    double m_gradMinimum = -50.0;
    double m_gradMaximum = 50.0;
    double m_level = 0.0; // What the column shows now.
    bool m_readOnly = false;
};
