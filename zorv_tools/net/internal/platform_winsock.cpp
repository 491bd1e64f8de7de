#define _WINSOCK_DEPRECATED_NO_WARNINGS  // gethostbyname: IPv4 alone is what is wanted
#define WIN32_LEAN_AND_MEAN
#define NOMINMAX
#include <winsock2.h>

#include <algorithm>
#include <cstring>
#include <type_traits>

#include "zorv_tools/net/internal/platform.h"

namespace zorv::platform {

static_assert(std::is_same_v<zorv::SOCKET, ::SOCKET> && no_handle == INVALID_SOCKET,
              "the public handle is WinSock's, which has 64 bits on 64-bit systems alone");

namespace {

sockaddr_in make_address(ipv4_address address, std::uint16_t port) {
    sockaddr_in result = {};
    result.sin_family = AF_INET;
    result.sin_port = htons(port);
    result.sin_addr.s_addr = address;
    return result;
}

}  // namespace

const int would_block = WSAEWOULDBLOCK;

int start_up() {
    WSADATA unread;
    return WSAStartup(MAKEWORD(2, 0), &unread);
}

void clean_up() {
    WSACleanup();
}

int last_error() {
    return WSAGetLastError();
}

std::string error_text(int error) {
    char text[100] = "";
    strerror_s(text, sizeof text, error);
    return text;
}

bool resolve(const char* host, ipv4_address& address) {
    const hostent* const found = gethostbyname(host);
    if (found == nullptr) {
        return false;
    }
    std::memcpy(&address, found->h_addr_list[0], sizeof address);
    return true;
}

SOCKET new_socket() {
    return ::socket(AF_INET, SOCK_STREAM, 0);
}

void close_socket(SOCKET handle) {
    ::closesocket(handle);
}

void set_non_blocking(SOCKET handle) {
    unsigned long on = 1;
    ::ioctlsocket(handle, static_cast<long>(FIONBIO), &on);
}

bool connect(SOCKET handle, ipv4_address address, std::uint16_t port) {
    const sockaddr_in peer = make_address(address, port);
    return ::connect(handle, reinterpret_cast<const sockaddr*>(&peer), sizeof peer) == 0;
}

bool bind(SOCKET handle, std::uint16_t port) {
    const sockaddr_in own = make_address(INADDR_ANY, port);
    return ::bind(handle, reinterpret_cast<const sockaddr*>(&own), sizeof own) != SOCKET_ERROR;
}

void listen(SOCKET handle, int connections) {
    ::listen(handle, connections);
}

SOCKET accept(SOCKET handle) {
    return ::accept(handle, nullptr, nullptr);
}

bool count_readable(SOCKET handle, unsigned long& count) {
    return ::ioctlsocket(handle, FIONREAD, &count) == 0;
}

int receive(SOCKET handle, char* buffer, int size) {
    return ::recv(handle, buffer, size, 0);
}

int send(SOCKET handle, const char* bytes, int size) {
    return ::send(handle, bytes, size, 0);
}

bool keep_readable(SOCKET* handles, std::uint32_t& count, wait duration) {
    fd_set set;
    set.fd_count = count;
    std::copy_n(handles, count, set.fd_array);
    timeval a_microsecond = {0, 1};
    if (::select(0, &set, nullptr, nullptr, duration == wait::a_microsecond ? &a_microsecond : nullptr) ==
        SOCKET_ERROR) {
        return false;
    }
    count = set.fd_count;
    std::copy_n(set.fd_array, count, handles);
    return true;
}

}  // namespace zorv::platform
