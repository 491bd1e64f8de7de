// Opens and closes 10,000 connections, moves 1 GB through one, and tells what the process held before and after.
// Ends with status 1 if a byte was lost or something was kept beyond the one handle that each server loses.

#include <fcntl.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <fstream>
#include <memory>
#include <string>
#include <thread>

#include "zorv_tools/net/Socket.h"

namespace {

using zorv::Blocking;
using zorv::Socket;
using zorv::SocketClient;
using zorv::SocketSelect;
using zorv::SocketServer;

constexpr int connections = 10000;
constexpr int servers = 100;
constexpr std::uint64_t bytes_to_move = std::uint64_t{1} << 30;
constexpr std::size_t block_size = std::size_t{64} * 1024;
const std::string localhost = "127.0.0.1";

int open_descriptors() {
    int count = 0;
    for (int number = 0; number < 65536; ++number) {
        count += ::fcntl(number, F_GETFD) == -1 ? 0 : 1;
    }
    return count;
}

/// Memory of the process in KB, 0 where the system does not tell.
long resident_memory() {
    std::ifstream file("/proc/self/status");
    for (std::string line; std::getline(file, line);) {
        if (line.rfind("VmRSS:", 0) == 0) {
            return std::stol(line.substr(6));
        }
    }
    return 0;
}

struct usage {
    int descriptors = open_descriptors();
    long memory = resident_memory();
};

std::unique_ptr<SocketServer> make_server(int& port) {
    for (port = 20000;; ++port) {
        try {
            return std::make_unique<SocketServer>(port, 4, Blocking);
        } catch (char*) {
            if (port == 20100) {
                throw;
            }
        }
    }
}

/// One line through each of `count` connections, the two ends closing first in turns.
bool open_and_close(SocketServer& server, int port, int count, std::uint64_t& sent, std::uint64_t& received) {
    for (int i = 0; i < count; ++i) {
        auto client = std::make_unique<SocketClient>(localhost, port);
        const std::unique_ptr<Socket> accepted(server.Accept());
        const std::string text = "connection " + std::to_string(i);
        client->SendLine(text);
        sent += text.size() + 1;
        if (i % 2 == 0) {
            client.reset();
        }
        const std::string line = accepted->ReceiveLine();
        received += line.size();
        if (line != text + "\n") {
            std::printf("connection %d received another line\n", i);
            return false;
        }
    }
    return true;
}

/// Byte number `index` of the stream; its period is prime, so that no block looks like another.
char byte_at(std::uint64_t index) {
    return static_cast<char>(index % 251);
}

bool move_bytes(SocketServer& server, int port, std::uint64_t& sent, std::uint64_t& received) {
    SocketClient client(localhost, port);
    const std::unique_ptr<Socket> accepted(server.Accept());
    std::thread sender([&] {
        std::string block(block_size, '\0');
        for (; sent < bytes_to_move; sent += block.size()) {
            for (std::size_t i = 0; i < block.size(); ++i) {
                block[i] = byte_at(sent + i);
            }
            client.SendBytes(block);
        }
        client.Close();
    });
    bool same = true;
    for (;;) {
        SocketSelect(accepted.get(), nullptr, Blocking);
        const std::string bytes = accepted->ReceiveBytes();
        // Readable, yet without a byte: the other end has closed.
        if (bytes.empty()) {
            break;
        }
        for (const char byte : bytes) {
            same = same && byte == byte_at(received);
            ++received;
        }
    }
    sender.join();
    return same;
}

/// Runs one step and prints its row. `lost` is the number of descriptors that it may keep.
template <class Step>
bool run(const char* name, int lost, const Step& step) {
    std::uint64_t sent = 0;
    std::uint64_t received = 0;
    const usage before;
    const bool same = step(sent, received);
    const usage after;
    const bool good = same && sent == received && after.descriptors == before.descriptors + lost;
    std::printf("%-28s %5d -> %5d %8ld -> %6ld KB %12llu -> %12llu   %s\n", name, before.descriptors,
                after.descriptors, before.memory, after.memory, static_cast<unsigned long long>(sent),
                static_cast<unsigned long long>(received), good ? "ok" : "FAILED");
    std::fflush(stdout);
    return good;
}

}  // namespace

int main() {
    std::printf("%-28s %14s %21s %28s\n", "", "descriptors", "memory", "bytes sent -> received");
    int port = 0;
    const bool lost = run("100 servers", servers, [&](std::uint64_t& sent, std::uint64_t& received) {
        bool same = true;
        for (int i = 0; i < servers; ++i) {
            const std::unique_ptr<SocketServer> server = make_server(port);
            same = open_and_close(*server, port, 1, sent, received) && same;
        }
        return same;
    });
    const std::unique_ptr<SocketServer> server = make_server(port);
    const bool opened = run("10,000 connections", 0, [&](std::uint64_t& sent, std::uint64_t& received) {
        return open_and_close(*server, port, connections, sent, received);
    });
    const bool moved = run("1 GB in one connection", 0, [&](std::uint64_t& sent, std::uint64_t& received) {
        return move_bytes(*server, port, sent, received);
    });
    return lost && opened && moved ? 0 : 1;
}
