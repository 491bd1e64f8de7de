#pragma once

/// @file
/// What the tests of sockets share. Nothing here gives up: time_limit.cpp ends a test that waits in vain.

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "zorv_tools/net/Socket.h"

const std::string localhost = "127.0.0.1";

void pause_ms(int milliseconds);

/// The library's count of its objects.
std::int32_t live_sockets();

/// What `action` throws: the text behind its type, or "nothing".
std::string thrown_by(const std::function<void()>& action);

/// A port that nobody listens on, and that the system does not give to clients.
int free_port();

/// Tries every operation there is on a socket that has been closed, a second close included.
void use_after_close(zorv::Socket& closed);

/// A server on a port that was free.
struct fresh_server {
    explicit fresh_server(zorv::TypeSocket type = zorv::Blocking);

    /// The next connection, be the server one that waits or not.
    std::unique_ptr<zorv::Socket> accept() const;

    /// All that the next connection brings before its end. Makes no object, whose count is for one thread alone.
    std::string receive_next() const;

    struct open_server : zorv::SocketServer {
        using zorv::SocketServer::socket_;
        using zorv::SocketServer::SocketServer;
    };
    int port = 0;
    std::unique_ptr<open_server> socket;
};

/// A connection within this process.
struct connection {
    fresh_server server;
    zorv::SocketClient client{localhost, server.port};
    std::unique_ptr<zorv::Socket> peer = server.accept();
};
