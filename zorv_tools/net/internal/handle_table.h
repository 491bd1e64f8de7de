#pragma once

/// @file
/// Gives descriptors of POSIX systems handles that are never valid again after their close.
///
/// A descriptor number is used anew by whoever opens something next. A handle holds the number in its lower 20 bits and
/// in its upper 44 bits the generation, which counts how often the number has been a socket of ours. A table with one
/// word for each number knows the generation that is valid, and how many calls are using it: a number is given back to
/// the system only when the last of these calls has come back. All functions are lock-free and may be called from any
/// thread.

#include "zorv_tools/net/Socket.h"

namespace zorv::platform {

constexpr int descriptor_limit = 1 << 20;

/// A handle for @p descriptor, which must be open and below descriptor_limit. A handle that it had before is void.
SOCKET make_handle(int descriptor) noexcept;

/// Voids @p handle and closes its descriptor. With calls still in it, the connection is shut down so that they come
/// back, and the last of them closes. Does nothing for a handle that is void.
void close_handle(SOCKET handle) noexcept;

/// The use of a handle by one call. While it lives, the descriptor is not closed.
class handle_use {
public:
    explicit handle_use(SOCKET handle) noexcept;
    ~handle_use();
    handle_use(const handle_use&) = delete;
    handle_use& operator=(const handle_use&) = delete;

    /// The descriptor, or -1 for a void handle.
    int descriptor() const noexcept { return descriptor_; }

    /// Whether the handle is void, be it since before or since the use began.
    bool closed() const noexcept;

private:
    SOCKET handle_;
    int descriptor_;
};

}  // namespace zorv::platform
