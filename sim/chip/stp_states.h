// Spanning tree: which instance a VLAN belongs to, and each port's state in each instance. Given: VLANs
// are bound one by one and read back; chip state 1 is blocking and 3 forwarding. The model's own choice:
//   - 16 instances, VLAN ids 0 to 4095, ports 0 to 31; states 0 disabled and 2 learning exist besides;
//   - after a reset every VLAN is in instance 0 and every port forwards in every instance;
//   - a port takes part in learning in states 2 and 3.
#pragma once

#include <array>
#include <cstdint>
#include <nlohmann/json_fwd.hpp>

namespace zrsim
{

class Chip;

class StpStates
{
public:
    static constexpr uint32_t kInstances = 16;
    static constexpr uint32_t kVlans = 4096;
    static constexpr uint32_t kPorts = 32;
    enum State : uint8_t { kDisabled = 0, kBlocking = 1, kLearning = 2, kForwarding = 3 };

    uint32_t bind(uint32_t vlan, uint32_t instance);
    uint32_t instance(uint32_t vlan, uint32_t &instance) const;
    uint32_t setState(uint32_t instance, uint32_t port, uint32_t state);

    // The state of a port for the frames of a VLAN; both must exist.
    State state(uint32_t vlan, uint32_t port) const { return states_[instances_[vlan]][port]; }

    uint32_t instanceOf(uint32_t vlan) const { return instances_[vlan]; }
    static const char *name(State state);

    void attach(Chip &) {}
    void reset();
    void dump(nlohmann::json &to) const;

private:
    std::array<uint8_t, kVlans> instances_{};
    std::array<std::array<State, kPorts>, kInstances> states_{};
};

} // namespace zrsim
