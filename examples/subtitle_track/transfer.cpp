#include "transfer.h"

#include <fstream>
#include <iostream>
#include <memory>
#include <stdexcept>

#include "zorv_tools/net/Socket.h"
#include "zorv_tools/net/socket_transmission.h"

void send_file(const std::string& path, const std::string& host, int port) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        throw std::runtime_error("cannot read \"" + path + "\"");
    }
    zorv::write_file_to_socket(file, host, port);
    // The sender returns nothing. It comes to the end of the file unless there was no connection, or a byte 0 in the
    // file, behind which it sends nothing.
    if (!file.eof()) {
        throw std::runtime_error("\"" + path + "\" was not sent to its end");
    }
}

std::string receive_file(int port) {
    zorv::SocketServer server(port, 1, zorv::Blocking);
    std::cerr << "listening on port " << port << std::endl;
    const zorv::SocketSelect pending(&server, nullptr, zorv::Blocking);
    const std::unique_ptr<zorv::Socket> connection(server.Accept());

    std::string received;
    for (;;) {
        // A connection that is readable and gives nothing has been closed by its peer.
        const zorv::SocketSelect arrived(connection.get(), nullptr, zorv::Blocking);
        const std::string bytes = connection->ReceiveBytes();
        if (bytes.empty()) {
            return received;
        }
        received += bytes;
    }
}
