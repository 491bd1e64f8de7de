#pragma once

#include <string>
#include <vector>

#include "zorv_tools/config/configuration.h"

/// The value of a declared key as texts of one line each, with fields in the order of the file format and numbers
/// exact: one text for each entry of a key that grows line by line, else one. None for a special key that has no
/// object, or an empty list.
std::vector<std::string> value_lines(const zorv::configuration& store, const zorv::parameter& record);
