#include "zorv_tools/net/Socket.h"

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "tests/net/plain_peer.h"

using zorv::Blocking;
using zorv::NonBlocking;
using zorv::Socket;
using zorv::SocketClient;
using zorv::SocketSelect;
using zorv::SocketServer;

namespace {

const std::string localhost = "127.0.0.1";

/// A client of the library and its plain peer.
struct plain_pair {
    plain_listener listener;
    SocketClient client{localhost, listener.port()};
    plain_connection peer = listener.accept();
};

/// Waits until what the peer has just sent is there. A listening or closed socket counts as well.
void wait_until_readable(const Socket& socket) {
    EXPECT_TRUE(eventually([&] { return SocketSelect(&socket, nullptr, NonBlocking).Readable(&socket); }));
    pause_ms(50);
}

}  // namespace

TEST(Socket, SendsWhatItIsGiven) {
    plain_pair pair;
    const std::string odd("\0\r\n\xff z", 6);
    pair.client.SendLine("abc");
    pair.client.SendBytes("");
    pair.client.SendLine("");
    pair.client.SendBytes(odd);
    pair.client.Close();
    EXPECT_EQ(pair.peer.receive(100), "abc\n\n" + odd);
}

TEST(Socket, ReceivesLinesWithTheirEnd) {
    plain_pair pair;
    const std::string lines[] = {"abc\n", "\n", "a\r\n", std::string("\0\xff\n", 3),
                                 std::string(3000, 'x') + "\n"};
    for (const std::string& line : lines) {
        pair.peer.send(line);
    }
    pair.peer.send("abc");
    pair.peer.close();
    for (const std::string& line : lines) {
        EXPECT_EQ(pair.client.ReceiveLine(), line);
    }
    EXPECT_EQ(pair.client.ReceiveLine(), "abc");
    EXPECT_EQ(pair.client.ReceiveLine(), "");
}

TEST(Socket, ReceivesAllBytesThatHaveArrivedWithoutWaiting) {
    plain_pair pair;
    EXPECT_EQ(pair.client.ReceiveBytes(), "");
    for (const std::size_t count : {1u, 1023u, 1024u, 1025u, 2048u, 20000u}) {
        std::string bytes;
        while (bytes.size() < count) {
            bytes += static_cast<char>(bytes.size() % 251);
        }
        pair.peer.send(bytes);
        wait_until_readable(pair.client);
        EXPECT_EQ(pair.client.ReceiveBytes(), bytes) << count;
        EXPECT_EQ(pair.client.ReceiveBytes(), "");
    }
    pair.peer.close();
    wait_until_readable(pair.client);
    EXPECT_EQ(pair.client.ReceiveBytes(), "");
}

TEST(Socket, CopiesShareTheConnection) {
    const std::int32_t before = live_sockets();
    plain_pair pair;
    auto first = std::make_unique<SocketClient>(pair.client);
    {
        const SocketClient second(*first);
        EXPECT_EQ(live_sockets(), before + 3);
    }
    first->SendBytes("a");
    first.reset();
    pair.client.SendBytes("b");
    EXPECT_EQ(pair.peer.receive(2), "ab");
    EXPECT_EQ(live_sockets(), before + 1);

    plain_listener listener;
    auto last = std::make_unique<SocketClient>(localhost, listener.port());
    plain_connection peer = listener.accept();
    auto copy = std::make_unique<SocketClient>(*last);
    last.reset();
    copy.reset();
    EXPECT_TRUE(peer.ended());
    EXPECT_EQ(live_sockets(), before + 1);
}

TEST(Socket, AssignmentReleasesNothing) {
    const std::int32_t before = live_sockets();
    plain_listener old_listener;
    plain_listener new_listener;
    // Never deleted: this keeps what the assignment loses in sight of the leak checker.
    static SocketClient* old_copy = nullptr;
    {
        SocketClient target(localhost, old_listener.port());
        old_copy = new SocketClient(target);
        SocketClient source(localhost, new_listener.port());
        EXPECT_EQ(&(target = source), &target);
        EXPECT_EQ(live_sockets(), before + 4);
        target.SendBytes("to the new");
        old_copy->SendBytes("to the old");
    }
    EXPECT_EQ(live_sockets(), before + 2);
    plain_connection new_peer = new_listener.accept();
    EXPECT_EQ(new_peer.receive(10), "to the new");
    EXPECT_TRUE(new_peer.ended());
    plain_connection old_peer = old_listener.accept();
    EXPECT_EQ(old_peer.receive(10), "to the old");
    old_copy->SendBytes("still");
    EXPECT_EQ(old_peer.receive(5), "still");
}

TEST(Socket, AfterACloseAllFailsQuietlyButTheWait) {
    plain_pair pair;
    SocketClient copy(pair.client);
    pair.peer.send("unread\n");
    wait_until_readable(pair.client);
    pair.client.Close();
    for (Socket* closed : {&pair.client, &copy}) {
        use_after_close(*closed);
    }

    const fresh_server server(NonBlocking);
    server.socket->Close();
    EXPECT_EQ(thrown_by([&] { server.socket->Accept(); }), "char* Invalid Socket");
    EXPECT_EQ(thrown_by([&] { SocketServer(server.port, 1, Blocking); }), "nothing");
}

TEST(Socket, ACloseByAnotherThreadEndsWhatWaits) {
    plain_pair pair;
    pair.peer.send("part of a line");
    const fresh_server server(Blocking);
    struct {
        Socket* socket;
        std::function<void()> wait;
        std::string thrown;
    } const cases[] = {
        {&pair.client, [&] { EXPECT_EQ(pair.client.ReceiveLine(), ""); }, "nothing"},
        {server.socket.get(), [&] { server.socket->Accept(); }, "char* Invalid Socket"},
    };
    for (const auto& c : cases) {
        std::thread closer([&] {
            pause_ms(100);
            c.socket->Close();
        });
        EXPECT_EQ(thrown_by(c.wait), c.thrown);
        closer.join();
    }
}

TEST(SocketClient, TakesANameAndCutsThePortTo16Bits) {
    plain_listener listener;
    SocketClient client("localhost", listener.port() + 65536);
    client.SendBytes("x");
    EXPECT_EQ(listener.accept().receive(1), "x");
}

TEST(SocketClient, FailuresThrowAStringAndCountBack) {
    const std::int32_t before = live_sockets();
    const plain_listener nobody(-1);
    // Too long to be a name, which is seen without asking anybody.
    const std::string bad_name(300, 'x');
    for (const std::string& host : {localhost, bad_name}) {
        const std::string text = thrown_by([&] { SocketClient(host, nobody.port()); });
        EXPECT_EQ(text.rfind("std::string ", 0), 0u) << text;
        EXPECT_GT(text.size(), 12u);
    }
    EXPECT_EQ(live_sockets(), before);
}

TEST(SocketServer, HasItsPortToItself) {
    const fresh_server server(NonBlocking);
    const std::int32_t before = live_sockets();
    for (const auto type : {Blocking, NonBlocking}) {
        EXPECT_EQ(thrown_by([&] { SocketServer(server.port, 1, type); }), "char* INVALID_SOCKET");
    }
    EXPECT_EQ(live_sockets(), before);
    plain_connection peer = plain_connection::to(server.port);
    EXPECT_NE(server.accept(), nullptr);
}

TEST(SocketServer, CanBeRestartedAtOnce) {
    fresh_server server(Blocking);
    for (int round = 0; round < 3; ++round) {
        plain_connection peer = plain_connection::to(server.port);
        server.accept().reset();
        EXPECT_TRUE(peer.ended());
        peer.close();
        server.socket.reset();
        ASSERT_EQ(
            thrown_by([&] { server.socket = std::make_unique<SocketServer>(server.port, 4, Blocking); }),
            "nothing");
    }
}

TEST(SocketServer, NonBlockingPassesOnToWhatItAccepts) {
    const fresh_server server(NonBlocking);
    EXPECT_EQ(server.socket->Accept(), nullptr);
    plain_connection peer = plain_connection::to(server.port);
    const std::unique_ptr<Socket> accepted = server.accept();
    ASSERT_NE(accepted, nullptr);
    EXPECT_EQ(server.socket->Accept(), nullptr);

    EXPECT_EQ(accepted->ReceiveLine(), "");
    peer.send("lost, as the line has ");
    wait_until_readable(*accepted);
    EXPECT_EQ(accepted->ReceiveLine(), "");
    peer.send("no end yet\n");
    wait_until_readable(*accepted);
    EXPECT_EQ(accepted->ReceiveLine(), "no end yet\n");
}

TEST(SocketSelect, TellsWhichSocketsAreReadable) {
    plain_pair pair;
    plain_pair other;
    const fresh_server server(NonBlocking);
    const auto start = std::chrono::steady_clock::now();
    SocketSelect select(&pair.client, server.socket.get(), NonBlocking);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(1));
    EXPECT_FALSE(select.Readable(&pair.client));
    EXPECT_FALSE(select.Readable(server.socket.get()));

    pair.peer.send("x");
    other.peer.send("x");
    wait_until_readable(other.client);
    select = SocketSelect(server.socket.get(), &pair.client, Blocking);
    EXPECT_TRUE(select.Readable(&pair.client));
    EXPECT_FALSE(select.Readable(server.socket.get()));
    EXPECT_FALSE(select.Readable(&other.client));

    plain_connection waiting = plain_connection::to(server.port);
    select = SocketSelect(&pair.client, server.socket.get(), Blocking);
    EXPECT_TRUE(select.Readable(&pair.client));
    EXPECT_TRUE(select.Readable(server.socket.get()));

    pair.client.ReceiveBytes();
    select = SocketSelect(&pair.client, &pair.client, NonBlocking);
    EXPECT_FALSE(select.Readable(&pair.client));
    pair.peer.close();
    select = SocketSelect(&pair.client, &pair.client, Blocking);
    EXPECT_TRUE(select.Readable(&pair.client));
}

TEST(SocketSelect, WaitsForAsLongAsItTakes) {
    plain_pair pair;
    std::thread sender([&] {
        pause_ms(300);
        pair.peer.send("x");
    });
    const auto start = std::chrono::steady_clock::now();
    EXPECT_TRUE(SocketSelect(&pair.client, nullptr, Blocking).Readable(&pair.client));
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(200));
    sender.join();
}
