#include "sim/board/board.h"

#include "platform/board.h"
#include "sim/gate.h"

#include <nlohmann/json.hpp>

#include <cerrno>
#include <cstdlib>
#include <string>

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

// The reset service's names of the chips, by unit.
constexpr std::array<uint32_t, kUnits> kResetIds = {0x00000000, 0x00B00000, 0x00B00001};

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

Board::Board()
{
    for (uint32_t unit = 0; unit < kUnits; ++unit)
        chips_[unit] = std::make_unique<Chip>(unit);
}

void Board::reset()
{
    for (auto &chip : chips_)
        chip->powerOn();
    bus_.reset();
    delayed = 0;
}

void Board::dump(nlohmann::json &to) const
{
    to["delayed"] = delayed;
    for (uint32_t unit = 0; unit < kUnits; ++unit)
        chips_[unit]->dump(to["units"][std::to_string(unit)]);
}

Board &board()
{
    static Board instance;
    return instance;
}

} // namespace zrsim

using namespace zrsim;

// Phase 0 asserts and phase 1 releases the reset; a chip in reset loses all its settings.
uint32_t VESPER_ADPAPI_ResetChip(uint32_t scope, uint32_t chip, uint32_t phase)
{
    return pass(
        "VESPER_ADPAPI_ResetChip",
        [&]() -> uint32_t {
            constexpr uint32_t kNoSuchChip = 1;
            for (uint32_t unit = 0; unit < kUnits; ++unit) {
                if (kResetIds[unit] != chip || scope != 0xFFFFFFFF || phase > 1)
                    continue;
                if (phase == 0)
                    board().chip(unit).assertReset();
                else
                    board().chip(unit).releaseReset();
                return 0;
            }
            return kNoSuchChip;
        },
        scope, chip, phase);
}

void PAL_TaskDelay(uint32_t duration)
{
    pass(
        "PAL_TaskDelay", [&] { board().delayed += duration; }, duration);
}

uint32_t HAL_PORT_SmiWrite(uint32_t one, uint32_t address, uint32_t reg, uint16_t value)
{
    return pass(
        "HAL_PORT_SmiWrite",
        [&]() -> uint32_t {
            board().bus().write(address, reg, value);
            return 0;
        },
        one, address, reg, value);
}

uint32_t HAL_PORT_SmiRead(uint32_t one, uint32_t address, uint32_t reg, uint16_t *value)
{
    return pass(
        "HAL_PORT_SmiRead",
        [&]() -> uint32_t {
            *value = board().bus().read(address, reg);
            return 0;
        },
        one, address, reg, value);
}

// The stand-in's environment is the process's own: decimal, or hexadecimal with 0x.
uint32_t drv_env_num_get(const char *name, uint32_t *value, uint32_t sixteen)
{
    return pass(
        "drv_env_num_get",
        [&]() -> uint32_t {
            constexpr uint32_t kNotFound = 1;
            constexpr uint32_t kNotANumber = 2;
            const char *text = std::getenv(name);
            if (text == nullptr)
                return kNotFound;
            char *end = nullptr;
            errno = 0;
            const unsigned long long number = std::strtoull(text, &end, 0);
            if (*text == '\0' || *text == '-' || *end != '\0' || errno != 0 || number > UINT32_MAX)
                return kNotANumber;
            *value = static_cast<uint32_t>(number);
            return 0;
        },
        name, value, sixteen);
}
