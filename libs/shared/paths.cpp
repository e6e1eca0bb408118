#include "paths.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>
#include <QStringList>

namespace
{

bool isExistingFile(const QString &path)
{
    const QFileInfo info(path);
    return info.exists() && !info.isDir();
}

QString withoutSuffix(const QString &path)
{
    QString bare = path;
    bare.chop(QFileInfo(path).completeSuffix().size());
    if (bare.endsWith(QLatin1Char('.')))
        bare.chop(1);
    return bare;
}

QString applicationDir()
{
    QString dir = QCoreApplication::applicationDirPath();
    if (dir.endsWith(QLatin1Char('/')) || dir.endsWith(QLatin1Char('\\')))
        dir.chop(1);
    return dir;
}

} // namespace

QString parsePath(QString path)
{
    const auto place = [](QStandardPaths::StandardLocation location) {
        return QStandardPaths::writableLocation(location);
    };
    path.replace(QLatin1String("$home"), QDir::homePath());
    path.replace(QLatin1String("$documents"), place(QStandardPaths::DocumentsLocation));
    path.replace(QLatin1String("$downloads"), place(QStandardPaths::DownloadLocation));
    path.replace(QLatin1String("$desktop"), place(QStandardPaths::DesktopLocation));
    path = QDir::fromNativeSeparators(path);
    if (!path.endsWith(QLatin1Char('/')))
        path.append(QLatin1Char('/'));
    return path;
}

QString findExecutable(QString name)
{
    const QString path = withoutSuffix(name);
    if (path.isEmpty())
        return {};
    if (QDir::isRelativePath(path)) {
        const QString besideUs = applicationDir() + QLatin1Char('/') + path;
        if (isExistingFile(besideUs))
            return QFileInfo(besideUs).absoluteFilePath();
    }
    return isExistingFile(path) ? QFileInfo(path).absoluteFilePath() : QString();
}

QString findFile(QString file, QString ext, const QString &dir)
{
    QStringList folders{QString()};
    if (QDir::isRelativePath(file)) {
        if (!dir.isEmpty())
            folders << dir + QLatin1Char('/');
        folders << QStringLiteral("include/");
    }

    QString candidate;
    for (const QString &folder : qAsConst(folders)) {
        candidate = folder + file;
        if (isExistingFile(candidate))
            return candidate;
        candidate = withoutSuffix(candidate) + QLatin1Char('.') + ext;
        if (isExistingFile(candidate))
            return candidate;
    }
    return candidate;
}
