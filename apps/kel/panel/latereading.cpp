#include "panel/latereading.h"

#include <kelbutton.h>
#include <kelglobals.h>

#include <QEvent>
#include <QTimer>

namespace
{

void readCatalogue(QWidget &window)
{
    Kel::commandsDB.read();
    QList<KelButton *> buttons = window.findChildren<KelButton *>();
    if (auto *button = qobject_cast<KelButton *>(&window))
        buttons.prepend(button);
    for (KelButton *button : qAsConst(buttons))
        button->checkConnected();
}

/// Waits for the window's first frame.
class LateReading : public QObject
{
public:
    explicit LateReading(QWidget &window)
        : QObject(&window)
    {
        window.installEventFilter(this);
    }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Paint) {
            auto *window = static_cast<QWidget *>(watched);
            window->removeEventFilter(this);
            // The frame is handed over when all of it is painted, so not now.
            QTimer::singleShot(0, window, [window] { readCatalogue(*window); });
            deleteLater();
        }
        return false;
    }
};

} // namespace

void readCatalogueAfterFirstFrame(QWidget &window)
{
    new LateReading(window);
}
