#include "panel/panelclicks.h"

#include "command.h"

#include <QAbstractButton>
#include <QTimer>

namespace
{

constexpr int FirstClickMs = 200; // By then the ports are open and the devices listen.
constexpr int PeriodMs = 200;     // More than a queued write, an answer and the gap behind it.

} // namespace

void clickButtons(QWidget &window, const QStringList &names)
{
    int dueMs = FirstClickMs;
    for (const QString &name : names) {
        auto *button = window.findChild<QAbstractButton *>(name);
        if (!button)
            throw CommandError(QStringLiteral("the panel has no button \"%1\" to click").arg(name));
        QTimer::singleShot(dueMs, button, &QAbstractButton::click);
        dueMs += PeriodMs;
    }
}
