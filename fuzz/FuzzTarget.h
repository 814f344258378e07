#pragma once

#include <cstddef>
#include <cstdint>

/// What each fuzz target defines and libFuzzer or ReplayMain.cpp calls for one input.
/// @param data `size` bytes, valid until the call returns
/// @return 0
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);
