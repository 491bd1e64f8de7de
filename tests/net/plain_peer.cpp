#include "tests/net/plain_peer.h"

#ifdef _WIN32
#define WIN32_LEAN_AND_MEAN
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <winsock2.h>
#else
#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>
#endif

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace {

#ifdef _WIN32

using native = ::SOCKET;
using length = int;
constexpr int no_signal = 0;

void start() {
    WSADATA unread;
    WSAStartup(MAKEWORD(2, 0), &unread);
}

void stop() {
    WSACleanup();
}

void close_native(native number) {
    closesocket(number);
}

bool wait_for(native number, bool to_read) {
    fd_set set;
    FD_ZERO(&set);
    FD_SET(number, &set);
    timeval limit = {10, 0};
    return select(0, to_read ? &set : nullptr, to_read ? nullptr : &set, nullptr, &limit) == 1;
}

#else

using native = int;
using length = socklen_t;
constexpr int no_signal = MSG_NOSIGNAL;

void start() {}

void stop() {}

void close_native(native number) {
    close(number);
}

bool wait_for(native number, bool to_read) {
    pollfd waiting = {number, static_cast<short>(to_read ? POLLIN : POLLOUT), 0};
    return poll(&waiting, 1, 10000) == 1;
}

#endif

constexpr std::intptr_t none = -1;

native to_native(std::intptr_t number) {
    return static_cast<native>(number);
}

sockaddr_in own_address(int port) {
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<unsigned short>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

void check(bool good, const char* what) {
    if (!good) {
        throw std::runtime_error(std::string("plain peer: ") + what);
    }
}

std::intptr_t new_stream() {
    return static_cast<std::intptr_t>(::socket(AF_INET, SOCK_STREAM, 0));
}

}  // namespace

// An explicit instantiation may name a private member: the count has no other window, and the library needs none.
std::int32_t count_in_window();
template <std::int32_t* Count>
struct window {
    friend std::int32_t count_in_window() { return *Count; }
};
template struct window<&zorv::Socket::nofSockets_>;

std::int32_t live_sockets() {
    return count_in_window();
}

void use_after_close(zorv::Socket& closed) {
    closed.Close();
    closed.SendBytes("astray");
    closed.SendLine("astray");
    EXPECT_EQ(closed.ReceiveBytes(), "");
    EXPECT_EQ(closed.ReceiveLine(), "");
    EXPECT_EQ(thrown_by([&] { zorv::SocketSelect(&closed, nullptr, zorv::NonBlocking); }),
              "char* Error in select");
}

plain_socket::plain_socket(std::intptr_t number) : number_(number) {
    start();
}

plain_socket::plain_socket(plain_socket&& other) noexcept : number_(std::exchange(other.number_, none)) {
    start();
}

plain_socket::~plain_socket() {
    close();
    stop();
}

void plain_socket::close() {
    if (number_ != none) {
        close_native(to_native(std::exchange(number_, none)));
    }
}

plain_connection plain_connection::to(int port) {
    plain_connection result(none);
    result.number_ = new_stream();
    const sockaddr_in address = own_address(port);
    check(::connect(to_native(result.number_), reinterpret_cast<const sockaddr*>(&address), sizeof address) ==
              0,
          "connect");
    return result;
}

void plain_connection::send(const std::string& bytes) {
    for (std::size_t sent = 0; sent < bytes.size();) {
        check(wait_for(to_native(number_), false), "send waits too long");
        const std::string part = bytes.substr(sent, 4096);
        const auto count =
            ::send(to_native(number_), part.data(), static_cast<length>(part.size()), no_signal);
        check(count > 0, "send");
        sent += static_cast<std::size_t>(count);
    }
}

std::string plain_connection::receive(std::size_t count) {
    std::string result;
    char buffer[65536];
    while (result.size() < count && wait_for(to_native(number_), true)) {
        const std::size_t wanted = std::min(count - result.size(), sizeof buffer);
        const auto got = ::recv(to_native(number_), buffer, static_cast<length>(wanted), 0);
        if (got <= 0) {
            break;
        }
        result.append(buffer, static_cast<std::size_t>(got));
    }
    return result;
}

bool plain_connection::ended() {
    char byte;
    return wait_for(to_native(number_), true) && ::recv(to_native(number_), &byte, 1, 0) == 0;
}

plain_listener::plain_listener(int backlog) : plain_socket(none) {
    number_ = new_stream();
    const sockaddr_in address = own_address(0);
    check(::bind(to_native(number_), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0,
          "bind");
    if (backlog >= 0) {
        check(::listen(to_native(number_), backlog) == 0, "listen");
    }
}

int plain_listener::port() const {
    sockaddr_in address = {};
    length size = sizeof address;
    check(::getsockname(to_native(number_), reinterpret_cast<sockaddr*>(&address), &size) == 0,
          "getsockname");
    return ntohs(address.sin_port);
}

plain_connection plain_listener::accept() {
    check(wait_for(to_native(number_), true), "nobody connects");
    return plain_connection(static_cast<std::intptr_t>(::accept(to_native(number_), nullptr, nullptr)));
}

bool system_makes_sockets() {
    const std::intptr_t number = new_stream();
    if (number == none) {
        return false;
    }
    close_native(to_native(number));
    return true;
}
