// The board's time: a number that is advanced by command. Nothing waits for it and nothing else moves it.
#pragma once

#include <cstdint>

namespace zrsim
{

struct Clock {
    uint64_t ns = 0;

    static constexpr uint64_t kSecond = 1'000'000'000;
};

inline Clock &boardClock()
{
    static Clock instance;
    return instance;
}

} // namespace zrsim
