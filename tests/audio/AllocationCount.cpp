#include "AllocationCount.h"

#include <cstddef>
#include <utility>

namespace {

thread_local bool isCounting = false;
thread_local int allocations = 0;

void note()
{
    if (isCounting) {
        ++allocations;
    }
}

} // namespace

#ifdef __SANITIZE_ADDRESS__

// The sanitizer has taken malloc for itself, but tells of every call.
extern "C" int __sanitizer_install_malloc_and_free_hooks(void (*allocated)(const volatile void*, std::size_t),
                                                         void (*freed)(const volatile void*));

namespace {

const int hooks = __sanitizer_install_malloc_and_free_hooks([](const volatile void*, std::size_t) { note(); },
                                                            [](const volatile void*) {});

} // namespace

#else

// In front of the C library's own, for this program and the libraries that it loads.
extern "C" {

void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);

void* malloc(std::size_t size)
{
    note();
    return __libc_malloc(size);
}

void* calloc(std::size_t count, std::size_t size)
{
    note();
    return __libc_calloc(count, size);
}

void* realloc(void* block, std::size_t size)
{
    note();
    return __libc_realloc(block, size);
}

} // extern "C"

#endif

AllocationCount::AllocationCount()
{
    allocations = 0;
    isCounting = true;
}

AllocationCount::~AllocationCount()
{
    isCounting = false;
}

int AllocationCount::take()
{
    return std::exchange(allocations, 0);
}
