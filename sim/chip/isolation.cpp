#include "sim/chip/isolation.h"

#include <nlohmann/json.hpp>

#include "sim/chip/chip.h"
#include "sim/chip/port_list.h"
#include "sim/chip/status.h"

namespace zrsim
{

void Isolation::reset()
{
    permit_.fill(Ports::kLogicalPorts);
}

uint32_t Isolation::read(uint32_t port, uint32_t &permitMap) const
{
    if (!Ports::exists(port))
        return kSdkBadPort;
    permitMap = permit_[port];
    return kSdkOk;
}

uint32_t Isolation::write(uint32_t port, uint32_t permitMap)
{
    if (!Ports::exists(port))
        return kSdkBadPort;
    permit_[port] = permitMap;
    return kSdkOk;
}

void Isolation::dump(nlohmann::json &to) const
{
    for (uint32_t port = 0; port < kPorts; ++port)
        if (permit_[port] != Ports::kLogicalPorts)
            to["ports"][std::to_string(port)]["reaches"] = portList(permit_[port]);
}

} // namespace zrsim
