#include "check/checkinput.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace
{

bool isThere(const QString &path, const QDir &folder)
{
    if (path.startsWith(QLatin1String("qrc:/")))
        return QFile::exists(path.mid(3));
    if (path.startsWith(QLatin1String(":/")))
        return QFile::exists(path);
    return QFileInfo(folder, path).isFile();
}

} // namespace

void checkPictures(const CheckInput &input)
{
    const QDir folder = QFileInfo(input.panel.file()).absoluteDir();
    for (const FormPicture &picture : input.panel.form().pictures) {
        if (!isThere(picture.path, folder))
            input.findings.error(Rule::MissingFile, picture.line,
                                 QStringLiteral("there is no picture \"%1\"").arg(picture.path));
    }
}
