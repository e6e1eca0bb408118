/// \file
/// The names of a plot's curves. Not installed.
#pragma once

#include <QAbstractButton>
#include <QPen>
#include <QVector>

/// What the legend says of one curve.
struct GraphicLegendRow {
    QString name;
    QPen pen;
    bool isVisible = true;
};

/// One name with a piece of its line; checked while its curve is shown.
class GraphicLegendEntry : public QAbstractButton
{
    Q_OBJECT

public:
    explicit GraphicLegendEntry(QWidget *parent);

    void setRow(const GraphicLegendRow &row);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

    /// Draws the entry into \a rect with the colours of this widget.
    void draw(QPainter &painter, const QRectF &rect) const;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QPen m_pen;
};

/// A row of entries, or as many rows as they need.
class GraphicLegend : public QWidget
{
    Q_OBJECT

public:
    explicit GraphicLegend(QWidget *parent);

    void setRows(const QVector<GraphicLegendRow> &rows);

    int rowHeight() const; ///< Of one row of entries, 0 without any.
    /// The height that the entries take at \a width.
    int heightAt(int width) const;
    /// Draws the entries as they would stand in \a rect.
    void draw(QPainter &painter, const QRectF &rect) const;

Q_SIGNALS:
    void toggled(int i, bool isVisible); ///< By the user.

private:
    QVector<GraphicLegendEntry *> m_entries;
};
