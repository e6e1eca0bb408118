#include "memorypeak.h"

#include <atomic>
#include <cerrno>
#include <cstddef>
#include <malloc.h>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__) || !defined(__GLIBC__)
#define KEL_COUNTS_MEMORY 0
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define KEL_COUNTS_MEMORY 0
#endif
#endif
#ifndef KEL_COUNTS_MEMORY
#define KEL_COUNTS_MEMORY 1
#endif

namespace
{

std::atomic<qint64> inUse{0};
std::atomic<qint64> most{0};

} // namespace

#if KEL_COUNTS_MEMORY

namespace
{

void *counted(void *block)
{
    if (block == nullptr)
        return nullptr;
    const qint64 now = inUse += static_cast<qint64>(malloc_usable_size(block));
    if (now > most)
        most = now;
    return block;
}

} // namespace

// The program's own definitions of the allocator come before the C library's, in every library.
extern "C" {
void *__libc_malloc(std::size_t size);
void *__libc_calloc(std::size_t count, std::size_t size);
void *__libc_realloc(void *block, std::size_t size);
void *__libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void *block);

void *malloc(std::size_t size)
{
    return counted(__libc_malloc(size));
}

void *calloc(std::size_t count, std::size_t size)
{
    return counted(__libc_calloc(count, size));
}

void *realloc(void *block, std::size_t size)
{
    const qint64 before = block != nullptr ? static_cast<qint64>(malloc_usable_size(block)) : 0;
    void *moved = __libc_realloc(block, size);
    if (moved != nullptr || size == 0)
        inUse -= before;
    return counted(moved);
}

void *memalign(std::size_t alignment, std::size_t size)
{
    return counted(__libc_memalign(alignment, size));
}

void *aligned_alloc(std::size_t alignment, std::size_t size)
{
    return counted(__libc_memalign(alignment, size));
}

int posix_memalign(void **block, std::size_t alignment, std::size_t size)
{
    *block = counted(__libc_memalign(alignment, size));
    return *block != nullptr ? 0 : ENOMEM;
}

void free(void *block)
{
    if (block != nullptr)
        inUse -= static_cast<qint64>(malloc_usable_size(block));
    __libc_free(block);
}
}

#endif

MemoryPeak::MemoryPeak()
    : m_atStart(::inUse)
{
    most = m_atStart;
}

bool MemoryPeak::isAvailable()
{
    return KEL_COUNTS_MEMORY != 0;
}

qint64 MemoryPeak::bytes() const
{
    return most - m_atStart;
}

qint64 MemoryPeak::inUse()
{
    return ::inUse;
}
