#include "sim/chip/drop_capture.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "sim/chip/chip.h"

namespace zrsim
{
namespace
{

constexpr uint16_t kSelectDrops = 25;
constexpr uint16_t kStart = 4;

} // namespace

void DropCapture::attach(Chip &chip)
{
    chip_ = &chip;
    chip.registers().onWrite(kRegControl, [this](uint16_t value) {
        running_ = value == kStart;
        if (running_)
            chip_->registers().preset(kRegResult, 0);
    });
}

void DropCapture::note(uint32_t port, uint32_t reason)
{
    if (!running_ || reason >= kReasons)
        return;
    Registers &registers = chip_->registers();
    const uint16_t select = registers.held(kRegSelect);
    const uint16_t bit = static_cast<uint16_t>(1U << reason);
    if (select == (port << 8 | kSelectDrops) && (registers.held(kRegMask) & bit) != 0)
        registers.preset(kRegResult, registers.held(kRegResult) | bit);
}

void DropCapture::dump(nlohmann::json &to) const
{
    if (!running_)
        return;
    to["port"] = chip_->registers().held(kRegSelect) >> 8;
    to["result"] = fmt::format("{:#x}", chip_->registers().held(kRegResult));
}

} // namespace zrsim
