#include "sim/board/board.h"

#include "platform/board.h"
#include "sim/board/clock.h"
#include "sim/gate.h"

#include <nlohmann/json.hpp>

#include <cerrno>
#include <cstdlib>
#include <string>

namespace zrsim
{
namespace
{

// The reset service's names of the chips, by unit.
constexpr std::array<uint32_t, kUnits> kResetIds = {0x00000000, 0x00B00000, 0x00B00001};

} // namespace

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
    cables.clear();
    boardClock() = {};
}

Board::Snapshot Board::snapshot() const
{
    Snapshot taken;
    for (const auto &chip : chips_)
        taken.push_back(chip->snapshot());
    return taken;
}

void Board::restore(const Snapshot &snapshot)
{
    for (uint32_t unit = 0; unit < kUnits; ++unit)
        chips_[unit]->restore(snapshot[unit]);
}

void Board::dump(nlohmann::json &to) const
{
    to["delayed"] = delayed;
    for (uint32_t unit = 0; unit < kUnits; ++unit)
        chips_[unit]->dump(to["units"][std::to_string(unit)]);
    const auto place = [](Cables::End end) {
        return std::to_string(end.unit) + '/' + std::to_string(end.port);
    };
    for (const auto &[from, other] : cables.all())
        if (from < other)
            to["cables"][place(from)] = place(other);
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
    return pass({__func__, {scope, chip, phase}}, [&]() -> uint32_t {
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
    });
}

void PAL_TaskDelay(uint32_t duration)
{
    pass({__func__, {duration}}, [&] { board().delayed += duration; });
}

// The stand-in's environment is the process's own: decimal, or hexadecimal with 0x.
uint32_t drv_env_num_get(const char *name, uint32_t *value, uint32_t sixteen)
{
    return pass({__func__, {name, value, sixteen}}, [&]() -> uint32_t {
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
    });
}
