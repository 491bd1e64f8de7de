#pragma once

#include <string>

/// Pushes the file to a listener. Throws `std::runtime_error` where it could not be sent to its end.
void send_file(const std::string& path, const std::string& host, int port);

/// Waits for one connection and returns all that it brings until it is closed.
std::string receive_file(int port);
