#pragma once

#include <cstddef>
#include <cstdint>

/// Linked into the harnesses whose inputs are JSON: half of the changes that libFuzzer makes are those of a value for
/// another one, so that what comes out is JSON again.
extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t most,
                                               unsigned int seed);
