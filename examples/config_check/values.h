#pragma once

#include <string>

#include "zorv_tools/config/configuration.h"

/// The value of a declared key as text, on one line; a special key without an object gives the empty text.
std::string value_text(const zorv::configuration& store, const zorv::parameter& record);
