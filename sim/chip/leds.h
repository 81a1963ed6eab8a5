// Port LEDs. Given: three groups with a mode each, one blink rate. The model's own choice: groups above 2
// are refused; all is 0 after a reset.
#pragma once

#include <array>
#include <cstdint>
#include <nlohmann/json_fwd.hpp>

namespace zrsim
{

class Chip;

class Leds
{
public:
    uint32_t setMode(uint32_t group, uint32_t mode);
    void setBlinkRate(uint32_t rate) { blinkRate_ = rate; }

    uint32_t mode(uint32_t group) const { return modes_.at(group); }
    uint32_t blinkRate() const { return blinkRate_; }

    void attach(Chip &) {}
    void reset() { *this = Leds{}; }
    void dump(nlohmann::json &to) const;

private:
    std::array<uint32_t, 3> modes_{};
    uint32_t blinkRate_ = 0;
};

} // namespace zrsim
