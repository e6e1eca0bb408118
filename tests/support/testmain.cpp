#include "testmain.h"

#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <iterator>

// The offscreen platform says this of every window whose size has limits, and of one that becomes a part of another.
static const char *const OffscreenRemarks[] = {"This plugin does not support propagateSizeHints()",
                                               "This plugin does not support setParent!"};

static bool isRemark(const QByteArray &line)
{
    return std::any_of(std::begin(OffscreenRemarks), std::end(OffscreenRemarks),
                       [&line](const char *remark) { return line.endsWith(remark); });
}

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
        if (isRemark(line))
            continue;
        if (line.startsWith("QWARN") || line.startsWith("QSYSTEM") || line.startsWith("QCRITICAL")) {
            std::fprintf(stderr, "unexpected warning: %s\n", line.constData());
            ++failures;
        }
    }
    return failures;
}
