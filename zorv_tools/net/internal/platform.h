#pragma once

/// @file
/// What the socket layer needs of its system, under one set of names. On Windows it is WinSock itself; elsewhere a layer
/// over POSIX sockets gives the same results.

#include <cstdint>
#include <string>

#include "zorv_tools/net/Socket.h"

namespace zorv::platform {

constexpr SOCKET no_handle = ~SOCKET{0};

/// Error of a call that would have to wait, in last_error.
extern const int would_block;

/// An IPv4 address in network byte order.
using ipv4_address = std::uint32_t;

enum class wait { a_microsecond, for_ever };

/// @return 0 on success
int start_up();
void clean_up();

/// The last error of this thread's calls below. Not `errno`, which some of them leave alone.
int last_error();

/// The system's text for an error number, of at most 99 bytes.
std::string error_text(int error);

/// First address of @p host. A failure is not in last_error; what there is to say about it stands in `errno`.
bool resolve(const char* host, ipv4_address& address);

/// A new IPv4 stream socket, or no_handle.
SOCKET new_socket();

/// Invalidates @p handle. Fails quietly on one that is not valid. Calls of other threads that wait on it fail.
void close_socket(SOCKET handle);

void set_non_blocking(SOCKET handle);
bool connect(SOCKET handle, ipv4_address address, std::uint16_t port);

/// Takes @p port on all interfaces. Fails if somebody listens on it, but not for connections that linger there.
bool bind(SOCKET handle, std::uint16_t port);
void listen(SOCKET handle, int connections);

/// The next connection, non-blocking if @p handle is, or no_handle.
SOCKET accept(SOCKET handle);

/// How many bytes can be received without waiting.
bool count_readable(SOCKET handle, unsigned long& count);

/// @return number of bytes, 0 when the peer has closed, -1 on failure
int receive(SOCKET handle, char* buffer, int size);

/// On a blocking socket sends all, whatever signals arrive; a closed peer raises none.
/// @return number of bytes, -1 on failure
int send(SOCKET handle, const char* bytes, int size);

/// Waits until one of @p count handles is readable, and keeps those that are, in their order.
/// @return false if waiting failed, as it does on a closed handle
bool keep_readable(SOCKET* handles, std::uint32_t& count, wait duration);

}  // namespace zorv::platform
