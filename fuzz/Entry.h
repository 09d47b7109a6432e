#pragma once

#include <cstddef>
#include <cstdint>

/// What a fuzzer, or the test that replays its corpus, calls with each input.
extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const * data, std::size_t size);
