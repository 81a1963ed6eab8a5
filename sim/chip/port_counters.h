// Traffic counters of a chip's ports. Given: a port's record of 66 words, read and cleared as a whole; a
// 16-bit odrop count per port apart from it, behind a command register (port + 24, latch or clear) and a
// value register. The model's own choice: what the words count (sizes include the FCS; those of received frames
// by RMON's classes, RFC 2819), as far as frames can bring it about:
//   in:  0 octets (64 bits), 8 unicast, 62 multicast, 63 broadcast, 2 FCS errors, 4 undersize, 13 oversize,
//        9 dropped; 12 of 64 bytes, 14 up to 127, 15 up to 255, 16 up to 511, 17 up to 1023, 18 longer
//   out: 22 octets (64 bits), 33 unicast, 34 multicast, 35 broadcast
// A latched count stays until the next latch; a clear of the record leaves the odrop count, and the other way
// round; a reset clears everything.
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

    void attach(Chip &chip);
    void reset();
    void dump(nlohmann::json &to) const;

    uint32_t read(uint32_t port, SdkPortCounters &record) const;
    uint32_t clear(uint32_t port);

    enum class Kind { Unicast, Multicast, Broadcast };
    enum class Fate { Good, Fcs, Undersize, Oversize, Dropped };
    void received(uint32_t port, Kind kind, uint32_t bytes, Fate fate);
    void sent(uint32_t port, Kind kind, uint32_t bytes);
    void set(uint32_t port, uint32_t word, uint32_t value) { records_[port].word[word] = value; }
    void drop(uint32_t port, uint32_t frames) { odrop_[port] = static_cast<uint16_t>(odrop_[port] + frames); }

private:
    void command(uint16_t value);

    std::array<SdkPortCounters, kPorts> records_{};
    std::array<uint16_t, kPorts> odrop_{};
    uint16_t latched_ = 0;
};

} // namespace zrsim
