#pragma once

/// @file
/// The far end of a connection, made with the system's own calls and nothing of the library. Everything here gives up
/// after ten seconds, so that a fault shows as a failed test and not as one that hangs.

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <thread>

#include "zorv_tools/net/Socket.h"

/// The system's socket, closed with this object.
class plain_socket {
public:
    explicit plain_socket(std::intptr_t number);
    plain_socket(plain_socket&& other) noexcept;
    plain_socket& operator=(plain_socket&&) = delete;
    ~plain_socket();

    void close();

protected:
    std::intptr_t number_;
};

class plain_connection : public plain_socket {
public:
    using plain_socket::plain_socket;

    /// Connects to a port of this machine.
    static plain_connection to(int port);

    void send(const std::string& bytes);

    /// The next `count` bytes, or fewer if no more come.
    std::string receive(std::size_t count);

    /// Whether the stream is at its end.
    bool ended();
};

class plain_listener : public plain_socket {
public:
    /// On a free port of this machine. With a negative backlog the port is held, but nobody listens.
    explicit plain_listener(int backlog = 16);

    int port() const;
    plain_connection accept();
};

/// The library's count of its objects.
std::int32_t live_sockets();

/// Whether a new socket could be made just now, which on Windows needs the socket library to be started.
bool system_makes_sockets();

/// Tries until `condition` holds.
inline bool eventually(const std::function<bool()>& condition) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (std::chrono::steady_clock::now() < end) {
        if (condition()) {
            return true;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return false;
}

inline void pause_ms(int milliseconds) {
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

/// What `action` throws: the text behind its type, or "nothing".
inline std::string thrown_by(const std::function<void()>& action) {
    try {
        action();
    } catch (char* text) {
        return "char* " + std::string(text);
    } catch (const std::string& text) {
        return "std::string " + text;
    }
    return "nothing";
}

/// Tries every operation there is on a socket that has been closed, a second close included.
void use_after_close(zorv::Socket& closed);

/// A server of the library on a port that was free.
struct fresh_server {
    explicit fresh_server(zorv::TypeSocket type) {
        for (int attempt = 0; !socket; ++attempt) {
            port = plain_listener().port();
            try {
                socket = std::make_unique<zorv::SocketServer>(port, 16, type);
            } catch (char*) {
                // Another program was quicker to take the port.
                if (attempt == 20) {
                    throw;
                }
            }
        }
    }

    std::unique_ptr<zorv::Socket> accept() const {
        std::unique_ptr<zorv::Socket> accepted;
        eventually([&] {
            accepted.reset(socket->Accept());
            return accepted != nullptr;
        });
        return accepted;
    }

    int port = 0;
    std::unique_ptr<zorv::SocketServer> socket;
};
