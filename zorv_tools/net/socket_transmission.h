#pragma once

/// @file
/// Two one-shot senders. Each makes one connection, pushes one message into it and closes it; the receiver knows the end
/// by the close. Nothing is read back and nothing is tried again.
///
/// A host that does not resolve or a connection that is not made is one line on the standard error stream that begins
/// with "An error occured: ", after which the call returns as usual. A failure in mid-transmission goes unnoticed. The
/// `char*` texts of Socket pass through to the caller. Calls on several threads are the caller's to serialise.

#include <fstream>
#include <string>

#include "zorv_tools/core/export.h"

namespace zorv {

/// Sends the bytes of @p file, from where it stands to its end or to the first byte 0, which is not sent. One system
/// call a byte, so it suits small files.
/// @param file opened by the caller, in text or binary mode, and left open; one that is not open sends nothing
/// @param host a name or four numbers with dots
/// @param port cut to 16 bits
ZORV_TOOLS_EXPORT void write_file_to_socket(std::ifstream& file, std::string host, int port);

/// Sends the announcement `<?xml version='1.0' encoding='utf-8'?><avatar name='NAME'/>` without a line end, and takes
/// half a second more after the close.
/// @param name sent as it is: apostrophes and angle brackets in it are not escaped
/// @param host a name or four numbers with dots
/// @param port cut to 16 bits
ZORV_TOOLS_EXPORT void write_string_to_socket(std::string name, std::string host, int port);

}  // namespace zorv
