#include "panel/formlimits.h"

namespace
{

bool isOneOf(const QString &text, const QStringList &names)
{
    return names.contains(text);
}

/// What to say when \a text, named \a what, is no number between \a low and \a high.
QString beyond(const QString &what, const QString &text, int low, int high)
{
    bool isNumber = false;
    const double number = text.toDouble(&isNumber);
    if (isNumber && number >= low && number <= high)
        return QString();
    return QStringLiteral("%1 \"%2\" is not up to %3").arg(what, text.simplified().left(40)).arg(high);
}

bool isLayoutLength(const QString &property)
{
    return isOneOf(property,
                   {QStringLiteral("spacing"), QStringLiteral("horizontalSpacing"), QStringLiteral("verticalSpacing"),
                    QStringLiteral("margin"), QStringLiteral("leftMargin"), QStringLiteral("topMargin"),
                    QStringLiteral("rightMargin"), QStringLiteral("bottomMargin"), QStringLiteral("indent")});
}

} // namespace

QString FormLimits::enter(const QString &element, const QXmlStreamAttributes &attributes)
{
    if (m_elements.size() >= MaxDepth)
        return QStringLiteral("more than %1 elements inside each other").arg(MaxDepth);

    Element entered{element, m_elements.isEmpty() ? QString() : m_elements.last().property, QString()};
    if (element == QLatin1String("property") || element == QLatin1String("attribute"))
        entered.property = attributes.value(QLatin1String("name")).toString();
    m_elements << entered;

    if (element == QLatin1String("widget")) {
        m_open << Widget();
        return ++m_widgets > MaxWidgets ? QStringLiteral("more than %1 widgets").arg(MaxWidgets) : QString();
    }
    if (element == QLatin1String("item"))
        return checkCell(attributes);
    if (element == QLatin1String("row") && !m_open.isEmpty() && ++m_open.last().rowElements > MaxCell)
        return QStringLiteral("more than %1 rows").arg(MaxCell);
    if (element == QLatin1String("column") && !m_open.isEmpty() && ++m_open.last().columnElements > MaxCell)
        return QStringLiteral("more than %1 columns").arg(MaxCell);
    return QString();
}

QString FormLimits::checkCell(const QXmlStreamAttributes &attributes) const
{
    for (const char *name : {"row", "column", "rowspan", "colspan"}) {
        const QString text = attributes.value(QLatin1String(name)).toString();
        // A span of -1 reaches to the edge; a cell before the first is none.
        const bool isSpan = name[qstrlen(name) - 1] == 'n' && qstrcmp(name, "column") != 0;
        const QString wrong = text.isEmpty() ? QString() : beyond(QLatin1String(name), text, isSpan ? -1 : 0, MaxCell);
        if (!wrong.isEmpty())
            return wrong;
    }
    return QString();
}

void FormLimits::read(const QStringRef &text)
{
    if (!m_elements.isEmpty())
        m_elements.last().text += text;
}

QString FormLimits::leave()
{
    if (m_elements.isEmpty())
        return QString();
    const Element left = m_elements.takeLast();
    return left.name == QLatin1String("widget") ? closeWidget() : checkText(left);
}

QString FormLimits::checkText(const Element &left)
{
    const QString &element = left.name;
    const QString &property = left.property;
    const QString &text = left.text;
    // The largest size that a widget may grow to is no size that it has.
    if (isOneOf(element, {QStringLiteral("x"), QStringLiteral("y"), QStringLiteral("width"), QStringLiteral("height")}))
        return property == QLatin1String("maximumSize") ? QString() : beyond(property, text, -MaxLength, MaxLength);
    if (element == QLatin1String("pointsize"))
        return beyond(element, text, -1, MaxFontSize);
    if (element == QLatin1String("number"))
        return checkNumber(property, text);
    if (element == QLatin1String("enum") && property == QLatin1String("tickPosition") && !m_open.isEmpty())
        m_open.last().hasTicks = !text.contains(QLatin1String("NoTicks"));
    return QString();
}

QString FormLimits::checkNumber(const QString &property, const QString &text)
{
    if (isLayoutLength(property))
        return beyond(property, text, -MaxLength, MaxLength);
    if (m_open.isEmpty())
        return QString();

    Widget &widget = m_open.last();
    const double number = text.toDouble();
    if (property == QLatin1String("minimum"))
        widget.minimum = number;
    else if (property == QLatin1String("maximum"))
        widget.maximum = number;
    else if (property == QLatin1String("tickInterval"))
        widget.tickInterval = number;
    if (property != QLatin1String("rowCount") && property != QLatin1String("columnCount"))
        return QString();

    const QString wrong = beyond(property, text, 0, MaxCell);
    if (wrong.isEmpty())
        (property == QLatin1String("rowCount") ? widget.rows : widget.columns) = int(number);
    return wrong;
}

QString FormLimits::closeWidget()
{
    const Widget widget = m_open.takeLast();
    m_cells += double(qMax(widget.rows, widget.rowElements)) * qMax(widget.columns, widget.columnElements);
    if (m_cells > MaxCells)
        return QStringLiteral("more than %1 table cells").arg(MaxCells);

    // Without an interval the marks stand at every step.
    const double interval = widget.tickInterval > 0 ? widget.tickInterval : 1;
    if (widget.hasTicks && (widget.maximum - widget.minimum) / interval > MaxTicks)
        return QStringLiteral("more than %1 ticks beside a slider").arg(int(MaxTicks));
    return QString();
}
