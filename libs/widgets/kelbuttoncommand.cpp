#include "kelbuttoncommand.h"

#include <QStringList>

void parseButtonCommand(QString command, QString *object, QString *method, QVector<QVariant> *arguments)
{
    const int bracket = command.indexOf(QLatin1Char('('));
    if (bracket > 0) {
        // The last character goes whatever it is: a missing closing bracket costs the text its end.
        QString list = command.mid(bracket).trimmed().mid(1);
        list.chop(1);
        command = command.left(bracket).trimmed();
        if (arguments != nullptr) {
            for (const QString &argument : list.split(QLatin1Char(',')))
                arguments->append(argument);
        }
    }

    const QStringList parts = command.split(QLatin1Char('.'));
    if (parts.size() < 2)
        return;
    if (object != nullptr)
        *object = parts.at(0);
    if (method != nullptr)
        *method = parts.at(1);
}
