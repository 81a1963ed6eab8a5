// Random tests: a new seed with every run, printed with a failure; ZR_SEED repeats that run.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <random>

namespace zrtest
{

inline uint32_t randomSeed()
{
    const char *given = std::getenv("ZR_SEED");
    return given != nullptr ? static_cast<uint32_t>(std::strtoul(given, nullptr, 0)) : std::random_device{}();
}

} // namespace zrtest

// Declares the generator `name` for the rest of the test.
#define ZR_RANDOM(name)                                                                                        \
    const uint32_t name##Seed = ::zrtest::randomSeed();                                                        \
    SCOPED_TRACE(::testing::Message() << "repeat with ZR_SEED=" << name##Seed);                                \
    std::mt19937 name(name##Seed)
