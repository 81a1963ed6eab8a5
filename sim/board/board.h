// The board: three chips, the SMI bus between them and the host, time.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <vector>

#include "sim/board/cables.h"
#include "sim/board/smi_bus.h"
#include "sim/chip/chip.h"

namespace zrsim
{

constexpr uint32_t kUnits = 3;

class Board
{
public:
    Board();
    // `unit` is 0 to 2.
    Chip &chip(uint32_t unit) { return *chips_[unit]; }
    const Chip &chip(uint32_t unit) const { return *chips_[unit]; }
    SmiBus &bus() { return bus_; }
    Cables cables;

    // Ticks that the library asked to be delayed, all in all.
    uint64_t delayed = 0;

    using Snapshot = std::vector<Chip::Snapshot>;
    Snapshot snapshot() const;
    void restore(const Snapshot &snapshot);

    void reset();
    void dump(nlohmann::json &to) const;

private:
    std::array<std::unique_ptr<Chip>, kUnits> chips_;
    SmiBus bus_;
};

Board &board();

} // namespace zrsim
