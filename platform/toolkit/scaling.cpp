#include "scaling.h"

#include <QApplication>
#include <QFontMetrics>
#include <QScreen>
#include <QWidget>

namespace
{

constexpr double ReferenceDotsPerInch = 96.0;

} // namespace

double appScale(const QWidget *widget)
{
    const QScreen *screen = widget != nullptr ? widget->screen() : QGuiApplication::primaryScreen();
    return screen != nullptr ? screen->logicalDotsPerInch() / ReferenceDotsPerInch : 1.0;
}

int fontHeight(const QWidget *widget)
{
    const QFont font = QApplication::font();
    return widget != nullptr ? QFontMetrics(font, widget).height() : QFontMetrics(font).height();
}

QSize preferredIconSize(float multiple, const QWidget *widget)
{
    const int side = qRound(multiple * static_cast<float>(fontHeight(widget)));
    return {side, side};
}
