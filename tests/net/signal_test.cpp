#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <pthread.h>
#include <signal.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <memory>
#include <string>
#include <system_error>
#include <thread>

#include "tests/net/sockets.h"
#include "zorv_tools/net/Socket.h"
#include "zorv_tools/net/internal/platform.h"

using zorv::Blocking;
using zorv::Socket;
using zorv::SocketClient;
using zorv::SocketSelect;

namespace {

/// Interrupts the calls of the thread that made it, every millisecond.
class interruptions {
public:
    interruptions() {
        struct sigaction action = {};
        action.sa_handler = [](int) {};
        sigaction(SIGUSR1, &action, nullptr);
        sender_ = std::thread([this, target = pthread_self()] {
            while (!over_) {
                pthread_kill(target, SIGUSR1);
                pause_ms(1);
            }
        });
    }
    ~interruptions() {
        over_ = true;
        sender_.join();
    }
    interruptions(const interruptions&) = delete;
    interruptions& operator=(const interruptions&) = delete;

private:
    std::atomic<bool> over_{false};
    std::thread sender_;
};

const std::string refused = "std::string " + std::generic_category().message(ECONNREFUSED);

}  // namespace

TEST(Signals, LoseNoByteOfALongSend) {
    connection made;
    std::string sent(16 << 20, '\0');
    for (std::size_t i = 0; i < sent.size(); ++i) {
        sent[i] = static_cast<char>(i * 2654435761u >> 24);
    }
    std::string received;
    std::thread reader([&] {
        pause_ms(100);
        while (received.size() < sent.size() &&
               SocketSelect(made.peer.get(), nullptr, Blocking).Readable(made.peer.get())) {
            received += made.peer->ReceiveBytes();
        }
    });
    {
        const interruptions many;
        made.client.SendBytes(sent);
    }
    reader.join();
    EXPECT_TRUE(received == sent);
    // A write to a closed peer must not kill the host, but what a host does with that signal is its own affair.
    EXPECT_EQ(signal(SIGPIPE, SIG_DFL), SIG_DFL);
}

TEST(Signals, EndNoWait) {
    const fresh_server server;
    std::thread slow([&] {
        using namespace zorv::platform;
        const zorv::SOCKET client = new_socket();
        pause_ms(50);
        connect(client, htonl(INADDR_LOOPBACK), static_cast<std::uint16_t>(server.port));
        for (const char byte : std::string("slowly\n!")) {
            pause_ms(20);
            send(client, &byte, 1);
        }
        close_socket(client);
    });
    const interruptions many;
    const std::unique_ptr<Socket> accepted(server.socket->Accept());
    EXPECT_EQ(accepted->ReceiveLine(), "slowly\n");
    EXPECT_TRUE(SocketSelect(accepted.get(), nullptr, Blocking).Readable(accepted.get()));
    slow.join();
}

TEST(Signals, DoNotChangeWhatBecomesOfAConnection) {
    for (const bool made : {true, false}) {
        // The queue holds one connection: the next is made or refused only after that is out of the way and the
        // system tries again.
        const int listener = socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in address = {};
        address.sin_family = AF_INET;
        socklen_t size = sizeof address;
        ASSERT_EQ(listen(listener, 0), 0);
        ASSERT_EQ(getsockname(listener, reinterpret_cast<sockaddr*>(&address), &size), 0);
        const int port = ntohs(address.sin_port);
        const SocketClient first(localhost, port);
        std::thread later([&] {
            pause_ms(200);
            made ? close(accept(listener, nullptr, nullptr)) : close(listener);
        });
        {
            const interruptions many;
            EXPECT_EQ(thrown_by([&] { SocketClient(localhost, port); }), made ? "nothing" : refused);
        }
        later.join();
        if (made) {
            close(listener);
        }
    }
}

TEST(Errors, OfTheSystemAndOfSocketsAreKeptApart) {
    const std::int32_t before = live_sockets();
    EXPECT_EQ(thrown_by([] { SocketClient(localhost, free_port()); }), refused);
    errno = EDOM;
    // Too long to be a name, which is seen without asking anybody.
    const std::string unknown = thrown_by([] { SocketClient(std::string(300, 'x'), 1); });
    EXPECT_NE(unknown, refused);
    EXPECT_EQ(unknown.rfind("std::string ", 0), 0u);
    EXPECT_EQ(live_sockets(), before);
}
