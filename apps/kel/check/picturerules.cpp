#include "check/checkinput.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace
{

/// The path inside the resources when \a path is one, otherwise empty.
QString resourceOf(const QString &path)
{
    if (path.startsWith(QLatin1String("qrc:/")))
        return path.mid(3);
    return path.startsWith(QLatin1String(":/")) ? path : QString();
}

bool isThere(const QString &path, const QDir &folder)
{
    const QString resource = resourceOf(path);
    return resource.isEmpty() ? QFileInfo(folder, path).isFile() : QFile::exists(resource);
}

} // namespace

void checkPictures(const CheckInput &input)
{
    const QDir folder = QFileInfo(input.panel.file()).absoluteDir();
    for (const FormPicture &picture : input.panel.form().pictures) {
        if (isThere(picture.path, folder))
            continue;
        const QString message = QStringLiteral("there is no picture \"%1\"").arg(picture.path);
        input.findings.error(Rule::MissingFile, picture.line,
                             resourceOf(picture.path).isEmpty()
                                 ? message
                                 : message + QStringLiteral(" in the program (a form brings no resources along)"));
    }
}
