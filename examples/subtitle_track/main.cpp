// Reads a subtitle track, prints it with frame numbers, changes it, writes it again and passes it on to another machine.

#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string>

#include "examples/support/options.h"
#include "track.h"
#include "transfer.h"

namespace {

int port_number(const std::string& text) {
    const bool digits =
        !text.empty() && text.size() < 6 && text.find_first_not_of("0123456789") == std::string::npos;
    const int port = digits ? std::stoi(text) : 0;
    if (port < 1 || port > 65535) {
        throw usage_error("\"" + text + "\" is no port number");
    }
    return port;
}

void listen(const options& given) {
    const std::string received = receive_file(port_number(given.text("listen")));
    if (!given.given("output")) {
        std::cout << received << std::flush;
        return;
    }
    const std::string path = given.text("output");
    std::ofstream out(path, std::ios::binary);
    out << received;
    out.close();
    if (!out) {
        throw std::runtime_error("cannot write \"" + path + "\"");
    }
}

reading read_input(const options& given) {
    const double rate = given.number("rate");
    const std::string path = given.operands().empty() ? "-" : given.operands()[0];
    if (path == "-") {
        return read_track(std::cin, rate);
    }
    std::ifstream in(path);
    if (!in) {
        throw std::runtime_error("cannot read \"" + path + "\"");
    }
    return read_track(in, rate);
}

/// Sends to HOST:PORT.
void send(const options& given) {
    const std::string receiver = given.text("send");
    const std::size_t colon = receiver.rfind(':');
    if (colon == std::string::npos || colon == 0) {
        throw usage_error("option --send needs HOST:PORT, not \"" + receiver + "\"");
    }
    send_file(given.text("output"), receiver.substr(0, colon), port_number(receiver.substr(colon + 1)));
}

int run(int argc, char** argv) {
    options given(
        "subtitle_track",
        "Prints a subtitle track with its frame numbers, and changes, writes, sends or receives it.",
        {{"rate", "FPS", "frames a second of the video", "23.976"},
         {"shift", "SECONDS", "move all times; what comes to lie before the video is dropped"},
         {"min-confidence", "VALUE", "drop blocks whose confidence is below VALUE"},
         {"output", "FILE", "write the track"},
         {"send", "HOST:PORT", "push the written file to a listener"},
         {"listen", "PORT", "receive one file and write it, to the standard output without --output"}},
        "[FILE, or - for the standard input]");
    if (!given.parse(argc, argv)) {
        return 0;
    }
    if (given.operands().size() > 1) {
        throw usage_error("only one track can be read (see --help)");
    }
    if (given.given("send") && !given.given("output")) {
        throw usage_error("option --send needs --output");
    }
    if (given.given("listen")) {
        listen(given);
        return 0;
    }

    reading input = read_input(given);
    if (given.given("shift")) {
        shift(input.blocks, given.number("shift"));
    }
    if (given.given("min-confidence")) {
        drop_below(input.blocks, given.number("min-confidence"));
    }
    check_text_forms(input);
    print(input.blocks, std::cout);
    if (given.given("output")) {
        write_track(input.blocks, given.text("output"));
    }
    if (given.given("send")) {
        send(given);
    }
    if (!input.report.empty()) {
        std::cerr << "subtitle_track: a bad block; those before it are kept\n" << input.report << std::flush;
        return 1;
    }
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    return run_program("subtitle_track", [&] { return run(argc, argv); });
}
