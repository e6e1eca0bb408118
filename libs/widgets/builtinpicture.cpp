#include "builtinpicture.h"

QImage readBuiltInPicture(const char *name)
{
    // Without the format's name Qt would load each of its picture plugins and ask it first.
    return QImage(QStringLiteral(":/icons/%1.png").arg(QLatin1String(name)), "PNG");
}
