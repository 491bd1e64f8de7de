#include <gtest/gtest.h>

#include <memory>

#include "tests/net/plain_peer.h"

TEST(WinSock, IsStartedWithTheFirstObjectAndReleasedWithTheLast) {
    for (int round = 0; round < 2; ++round) {
        EXPECT_FALSE(system_makes_sockets());
        fresh_server server(zorv::Blocking);
        auto copy = std::make_unique<zorv::SocketServer>(*server.socket);
        server.socket.reset();
        EXPECT_TRUE(system_makes_sockets());
        copy.reset();
    }
    EXPECT_FALSE(system_makes_sockets());
}
