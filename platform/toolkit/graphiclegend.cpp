#include "graphiclegend.h"

#include <QPainter>
#include <QStyle>
#include <QStyleOptionFocusRect>
#include <flowlayout.h>

#include <algorithm>

namespace
{

constexpr double SampleWidth = 1.4; ///< All in heights of the font.
constexpr double Margin = 0.25;
constexpr double Gap = 0.4;
constexpr double HiddenOpacity = 0.4;
constexpr double SampleLine = 2.5; ///< Thinner lines do not show their colour, in pixels.
constexpr int HoverAlpha = 24;

} // namespace

GraphicLegendEntry::GraphicLegendEntry(QWidget *parent)
    : QAbstractButton(parent)
{
    setCheckable(true);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_Hover); // painted anew when the pointer comes and goes
}

void GraphicLegendEntry::setRow(const GraphicLegendRow &row)
{
    m_pen = row.pen;
    setChecked(row.isVisible);
    if (text() != row.name) {
        setText(row.name);
        setToolTip(row.name.toHtmlEscaped());
        updateGeometry();
    }
    update();
}

QSize GraphicLegendEntry::sizeHint() const
{
    const int height = fontMetrics().height();
    const double width = height * (SampleWidth + Gap + 2.0 * Margin) + fontMetrics().horizontalAdvance(text());
    return {qRound(width + 1.0), qRound(height * (1.0 + 2.0 * Margin))};
}

QSize GraphicLegendEntry::minimumSizeHint() const
{
    return {qRound(fontMetrics().height() * (SampleWidth + 2.0 * Margin)), sizeHint().height()};
}

void GraphicLegendEntry::draw(QPainter &painter, const QRectF &rect) const
{
    const double unit = fontMetrics().height();
    const QRectF inside = rect.adjusted(unit * Margin, 0.0, -unit * Margin, 0.0);
    painter.save();
    painter.setOpacity(isChecked() ? 1.0 : HiddenOpacity);
    painter.setRenderHint(QPainter::Antialiasing);
    QPen pen = m_pen;
    pen.setWidthF(std::max(SampleLine, pen.widthF()));
    pen.setCapStyle(Qt::FlatCap);
    painter.setPen(pen);
    const QPointF start(inside.left(), inside.center().y());
    painter.drawLine(start, start + QPointF(unit * SampleWidth, 0.0));

    const QRectF textRect = inside.adjusted(unit * (SampleWidth + Gap), 0.0, 0.0, 0.0);
    painter.setPen(palette().color(QPalette::WindowText));
    painter.setFont(font());
    // Half a pixel more: the width of the hint is rounded.
    const QString shown = fontMetrics().elidedText(text(), Qt::ElideRight, qRound(textRect.width() + 0.5));
    painter.drawText(textRect, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine | Qt::TextDontClip, shown);
    painter.restore();
}

void GraphicLegendEntry::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    if (isEnabled() && underMouse()) {
        QColor hover = palette().color(QPalette::WindowText);
        hover.setAlpha(HoverAlpha);
        painter.fillRect(rect(), hover);
    }
    draw(painter, rect());
    if (hasFocus()) {
        QStyleOptionFocusRect option;
        option.initFrom(this);
        style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, this);
    }
}

GraphicLegend::GraphicLegend(QWidget *parent)
    : QWidget(parent)
{
    auto *layout = new FlowLayout(this);
    layout->setSpacing(0);
    QSizePolicy policy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    setObjectName(QStringLiteral("legend"));
}

void GraphicLegend::setRows(const QVector<GraphicLegendRow> &rows)
{
    while (m_entries.size() > rows.size())
        delete m_entries.takeLast();
    while (m_entries.size() < rows.size()) {
        auto *entry = new GraphicLegendEntry(this);
        const int i = m_entries.size();
        connect(entry, &QAbstractButton::clicked, this, [this, i](bool isChecked) { Q_EMIT toggled(i, isChecked); });
        layout()->addWidget(entry);
        entry->show();
        m_entries.append(entry);
    }
    for (int i = 0; i < rows.size(); ++i)
        m_entries.at(i)->setRow(rows.at(i));
    updateGeometry();
}

int GraphicLegend::rowHeight() const
{
    return m_entries.isEmpty() ? 0 : m_entries.first()->sizeHint().height();
}

int GraphicLegend::heightAt(int width) const
{
    return layout()->heightForWidth(width);
}

void GraphicLegend::draw(QPainter &painter, const QRectF &rect) const
{
    QVector<QSize> sizes;
    for (const GraphicLegendEntry *entry : m_entries)
        sizes.append(entry->sizeHint());
    const QVector<QRect> places = flow(sizes, qRound(rect.width()), 0);
    for (int i = 0; i < places.size(); ++i)
        m_entries.at(i)->draw(painter, QRectF(places.at(i)).translated(rect.topLeft()));
}
