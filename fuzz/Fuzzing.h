// What the targets share.
#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// What libFuzzer calls with each input. A target's invariants are the expectations of the tests:
/// one that does not hold ends it, as a crash does.
#define FUZZ_TARGET(input)                                                         \
    static void fuzzOne(std::string_view input);                                   \
    extern "C" int LLVMFuzzerInitialize(int* /*count*/, char*** /*arguments*/) {   \
        ::testing::GTEST_FLAG(break_on_failure) = true;                            \
        return 0;                                                                  \
    }                                                                              \
    extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) { \
        fuzzOne({reinterpret_cast<const char*>(data), size});                      \
        return 0;                                                                  \
    }                                                                              \
    static void fuzzOne(std::string_view input)
