// Every comparison in one process; its widgets are shown on a screen that is not there.
#include "comparison.h"

#include <QApplication>
#include <QTemporaryDir>

#include <cstdio>

namespace
{

/// The jobs tell of what they do; that belongs neither to the table nor to the times.
void dropDebugLines(QtMsgType type, const QMessageLogContext &, const QString &text)
{
    if (type != QtDebugMsg && !text.startsWith(QLatin1String("This plugin does not support")))
        std::fprintf(stderr, "%s\n", qPrintable(text));
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen"); // the pictures are for nobody's eyes
    const QTemporaryDir runtime;             // of our own, since Qt complains of one that it does not like
    qputenv("XDG_RUNTIME_DIR", runtime.path().toLocal8Bit());
    qInstallMessageHandler(dropDebugLines);
    const QApplication application(argc, argv);
    return runBenchmarks(argc, argv);
}
