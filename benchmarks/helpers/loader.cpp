// Loads the library that the first argument names into a process that has the others loaded already, and
// says how many nanoseconds that took.
#include <cstdio>
#include <dlfcn.h>
#include <time.h>

namespace
{

bool load(const char *library)
{
    if (::dlopen(library, RTLD_NOW) != nullptr)
        return true;
    std::fprintf(stderr, "%s\n", ::dlerror());
    return false;
}

} // namespace

int main(int argc, char **argv)
{
    for (int i = 2; i < argc; ++i) {
        if (!load(argv[i]))
            return 1;
    }
    timespec begin{};
    timespec end{};
    ::clock_gettime(CLOCK_MONOTONIC, &begin);
    if (argc < 2 || !load(argv[1]))
        return 1;
    ::clock_gettime(CLOCK_MONOTONIC, &end);
    std::printf("%lld\n", (end.tv_sec - begin.tv_sec) * 1000000000LL + end.tv_nsec - begin.tv_nsec);
    return 0;
}
