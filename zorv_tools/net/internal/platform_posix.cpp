#include <arpa/inet.h>
#include <fcntl.h>
#include <netdb.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <optional>
#include <system_error>

#include "zorv_tools/net/internal/handle_table.h"
#include "zorv_tools/net/internal/platform.h"

namespace zorv::platform {

namespace {

/// Kept apart from `errno`, which any call of the host's or of the standard library overwrites.
thread_local int error_of_thread = 0;

int fail(int error) {
    error_of_thread = error;
    return -1;
}

/// Repeats @p call for as long as signals interrupt it.
template <class Call>
auto uninterrupted(const Call& call) {
    auto result = call();
    while (result == -1 && errno == EINTR) {
        result = call();
    }
    return result;
}

/// The result of @p call with the descriptor of @p handle; -1 and an error of its own for a handle that is void.
template <class Call>
int with_descriptor(SOCKET handle, const Call& call) {
    const handle_use use(handle);
    if (use.descriptor() == -1) {
        return fail(ENOTSOCK);
    }
    const auto result = static_cast<int>(call(use.descriptor()));
    if (result == -1) {
        error_of_thread = errno;
    }
    // Whatever the shutdown of a close by another thread looks like here (to recv, like the end of the stream).
    if (result <= 0 && use.closed()) {
        return fail(ENOTSOCK);
    }
    return result;
}

bool is_non_blocking(int descriptor) {
    return (::fcntl(descriptor, F_GETFL) & O_NONBLOCK) != 0;
}

/// @p descriptor may be -1, with the reason in `errno`.
SOCKET handle_or_failure(int descriptor) {
    if (descriptor >= descriptor_limit) {
        ::close(descriptor);
        descriptor = -1;
        errno = EMFILE;
    }
    if (descriptor == -1) {
        fail(errno);
        return no_handle;
    }
    return make_handle(descriptor);
}

sockaddr_in make_address(ipv4_address address, std::uint16_t port) {
    sockaddr_in result = {};
    result.sin_family = AF_INET;
    result.sin_port = htons(port);
    result.sin_addr.s_addr = address;
    return result;
}

/// Waits for the outcome of a connect that a signal has cut short: the connection goes on being made, and a second
/// connect would only report that.
int finish_connect(int descriptor) {
    pollfd waiting = {descriptor, POLLOUT, 0};
    if (uninterrupted([&] { return ::poll(&waiting, 1, -1); }) == -1) {
        return -1;
    }
    int error = 0;
    socklen_t size = sizeof error;
    if (::getsockopt(descriptor, SOL_SOCKET, SO_ERROR, &error, &size) == -1) {
        return -1;
    }
    errno = error;
    return error == 0 ? 0 : -1;
}

}  // namespace

const int would_block = EWOULDBLOCK;

// There is no library to start. Sockets that a host has lost stay open, as they do while it has others.
int start_up() {
    return 0;
}

void clean_up() {}

int last_error() {
    return error_of_thread;
}

std::string error_text(int error) {
    return std::generic_category().message(error).substr(0, 99);
}

bool resolve(const char* host, ipv4_address& address) {
    const hostent* const found = ::gethostbyname(host);
    if (found == nullptr) {
        return false;
    }
    std::memcpy(&address, found->h_addr_list[0], sizeof address);
    return true;
}

SOCKET new_socket() {
    return handle_or_failure(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
}

void close_socket(SOCKET handle) {
    close_handle(handle);
}

void set_non_blocking(SOCKET handle) {
    with_descriptor(handle, [](int descriptor) {
        int on = 1;
        return ::ioctl(descriptor, FIONBIO, &on);
    });
}

bool connect(SOCKET handle, ipv4_address address, std::uint16_t port) {
    const sockaddr_in peer = make_address(address, port);
    return with_descriptor(handle, [&](int descriptor) {
               const int result =
                   ::connect(descriptor, reinterpret_cast<const sockaddr*>(&peer), sizeof peer);
               return result == -1 && errno == EINTR ? finish_connect(descriptor) : result;
           }) == 0;
}

bool bind(SOCKET handle, std::uint16_t port) {
    const sockaddr_in own = make_address(htonl(INADDR_ANY), port);
    return with_descriptor(handle, [&](int descriptor) {
               // Takes over a port on which old connections linger, which WinSock allows without being asked.
               const int on = 1;
               ::setsockopt(descriptor, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
               const int result = ::bind(descriptor, reinterpret_cast<const sockaddr*>(&own), sizeof own);
               // With that option, of two sockets that bind at the same time only the one that listens first owns the
               // port, and the bind is what has to fail for the other.
               return result == -1 ? -1 : ::listen(descriptor, 1);
           }) == 0;
}

void listen(SOCKET handle, int connections) {
    with_descriptor(handle, [=](int descriptor) { return ::listen(descriptor, connections); });
}

SOCKET accept(SOCKET handle) {
    SOCKET accepted = no_handle;
    with_descriptor(handle, [&](int descriptor) {
        // As with WinSock, what a server accepts is non-blocking if the server is.
        const int flags = SOCK_CLOEXEC | (is_non_blocking(descriptor) ? SOCK_NONBLOCK : 0);
        const int result = uninterrupted([=] { return ::accept4(descriptor, nullptr, nullptr, flags); });
        accepted = handle_or_failure(result);
        return accepted == no_handle ? -1 : 1;
    });
    return accepted;
}

bool count_readable(SOCKET handle, unsigned long& count) {
    int readable = 0;
    const bool done = with_descriptor(handle, [&](int descriptor) {
                          return ::ioctl(descriptor, FIONREAD, &readable);
                      }) == 0;
    count = static_cast<unsigned long>(readable);
    return done;
}

int receive(SOCKET handle, char* buffer, int size) {
    return with_descriptor(handle, [=](int descriptor) {
        return uninterrupted([=] { return ::recv(descriptor, buffer, static_cast<std::size_t>(size), 0); });
    });
}

int send(SOCKET handle, const char* bytes, int size) {
    if (size < 0) {
        return fail(EINVAL);
    }
    return with_descriptor(handle, [=](int descriptor) -> ssize_t {
        ssize_t sent = 0;
        for (;;) {
            const auto rest = static_cast<std::size_t>(size - sent);
            const ssize_t count =
                uninterrupted([&] { return ::send(descriptor, bytes + sent, rest, MSG_NOSIGNAL); });
            if (count == -1) {
                return sent > 0 ? sent : -1;
            }
            sent += count;
            // A blocking call comes back short only when a signal has cut it.
            if (sent == size || is_non_blocking(descriptor)) {
                return sent;
            }
        }
    });
}

// poll, for it takes descriptors of any number. Its unit is the millisecond, and of the two roundings of a microsecond
// nought is the nearer.
bool keep_readable(SOCKET* handles, std::uint32_t& count, wait duration) {
    constexpr std::uint32_t capacity = 64;
    std::optional<handle_use> uses[capacity];
    pollfd polled[capacity];
    for (std::uint32_t i = 0; i < count; ++i) {
        polled[i] = {uses[i].emplace(handles[i]).descriptor(), POLLIN, 0};
        if (polled[i].fd == -1) {
            return fail(ENOTSOCK) == 0;
        }
    }
    const int time_out = duration == wait::for_ever ? -1 : 0;
    if (uninterrupted([&] { return ::poll(polled, count, time_out); }) == -1) {
        return fail(errno) == 0;
    }
    std::uint32_t kept = 0;
    for (std::uint32_t i = 0; i < count; ++i) {
        if ((polled[i].revents & POLLNVAL) != 0 || uses[i]->closed()) {
            return fail(ENOTSOCK) == 0;
        }
        if (polled[i].revents != 0) {
            handles[kept++] = handles[i];
        }
    }
    count = kept;
    return true;
}

}  // namespace zorv::platform
