// Why a port drops frames. Given: registers 0x3825 (selection: port << 8 | 25), 0x3826 (control, 4), 0x3827
// (mask), 0x3828 (result). The model's own choice: writing 4 to the control register starts a capture on the
// selected port and clears the result; from then on each drop at that port sets the bit of its reason in the
// result, unless the mask leaves that bit out; a selection that does not end in 25 captures nothing. The
// reasons' numbers are the model's own too (sim/pipeline/reasons.h).
#pragma once

#include <cstdint>
#include <nlohmann/json_fwd.hpp>

namespace zrsim
{

class Chip;

class DropCapture
{
public:
    static constexpr uint16_t kRegSelect = 0x3825;
    static constexpr uint16_t kRegControl = 0x3826;
    static constexpr uint16_t kRegMask = 0x3827;
    static constexpr uint16_t kRegResult = 0x3828;
    static constexpr uint32_t kReasons = 12;

    // A frame was dropped at a port.
    void note(uint32_t port, uint32_t reason);

    void attach(Chip &chip);
    // The registers are cleared with the chip's.
    void reset() { running_ = false; }
    void dump(nlohmann::json &to) const;

private:
    Chip *chip_ = nullptr;
    bool running_ = false;
};

} // namespace zrsim
