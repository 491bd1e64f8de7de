#pragma once

/// @file
/// A thin object layer over TCP sockets (IPv4, stream).
///
/// Conventions shared by everything in this header:
///  - Sending never reports a failure. Receiving reports a failure, a closed peer and "nothing there" by what it
///    returns, and does not tell them apart. Only the set-up steps and the wait throw.
///  - What is thrown is plain text, no std::exception: a `char*` literal, or a `std::string` with the system's words
///    where a host does not resolve or a connection is not made.
///  - Copies share one handle, which is closed with its last sharer or by Close. A handle is never valid again after
///    its close: what is done with it then fails quietly, and touches nothing that the process has opened since.
///  - The counts are not synchronised. A host with several threads serialises construction, copying and destruction
///    of all its sockets; sending, receiving, waiting and Close on different sockets need no such care.
///  - Writing to a closed peer raises no signal, a signal does not make a call fail, and child processes inherit no
///    socket.

#include <cstdint>
#include <string>

#include "zorv_tools/core/export.h"

namespace zorv {

/// The platform's socket handle: WinSock's own on Windows, elsewhere a number that only this library understands (it
/// is no file descriptor).
using SOCKET = std::uint64_t;

/// Whether a call waits. Only NonBlocking is ever tested for; every other value acts as Blocking.
enum TypeSocket {
    Blocking,    ///< the call comes back when it has something to give; 0
    NonBlocking  ///< the call comes back at once; 1
};

/// A connected or listening stream socket. Hosts get one from SocketServer::Accept, or make one of the derived classes.
class ZORV_TOOLS_EXPORT Socket {
public:
    /// Shares the handle of @p other: what one of them receives the other does not.
    Socket(const Socket& other);

    /// Shares the handle of @p other, and releases nothing: what this object held before stays open for good, and the
    /// process-wide count of objects stays one too high, so that the socket library is not released any more. That is
    /// meant.
    Socket& operator=(Socket& other);

    /// Closes the handle if no other object shares it, and releases the socket library with the last object.
    virtual ~Socket();

    /// Closes the handle at once, for all that share it. Another thread that waits in a call on it comes back.
    void Close();

    /// All bytes that have arrived, without waiting. Empty if there are none, if the peer has closed, or on an error.
    std::string ReceiveBytes();

    /// One line with its newline (10). Without a newline, what came before the peer closed; empty on an error, which
    /// for a non-blocking socket includes a line that is not all there yet: its first part is lost. Carriage returns
    /// are kept. One system call a byte.
    std::string ReceiveLine();

    /// Sends @p bytes in one call, whose result is ignored: on a non-blocking socket a part of them may be lost. The
    /// length is passed on as a 32-bit integer.
    void SendBytes(const std::string& bytes);

    /// Sends @p line and a newline (10) in one call, whose result is ignored.
    void SendLine(std::string line);

protected:
    /// Makes a new socket, neither bound nor connected.
    /// @throws char* "Could not start WSA", "INVALID_SOCKET"
    Socket();

    /// Takes over @p handle.
    /// @throws char* "Could not start WSA"
    explicit Socket(SOCKET handle);

    SOCKET socket_ = 0;                  ///< the handle, which stays here after its close
    std::int32_t* ref_count_ = nullptr;  ///< number of objects that share the handle; shared by them all

private:
    friend class SocketServer;
    friend class SocketSelect;

    static void Start();
    static void End();

    static std::int32_t nofSockets_;  ///< live objects of the process, copies included
};

/// A connection to a server, always blocking.
class ZORV_TOOLS_EXPORT SocketClient : public Socket {
public:
    /// Resolves the host and connects to the first of its addresses.
    /// @param host a name or four numbers with dots
    /// @param port cut to 16 bits
    /// @throws std::string the text of `errno` if the host does not resolve (it may say nothing about the name), the
    ///         text of the socket library's own error if the connection is not made
    /// @throws char* as the constructor of Socket
    SocketClient(const std::string& host, int port);

    /// Shares the connection of @p other.
    SocketClient(const SocketClient& other) = default;
    /// As that of Socket: what this object held stays open.
    SocketClient& operator=(SocketClient& other) = default;
};

/// A listening socket on all interfaces. A port whose connections have just closed can be taken again at once, one that
/// somebody listens on cannot.
class ZORV_TOOLS_EXPORT SocketServer : public Socket {
public:
    /// Binds and listens. Each object uses up one handle more than its own, which stays open until the process ends.
    /// @param port        cut to 16 bits
    /// @param connections how many connections may wait to be accepted
    /// @param type        NonBlocking: Accept does not wait, nor do the sockets that it gives
    /// @throws char* "INVALID_SOCKET" if the port is taken, and as the constructor of Socket
    SocketServer(int port, int connections, TypeSocket type);

    /// Shares the listening socket of @p other.
    SocketServer(const SocketServer& other) = default;
    /// As that of Socket: what this object held stays open.
    SocketServer& operator=(SocketServer& other) = default;

    /// The next connection, which the caller deletes; null if the server is non-blocking and none is waiting. It may
    /// outlive the server.
    /// @throws char* "Invalid Socket" on every other error
    Socket* Accept();
};

/// Waits until one of at most two sockets is readable, which for a server means that a connection is waiting.
class ZORV_TOOLS_EXPORT SocketSelect {
public:
    /// Waits for as long as it takes or, with NonBlocking, looks and returns; nothing readable is no failure. A peer
    /// that has closed makes its socket readable too. The sockets stay the caller's.
    /// @param first  not null
    /// @param second may be null, and may be the same socket
    /// @param type   Blocking or NonBlocking
    /// @throws char* "Error in select", for instance for a closed socket
    SocketSelect(const Socket* first, const Socket* second, TypeSocket type);

    /// Whether @p socket was found readable. False for sockets that were not waited for.
    bool Readable(const Socket* socket) const;

private:
    /// The shape of WinSock's fd_set, whose header hosts are spared.
    struct handle_set {
        std::uint32_t count;
        SOCKET handles[64];
    };

    handle_set read_set_ = {};
};

}  // namespace zorv
