//! [program]
#include <iostream>
#include <memory>
#include <string>

#include "zorv_tools/net/Socket.h"

// The first free port from 20000 on. What is thrown is plain text, no std::exception.
std::unique_ptr<zorv::SocketServer> listen(int& port) {
    for (port = 20000; port < 20100; ++port) {
        try {
            return std::make_unique<zorv::SocketServer>(port, 5, zorv::Blocking);
        } catch (char* reason) {
            std::cerr << "port " << port << ": " << reason << std::endl;
        }
    }
    return nullptr;
}

int main() {
    int port = 0;
    const std::unique_ptr<zorv::SocketServer> server = listen(port);
    if (!server) {
        return 1;
    }
    try {
        // The connection is made at once and waits in the server's queue, so one thread will do.
        zorv::SocketClient client("127.0.0.1", port);
        const std::unique_ptr<zorv::Socket> peer(server->Accept());

        client.SendLine("position 320 240");
        const std::string request = peer->ReceiveLine();
        peer->SendLine("seen");
        const std::string answer = client.ReceiveLine();
        std::cout << request << answer;

        // An empty line without a newline: nothing more comes.
        client.Close();
        const bool ended = peer->ReceiveLine().empty();
        return request == "position 320 240\n" && answer == "seen\n" && ended ? 0 : 1;
    } catch (const std::string& reason) {
        std::cerr << reason << std::endl;
    } catch (char* reason) {
        std::cerr << reason << std::endl;
    }
    return 1;
}
//! [program]
