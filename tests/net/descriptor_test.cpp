#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "tests/net/sockets.h"
#include "zorv_tools/net/Socket.h"
#include "zorv_tools/net/internal/handle_table.h"
#include "zorv_tools/net/internal/platform.h"
#include "zorv_tools/net/socket_transmission.h"

using zorv::Blocking;
using zorv::Socket;
using zorv::SocketClient;
using zorv::SocketSelect;
using zorv::SocketServer;

namespace {

bool is_open(int descriptor) {
    return fcntl(descriptor, F_GETFD) != -1;
}

std::vector<int> open_descriptors() {
    std::vector<int> result;
    for (int number = 0; number < 4096; ++number) {
        if (is_open(number)) {
            result.push_back(number);
        }
    }
    return result;
}

/// What is in `all` but not in `known`.
std::vector<int> others(const std::vector<int>& all, const std::vector<int>& known) {
    std::vector<int> result;
    std::set_difference(all.begin(), all.end(), known.begin(), known.end(), std::back_inserter(result));
    return result;
}

int open_file() {
    return open("/dev/null", O_RDONLY);
}

/// Numbers of descriptors are below `limit` for as long as this lives.
class descriptor_limit {
public:
    explicit descriptor_limit(int limit) {
        getrlimit(RLIMIT_NOFILE, &old_);
        const rlimit wanted = {std::min(static_cast<rlim_t>(limit), old_.rlim_max), old_.rlim_max};
        setrlimit(RLIMIT_NOFILE, &wanted);
    }
    ~descriptor_limit() { setrlimit(RLIMIT_NOFILE, &old_); }
    descriptor_limit(const descriptor_limit&) = delete;
    descriptor_limit& operator=(const descriptor_limit&) = delete;

private:
    rlimit old_ = {};
};

}  // namespace

TEST(Descriptors, AreNotInheritedAndOnlyAServerLosesOne) {
    const int port = free_port();
    const std::vector<int> before = open_descriptors();
    {
        SocketServer server(port, 1, Blocking);
        const SocketClient client(localhost, port);
        const std::unique_ptr<Socket> accepted(server.Accept());
        const std::vector<int> opened = others(open_descriptors(), before);
        EXPECT_EQ(opened.size(), 4u);
        for (const int number : opened) {
            EXPECT_EQ(fcntl(number, F_GETFD), FD_CLOEXEC);
        }
    }
    EXPECT_EQ(others(open_descriptors(), before).size(), 1u);

    const fresh_server server;
    const std::vector<int> without = open_descriptors();
    EXPECT_EQ(thrown_by([&] { SocketServer(server.port, 1, Blocking); }), "char* INVALID_SOCKET");
    EXPECT_EQ(others(open_descriptors(), without).size(), 1u);
    EXPECT_NE(thrown_by([&] { SocketClient(localhost, port); }), "nothing");
    EXPECT_EQ(others(open_descriptors(), without).size(), 1u);
}

TEST(Descriptors, AClosedSocketLeavesWhoeverTookItsNumberAlone) {
    const fresh_server server;
    auto client = std::make_unique<SocketClient>(localhost, server.port);
    const std::vector<int> before = open_descriptors();
    client->Close();
    const std::vector<int> freed = others(before, open_descriptors());
    ASSERT_EQ(freed.size(), 1u);

    const int file = open_file();
    ASSERT_EQ(file, freed[0]);
    use_after_close(*client);
    EXPECT_TRUE(is_open(file));
    close(file);

    // Nor a socket of our own.
    SocketClient fresh(localhost, server.port);
    ASSERT_TRUE(is_open(freed[0]));
    use_after_close(*client);
    client.reset();
    fresh.SendLine("fresh");
    server.accept();
    EXPECT_EQ(server.accept()->ReceiveLine(), "fresh\n");

    // Whoever closes the number behind our back is told so.
    close(freed[0]);
    EXPECT_EQ(thrown_by([&] { SocketSelect(&fresh, nullptr, Blocking); }), "char* Error in select");
}

TEST(Descriptors, AboveWhatSelectCanHold) {
    const descriptor_limit limit(2048);
    std::vector<int> others;
    do {
        others.push_back(open_file());
    } while (others.back() != -1 && others.back() < 1100);
    ASSERT_NE(others.back(), -1) << "this process may not open that many descriptors";

    connection made;
    made.client.SendLine("high");
    EXPECT_TRUE(SocketSelect(&made.client, made.peer.get(), Blocking).Readable(made.peer.get()));
    EXPECT_EQ(made.peer->ReceiveLine(), "high\n");
    std::for_each(others.begin(), others.end(), close);
}

TEST(Descriptors, WithNoneLeftTheTextPassesTheSenders) {
    // The undefined-behaviour sanitizer opens a pipe when it meets a class for the first time, and takes the object
    // for a bad one if it cannot.
    const fresh_server server;
    EXPECT_EQ(thrown_by([&] { SocketClient(localhost, server.port); }), "nothing");
    EXPECT_EQ(thrown_by([&] { SocketServer(server.port, 1, Blocking); }), "char* INVALID_SOCKET");
    const int next = open_file();
    close(next);
    const std::int32_t live = live_sockets();
    {
        // Without a socket there is no object to be destroyed, and its count stays.
        const descriptor_limit limit(next);
        EXPECT_EQ(thrown_by([] { zorv::write_string_to_socket("bob", localhost, 9); }),
                  "char* INVALID_SOCKET");
        EXPECT_EQ(live_sockets(), live + 1);
    }
    // One is enough for the first of a server's two sockets, which is lost here as well.
    const descriptor_limit limit(next + 1);
    EXPECT_EQ(thrown_by([] { SocketServer(0, 1, Blocking); }), "char* INVALID_SOCKET");
    EXPECT_TRUE(is_open(next));
    EXPECT_EQ(live_sockets(), live + 1);
}

TEST(Platform, OfTwoThatBindAPortOnlyOneHasIt) {
    const auto port = static_cast<std::uint16_t>(free_port());
    const zorv::SOCKET first = zorv::platform::new_socket();
    const zorv::SOCKET second = zorv::platform::new_socket();
    EXPECT_TRUE(zorv::platform::bind(first, port));
    EXPECT_FALSE(zorv::platform::bind(second, port));
    zorv::platform::close_socket(first);
    zorv::platform::close_socket(second);
}

TEST(HandleTable, ClosesWithTheLastUse) {
    using namespace zorv::platform;
    int pair[2];
    ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, pair), 0);
    const zorv::SOCKET handle = make_handle(pair[0]);
    const zorv::SOCKET neighbour = make_handle(pair[1]);
    {
        const handle_use first(handle);
        const handle_use second(handle);
        EXPECT_EQ(first.descriptor(), pair[0]);
        close_handle(handle);
        EXPECT_TRUE(first.closed());
        EXPECT_EQ(handle_use(handle).descriptor(), -1);
        EXPECT_TRUE(is_open(pair[0]));
        close_handle(handle);
    }
    EXPECT_FALSE(is_open(pair[0]));
    EXPECT_EQ(handle_use(neighbour).descriptor(), pair[1]);

    // Closed behind our back while in use, the number serves a new socket whose uses are its own.
    auto stale_use = std::make_unique<handle_use>(neighbour);
    const zorv::SOCKET renewed = make_handle(pair[1]);
    {
        const handle_use use(renewed);
        stale_use.reset();
        close_handle(neighbour);
        close_handle(renewed);
        EXPECT_TRUE(is_open(pair[1]));
    }
    EXPECT_FALSE(is_open(pair[1]));
}

TEST(HandleTable, ThreadsThatUseAndCloseOneHandleTouchNoFile) {
    std::atomic<int> damaged{0};
    for (int round = 0; round < 5; ++round) {
        int pair[2];
        ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, pair), 0);
        const zorv::SOCKET handle = zorv::platform::make_handle(pair[0]);
        const auto work = [&] {
            for (int i = 0; i < 200000; ++i) {
                const zorv::platform::handle_use use(handle);
            }
            zorv::platform::close_handle(handle);
            const int file = open_file();
            zorv::platform::close_handle(handle);
            damaged += close(file) != 0 ? 1 : 0;
        };
        std::thread first(work), second(work);
        first.join();
        second.join();
        damaged += is_open(pair[0]) ? 1 : 0;
        close(pair[1]);
    }
    EXPECT_EQ(damaged, 0);
}
