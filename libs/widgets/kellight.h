/// \file
/// The panel's dimmable lamp.
#pragma once

#include <QColor>
#include <QImage>
#include <QPixmap>
#include <QPropertyAnimation>
#include <QWidget>
#include <kelwidgetsexport.h>

#include <array>
#include <memory>

class InkedPicture;
class KelLightRing;
enum class LampStage;
namespace KelLightGeometry
{
struct Layout;
}

/// Lamp (bulb, LED or spot) that glows with its level, inside a ring that sets the level when it is
/// dragged. A click on the lamp switches it on and off; a binary light knows nothing between. The
/// level is offered as a byte too, for devices that take dimmer values. Signals come at once with
/// the stored level, the picture follows within 200 ms. Levels that are not a number are ignored.
/// GUI thread only.
class KEL_WIDGETS_EXPORT KelLight : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(IconType iconType READ iconType WRITE setIconType)
    Q_PROPERTY(bool readOnly READ readOnly WRITE setReadOnly)
    Q_PROPERTY(bool binary READ binary WRITE setBinary)
    Q_PROPERTY(bool on READ isOn WRITE setOn)
    Q_PROPERTY(bool restoreLastOnLevel READ restoreLastOnLevel WRITE setRestoreLastOnLevel)
    Q_PROPERTY(double level READ level WRITE setLevel)
    Q_PROPERTY(int byteLevel READ byteLevel WRITE setByteLevel)
    Q_PROPERTY(QColor fillColor READ fillColor WRITE setFillColor)
    Q_PROPERTY(QColor backColor READ backColor WRITE setBackColor)
    Q_PROPERTY(double angleShift READ angleShift WRITE setAngleShift)
    Q_PROPERTY(double barSize READ barSize WRITE setBarSize)
    Q_PROPERTY(double clickThreshold READ clickThreshold WRITE setClickThreshold)
    Q_PROPERTY(double lowLevel READ lowLevel WRITE setLowLevel)
    Q_PROPERTY(double highLevel READ highLevel WRITE setHighLevel)
    Q_PROPERTY(double onLevel READ onLevel WRITE setOnLevel)
    Q_PROPERTY(double h__anim READ h__anim WRITE s_anim DESIGNABLE false STORED false)

public:
    /// Which lamp is drawn.
    enum IconType : int { Bulb = 0, LED = 1, Spot = 2 };
    Q_ENUM(IconType)

    explicit KelLight(QWidget *parent = nullptr);
    ~KelLight() override;

    IconType iconType() const { return m_iconType; }
    bool readOnly() const { return m_readOnly; }
    bool binary() const { return m_binary; }
    bool restoreLastOnLevel() const { return m_restoreLastOnLevel; }
    double level() const;                              ///< The set level; of a binary light the low or the high level.
    int byteLevel() const;                             ///< 0..254 against a level of 100; -1 when the high level is 0.
    bool isOn() const;                                 ///< At the high level, to a thousandth.
    bool isOff() const;                                ///< At the low level, to a thousandth.
    QColor fillColor() const { return m_fillColor; }   ///< Lit part of the ring.
    QColor backColor() const { return m_backColor; }   ///< Unlit part of the ring.
    double angleShift() const { return m_angleShift; } ///< Degrees left free on each side of the bottom, 0..180.
    double barSize() const { return m_barSize; }       ///< Ring width, percent of the radius, 0..100.
    double clickThreshold() const { return m_clickThreshold; } ///< From this level on, a click switches off.
    double lowLevel() const { return m_lowLevel; }
    double highLevel() const { return m_highLevel; }
    double onLevel() const { return m_onLevel; } ///< Set by a click when the last level is not restored.
    double h__anim() const { return m_shownLevel; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    bool hasHeightForWidth() const override { return false; }
    int heightForWidth(int width) const override; ///< The current width, whatever is asked.

public Q_SLOTS:
    void enable() { setEnabled(true); }
    void disable() { setEnabled(false); }
    void setReadOnly(bool y); ///< A read-only light ignores the mouse, not the program.
    void setIconType(IconType it);
    void setBinary(bool y);               ///< Sets the present level once more by the new rule, and announces it.
    void setLevel(double l);              ///< Clamps to the bounds; a binary light goes high above the click threshold.
    void setByteLevel(int byteLevel);     ///< 254 is the high level, 0 the low level.
    void setLowLevel(double lowLevel);    ///< Lifts on-level, threshold and level where they are below it.
    void setHighLevel(double highLevel);  ///< Lowers on-level, threshold and level where they are above it.
    void setOnLevel(double onLevel);      ///< Clamps to the bounds and keeps the threshold below it.
    void setOn(bool on);                  ///< To the high or to the low level.
    void setRestoreLastOnLevel(bool yes); ///< Whether a click brings back the level before the last click off.
    void setFillColor(QColor c);
    void setBackColor(QColor c);
    void setAngleShift(double a);     ///< Clamps to 0..180 degrees.
    void setBarSize(double a);        ///< Clamps to 0..100 percent.
    void setClickThreshold(double a); ///< Clamps to low level..on-level.
    void click();                     ///< Switches, as a click on the lamp; emits no clicked().

Q_SIGNALS:
    void turnedOn();  ///< The new level is the high level.
    void turnedOff(); ///< The new level is the low level.
    void clicked();   ///< After the operator's click on the lamp was handled.
    void levelChanged(double level);
    void byteLevelChanged(int byteLevel); ///< Right after levelChanged.

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private Q_SLOTS:
    void s_anim(double v);

private:
    void applyLevel(double l);
    void fitLevelToBounds();
    void dragTo(const QPoint &position);
    void refresh();
    void scalePictures();
    void prepareStages();
    const InkedPicture &stagePicture(LampStage stage);
    void dropPaintings();
    QImage emptyPainting() const;
    void paintLight(QPainter &painter);
    void updateBase(const KelLightGeometry::Layout &where, double percent);
    std::unique_ptr<KelLightRing> makeBase(const KelLightGeometry::Layout &where);
    void drawGlow(QPainter &painter, const QRect &picture, double percent);

    IconType m_iconType = Bulb;
    QColor m_fillColor = QColor(255, 245, 60);
    QColor m_backColor = QColor(216, 216, 216);
    QPropertyAnimation m_animation;
    double m_level = 0.0;
    double m_angleShift = 20.0;
    double m_clickThreshold = 75.0;
    double m_barSize = 30.0;
    double m_shownLevel = 0.0;
    double m_paintedLevel = 0.0; // the level shown by the last painting
    double m_lowLevel = 0.0;
    double m_highLevel = 100.0;
    double m_onLevel = 100.0;
    double m_lastOnLevel = 0.0; // before the last click that switched off
    bool m_readOnly = false;
    bool m_dragging = false;
    bool m_binary = false;
    bool m_restoreLastOnLevel = true;

    IconType m_lamp = Bulb; // the last icon type that there is
    // Of each stage, at m_pictureSize and m_pictureRatio; null until it is seen.
    std::unique_ptr<std::array<InkedPicture, 4>> m_pictures;
    bool m_isPrepared = false; // whether the stages that are not seen yet are there too, or about to be
    QSize m_pictureSize;
    qreal m_pictureRatio = 0.0;
    std::unique_ptr<KelLightRing> m_base; // ring and unlit lamp; null when it must be made anew
    double m_basePercent = 0.0;
    QPixmap m_still; // the whole light while nothing moves; null when it must be drawn anew
};
