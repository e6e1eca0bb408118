#include "wholefile.h"

#include "command.h"
#include "printable.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace
{

[[noreturn]] void fail(const QString &path, const QString &what)
{
    throw CommandError(QStringLiteral("%1: %2").arg(printable(path), what));
}

} // namespace

QByteArray readWholeFile(const QString &path, qint64 most)
{
    if (path.isEmpty())
        throw CommandError(QStringLiteral("a file's name is empty"));
    const QFileInfo info(path);
    if (info.exists() && !info.isFile())
        fail(path, QStringLiteral("not a file"));
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        fail(path, file.errorString());
    const QByteArray content = file.read(most + 1);
    if (file.error() != QFileDevice::NoError)
        fail(path, file.errorString());
    return content;
}

void writeWholeFile(const QString &path, const QByteArray &content)
{
    QSaveFile file(path);
    // Flushed first: what goes wrong inside commit() has no text.
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size() || !file.flush() || !file.commit())
        fail(path, file.errorString());
}
