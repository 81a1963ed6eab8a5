// Permit maps: the ports to which a port may forward. Given: one word a port, bit n = port n, read and
// written as a whole. The model's own choice: after a reset every port may forward to every port, and bits
// of ports that the unit does not have are kept.
#pragma once

#include <array>
#include <cstdint>
#include <nlohmann/json_fwd.hpp>

namespace zrsim
{

class Chip;

class Isolation
{
public:
    static constexpr uint32_t kPorts = 32;

    void attach(Chip &) {}
    void reset() { permit_.fill(kAll); }
    void dump(nlohmann::json &to) const;

    uint32_t read(uint32_t port, uint32_t *permitMap) const;
    uint32_t write(uint32_t port, uint32_t permitMap);
    bool permits(uint32_t from, uint32_t to) const { return (permit_[from] >> to & 1) != 0; }

private:
    static constexpr uint32_t kAll = 0xFFFFFFFF;
    std::array<uint32_t, kPorts> permit_{};
};

} // namespace zrsim
