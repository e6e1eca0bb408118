#include "initabout.h"

#include <QtGlobal>
#include <aboutwindow.h>
#include <picrypt.h>
#include <piqt.h>

namespace
{

constexpr int LibraryBuild = 9999;
constexpr int EnvironmentBuild = 666;

QString versionText(const char *version, int build)
{
    return QStringLiteral("%1 (build %2)").arg(QLatin1String(version)).arg(build);
}

} // namespace

void initAbout()
{
    Q_INIT_RESOURCE(shared);

    AboutWindow::addVersion(QStringLiteral("Kel"), versionText(KEL_VERSION, LibraryBuild));
    AboutWindow::addVersion(QStringLiteral("Ui sync"), QStringLiteral("3"));
    AboutWindow::addVersion(QStringLiteral("Loom"), versionText("1.17.1", EnvironmentBuild));
    AboutWindow::addVersion(QStringLiteral("Qt"), QString::fromLatin1(qVersion()));
    AboutWindow::addVersion(QStringLiteral("Ember"), versionText("2.17.0", EnvironmentBuild));
    AboutWindow::addVersion(QStringLiteral("sodium"), PI2QString(PICrypt::version()));

    AboutWindow::addBuildInfo(QStringLiteral("Arch"), QStringLiteral(KEL_BUILD_ARCH));
    AboutWindow::addBuildInfo(QStringLiteral("Compiler"), QStringLiteral(KEL_BUILD_COMPILER));
    AboutWindow::addBuildInfo(QStringLiteral("CMake"), QStringLiteral(KEL_BUILD_CMAKE));
    AboutWindow::addBuildInfo(QStringLiteral("Date"), QStringLiteral(KEL_BUILD_DATE));
}
