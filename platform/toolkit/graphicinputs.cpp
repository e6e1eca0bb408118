#include "graphicinputs.h"

#include <QBoxLayout>
#include <QLabel>
#include <QPainter>
#include <graphicaxis.h>

#include <cmath>

GraphicInputs::GraphicInputs(QWidget *parent)
    : QWidget(parent)
{
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    const std::array<const char *, 2> names = {"x", "y"};
    for (const Graphic::Axis axis : {Graphic::XAxis, Graphic::YAxis}) {
        const QString name = QLatin1String(names[axis]);
        m_bounds[axis].from = newEdit(axis, name + QLatin1String("From"));
        m_bounds[axis].to = newEdit(axis, name + QLatin1String("To"));
        layout->addWidget(new QLabel(name, this));
        layout->addWidget(m_bounds[axis].from, 1);
        layout->addWidget(new QLabel(QStringLiteral("…"), this));
        layout->addWidget(m_bounds[axis].to, 1);
    }
    setObjectName(QStringLiteral("borderInputs"));
}

void GraphicInputs::setTime(bool isTime)
{
    m_bounds[Graphic::XAxis].isTime = isTime;
    show(m_bounds[Graphic::XAxis]);
}

void GraphicInputs::setRange(Graphic::Axis axis, const GraphicRange &range)
{
    Bounds &bounds = m_bounds[axis];
    const bool isTyping = bounds.from->isModified() || bounds.to->isModified();
    const bool isChanged = bounds.range != range || bounds.from->text().isEmpty();
    bounds.range = range;
    // What is being typed stays, however fast the points come.
    if (isChanged && !isTyping)
        show(bounds);
}

QLineEdit *GraphicInputs::newEdit(Graphic::Axis axis, const QString &name)
{
    auto *edit = new QLineEdit(this);
    edit->setObjectName(name);
    edit->setAccessibleName(name);
    edit->setMinimumWidth(fontMetrics().horizontalAdvance(QStringLiteral("0000")));
    connect(edit, &QLineEdit::editingFinished, this, [this, axis] { apply(axis); });
    return edit;
}

void GraphicInputs::apply(Graphic::Axis axis)
{
    const Bounds &bounds = m_bounds[axis];
    if (!bounds.from->isModified() && !bounds.to->isModified())
        return; // the focus only went through
    // A bound that was not touched keeps all its digits, also those that are not shown.
    const auto valueOf = [&bounds](const QLineEdit *edit, double shown) {
        return edit->isModified() ? writtenValue(edit->text(), bounds.isTime) : shown;
    };
    const double from = valueOf(bounds.from, bounds.range.from);
    const double to = valueOf(bounds.to, bounds.range.to);
    show(bounds);
    if (std::isfinite(from) && std::isfinite(to))
        Q_EMIT edited(axis, from, to);
}

void GraphicInputs::show(const Bounds &bounds)
{
    for (QLineEdit *edit : {bounds.from, bounds.to}) {
        edit->setText(
            readValue(edit == bounds.from ? bounds.range.from : bounds.range.to, bounds.range, bounds.isTime));
        edit->setCursorPosition(0);
        edit->setModified(false);
    }
}

GraphicStatus::GraphicStatus(QWidget *parent)
    : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    setObjectName(QStringLiteral("status"));
}

void GraphicStatus::setText(const QString &text)
{
    if (text == m_text)
        return;
    m_text = text;
    setAccessibleName(text);
    update();
}

QSize GraphicStatus::sizeHint() const
{
    return {fontMetrics().averageCharWidth() * 20, fontMetrics().height()};
}

void GraphicStatus::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(rect(), Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine,
                     fontMetrics().elidedText(m_text, Qt::ElideRight, width()));
}
