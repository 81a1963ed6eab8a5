#include "sim/board/smi_bus.h"

#include "platform/board.h"
#include "sim/board/board.h"
#include "sim/gate.h"

namespace zrsim
{
namespace
{

constexpr uint32_t kPage = 31;
constexpr uint32_t kAccessPage = 14;
constexpr uint32_t kAddress = 23;
constexpr uint32_t kWriteData = 24;
constexpr uint32_t kCommand = 21;
constexpr uint32_t kReadData = 25;
constexpr uint16_t kReadCommand = 1;
constexpr uint16_t kWriteCommand = 3;
constexpr uint16_t kPulledUp = 0xFFFF;

constexpr uint32_t kNotOnBus = 0;
uint32_t unitAt(uint32_t address)
{
    if (address == 0)
        return 1;
    return address == 29 ? 2 : kNotOnBus;
}

} // namespace

Chip *SmiBus::answering(uint32_t address) const
{
    const uint32_t unit = unitAt(address);
    if (unit == kNotOnBus)
        return nullptr;
    Chip &chip = board().chip(unit);
    return chip.inReset() ? nullptr : &chip;
}

void SmiBus::write(uint32_t address, uint32_t reg, uint16_t value)
{
    Chip *chip = answering(address);
    if (chip == nullptr || reg >= kRegisters || stuck_.contains({address, reg}))
        return;
    auto &window = windows_[unitAt(address)];
    window[reg] = value;
    if (reg != kCommand || window[kPage] != kAccessPage)
        return;
    if (value == kReadCommand)
        window[kReadData] = chip->registers().read(window[kAddress]);
    else if (value == kWriteCommand)
        chip->registers().write(window[kAddress], window[kWriteData]);
}

uint16_t SmiBus::read(uint32_t address, uint32_t reg) const
{
    return answering(address) == nullptr || reg >= kRegisters ? kPulledUp : windows_[unitAt(address)][reg];
}

void SmiBus::reset()
{
    windows_ = {};
    stuck_.clear();
}

} // namespace zrsim

using namespace zrsim;

uint32_t HAL_PORT_SmiWrite(uint32_t one, uint32_t address, uint32_t reg, uint16_t value)
{
    return pass({__func__, {one, address, reg, value}}, [&]() -> uint32_t {
        board().bus().write(address, reg, value);
        return 0;
    });
}

uint32_t HAL_PORT_SmiRead(uint32_t one, uint32_t address, uint32_t reg, uint16_t *value)
{
    return pass({__func__, {one, address, reg, value}}, [&]() -> uint32_t {
        *value = board().bus().read(address, reg);
        return 0;
    });
}
