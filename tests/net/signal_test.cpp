#include <gtest/gtest.h>
#include <pthread.h>
#include <signal.h>
#include <sys/time.h>

#include <atomic>
#include <cerrno>
#include <cstring>
#include <functional>
#include <memory>
#include <string>
#include <system_error>
#include <thread>

#include "tests/net/plain_peer.h"
#include "zorv_tools/net/Socket.h"

using zorv::Blocking;
using zorv::Socket;
using zorv::SocketClient;
using zorv::SocketSelect;

namespace {

const std::string localhost = "127.0.0.1";

std::atomic<int> alarms{0};

/// Interrupts the calls of the thread that made it every millisecond. Threads that are to be spared are started by
/// `undisturbed`.
class alarm_clock {
public:
    alarm_clock() {
        struct sigaction action = {};
        action.sa_handler = [](int) { ++alarms; };
        sigaction(SIGALRM, &action, &old_);
        alarms = 0;
        set(1000);
    }
    ~alarm_clock() {
        set(0);
        sigaction(SIGALRM, &old_, nullptr);
        EXPECT_GT(alarms, 20);
    }
    alarm_clock(const alarm_clock&) = delete;
    alarm_clock& operator=(const alarm_clock&) = delete;

private:
    static void set(int microseconds) {
        const itimerval every = {{0, microseconds}, {0, microseconds}};
        setitimer(ITIMER_REAL, &every, nullptr);
    }

    struct sigaction old_ = {};
};

std::thread undisturbed(const std::function<void()>& work) {
    sigset_t alarm_only;
    sigset_t old;
    sigemptyset(&alarm_only);
    sigaddset(&alarm_only, SIGALRM);
    pthread_sigmask(SIG_BLOCK, &alarm_only, &old);
    std::thread thread(work);
    pthread_sigmask(SIG_SETMASK, &old, nullptr);
    return thread;
}

}  // namespace

TEST(Signals, WritingToAClosedPeerRaisesNone) {
    struct sigaction before = {};
    sigaction(SIGPIPE, nullptr, &before);
    ASSERT_EQ(before.sa_handler, SIG_DFL);
    plain_listener listener;
    SocketClient client(localhost, listener.port());
    listener.accept().close();
    for (int i = 0; i < 20; ++i) {
        client.SendBytes("x");
        client.SendLine("y");
        pause_ms(1);
    }
    struct sigaction after = {};
    sigaction(SIGPIPE, nullptr, &after);
    EXPECT_EQ(after.sa_handler, SIG_DFL);
}

TEST(Signals, LoseNoByteOfALongSend) {
    plain_listener listener;
    SocketClient client(localhost, listener.port());
    plain_connection peer = listener.accept();
    std::string sent(16 << 20, '\0');
    for (std::size_t i = 0; i < sent.size(); ++i) {
        sent[i] = static_cast<char>(i * 2654435761u >> 24);
    }
    std::string received;
    std::thread reader = undisturbed([&] {
        while (received.size() < sent.size()) {
            const std::string part =
                peer.receive(std::min<std::size_t>(1 << 18, sent.size() - received.size()));
            received += part;
            if (part.empty()) {
                return;
            }
            pause_ms(3);
        }
    });
    {
        const alarm_clock clock;
        client.SendBytes(sent);
        client.Close();
    }
    reader.join();
    EXPECT_TRUE(received == sent) << received.size();
}

TEST(Signals, EndNoWait) {
    const fresh_server server(Blocking);
    std::thread slow = undisturbed([&] {
        pause_ms(50);
        plain_connection peer = plain_connection::to(server.port);
        for (const char byte : std::string("slowly\n!")) {
            pause_ms(20);
            peer.send(std::string(1, byte));
        }
        peer.receive(1);
    });
    {
        const alarm_clock clock;
        const std::unique_ptr<Socket> accepted(server.socket->Accept());
        EXPECT_EQ(accepted->ReceiveLine(), "slowly\n");
        EXPECT_TRUE(SocketSelect(accepted.get(), nullptr, Blocking).Readable(accepted.get()));
    }
    slow.join();
}

TEST(Signals, DoNotStopAConnectionFromBeingMade) {
    // The queue holds one connection: the next is made only after that has been accepted and the system tries again.
    plain_listener listener(0);
    plain_connection first = plain_connection::to(listener.port());
    std::thread acceptor = undisturbed([&] {
        pause_ms(200);
        listener.accept();
    });
    {
        const alarm_clock clock;
        SocketClient client(localhost, listener.port());
        client.SendBytes("through");
    }
    acceptor.join();
    EXPECT_EQ(listener.accept().receive(7), "through");
}

TEST(Errors, OfTheSystemAndOfSocketsAreKeptApart) {
    const plain_listener nobody(-1);
    const std::string refused = std::generic_category().message(ECONNREFUSED);
    EXPECT_EQ(thrown_by([&] { SocketClient(localhost, nobody.port()); }), "std::string " + refused);
    errno = EDOM;
    const std::string unknown = thrown_by([&] { SocketClient(std::string(300, 'x'), 1); });
    EXPECT_NE(unknown, "std::string " + refused);
}
