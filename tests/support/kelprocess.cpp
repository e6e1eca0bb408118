#include "kelprocess.h"

#include <QElapsedTimer>

QString kelProgramPath()
{
    return QCoreApplication::applicationDirPath() + QStringLiteral("/kel");
}

void setUpKel(QProcess &process, const QStringList &arguments, const QString &folder, const QStringList &environment)
{
    QProcessEnvironment variables = QProcessEnvironment::systemEnvironment();
    for (const QString &entry : environment) {
        const int equals = entry.indexOf(QLatin1Char('='));
        const QString value = entry.mid(equals + 1);
        if (value.isEmpty())
            variables.remove(entry.left(equals));
        else
            variables.insert(entry.left(equals), value);
    }
    process.setProcessEnvironment(variables);
    process.setProgram(kelProgramPath());
    process.setArguments(arguments);
    if (!folder.isEmpty())
        process.setWorkingDirectory(folder);
}

KelRun runKel(const QStringList &arguments, const QString &folder, const QStringList &environment, int timeoutMs)
{
    QProcess process;
    setUpKel(process, arguments, folder, environment);

    KelRun run;
    QElapsedTimer timer;
    timer.start();
    process.start();
    const bool ended = process.waitForFinished(timeoutMs);
    run.elapsedMs = timer.elapsed();
    if (!ended) {
        process.kill();
        process.waitForFinished();
    } else if (process.exitStatus() == QProcess::NormalExit) {
        run.exitCode = process.exitCode();
    }
    run.output = process.readAllStandardOutput();
    run.errors = process.readAllStandardError();
    return run;
}
