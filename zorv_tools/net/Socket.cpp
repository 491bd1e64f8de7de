#include "zorv_tools/net/Socket.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <iterator>

#include "zorv_tools/net/internal/platform.h"

namespace zorv {

namespace {

/// Hosts catch these texts as `char*` or as `const char*`; a thrown `const char*` would pass the first by.
[[noreturn]] void throw_text(const char* text) {
    throw const_cast<char*>(text);
}

void check_handle(SOCKET handle) {
    if (handle == platform::no_handle) {
        throw_text("INVALID_SOCKET");
    }
}

}  // namespace

std::int32_t Socket::nofSockets_ = 0;

void Socket::Start() {
    if (nofSockets_ == 0 && platform::start_up() != 0) {
        throw_text("Could not start WSA");
    }
    ++nofSockets_;
}

void Socket::End() {
    platform::clean_up();
}

// When no socket can be made, the object that Start has counted in stays counted: no destructor runs for it.
Socket::Socket() {
    Start();
    socket_ = platform::new_socket();
    check_handle(socket_);
    ref_count_ = new std::int32_t(1);
}

Socket::Socket(SOCKET handle) : socket_(handle) {
    Start();
    ref_count_ = new std::int32_t(1);
}

Socket::Socket(const Socket& other) : socket_(other.socket_), ref_count_(other.ref_count_) {
    ++*ref_count_;
    ++nofSockets_;
}

// Meant: the target's former handle is not closed and its count not decremented, and the object is counted anew.
// NOLINTNEXTLINE(bugprone-unhandled-self-assignment,cert-oop54-cpp)
Socket& Socket::operator=(Socket& other) {
    ++*other.ref_count_;
    ref_count_ = other.ref_count_;
    socket_ = other.socket_;
    ++nofSockets_;
    return *this;
}

Socket::~Socket() {
    if (--*ref_count_ == 0) {
        platform::close_socket(socket_);
        delete ref_count_;
    }
    if (--nofSockets_ == 0) {
        platform::clean_up();
    }
}

// The field and the counts stay: the destructor closes the same handle again, which the platform ignores.
void Socket::Close() {
    platform::close_socket(socket_);
}

std::string Socket::ReceiveBytes() {
    std::string received;
    char buffer[1024];
    for (;;) {
        unsigned long readable = 0;
        if (!platform::count_readable(socket_, readable) || readable == 0) {
            return received;
        }
        const auto wanted = static_cast<int>(std::min<unsigned long>(readable, sizeof buffer));
        const int count = platform::receive(socket_, buffer, wanted);
        if (count <= 0) {
            return received;
        }
        received.append(buffer, static_cast<std::size_t>(count));
    }
}

std::string Socket::ReceiveLine() {
    std::string line;
    for (;;) {
        char byte = 0;
        switch (platform::receive(socket_, &byte, 1)) {
            case -1:
                return {};
            case 0:
                return line;
            default:
                break;
        }
        line += byte;
        if (byte == '\n') {
            return line;
        }
    }
}

void Socket::SendBytes(const std::string& bytes) {
    platform::send(socket_, bytes.data(), static_cast<std::int32_t>(bytes.size()));
}

void Socket::SendLine(std::string line) {
    line += '\n';
    platform::send(socket_, line.data(), static_cast<std::int32_t>(line.size()));
}

SocketClient::SocketClient(const std::string& host, int port) {
    platform::ipv4_address address;
    if (!platform::resolve(host.c_str(), address)) {
        throw platform::error_text(errno);
    }
    if (!platform::connect(socket_, address, static_cast<std::uint16_t>(port))) {
        throw platform::error_text(platform::last_error());
    }
}

SocketServer::SocketServer(int port, int connections, TypeSocket type) {
    // Meant: the base's handle is overwritten and never closed.
    socket_ = platform::new_socket();
    check_handle(socket_);
    if (type == NonBlocking) {
        platform::set_non_blocking(socket_);
    }
    if (!platform::bind(socket_, static_cast<std::uint16_t>(port))) {
        platform::close_socket(socket_);
        throw_text("INVALID_SOCKET");
    }
    platform::listen(socket_, connections);
}

Socket* SocketServer::Accept() {
    const SOCKET handle = platform::accept(socket_);
    if (handle != platform::no_handle) {
        return new Socket(handle);
    }
    if (platform::last_error() == platform::would_block) {
        return nullptr;
    }
    throw_text("Invalid Socket");
}

SocketSelect::SocketSelect(const Socket* first, const Socket* second, TypeSocket type) {
    read_set_.handles[read_set_.count++] = first->socket_;
    if (second != nullptr && read_set_.count < std::size(read_set_.handles)) {
        read_set_.handles[read_set_.count++] = second->socket_;
    }
    const platform::wait wait =
        type == NonBlocking ? platform::wait::a_microsecond : platform::wait::for_ever;
    if (!platform::keep_readable(read_set_.handles, read_set_.count, wait)) {
        throw_text("Error in select");
    }
}

bool SocketSelect::Readable(const Socket* socket) const {
    const SOCKET* const end = read_set_.handles + read_set_.count;
    return std::find(read_set_.handles, end, socket->socket_) != end;
}

}  // namespace zorv
