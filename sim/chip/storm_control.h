// Storm control. Given: one switch for the unit; per port and storm type (0 to 3) a shared meter and an
// enable. The model's own choice: ports 0 to 31; enables other than 0 and 1 are refused; a reset switches
// everything off and binds meter 0.
#pragma once

#include <array>
#include <cstdint>
#include <nlohmann/json_fwd.hpp>

namespace zrsim
{

class Chip;

class StormControl
{
public:
    static constexpr uint32_t kPorts = 32;
    static constexpr uint32_t kTypes = 4;

    struct Binding {
        uint32_t meter = 0;
        bool enabled = false;
    };

    uint32_t enable(uint32_t on);
    uint32_t bind(uint32_t port, uint32_t type, uint32_t meter);
    uint32_t enablePort(uint32_t port, uint32_t type, uint32_t enable);

    bool enabled() const { return enabled_; }
    const Binding &binding(uint32_t port, uint32_t type) const { return bindings_.at(port).at(type); }

    void attach(Chip &) {}
    void reset();
    void dump(nlohmann::json &to) const;

private:
    bool enabled_ = false;
    std::array<std::array<Binding, kTypes>, kPorts> bindings_{};
};

} // namespace zrsim
