#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "tests/net/plain_peer.h"
#include "zorv_tools/net/Socket.h"
#include "zorv_tools/net/internal/handle_table.h"
#include "zorv_tools/net/socket_transmission.h"

using zorv::Blocking;
using zorv::NonBlocking;
using zorv::Socket;
using zorv::SocketClient;
using zorv::SocketSelect;
using zorv::SocketServer;

namespace {

const std::string localhost = "127.0.0.1";

/// The limit on descriptor numbers, set for as long as this lives.
class descriptor_limit {
public:
    explicit descriptor_limit(rlim_t wanted) {
        getrlimit(RLIMIT_NOFILE, &old_);
        rlimit limit = old_;
        limit.rlim_cur = std::min(wanted, old_.rlim_max);
        setrlimit(RLIMIT_NOFILE, &limit);
    }
    ~descriptor_limit() { setrlimit(RLIMIT_NOFILE, &old_); }
    descriptor_limit(const descriptor_limit&) = delete;
    descriptor_limit& operator=(const descriptor_limit&) = delete;

private:
    rlimit old_ = {};
};

std::vector<int> open_descriptors() {
    std::vector<int> result;
    for (int number = 0; number < 4096; ++number) {
        if (fcntl(number, F_GETFD) != -1) {
            result.push_back(number);
        }
    }
    return result;
}

std::vector<int> opened_since(const std::vector<int>& before) {
    const std::vector<int> now = open_descriptors();
    std::vector<int> result;
    std::set_difference(now.begin(), now.end(), before.begin(), before.end(), std::back_inserter(result));
    return result;
}

bool same_file(int first, int second) {
    struct stat a = {};
    struct stat b = {};
    return fstat(first, &a) == 0 && fstat(second, &b) == 0 && a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

}  // namespace

TEST(Descriptors, AreNotInheritedAndOnlyAServerLosesOne) {
    const std::vector<int> before = open_descriptors();
    {
        const fresh_server server(Blocking);
        const SocketClient client(localhost, server.port);
        const std::unique_ptr<Socket> accepted(server.socket->Accept());
        const std::vector<int> opened = opened_since(before);
        EXPECT_EQ(opened.size(), 4u);
        for (const int number : opened) {
            EXPECT_EQ(fcntl(number, F_GETFD) & FD_CLOEXEC, FD_CLOEXEC);
        }
    }
    EXPECT_EQ(opened_since(before).size(), 1u);

    const fresh_server server(Blocking);
    const plain_listener nobody(-1);
    const std::vector<int> with_server = open_descriptors();
    EXPECT_EQ(thrown_by([&] { SocketServer(server.port, 1, Blocking); }), "char* INVALID_SOCKET");
    EXPECT_EQ(opened_since(with_server).size(), 1u);
    EXPECT_NE(thrown_by([&] { SocketClient(localhost, nobody.port()); }), "nothing");
    EXPECT_EQ(opened_since(with_server).size(), 1u);
}

TEST(Descriptors, AClosedSocketLeavesWhoeverTookItsNumberAlone) {
    plain_listener listener;
    for (int round = 0; round < 3; ++round) {
        auto client = std::make_unique<SocketClient>(localhost, listener.port());
        const std::vector<int> before = open_descriptors();
        client->Close();
        std::vector<int> freed;
        for (const int number : before) {
            if (fcntl(number, F_GETFD) == -1) {
                freed.push_back(number);
            }
        }
        ASSERT_EQ(freed.size(), 1u);

        // The far end of the pair shows what goes astray; there is a byte to be stolen, too.
        int pair[2];
        ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, pair), 0);
        ASSERT_EQ(pair[0], freed[0]);
        ASSERT_EQ(write(pair[1], "k", 1), 1);
        use_after_close(*client);
        char byte = 0;
        EXPECT_EQ(recv(pair[1], &byte, 1, MSG_DONTWAIT), -1);
        EXPECT_EQ(recv(pair[0], &byte, 1, MSG_DONTWAIT), 1);
        close(pair[0]);
        close(pair[1]);

        const int file = open("/dev/null", O_RDONLY);
        ASSERT_EQ(file, freed[0]);
        client.reset();
        EXPECT_NE(fcntl(file, F_GETFD), -1);
        close(file);

        // Nor a socket of our own.
        auto stale = std::make_unique<SocketClient>(localhost, listener.port());
        stale->Close();
        const plain_listener other;
        SocketClient fresh(localhost, listener.port());
        use_after_close(*stale);
        stale.reset();
        fresh.SendBytes("fresh");
        listener.accept();
        listener.accept();
        EXPECT_EQ(listener.accept().receive(5), "fresh");
    }
}

TEST(Descriptors, SecondClosesOfManyThreadsTouchNoFile) {
    plain_listener listener(512);
    const int reference = open("/dev/null", O_RDONLY);
    std::mutex counts;
    std::atomic<int> damaged{0};
    const auto work = [&] {
        for (int round = 0; round < 100; ++round) {
            std::unique_ptr<SocketClient> client;
            {
                const std::lock_guard<std::mutex> lock(counts);
                client = std::make_unique<SocketClient>(localhost, listener.port());
                listener.accept().close();
            }
            client->Close();
            const int file = open("/dev/null", O_RDONLY);
            client->SendBytes("astray");
            client->Close();
            {
                const std::lock_guard<std::mutex> lock(counts);
                client.reset();
            }
            damaged += same_file(file, reference) ? 0 : 1;
            close(file);
        }
    };
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back(work);
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(damaged, 0);
    EXPECT_NE(fcntl(reference, F_GETFD), -1);
    close(reference);
}

TEST(Descriptors, AboveWhatSelectCanHold) {
    const descriptor_limit limit(4096);
    std::vector<int> fillers;
    do {
        fillers.push_back(open("/dev/null", O_RDONLY));
    } while (fillers.back() != -1 && fillers.back() < 1100);
    if (fillers.back() != -1) {
        fresh_server server(Blocking);
        SocketClient client(localhost, server.port);
        EXPECT_TRUE(SocketSelect(&client, server.socket.get(), Blocking).Readable(server.socket.get()));
        const std::unique_ptr<Socket> accepted(server.socket->Accept());
        client.SendLine("high");
        EXPECT_TRUE(SocketSelect(accepted.get(), &client, Blocking).Readable(accepted.get()));
        EXPECT_EQ(accepted->ReceiveLine(), "high\n");
    }
    const bool reached = fillers.back() != -1;
    for (const int number : fillers) {
        close(number);
    }
    if (!reached) {
        GTEST_SKIP() << "this process may not open that many descriptors";
    }
}

TEST(Descriptors, WithNoneLeftTheTextPassesTheSenders) {
    // The undefined-behaviour sanitizer opens a pipe when it meets a class for the first time, and takes the object
    // for a bad one if it cannot.
    plain_listener listener;
    EXPECT_EQ(thrown_by([&] { SocketClient(localhost, listener.port()); }), "nothing");
    EXPECT_EQ(thrown_by([&] { SocketServer(listener.port(), 1, Blocking); }), "char* INVALID_SOCKET");
    {
        const descriptor_limit limit(static_cast<rlim_t>(open_descriptors().back() + 4));
        std::vector<int> fillers;
        do {
            fillers.push_back(open("/dev/null", O_RDONLY));
        } while (fillers.back() != -1);
        fillers.pop_back();
        // Without a socket there is no object to be destroyed, and its count stays.
        const std::int32_t live = live_sockets();
        EXPECT_EQ(thrown_by([] { zorv::write_string_to_socket("bob", localhost, 9); }),
                  "char* INVALID_SOCKET");
        EXPECT_EQ(live_sockets(), live + 1);
        // One is enough for the first of a server's two sockets, which is lost here as well.
        const std::vector<int> before = open_descriptors();
        close(fillers.back());
        fillers.pop_back();
        EXPECT_EQ(thrown_by([] { SocketServer(0, 1, Blocking); }), "char* INVALID_SOCKET");
        EXPECT_EQ(open_descriptors(), before);
        EXPECT_EQ(live_sockets(), live + 1);
        for (const int number : fillers) {
            close(number);
        }
    }
    EXPECT_EQ(thrown_by([&] { SocketClient(localhost, listener.port()); }), "nothing");
}

TEST(HandleTable, ClosesWithTheLastUse) {
    using namespace zorv::platform;
    int pair[2];
    ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, pair), 0);
    const zorv::SOCKET handle = make_handle(pair[0]);
    const zorv::SOCKET neighbour = make_handle(pair[1]);
    EXPECT_NE(handle, neighbour);
    {
        const handle_use first(handle);
        const handle_use second(handle);
        EXPECT_EQ(first.descriptor(), pair[0]);
        close_handle(handle);
        EXPECT_TRUE(first.closed());
        EXPECT_EQ(handle_use(handle).descriptor(), -1);
        EXPECT_NE(fcntl(pair[0], F_GETFD), -1);
        close_handle(handle);
    }
    EXPECT_EQ(fcntl(pair[0], F_GETFD), -1);
    EXPECT_EQ(handle_use(neighbour).descriptor(), pair[1]);

    // Closed behind our back while in use, the number serves a new socket whose uses are its own.
    auto stale_use = std::make_unique<handle_use>(neighbour);
    const zorv::SOCKET renewed = make_handle(pair[1]);
    EXPECT_NE(renewed, neighbour);
    {
        const handle_use use(renewed);
        stale_use.reset();
        close_handle(neighbour);
        close_handle(renewed);
        EXPECT_NE(fcntl(pair[1], F_GETFD), -1);
    }
    EXPECT_EQ(fcntl(pair[1], F_GETFD), -1);
}
