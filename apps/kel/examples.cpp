#include "examples.h"

#include "command.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

QString examplePath(const QString &file)
{
    QString folder = qEnvironmentVariable("KEL_EXAMPLES");
    if (folder.isEmpty())
        folder = QCoreApplication::applicationDirPath() + QStringLiteral("/../share/KelWidgets/examples");
    const QString path = QDir::cleanPath(folder + QLatin1Char('/') + file);
    if (!QFileInfo(path).isFile())
        throw CommandError(QStringLiteral("%1: the example is not there").arg(path));
    return path;
}
