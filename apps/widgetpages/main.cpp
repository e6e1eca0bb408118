#include "widgetpage.h"

#include <surroundings.h>

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QSaveFile>

#include <cstdio>

namespace
{

constexpr int ExitFailure = 1;
constexpr int ExitWrongUsage = 2;

MemberProse readProse(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw ProseError(QStringLiteral("%1: %2").arg(path, file.errorString()).toStdString());
    return MemberProse(QString::fromUtf8(file.readAll()), path);
}

void save(const QDir &folder, const QString &name, const QString &text)
{
    QSaveFile file(folder.filePath(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(text.toUtf8()) < 0 || !file.commit())
        throw ProseError(QStringLiteral("%1: cannot be written").arg(file.fileName()).toStdString());
}

void saveAll(const QDir &folder, MemberProse prose)
{
    for (const KelWidgetInfo &info : kelWidgetList())
        save(folder, info.className.toLower() + QStringLiteral(".md"), widgetPage(info, prose));
    save(folder, QStringLiteral("README.md"), widgetIndex(kelWidgetList()));
    if (!prose.unused().isEmpty())
        throw ProseError("texts about nothing that a widget has: " + prose.unused().join(", ").toStdString());
}

int complain(const std::string &text)
{
    std::fprintf(stderr, "kel_widgetpages: %s\n", text.c_str());
    return ExitFailure;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 3) {
        std::fprintf(stderr, "usage: kel_widgetpages PROSE FOLDER\n");
        return ExitWrongUsage;
    }
    forgetSurroundings();
    const QApplication application(argc, argv);
    if (!dress())
        return complain("the font DejaVu Sans is missing (Debian: fonts-dejavu-core)");

    const QDir folder(QString::fromLocal8Bit(argv[2]));
    if (!folder.mkpath(QStringLiteral(".")))
        return complain(folder.path().toStdString() + ": no folder can be made there");
    try {
        saveAll(folder, readProse(QString::fromLocal8Bit(argv[1])));
    } catch (const std::exception &error) {
        return complain(error.what());
    }
    return 0;
}
