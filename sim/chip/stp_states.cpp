#include "sim/chip/stp_states.h"

#include <nlohmann/json.hpp>

#include <string>

#include "sim/chip/status.h"

namespace zrsim
{
namespace
{

constexpr const char *kStateNames[] = {"disabled", "blocking", "learning", "forwarding"};

} // namespace

const char *StpStates::name(State state)
{
    return kStateNames[state];
}

void StpStates::reset()
{
    instances_.fill(0);
    for (auto &ports : states_)
        ports.fill(kForwarding);
}

uint32_t StpStates::bind(uint32_t vlan, uint32_t instance)
{
    if (vlan >= kVlans || instance >= kInstances)
        return kSdkBadArgument;
    instances_[vlan] = static_cast<uint8_t>(instance);
    return kSdkOk;
}

uint32_t StpStates::instance(uint32_t vlan, uint32_t &instance) const
{
    if (vlan >= kVlans)
        return kSdkBadArgument;
    instance = instances_[vlan];
    return kSdkOk;
}

uint32_t StpStates::setState(uint32_t instance, uint32_t port, uint32_t state)
{
    if (port >= kPorts)
        return kSdkBadPort;
    if (instance >= kInstances || state > kForwarding)
        return kSdkBadArgument;
    states_[instance][port] = static_cast<State>(state);
    return kSdkOk;
}

// VLANs outside instance 0 and ports that do not forward.
void StpStates::dump(nlohmann::json &to) const
{
    for (uint32_t vlan = 0; vlan < kVlans; ++vlan)
        if (instances_[vlan] != 0)
            to["vlans"][std::to_string(vlan)]["instance"] = instances_[vlan];
    for (uint32_t instance = 0; instance < kInstances; ++instance)
        for (uint32_t port = 0; port < kPorts; ++port)
            if (State state = states_[instance][port]; state != kForwarding)
                to["instances"][std::to_string(instance)]["ports"][std::to_string(port)] = kStateNames[state];
}

} // namespace zrsim
