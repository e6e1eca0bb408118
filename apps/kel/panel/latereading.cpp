#include "panel/latereading.h"

#include "catalogue/cataloguedatabase.h"

#include <kelbutton.h>
#include <kelglobals.h>

#include <QEvent>
#include <QTimer>

#include <utility>

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
    LateReading(QWidget &window, QString path, std::function<void(const CommandError &)> whenWrong)
        : QObject(&window)
        , m_window(window)
        , m_path(std::move(path))
        , m_whenWrong(std::move(whenWrong))
    {
        window.installEventFilter(this);
    }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Paint) {
            watched->removeEventFilter(this);
            // The frame is handed over when all of it is painted, so not now.
            QTimer::singleShot(0, this, [this] { read(); });
        }
        return false;
    }

private:
    void read()
    {
        deleteLater();
        try {
            checkCatalogueFile(m_path);
        } catch (const CommandError &wrong) {
            return m_whenWrong(wrong);
        }
        readCatalogue(m_window);
    }

    QWidget &m_window;
    QString m_path;
    std::function<void(const CommandError &)> m_whenWrong;
};

} // namespace

void readCatalogueAfterFirstFrame(QWidget &window, const QString &path,
                                  std::function<void(const CommandError &)> whenWrong)
{
    new LateReading(window, path, std::move(whenWrong));
}
