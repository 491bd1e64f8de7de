#include "tests/support/allocations.h"

#include <cstdlib>
#include <new>

#if defined(__SANITIZE_ADDRESS__)
#define ZORV_TEST_ASAN 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define ZORV_TEST_ASAN 1
#endif
#endif

namespace {
thread_local std::size_t allocations = 0;
}

#ifdef ZORV_TEST_ASAN

// The sanitizer has its own allocator, whose checks a replaced operator new would switch off; it tells of each
// allocation instead.
// Declared here because gcc ships no header for it.
extern "C" int __sanitizer_install_malloc_and_free_hooks(void (*on_allocation)(const volatile void*,
                                                                               std::size_t),
                                                         void (*on_release)(const volatile void*));

namespace {
const int hooks = __sanitizer_install_malloc_and_free_hooks(
    [](const volatile void*, std::size_t) { ++allocations; }, [](const volatile void*) {});
}

#else

void* operator new(std::size_t size) {
    ++allocations;
    if (void* const block = std::malloc(size == 0 ? 1 : size)) {
        return block;
    }
    throw std::bad_alloc();
}

void operator delete(void* block) noexcept {
    std::free(block);
}

void operator delete(void* block, std::size_t) noexcept {
    std::free(block);
}

#endif

std::size_t count_allocations(const std::function<void()>& action) {
#ifdef ZORV_TEST_ASAN
    static_cast<void>(hooks);
#endif
    const std::size_t before = allocations;
    action();
    return allocations - before;
}
