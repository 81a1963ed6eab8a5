// Permit maps: the ports to which a port may forward. Given: one word a port, bit n = port n, read and
// written as a whole. The model's own choice: after a reset every port may forward to every port, itself
// among them, and bits of ports that do not exist are kept as written.
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
    void reset();
    void dump(nlohmann::json &to) const;

    uint32_t read(uint32_t port, uint32_t &permitMap) const;
    uint32_t write(uint32_t port, uint32_t permitMap);
    bool permits(uint32_t from, uint32_t to) const { return (permit_[from] >> to & 1) != 0; }

private:
    std::array<uint32_t, kPorts> permit_{};
};

} // namespace zrsim
