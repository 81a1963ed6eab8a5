// The SMI bus. Given: each chip shows its indirect-access registers at one bus address (register 31 selects
// page 14; 23 takes the chip register's address, 24 the data, 21 the command 1 = read, 3 = write, 25 holds
// the data read), and units 1 and 2 are at addresses 0 and 29. The model's own choice: no device responds
// at other addresses, nor does a chip in reset, so the pulled-up bus reads 0xFFFF and
// writes are lost; a register reads back what was written; commands on another page do nothing; a
// register can be stuck at its value.
#pragma once

#include <array>
#include <cstdint>
#include <set>
#include <utility>

namespace zrsim
{

class Chip;

class SmiBus
{
public:
    void write(uint32_t address, uint32_t reg, uint16_t value);
    uint16_t read(uint32_t address, uint32_t reg) const;

    // Keeps register `reg` of the device at `address` at its present value.
    void stick(uint32_t address, uint32_t reg) { stuck_.insert({address, reg}); }
    void release() { stuck_.clear(); }
    void reset();

private:
    static constexpr uint32_t kRegisters = 32;
    Chip *answering(uint32_t address) const;

    // Indexed by unit; unit 0 is not on the bus.
    std::array<std::array<uint16_t, kRegisters>, 3> windows_{};
    std::set<std::pair<uint32_t, uint32_t>> stuck_;
};

} // namespace zrsim
