#include "zorv_tools/net/socket_transmission.h"

#include <chrono>
#include <iostream>
#include <thread>

#include "zorv_tools/net/Socket.h"

namespace zorv {

namespace {

void report(const std::string& error) {
    std::cerr << "An error occured: " << error << std::endl;
}

}  // namespace

// NOLINTNEXTLINE(performance-unnecessary-value-param)
void write_file_to_socket(std::ifstream& file, std::string host, int port) {
    try {
        SocketClient client(host, port);
        // Meant: a byte 0 ends the transmission as the end of the file does.
        for (int byte = file.get(); byte > 0; byte = file.get()) {
            client.SendBytes(std::string(1, static_cast<char>(byte)));
        }
        client.Close();
    } catch (const std::string& error) {
        report(error);
    }
}

// NOLINTNEXTLINE(performance-unnecessary-value-param)
void write_string_to_socket(std::string name, std::string host, int port) {
    try {
        const std::string header = "<?xml version='1.0' encoding='utf-8'?>";
        const std::string element = "<avatar name='" + name + "'/>";
        SocketClient client(host, port);
        client.SendBytes(header);
        client.SendBytes(element);
        client.Close();
        std::this_thread::sleep_for(std::chrono::milliseconds(500));
    } catch (const std::string& error) {
        report(error);
    }
}

}  // namespace zorv
