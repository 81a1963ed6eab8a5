// Traffic counters of a chip's ports. Given: a port's record of 66 words, read and cleared as a whole; a
// 16-bit odrop count per port apart from it, behind a command register (port + 24, latch or clear) and a
// value register. The model's own choice: which words the board's traffic counts in; a latched count stays
// until the next latch; a clear of the record leaves the odrop count, and the other way round; traffic needs
// a link; a reset clears everything.
#pragma once

#include <array>
#include <cstdint>
#include <nlohmann/json_fwd.hpp>

#include "platform/chip_records.h"

namespace zrsim
{

class Chip;

class PortCounters
{
public:
    static constexpr uint32_t kPorts = 32;
    static constexpr uint32_t kWords = 66;

    enum class Direction { In, Out };
    enum class Kind { Unicast, Multicast, Broadcast };

    void attach(Chip &chip);
    void reset();
    void dump(nlohmann::json &to) const;

    uint32_t read(uint32_t port, SdkPortCounters &record) const;
    uint32_t clear(uint32_t port);

    void count(uint32_t port, Direction direction, Kind kind, uint32_t frames, uint32_t bytesPerFrame);
    void set(uint32_t port, uint32_t word, uint32_t value) { records_[port].word[word] = value; }
    void drop(uint32_t port, uint32_t frames) { odrop_[port] = static_cast<uint16_t>(odrop_[port] + frames); }

private:
    void command(uint16_t value);

    std::array<SdkPortCounters, kPorts> records_{};
    std::array<uint16_t, kPorts> odrop_{};
    uint16_t latched_ = 0;
};

} // namespace zrsim
