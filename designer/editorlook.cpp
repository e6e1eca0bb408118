#include "editorlook.h"

#include <kelbutton.h>
#include <kelglobals.h>
#include <qtimerwidget.h>

#include <QCoreApplication>
#include <QShowEvent>

namespace
{

constexpr int CheckPeriodMs = 1000;

void setEditorLook(KelButton &button, bool on)
{
    button.designMode = on;
    if (on == (button.connectCheckTimer >= 0))
        return;
    if (on) {
        button.connectCheckTimer = button.startTimer(CheckPeriodMs, Qt::CoarseTimer);
        button.checkConnected();
        return;
    }
    button.killTimer(button.connectCheckTimer);
    button.connectCheckTimer = -1;
    button.update();
}

void setEditorLook(QTimerWidget &timer, bool on)
{
    timer.visibleAtRunTime = on;
    if (timer.image.isNull())
        timer.image = QImage(QStringLiteral(":/icons/qtimerwidget.png"));
}

void setEditorLook(QWidget &widget, bool on)
{
    if (auto *button = qobject_cast<KelButton *>(&widget))
        setEditorLook(*button, on);
    else if (auto *timer = qobject_cast<QTimerWidget *>(&widget))
        setEditorLook(*timer, on);
}

/// Notices, before the widget does, where it is about to be shown.
class ShowWatcher : public QObject
{
public:
    explicit ShowWatcher(QWidget &widget)
        : QObject(&widget)
    {
        widget.installEventFilter(this);
    }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        auto *widget = qobject_cast<QWidget *>(watched);
        if (widget && event->type() == QEvent::Show && !static_cast<QShowEvent *>(event)->spontaneous())
            setEditorLook(*widget, isOnEditedForm(*widget));
        return false;
    }
};

} // namespace

bool isOnEditedForm(const QWidget &widget)
{
    // By name: a link to the editor's library would keep programs without it from loading the plugin.
    for (const QWidget *ancestor = &widget; ancestor; ancestor = ancestor->parentWidget()) {
        if (ancestor->inherits("QDesignerFormWindowInterface"))
            return true;
    }
    return false;
}

void giveSettingsBack()
{
    if (QCoreApplication::organizationName() != QLatin1String("Kel"))
        return;
    QCoreApplication::setOrganizationName(QStringLiteral("QtProject"));
    QCoreApplication::setOrganizationDomain(QString());
}

void prepareEditor()
{
    giveSettingsBack();
    const QString catalogue = qEnvironmentVariable("KEL_CATALOGUE");
    if (!catalogue.isEmpty() && !Kel::commandsDB.database.isOpen())
        Kel::commandsDB.setDatabase(catalogue);
}

void giveEditorLook(QWidget &widget)
{
    setEditorLook(widget, true);
    new ShowWatcher(widget);
}
