// Preloaded into a Qt program: the program ends when its first window is painted, and says when that was.
#include <QBackingStore>

#include <cstdio>
#include <time.h>
#include <unistd.h>

/// Stands before the library's own, which would put the finished picture on the screen.
void QBackingStore::flush(const QRegion &, QWindow *, const QPoint &)
{
    timespec now{};
    ::clock_gettime(CLOCK_MONOTONIC, &now);
    char line[40];
    const int size = std::snprintf(line, sizeof line, "first frame %lld\n", now.tv_sec * 1000000000LL + now.tv_nsec);
    const bool isTold = ::write(STDOUT_FILENO, line, static_cast<size_t>(size)) == size;
    ::_exit(isTold ? 0 : 1);
}
