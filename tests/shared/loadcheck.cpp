// Loads a library into a program that has Qt, and says what was opened meanwhile: its own versions of the
// functions that open things stand before those of the C library.
//
// usage: kel_load_check LIBRARY        or, to see that nothing escapes: kel_load_check --open FILE
#include <QFile>
#include <QString>

#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/socket.h>

namespace
{

bool isCounting = false;

void note(const char *what)
{
    if (isCounting)
        std::printf("opened %s\n", what);
}

template <typename Function>
Function next(const char *name)
{
    return reinterpret_cast<Function>(::dlsym(RTLD_NEXT, name));
}

int entriesOf(const char *folder)
{
    int count = 0;
    if (DIR *open = ::opendir(folder)) {
        while (::readdir(open) != nullptr)
            ++count;
        ::closedir(open);
    }
    return count;
}

} // namespace

// The mode is handed on whether there is one or not; without O_CREAT nobody reads it.
#define KEL_OPEN(name)                                                                                                 \
    extern "C" int name(const char *path, int flags, ...)                                                              \
    {                                                                                                                  \
        va_list arguments;                                                                                             \
        va_start(arguments, flags);                                                                                    \
        const unsigned mode = va_arg(arguments, unsigned);                                                             \
        va_end(arguments);                                                                                             \
        note(path);                                                                                                    \
        static const auto real = next<int (*)(const char *, int, ...)>(#name);                                         \
        return real(path, flags, mode);                                                                                \
    }

#define KEL_OPENAT(name)                                                                                               \
    extern "C" int name(int folder, const char *path, int flags, ...)                                                  \
    {                                                                                                                  \
        va_list arguments;                                                                                             \
        va_start(arguments, flags);                                                                                    \
        const unsigned mode = va_arg(arguments, unsigned);                                                             \
        va_end(arguments);                                                                                             \
        note(path);                                                                                                    \
        static const auto real = next<int (*)(int, const char *, int, ...)>(#name);                                    \
        return real(folder, path, flags, mode);                                                                        \
    }

#define KEL_FOPEN(name)                                                                                                \
    extern "C" FILE *name(const char *path, const char *mode)                                                          \
    {                                                                                                                  \
        note(path);                                                                                                    \
        static const auto real = next<FILE *(*)(const char *, const char *)>(#name);                                   \
        return real(path, mode);                                                                                       \
    }

KEL_OPEN(open)
KEL_OPEN(open64)
KEL_OPEN(__open_2)
KEL_OPEN(__open64_2)
KEL_OPENAT(openat)
KEL_OPENAT(openat64)
KEL_OPENAT(__openat_2)
KEL_OPENAT(__openat64_2)
KEL_FOPEN(fopen)
KEL_FOPEN(fopen64)

extern "C" DIR *opendir(const char *path)
{
    note(path);
    static const auto real = next<DIR *(*)(const char *)>("opendir");
    return real(path);
}

extern "C" int socket(int domain, int type, int protocol) noexcept
{
    note("a socket");
    static const auto real = next<int (*)(int, int, int)>("socket");
    return real(domain, type, protocol);
}

int main(int argc, char **argv)
{
    const int descriptors = entriesOf("/proc/self/fd");
    const int threads = entriesOf("/proc/self/task");
    bool isDone = false;
    QFile file;
    if (argc == 3 && std::strcmp(argv[1], "--open") == 0) {
        file.setFileName(QString::fromLocal8Bit(argv[2]));
        isCounting = true;
        isDone = file.open(QIODevice::ReadOnly);
        isCounting = false;
    } else if (argc == 2) {
        isCounting = true;
        isDone = ::dlopen(argv[1], RTLD_NOW) != nullptr;
        isCounting = false;
    }
    if (!isDone)
        return 1;
    std::printf("%d descriptors more, %d threads more\n", entriesOf("/proc/self/fd") - descriptors,
                entriesOf("/proc/self/task") - threads);
    return 0;
}
