// What a port has besides link and counters: SNR readings, forced LEDs, the gigabit PHY's link-scan
// work-around. Given: SNR readings are eight words, the status the fifth and the trap the seventh; LEDs
// are forced by two words. The model's own choice: the readings of a good cable until a command says
// otherwise, the two unnamed words 0; LED words are kept as written; the work-around changes nothing
// but a count of its runs; readings and work-around need a port with a PHY. A reset brings all of it back.
#pragma once

#include <array>
#include <cstdint>
#include <nlohmann/json_fwd.hpp>

#include "platform/chip_records.h"

namespace zrsim
{

class Chip;

class PortExtras
{
public:
    static constexpr uint32_t kPorts = 32;

    void attach(Chip &) {}
    void reset();
    void dump(nlohmann::json &to) const;

    uint32_t readSnr(uint32_t port, SdkPortSnr &snr) const;
    void setSnr(uint32_t port, const SdkPortSnr &snr) { ports_[port].snr = snr; }
    uint32_t forceLeds(uint32_t port, uint32_t a, uint32_t b);
    uint32_t scanLink(uint32_t port);

private:
    struct Port {
        SdkPortSnr snr = {{30, 30, 30, 30, 0, 0, 0, 0}};
        bool ledsForced = false;
        uint32_t ledA = 0;
        uint32_t ledB = 0;
        uint32_t linkScans = 0;
    };
    std::array<Port, kPorts> ports_{};
};

} // namespace zrsim
