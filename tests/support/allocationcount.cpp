#include "allocationcount.h"

#include <cstddef>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__) || !defined(__GLIBC__)

bool canCountAllocations()
{
    return false;
}

int countAllocations(const std::function<void()> &work)
{
    work();
    return 0;
}

#else

namespace
{

thread_local int allocations = 0;

} // namespace

extern "C" {

void *__libc_malloc(std::size_t size);
void *__libc_calloc(std::size_t count, std::size_t size);
void *__libc_realloc(void *block, std::size_t size);

void *malloc(std::size_t size)
{
    ++allocations;
    return __libc_malloc(size);
}

void *calloc(std::size_t count, std::size_t size)
{
    ++allocations;
    return __libc_calloc(count, size);
}

void *realloc(void *block, std::size_t size)
{
    ++allocations;
    return __libc_realloc(block, size);
}
}

bool canCountAllocations()
{
    return true;
}

int countAllocations(const std::function<void()> &work)
{
    const int before = allocations;
    work();
    return allocations - before;
}

#endif
