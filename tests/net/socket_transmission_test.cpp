#include "zorv_tools/net/socket_transmission.h"

#include <gtest/gtest.h>

#include <chrono>
#include <fstream>
#include <iostream>
#include <numeric>
#include <string>
#include <thread>

#include "tests/net/sockets.h"
#include "tests/support/stream_capture.h"
#include "tests/support/temporary_directory.h"

using zorv::write_file_to_socket;
using zorv::write_string_to_socket;

namespace {

/// How long `action` takes in milliseconds.
double time_of(const std::function<void()>& action) {
    const auto start = std::chrono::steady_clock::now();
    action();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

}  // namespace

TEST(WriteFileToSocket, SendsFromWhereTheStreamStandsUpToAZeroByte) {
    std::string all_but_zero(255, '\0');
    std::iota(all_but_zero.begin(), all_but_zero.end(), '\1');
    const std::pair<std::string, std::string> cases[] = {
        {"", ""},
        {std::string("A\0B", 3), "A"},
        {all_but_zero, all_but_zero},
        {"line\r\nline\n", "line\r\nline\n"},
    };
    const temporary_directory folder;
    const fresh_server server;
    for (const auto& [content, sent] : cases) {
        std::ifstream file(folder.write("file", "before\n" + content), std::ios::binary);
        std::string before;
        std::getline(file, before);
        EXPECT_LT(time_of([&, &f = file] { write_file_to_socket(f, localhost, server.port); }), 450);
        EXPECT_EQ(server.receive_next(), sent);
        EXPECT_TRUE(file.is_open());
    }
    std::ifstream closed;
    write_file_to_socket(closed, localhost, server.port);
    EXPECT_EQ(server.receive_next(), "");
}

TEST(WriteFileToSocket, GoesThroughTheFileWhenThePeerIsGone) {
    const temporary_directory folder;
    const fresh_server server;
    std::ifstream file(folder.write("file", std::string(50000, 'x')), std::ios::binary);
    std::thread leaver([&] {
        zorv::SocketSelect(server.socket.get(), nullptr, zorv::Blocking);
        server.socket->Close();
    });
    write_file_to_socket(file, localhost, server.port);
    leaver.join();
    EXPECT_TRUE(file.eof());
}

TEST(WriteStringToSocket, SendsTheAnnouncementAndWaitsAfterTheClose) {
    const fresh_server server;
    for (const std::string name : {"bob", "", "O'<\xc3\xa9>"}) {
        std::string received;
        double until_close = 0;
        std::thread receiver([&] { until_close = time_of([&] { received = server.receive_next(); }); });
        const double until_return = time_of([&] { write_string_to_socket(name, localhost, server.port); });
        receiver.join();
        EXPECT_EQ(received, "<?xml version='1.0' encoding='utf-8'?><avatar name='" + name + "'/>");
        EXPECT_GE(until_return, 500);
        // Half a second less but for what a busy machine lets the receiver wait.
        EXPECT_LT(until_close, until_return - 50);
    }
}

TEST(SocketTransmission, AFailedConnectionIsOneLineAndNoWait) {
    const temporary_directory folder;
    std::ifstream file(folder.write("file", "content"));
    const std::string bad_name(300, 'x');
    const std::function<void()> calls[] = {
        [&] { write_file_to_socket(file, localhost, free_port()); },
        [&] { write_file_to_socket(file, bad_name, 1); },
        [&] { write_string_to_socket("bob", bad_name, 1); },
    };
    for (const auto& call : calls) {
        const stream_capture errors(std::cerr);
        EXPECT_LT(time_of(call), 450);
        const std::string text = errors.text();
        EXPECT_EQ(text.rfind("An error occured: ", 0), 0u) << text;
        EXPECT_GT(text.find('\n'), 18u);
        EXPECT_EQ(text.find('\n'), text.size() - 1);
    }
    EXPECT_EQ(file.tellg(), 0);
}
