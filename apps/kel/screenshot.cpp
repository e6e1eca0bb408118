#include "screenshot.h"

#include "command.h"

#include <QFileInfo>
#include <QImageWriter>
#include <QPixmap>
#include <QSaveFile>

namespace
{

QByteArray formatOf(const QString &path)
{
    return QFileInfo(path).suffix().toLower().toLatin1();
}

} // namespace

void checkScreenshotPath(const QString &path)
{
    if (!QImageWriter::supportedImageFormats().contains(formatOf(path)))
        throw CommandError(QStringLiteral("%1: not a kind of picture that can be written (try .png)").arg(path));
    if (!QFileInfo(QFileInfo(path).absolutePath()).isDir())
        throw CommandError(QStringLiteral("%1: there is no such folder").arg(path));
}

void saveScreenshot(QWidget &window, const QString &path)
{
    checkScreenshotPath(path);
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        throw CommandError(QStringLiteral("%1: %2").arg(path, file.errorString()));
    QImageWriter writer(&file, formatOf(path));
    if (!writer.write(window.grab().toImage()))
        throw CommandError(QStringLiteral("%1: %2").arg(path, writer.errorString()));
    // Flushed first: what goes wrong inside commit() has no text.
    if (!file.flush() || !file.commit())
        throw CommandError(QStringLiteral("%1: %2").arg(path, file.errorString()));
}
