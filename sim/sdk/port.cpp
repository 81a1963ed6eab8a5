// The SDK's port functions.
#include "sim/sdk/sdk.h"

using namespace zrsim;

namespace
{

// One function over a port that exists; the port is the second argument.
template <class Body> uint32_t onPort(const Shim &shim, Body &&body)
{
    return onChip(shim, [&](Chip &chip) -> uint32_t {
        const uint32_t port = shim.number(1);
        if (!Ports::exists(port))
            return kSdkBadPort;
        return statusOf([&] { return body(chip.ports); });
    });
}

void store(const Link &link, SdkMacLink &record)
{
    record.speed = link.speed;
    record.duplex = link.full;
    record.link = link.up;
}

} // namespace

// ---- which ports there are ------------------------------------------------------------------

uint32_t l2sw_switch_isExtPort(uint32_t unit, uint32_t port)
{
    return pass({__func__, {unit, port}}, [&] { return static_cast<uint32_t>(Ports::hasPhy(port)); });
}

uint32_t l2sw_switch_logPortMask_get(uint32_t unit, uint32_t *mask)
{
    return onChip({__func__, {unit, mask}}, [&](Chip &) { *mask = Ports::kLogicalPorts; });
}

// ---- chip-wide settings ---------------------------------------------------------------------

uint32_t l2sw_port_mtu_set(uint32_t unit, uint32_t index, uint32_t sameIndex)
{
    return onChip({__func__, {unit, index, sameIndex}}, [&](Chip &chip) -> uint32_t {
        if (index >= Ports::kFrameSizes || sameIndex != index)
            return kSdkBadArgument;
        chip.ports.frameSize = index;
        return kSdkOk;
    });
}

uint32_t l2sw_port_mtu_get(uint32_t unit, uint32_t *index)
{
    return onChip({__func__, {unit, index}}, [&](Chip &chip) { *index = chip.ports.frameSize; });
}

uint32_t l2sw_cpu_tagPort_set(uint32_t unit, uint32_t port, uint32_t mode)
{
    return onPort({__func__, {unit, port, mode}}, [&](Ports &ports) {
        ports.cpu.chosen = true;
        ports.cpu.port = port;
        ports.cpu.mode = mode;
    });
}

uint32_t l2sw_cpu_enable_set(uint32_t unit, uint32_t enable)
{
    return onChip({__func__, {unit, enable}}, [&](Chip &chip) { chip.ports.cpu.tag = enable != 0; });
}

uint32_t l2sw_cpu_tag_ethertype_set(uint32_t unit, uint32_t etherType)
{
    return onChip({__func__, {unit, etherType}}, [&](Chip &chip) -> uint32_t {
        if (etherType > UINT16_MAX)
            return kSdkBadArgument;
        chip.ports.cpu.etherType = etherType;
        return kSdkOk;
    });
}

// ---- enable, link, MAC ----------------------------------------------------------------------

uint32_t l2sw_port_adminEnable_set(uint32_t unit, uint32_t port, uint32_t enable)
{
    return onPort({__func__, {unit, port, enable}}, [&](Ports &ports) { ports.enable(port, enable != 0); });
}

uint32_t l2sw_port_adminEnable_get(uint32_t unit, uint32_t port, uint32_t *enable)
{
    return onPort({__func__, {unit, port, enable}}, [&](Ports &ports) { *enable = ports.enabled(port); });
}

uint32_t l2sw_port_macForceLinkExt_get(uint32_t unit, uint32_t port, uint32_t *flag, SdkMacLink *link)
{
    return onPort({__func__, {unit, port, flag, link}}, [&](Ports &ports) {
        *flag = ports.macForced(port);
        store(ports.forcedLink(port), *link);
    });
}

uint32_t l2sw_port_macStatus_get(uint32_t unit, uint32_t port, SdkMacLink *link)
{
    return onPort({__func__, {unit, port, link}}, [&](Ports &ports) { store(ports.macLink(port), *link); });
}

uint32_t l2sw_port_macLocalLoopbackEnable_set(uint32_t unit, uint32_t port, uint32_t on)
{
    return onPort({__func__, {unit, port, on}}, [&](Ports &ports) { ports.macLoop(port, on != 0); });
}

uint32_t l2sw_port_macLocalLoopbackEnable_get(uint32_t unit, uint32_t port, uint32_t *on)
{
    return onPort({__func__, {unit, port, on}}, [&](Ports &ports) { *on = ports.macLooped(port); });
}
