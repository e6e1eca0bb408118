#include "testmain.h"

#include <QTemporaryDir>

#include <cstdio>

int runKelTest(QObject *test, const QStringList &arguments)
{
    const QTemporaryDir dir;
    const QString log = dir.filePath(QStringLiteral("test.log"));

    QStringList withLog = arguments;
    withLog << QStringLiteral("-o") << QStringLiteral("-,txt") << QStringLiteral("-o") << log + QStringLiteral(",txt");
    int failures = QTest::qExec(test, withLog);

    QFile file(log);
    if (!file.open(QIODevice::ReadOnly))
        return failures;
    for (const QByteArray &line : file.readAll().split('\n')) {
        if (line.startsWith("QWARN") || line.startsWith("QSYSTEM") || line.startsWith("QCRITICAL")) {
            std::fprintf(stderr, "unexpected warning: %s\n", line.constData());
            ++failures;
        }
    }
    return failures;
}
