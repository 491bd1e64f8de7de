#include "tests/net/sockets.h"

#include <gtest/gtest.h>

#include <chrono>
#include <random>
#include <thread>

#include "zorv_tools/net/internal/platform.h"

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

void pause_ms(int milliseconds) {
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

std::string thrown_by(const std::function<void()>& action) {
    try {
        action();
    } catch (char* text) {
        return "char* " + std::string(text);
    } catch (const std::string& text) {
        return "std::string " + text;
    }
    return "nothing";
}

int free_port() {
    return fresh_server().port;
}

void use_after_close(zorv::Socket& closed) {
    closed.Close();
    closed.SendBytes("astray");
    closed.SendLine("astray");
    EXPECT_EQ(closed.ReceiveBytes(), "");
    EXPECT_EQ(closed.ReceiveLine(), "");
    EXPECT_EQ(thrown_by([&] { zorv::SocketSelect(&closed, nullptr, zorv::Blocking); }),
              "char* Error in select");
}

fresh_server::fresh_server(zorv::TypeSocket type) {
    while (!socket) {
        port = 20000 + static_cast<int>(std::random_device()() % 10000);
        thrown_by([&] { socket = std::make_unique<open_server>(port, 16, type); });
    }
}

std::unique_ptr<zorv::Socket> fresh_server::accept() const {
    std::unique_ptr<zorv::Socket> accepted;
    while (!accepted) {
        pause_ms(1);
        accepted.reset(socket->Accept());
    }
    return accepted;
}

std::string fresh_server::receive_next() const {
    const zorv::SOCKET peer = zorv::platform::accept(socket->socket_);
    std::string received;
    char byte = 0;
    while (zorv::platform::receive(peer, &byte, 1) == 1) {
        received += byte;
    }
    zorv::platform::close_socket(peer);
    return received;
}
