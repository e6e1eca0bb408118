/// \file
/// Bounds for what a form may ask for before it is built.
#pragma once

#include <QString>
#include <QStringList>
#include <QVector>
#include <QXmlStreamAttributes>

/// Follows a form from element to element and says what is beyond all measure: a form loader does as it is
/// told, and would run out of memory, of stack or of time.
class FormLimits
{
public:
    static constexpr int MaxDepth = 200;       ///< Elements inside each other; the loader recurses.
    static constexpr int MaxWidgets = 10000;   ///< Far more than a screen shows.
    static constexpr int MaxCell = 1000;       ///< Rows and columns of a grid or a table; it keeps all of them.
    static constexpr int MaxCells = 1000000;   ///< Cells of all tables together.
    static constexpr int MaxLength = 10000;    ///< Pixels of a side, a margin, an icon.
    static constexpr int MaxFontSize = 1000;   ///< Points.
    static constexpr double MaxTicks = 100000; ///< Marks beside a slider; it paints them one by one.

    // Both return what is wrong, empty when nothing is.
    /// \a element is in small letters.
    QString enter(const QString &element, const QXmlStreamAttributes &attributes);
    QString leave(); ///< Leaves the element that was entered last.

    void read(const QStringRef &text); ///< Text inside that element, whole or in pieces.

    int widgets() const { return m_widgets; } ///< Entered so far.

private:
    struct Element {
        QString name;
        QString property; ///< Name of the property that it belongs to, its own or a parent's.
        QString text;
    };
    /// What the widgets that are open say of themselves.
    struct Widget {
        int rows = 0;
        int columns = 0;
        int rowElements = 0;
        int columnElements = 0;
        double minimum = 0.0;
        double maximum = 99.0;
        double tickInterval = 0.0;
        bool hasTicks = false;
    };

    QString checkCell(const QXmlStreamAttributes &attributes) const;
    QString checkText(const Element &element);
    QString checkNumber(const QString &property, const QString &text);
    QString closeWidget();

    QVector<Element> m_elements;
    QVector<Widget> m_open;
    int m_widgets = 0;
    double m_cells = 0;
};
