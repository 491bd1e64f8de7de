#define WIN32_LEAN_AND_MEAN
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <winsock2.h>

#include <gtest/gtest.h>

#include <memory>

#include "tests/net/sockets.h"

namespace {

enum outcome { no_socket, refused, connected };

/// A socket can be made only while somebody has the socket library started.
outcome connect_plainly(int port) {
    const ::SOCKET number = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<unsigned short>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    const bool done = ::connect(number, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    closesocket(number);
    return number == INVALID_SOCKET ? no_socket : done ? connected : refused;
}

}  // namespace

TEST(WinSock, IsStartedWithTheFirstObjectAndReleasedWithTheLast) {
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(connect_plainly(1), no_socket);
        fresh_server server;
        auto copy = std::make_unique<zorv::SocketServer>(*server.socket);
        server.socket.reset();
        EXPECT_EQ(connect_plainly(server.port), connected);
        copy.reset();
    }
    EXPECT_EQ(connect_plainly(1), no_socket);
}
