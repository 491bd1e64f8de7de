#include "zorv_tools/net/socket_transmission.h"

#include <gtest/gtest.h>

#include <chrono>
#include <fstream>
#include <iostream>
#include <string>
#include <thread>

#include "tests/net/plain_peer.h"
#include "tests/support/stream_capture.h"
#include "tests/support/temporary_directory.h"

using zorv::write_file_to_socket;
using zorv::write_string_to_socket;

namespace {

using clock_type = std::chrono::steady_clock;

const std::string localhost = "127.0.0.1";

}  // namespace

TEST(WriteFileToSocket, SendsFromWhereTheStreamStandsUpToAZeroByte) {
    std::string all_but_zero;
    for (int byte = 1; byte < 256; ++byte) {
        all_but_zero += static_cast<char>(byte);
    }
    const std::pair<std::string, std::string> cases[] = {
        {"", ""},
        {std::string("A\0B", 3), "A"},
        {std::string("\0B", 2), ""},
        {all_but_zero, all_but_zero},
        {"line\r\nline\n", "line\r\nline\n"},
    };
    const temporary_directory folder;
    plain_listener listener;
    for (const auto& [content, sent] : cases) {
        std::ifstream file(folder.write("file", "before\n" + content), std::ios::binary);
        std::string before;
        std::getline(file, before);
        write_file_to_socket(file, localhost, listener.port());
        EXPECT_EQ(listener.accept().receive(1000), sent);
        EXPECT_TRUE(file.is_open());
    }
    std::ifstream closed;
    write_file_to_socket(closed, localhost, listener.port());
    EXPECT_TRUE(listener.accept().ended());
}

TEST(WriteFileToSocket, GoesThroughTheFileWhenThePeerIsGone) {
    const temporary_directory folder;
    plain_listener listener;
    std::ifstream file(folder.write("file", std::string(50000, 'x')), std::ios::binary);
    std::thread leaver([&] { listener.accept().close(); });
    write_file_to_socket(file, localhost, listener.port());
    leaver.join();
    EXPECT_TRUE(file.eof());
}

TEST(WriteStringToSocket, SendsTheAnnouncementAndWaitsAfterTheClose) {
    plain_listener listener;
    for (const std::string name : {"bob", "", "O'<\xc3\xa9>"}) {
        std::string received;
        clock_type::time_point end;
        std::thread receiver([&] {
            plain_connection peer = listener.accept();
            received = peer.receive(1000);
            end = clock_type::now();
        });
        const clock_type::time_point start = clock_type::now();
        write_string_to_socket(name, localhost, listener.port());
        const clock_type::time_point back = clock_type::now();
        receiver.join();
        EXPECT_EQ(received, "<?xml version='1.0' encoding='utf-8'?><avatar name='" + name + "'/>");
        EXPECT_EQ(received.size(), 55 + name.size());
        EXPECT_GE(back - start, std::chrono::milliseconds(500));
        // Half a second but for what a busy machine lets the receiver wait.
        EXPECT_GE(back - end, std::chrono::milliseconds(50));
    }
}

TEST(SocketTransmission, AFailedConnectionIsOneLineAndNoWait) {
    const temporary_directory folder;
    const plain_listener nobody(-1);
    std::ifstream file(folder.write("file", "content"));
    const std::function<void()> calls[] = {
        [&] { write_file_to_socket(file, localhost, nobody.port()); },
        [&] { write_file_to_socket(file, std::string(300, 'x'), nobody.port()); },
        [&] { write_string_to_socket("bob", std::string(300, 'x'), nobody.port()); },
    };
    for (const auto& call : calls) {
        const stream_capture errors(std::cerr);
        const clock_type::time_point start = clock_type::now();
        call();
        EXPECT_LT(clock_type::now() - start, std::chrono::milliseconds(450));
        const std::string text = errors.text();
        EXPECT_EQ(text.rfind("An error occured: ", 0), 0u) << text;
        EXPECT_GT(text.find('\n'), 18u);
        EXPECT_EQ(text.find('\n'), text.size() - 1);
    }
    EXPECT_EQ(file.tellg(), 0);
}
