// Shared by all fuzz targets.
#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// Defines the function that libFuzzer calls with each input. A target checks its invariants with
/// the expectations of GoogleTest. A failed expectation ends the target like a crash.
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
