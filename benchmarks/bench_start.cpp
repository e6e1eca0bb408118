// What comes before the first press: loading the library into a program that has Qt, and the first frame
// of a full panel beside that of an empty window. Both take place in processes of their own, one after the
// other in turn; a frame is there when the window's picture is handed to the screen.
#include "comparison.h"
#include "hugecatalogue.h"
#include "subjects.h"

#include <widgetlist.h>

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTextStream>

#include <time.h>

namespace
{

constexpr int Repetitions = 5;
constexpr int WidgetsCount = 60;
constexpr double LoadingLimitNs = 2e6;

double nowNs()
{
    timespec now{};
    ::clock_gettime(CLOCK_MONOTONIC, &now);
    return double(now.tv_sec) * 1e9 + double(now.tv_nsec);
}

/// The number in the last line that \a program prints.
double numberFrom(const QString &program, const QStringList &arguments, const QProcessEnvironment &environment)
{
    QProcess process;
    process.setProcessEnvironment(environment);
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(program, arguments);
    const bool isDone = process.waitForFinished() && process.exitStatus() == QProcess::NormalExit;
    bool isNumber = false;
    const double number = process.readAllStandardOutput().trimmed().split(' ').last().toDouble(&isNumber);
    require(isDone && process.exitCode() == 0 && isNumber, program.toStdString() + " failed");
    return number;
}

/// From the start of the process to its first frame.
double firstFrameNs(const QString &program, const QStringList &arguments = {})
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("LD_PRELOAD"), QStringLiteral(KEL_FIRST_FRAME));
    const double begin = nowNs();
    return numberFrom(program, arguments, environment) - begin;
}

/// A form with each widget of the library again and again, in rows of ten.
void writeForm(const QString &path)
{
    constexpr int Columns = 10;
    const QSize cell(128, 130);
    QFile file(path);
    require(file.open(QIODevice::WriteOnly), "no form");
    QTextStream form(&file);
    form << "<ui version=\"4.0\"><class>Panel</class><widget class=\"QWidget\" name=\"Panel\"><property "
            "name=\"geometry\"><rect><x>0</x><y>0</y><width>1280</width><height>800</height></rect></property>";
    const QVector<KelWidgetInfo> &list = kelWidgetList();
    for (int i = 0; i < WidgetsCount; ++i) {
        const QString className = list.at(i % list.size()).className;
        form << "<widget class=\"" << className << "\" name=\"widget" << i << "\"><property name=\"geometry\"><rect><x>"
             << i % Columns * cell.width() << "</x><y>" << i / Columns * cell.height() << "</y><width>" << cell.width()
             << "</width><height>" << cell.height() << "</height></rect></property>";
        if (className == QLatin1String("LocalDevice"))
            form << "<property name=\"currentID\"><number>1</number></property>";
        form << "</widget>";
    }
    form << "</widget></ui>";
}

void compareFirstFrames()
{
    const QTemporaryDir folder;
    const QString form = folder.filePath(QStringLiteral("panel.ui"));
    const QString catalogue = folder.filePath(QStringLiteral("cat.sqlite"));
    writeForm(form);
    makeHugeCatalogue(catalogue);
    std::vector<double> panel;
    std::vector<double> bare;
    for (int i = 0; i < Repetitions; ++i) {
        panel.push_back(firstFrameNs(QStringLiteral(KEL_PROGRAM),
                                     {QStringLiteral("panel"), form, QStringLiteral("--db=") + catalogue}));
        bare.push_back(firstFrameNs(QStringLiteral(KEL_BENCH_WINDOW)));
    }
    report({"first frame, 60 widgets", "kel panel", median(panel), "empty Qt window", median(bare), 3.0});
}

/// Loads the library into a process that has loaded \a before.
double loadingNs(const QStringList &before)
{
    std::vector<double> times;
    for (int i = 0; i < Repetitions; ++i)
        times.push_back(numberFrom(QStringLiteral(KEL_BENCH_LOADER), QStringList{QStringLiteral(KEL_LIBRARY)} + before,
                                   QProcessEnvironment::systemEnvironment()));
    return median(times);
}

} // namespace

void benchStart()
{
    const QStringList qt = QStringLiteral(KEL_QT_LIBRARIES).split(QLatin1Char(','));
    const QStringList others = QStringLiteral(KEL_OTHER_LIBRARIES).split(QLatin1Char(','));
    report({"loading, with Qt there", "libKel_widgets", loadingNs(qt), "limit", LoadingLimitNs, 1.0});
    report({"loading, with all others there", "libKel_widgets", loadingNs(qt + others), "limit", LoadingLimitNs, 1.0});
    compareFirstFrames();
}
