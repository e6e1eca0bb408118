#include "testmain.h"

#include <QTemporaryDir>

#include <cstdio>

// The offscreen platform says this of every window whose size has limits.
static const char OffscreenRemark[] = "This plugin does not support propagateSizeHints()";

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
        if (line.endsWith(OffscreenRemark))
            continue;
        if (line.startsWith("QWARN") || line.startsWith("QSYSTEM") || line.startsWith("QCRITICAL")) {
            std::fprintf(stderr, "unexpected warning: %s\n", line.constData());
            ++failures;
        }
    }
    return failures;
}
