/// \file
/// One face of a KelClock as a widget. Not installed.
#pragma once

#include "kelclockfaceparts.h"

#include <QPixmap>

/// A face with its rings of numbers and its hands. Its highlighted text is the picked number.
class KelClock::_NumericCircle : public QWidget
{
    Q_OBJECT

public:
    _NumericCircle(QVector<ClockRing> rings, QVector<Arrow> hands, KelClock *clock);

    const QString &selectedText() const { return m_selectedText; }
    void setSelectedText(const QString &text);

    bool isReadOnly() const { return m_isReadOnly; }
    void setReadOnly(bool isReadOnly) { m_isReadOnly = isReadOnly; }

    float targetAngle(int hand) const { return m_hands.at(hand).targetAngle; }
    float currentAngle(int hand) const { return m_hands.at(hand).currentAngle; }
    void setTargetAngle(int hand, float angle) { m_hands[hand].targetAngle = angle; }
    void setCurrentAngle(int hand, float angle);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void changeEvent(QEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    /// What the picture of the still parts owes to the device that it is made for.
    struct Look {
        QPointF shift; // From the device's pixels, since a fractional scale may put a face between them.
        qreal pixelRatio = 0.0;

        bool operator==(const Look &other) const;
    };

    void dropStill();
    void layOut();
    Look lookOn(const QPainter &painter) const;
    void paintStill(const Look &look);
    QPixmap stillWithoutHighlight(const Look &look) const;
    QPixmap paintedStill(const Look &look, const QString &selected, const QRectF &area) const;
    QString pickedText(const QMouseEvent &event);

    QVector<ClockRing> m_rings;
    QVector<float> m_ringWidths; // Of the rings as painted; empty before.
    QVector<Arrow> m_hands;
    QString m_selectedText;
    int m_pressMinute = -1; // Where the pointer went down, as long as it stays there.
    bool m_isReadOnly = false;
    KelClock *m_clock;

    // The still parts as painted last: where they are, and their picture.
    QSize m_layoutSize; // Not valid when they must be laid out anew.
    ClockFaceParts m_parts;
    QRect m_area;
    Look m_look;
    QPixmap m_still;
};
