/// \file
/// The frame of a group box as a picture.
#pragma once

#include <QPixmap>
#include <QStyle>

class QStyleOptionGroupBox;
class QWidget;

/// Keeps what the style paints for a group box without title and tick. Styles make the frame anew at each
/// painting, also when only a part of what lies on it moves.
class GroupBoxPicture
{
public:
    /// Whether a picture is enough: titles and ticks are left to the style.
    static bool fits(const QStyleOptionGroupBox &option);

    /// The frame of \a box with the look of \a option; painted anew when anything differs.
    const QPixmap &picture(const QStyleOptionGroupBox &option, const QWidget &box);

    /// For a style that looks different although it is the same, as with another style sheet.
    void forget() { m_picture = QPixmap(); }

private:
    struct Look {
        QSize size;
        qreal pixelRatio = 0.0;
        QStyle::State state;
        int features = 0;
        int lineWidth = 0;
        Qt::LayoutDirection direction = Qt::LeftToRight;
        qint64 palette = 0;
        const QStyle *style = nullptr;

        bool operator==(const Look &other) const;
    };

    static Look lookOf(const QStyleOptionGroupBox &option, const QWidget &box);

    Look m_look;
    QPixmap m_picture;
};
