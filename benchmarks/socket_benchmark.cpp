#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <string>
#include <thread>

#include "benchmarks/compare.h"
#include "zorv_tools/net/Socket.h"

namespace {

using zorv::Blocking;
using zorv::Socket;
using zorv::SocketClient;
using zorv::SocketSelect;
using zorv::SocketServer;

constexpr std::size_t block_size = std::size_t{64} * 1024;
constexpr int blocks = 1024;
constexpr int lines = 100000;
const std::string line = std::string(39, 'x') + "\n";

[[noreturn]] void give_up(const char* reason) {
    std::cerr << "socket_benchmark: " << reason << std::endl;
    std::exit(1);
}

/// Both ends of a connection of this machine, in the system's own terms.
struct bare_pair {
    int sender = -1;
    int receiver = -1;

    bare_pair() {
        const int listener = ::socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in address = {};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        auto* const bare_address = reinterpret_cast<sockaddr*>(&address);
        if (::bind(listener, bare_address, size) != 0) {
            give_up("no bare listener");
        }
        ::listen(listener, 1);
        ::getsockname(listener, bare_address, &size);
        sender = ::socket(AF_INET, SOCK_STREAM, 0);
        if (::connect(sender, bare_address, size) != 0) {
            give_up("no bare connection");
        }
        receiver = ::accept(listener, nullptr, nullptr);
        ::close(listener);
    }
    ~bare_pair() {
        ::close(sender);
        ::close(receiver);
    }
    bare_pair(const bare_pair&) = delete;
    bare_pair& operator=(const bare_pair&) = delete;
};

/// The same with the library at both ends.
struct our_pair {
    std::unique_ptr<SocketClient> sender;
    std::unique_ptr<Socket> receiver;

    our_pair() {
        for (int port = 20000; port < 20100 && !receiver; ++port) {
            try {
                SocketServer server(port, 1, Blocking);
                sender = std::make_unique<SocketClient>("127.0.0.1", port);
                receiver.reset(server.Accept());
            } catch (char*) {
                // The port is taken: the next one.
            }
        }
        if (!receiver) {
            give_up("no free port");
        }
    }
};

void send_all(int socket, const std::string& bytes) {
    for (std::size_t sent = 0; sent < bytes.size();) {
        const ssize_t count = ::send(socket, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
        if (count <= 0) {
            give_up("send failed");
        }
        sent += static_cast<std::size_t>(count);
    }
}

/// What ReceiveBytes does, without it.
std::string bare_receive_bytes(int socket) {
    std::string received;
    char buffer[1024];
    for (;;) {
        int readable = 0;
        if (::ioctl(socket, FIONREAD, &readable) != 0 || readable == 0) {
            return received;
        }
        const ssize_t count = ::recv(socket, buffer, static_cast<std::size_t>(std::min(readable, 1024)), 0);
        if (count <= 0) {
            return received;
        }
        received.append(buffer, static_cast<std::size_t>(count));
    }
}

std::string bare_receive_line(int socket) {
    std::string received;
    char byte = 0;
    while (::recv(socket, &byte, 1, 0) == 1) {
        received += byte;
        if (byte == '\n') {
            break;
        }
    }
    return received;
}

void compare_bytes() {
    const std::string block(block_size, 'b');
    const auto our_ends = std::make_shared<our_pair>();
    const auto ours = [our_ends, block] {
        std::thread sender([&] {
            for (int i = 0; i < blocks; ++i) {
                our_ends->sender->SendBytes(block);
            }
        });
        for (std::size_t received = 0; received < blocks * block_size;) {
            SocketSelect(our_ends->receiver.get(), nullptr, Blocking);
            received += our_ends->receiver->ReceiveBytes().size();
        }
        sender.join();
    };
    const auto bare_ends = std::make_shared<bare_pair>();
    const auto peer = [bare_ends, block] {
        std::thread sender([&] {
            for (int i = 0; i < blocks; ++i) {
                send_all(bare_ends->sender, block);
            }
        });
        for (std::size_t received = 0; received < blocks * block_size;) {
            pollfd waiting = {bare_ends->receiver, POLLIN, 0};
            ::poll(&waiting, 1, -1);
            received += bare_receive_bytes(bare_ends->receiver).size();
        }
        sender.join();
    };
    ZORV_COMPARE("SendBytes and ReceiveBytes, 64 MB in sends of 64 KB (bare calls)", 1.1, ours, peer);
}

void compare_lines() {
    std::string text;
    for (int i = 0; i < 1000; ++i) {
        text += line;
    }
    const auto our_ends = std::make_shared<our_pair>();
    const auto ours = [our_ends, text] {
        std::thread sender([&] {
            for (int i = 0; i < lines / 1000; ++i) {
                our_ends->sender->SendBytes(text);
            }
        });
        for (int i = 0; i < lines; ++i) {
            if (our_ends->receiver->ReceiveLine() != line) {
                give_up("a line is wrong");
            }
        }
        sender.join();
    };
    const auto bare_ends = std::make_shared<bare_pair>();
    const auto peer = [bare_ends, text] {
        std::thread sender([&] {
            for (int i = 0; i < lines / 1000; ++i) {
                send_all(bare_ends->sender, text);
            }
        });
        for (int i = 0; i < lines; ++i) {
            if (bare_receive_line(bare_ends->receiver) != line) {
                give_up("a line is wrong");
            }
        }
        sender.join();
    };
    ZORV_COMPARE("ReceiveLine, 100000 lines of 40 bytes (bare recv of one byte)", 1.1, ours, peer);
}

}  // namespace

void register_comparisons() {
    compare_bytes();
    compare_lines();
}
