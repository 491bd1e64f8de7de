#pragma once

#include <cstddef>
#include <functional>

/// How many heap allocations `action` makes on this thread.
std::size_t count_allocations(const std::function<void()>& action);
