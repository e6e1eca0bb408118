/// \file
/// A face of a KelClock: where its parts are, how they are painted and what a pointer hits. Not installed.
#pragma once

#include <kelclock.h>

#include <QColor>
#include <QFont>
#include <QPair>
#include <QPointF>
#include <QRectF>
#include <QVector>

class QPainter;
class QPalette;

/// Half a turn. Single precision, as the hands are.
inline constexpr float ClockPi = 3.1415927F;

/// A number of a ring: the angle of its place and its text.
using ClockNumber = QPair<qreal, QString>;
using ClockRing = QVector<ClockNumber>;

/// Where a ring is; radii in pixels from the centre of the face.
struct ClockRingParts {
    qreal circleRadius = 0.0; ///< Of the line around the ring.
    qreal textRadius = 0.0;   ///< Of the numbers' places.
    int textSide = 0;         ///< Of the square that holds the largest number.
    qreal inkReach = 0.0;     ///< Nothing of a number is further than this from the middle of its square.
    float width = 0.0F;       ///< From its outer edge to its inner one.
};

/// Where the parts of a face are.
struct ClockFaceParts {
    QPointF center;
    qreal penWidth = 0.0;
    qreal rimRadius = 0.0;
    qreal radius = 0.0; ///< Of the outermost ring, and the measure of the hands.
    QFont font;         ///< Of the numbers; as heavy as the highlighted one.
    QVector<ClockRingParts> rings;
};

/// Lays out a face of the size \a size with numbers in \a font, outermost ring first.
ClockFaceParts layoutClockFace(const QSize &size, const QFont &font, const QVector<ClockRing> &rings);

/// The part of a face of the size \a size that \a parts may cover, in whole pixels.
QRect clockFaceArea(const ClockFaceParts &parts, const QSize &size);

/// The square in which \a hands turn.
QRect clockHandsArea(const ClockFaceParts &parts, const QVector<KelClock::Arrow> &hands);

/// The colour behind a face: none where black lines stand out from the window of \a palette, else the
/// light colour of its text.
QColor clockPlateColor(const QPalette &palette);

/// Where a face looks otherwise when the number that is \a selected is highlighted; empty when there is none.
QRectF clockHighlightArea(const ClockFaceParts &parts, const QVector<ClockRing> &rings, const QString &selected);

/// Draws what stands still: rim, rings and numbers, on a disc of the colour \a plate if that is valid.
/// The number that is \a selected is highlighted, none for an empty text. Numbers that do not reach into \a area are
/// left out.
void drawClockFace(QPainter &painter, const ClockFaceParts &parts, const QVector<ClockRing> &rings,
                   const QString &selected, const QColor &plate, const QRectF &area);

void drawClockHands(QPainter &painter, const ClockFaceParts &parts, const QVector<KelClock::Arrow> &hands);

/// A pointer as a face sees it.
struct ClockPointer {
    qreal distance = 0.0; ///< From the centre, pixels.
    qreal angle = 0.0;    ///< Clockwise from 12 o'clock, 0 to a full turn.
};

ClockPointer clockPointer(const QPoint &position, const QSize &size);

/// The number of the first of \a rings that \a pointer is on, empty when it is on none. The rings lie in
/// a face of the size \a size and have the widths \a ringWidths.
QString clockNumberAt(const ClockPointer &pointer, const QSize &size, const QVector<ClockRing> &rings,
                      const QVector<float> &ringWidths);

/// The minute that \a pointer shows to, 0 to 60.
int clockMinuteAt(const ClockPointer &pointer);
