// Runs a panel or a line for long and says whether anything grew: `kel_soak days 30`, `kel_soak line 60`.

#include "serialline.h"
#include "simulateddays.h"

#include <QApplication>
#include <QLoggingCategory>

#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    const double duration = argc == 3 ? QByteArray(argv[2]).toDouble() : 0.0;
    const bool isDays = argc == 3 && std::strcmp(argv[1], "days") == 0;
    if (duration <= 0.0 || (!isDays && std::strcmp(argv[1], "line") != 0)) {
        std::fprintf(stderr, "usage: kel_soak days DAYS | line MINUTES\n");
        return 2;
    }

    // Devices tell the console about every message.
    QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false"));
    const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
    dup2(nowhere, STDERR_FILENO);

    const bool isGood = isDays ? soakDays(duration) : soakLine(duration);
    std::printf("%s\n", isGood ? "soak passed" : "SOAK FAILED");
    return isGood ? 0 : 1;
}
