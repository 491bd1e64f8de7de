#include "zorv_tools/net/internal/handle_table.h"

#include <sys/socket.h>
#include <unistd.h>

#include <atomic>

namespace zorv::platform {

namespace {

constexpr SOCKET descriptor_mask = descriptor_limit - 1;
constexpr SOCKET one_generation = descriptor_limit;

// A word of the table: the generation where a handle has it, the open bit, and below it the number of uses.
constexpr std::uint64_t open_bit = one_generation >> 1;
constexpr std::uint64_t uses_mask = open_bit - 1;

using word = std::atomic<std::uint64_t>;
static_assert(word::is_always_lock_free);

word words[descriptor_limit];

/// Neighbouring numbers, which different threads often use, are kept out of each other's cache line.
word& word_of(SOCKET handle) noexcept {
    const SOCKET descriptor = handle & descriptor_mask;
    return words[(descriptor % 8) * (descriptor_limit / 8) + descriptor / 8];
}

int descriptor_of(SOCKET handle) noexcept {
    return static_cast<int>(handle & descriptor_mask);
}

bool same_generation(std::uint64_t value, SOCKET handle) noexcept {
    return ((value ^ handle) & ~descriptor_mask) == 0;
}

bool is_valid(std::uint64_t value, SOCKET handle) noexcept {
    return same_generation(value, handle) && (value & open_bit) != 0;
}

/// Ends a use. The one that ends last after the close is the one that closes.
void end_use(SOCKET handle) noexcept {
    word& entry = word_of(handle);
    std::uint64_t value = entry.load(std::memory_order_relaxed);
    do {
        // A host may have closed the number behind our back, and a newer socket have taken it.
        if (!same_generation(value, handle)) {
            return;
        }
    } while (!entry.compare_exchange_weak(value, value - 1));
    if ((value & open_bit) == 0 && (value & uses_mask) == 1) {
        // Interrupted or not, the number is free after this call: it must not be repeated.
        ::close(descriptor_of(handle));
    }
}

}  // namespace

SOCKET make_handle(int descriptor) noexcept {
    const auto number = static_cast<SOCKET>(descriptor);
    word& entry = word_of(number);
    std::uint64_t value = entry.load(std::memory_order_relaxed);
    SOCKET generation = 0;
    do {
        generation = (value & ~descriptor_mask) + one_generation;
    } while (!entry.compare_exchange_weak(value, generation | open_bit));
    return generation | number;
}

void close_handle(SOCKET handle) noexcept {
    word& entry = word_of(handle);
    std::uint64_t value = entry.load(std::memory_order_relaxed);
    do {
        if (!is_valid(value, handle)) {
            return;
        }
        // The close is itself a use until it is through, so that the number cannot be given back before the shutdown.
    } while (!entry.compare_exchange_weak(value, (value & ~open_bit) + 1));
    if ((value & uses_mask) != 0) {
        ::shutdown(descriptor_of(handle), SHUT_RDWR);
    }
    end_use(handle);
}

handle_use::handle_use(SOCKET handle) noexcept : handle_(handle), descriptor_(-1) {
    word& entry = word_of(handle);
    std::uint64_t value = entry.load(std::memory_order_relaxed);
    do {
        if (!is_valid(value, handle)) {
            return;
        }
    } while (!entry.compare_exchange_weak(value, value + 1));
    descriptor_ = descriptor_of(handle);
}

handle_use::~handle_use() {
    if (descriptor_ != -1) {
        end_use(handle_);
    }
}

bool handle_use::closed() const noexcept {
    return !is_valid(word_of(handle_).load(std::memory_order_acquire), handle_);
}

}  // namespace zorv::platform
