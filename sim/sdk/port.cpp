// The chip SDK's port functions over the port model.
#include "sim/chip/ports.h"

#include "sim/chip/chip.h"
#include "sim/sdk/sdk.h"

using namespace zrsim;

namespace
{

// A function over a port that exists.
template <class Body, class... Args>
uint32_t onPort(const char *name, uint32_t unit, uint32_t port, Body &&body, const Args &...args)
{
    return onChip(
        name, unit,
        [&](Chip &chip) -> uint32_t { return Ports::exists(port) ? body(chip.ports) : kSdkBadPort; }, port,
        args...);
}

// A function over the PHY of a port that has one.
template <class Body, class... Args>
uint32_t onPhy(const char *name, uint32_t unit, uint32_t port, Body &&body, const Args &...args)
{
    return onChip(
        name, unit,
        [&](Chip &chip) -> uint32_t { return Ports::hasPhy(port) ? body(chip.ports.phy(port)) : kSdkBadPort; },
        port, args...);
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
    return pass(
        "l2sw_switch_isExtPort", [&] { return static_cast<uint32_t>(Ports::hasPhy(port)); }, unit, port);
}

uint32_t l2sw_switch_logPortMask_get(uint32_t unit, uint32_t *mask)
{
    return onChip(
        "l2sw_switch_logPortMask_get", unit,
        [&](Chip &) -> uint32_t {
            if (mask == nullptr)
                return kSdkNull;
            *mask = Ports::kLogicalPorts;
            return kSdkOk;
        },
        mask);
}

// ---- chip-wide settings ---------------------------------------------------------------------

uint32_t l2sw_port_mtu_set(uint32_t unit, uint32_t index, uint32_t sameIndex)
{
    return onChip(
        "l2sw_port_mtu_set", unit,
        [&](Chip &chip) -> uint32_t {
            if (index >= Ports::kFrameSizes || sameIndex != index)
                return kSdkBadArgument;
            chip.ports.frameSize = index;
            return kSdkOk;
        },
        index, sameIndex);
}

uint32_t l2sw_port_mtu_get(uint32_t unit, uint32_t *index)
{
    return onChip(
        "l2sw_port_mtu_get", unit,
        [&](Chip &chip) -> uint32_t {
            if (index == nullptr)
                return kSdkNull;
            *index = chip.ports.frameSize;
            return kSdkOk;
        },
        index);
}

uint32_t l2sw_cpu_tagPort_set(uint32_t unit, uint32_t port, uint32_t mode)
{
    return onPort(
        "l2sw_cpu_tagPort_set", unit, port,
        [&](Ports &ports) {
            ports.cpu.chosen = true;
            ports.cpu.port = port;
            ports.cpu.mode = mode;
            return kSdkOk;
        },
        mode);
}

uint32_t l2sw_cpu_enable_set(uint32_t unit, uint32_t enable)
{
    return onChip(
        "l2sw_cpu_enable_set", unit,
        [&](Chip &chip) {
            chip.ports.cpu.tag = enable != 0;
            return kSdkOk;
        },
        enable);
}

uint32_t l2sw_cpu_tag_ethertype_set(uint32_t unit, uint32_t etherType)
{
    return onChip(
        "l2sw_cpu_tag_ethertype_set", unit,
        [&](Chip &chip) -> uint32_t {
            if (etherType > UINT16_MAX)
                return kSdkBadArgument;
            chip.ports.cpu.etherType = etherType;
            return kSdkOk;
        },
        etherType);
}

// ---- enable, link, MAC ----------------------------------------------------------------------

uint32_t l2sw_port_adminEnable_set(uint32_t unit, uint32_t port, uint32_t enable)
{
    return onPort(
        "l2sw_port_adminEnable_set", unit, port,
        [&](Ports &ports) {
            ports.enable(port, enable != 0);
            return kSdkOk;
        },
        enable);
}

uint32_t l2sw_port_adminEnable_get(uint32_t unit, uint32_t port, uint32_t *enable)
{
    return onPort(
        "l2sw_port_adminEnable_get", unit, port,
        [&](Ports &ports) -> uint32_t {
            if (enable == nullptr)
                return kSdkNull;
            *enable = ports.enabled(port);
            return kSdkOk;
        },
        enable);
}

uint32_t l2sw_port_macForceLinkExt_get(uint32_t unit, uint32_t port, uint32_t *flag, SdkMacLink *link)
{
    return onPort(
        "l2sw_port_macForceLinkExt_get", unit, port,
        [&](Ports &ports) -> uint32_t {
            if (flag == nullptr || link == nullptr)
                return kSdkNull;
            *flag = ports.macForced(port);
            store(ports.forcedLink(port), *link);
            return kSdkOk;
        },
        flag, link);
}

uint32_t l2sw_port_macStatus_get(uint32_t unit, uint32_t port, SdkMacLink *link)
{
    return onPort(
        "l2sw_port_macStatus_get", unit, port,
        [&](Ports &ports) -> uint32_t {
            if (link == nullptr)
                return kSdkNull;
            store(ports.macLink(port), *link);
            return kSdkOk;
        },
        link);
}

uint32_t l2sw_port_macLocalLoopbackEnable_set(uint32_t unit, uint32_t port, uint32_t on)
{
    return onPort(
        "l2sw_port_macLocalLoopbackEnable_set", unit, port,
        [&](Ports &ports) {
            ports.macLoop(port, on != 0);
            return kSdkOk;
        },
        on);
}

uint32_t l2sw_port_macLocalLoopbackEnable_get(uint32_t unit, uint32_t port, uint32_t *on)
{
    return onPort(
        "l2sw_port_macLocalLoopbackEnable_get", unit, port,
        [&](Ports &ports) -> uint32_t {
            if (on == nullptr)
                return kSdkNull;
            *on = ports.macLooped(port);
            return kSdkOk;
        },
        on);
}

// ---- PHY ------------------------------------------------------------------------------------

uint32_t l2sw_port_phyStatus_get(uint32_t unit, uint32_t port, uint32_t *link, uint32_t *speed,
                                 uint32_t *duplex)
{
    return onPhy(
        "l2sw_port_phyStatus_get", unit, port,
        [&](Phy &phy) -> uint32_t {
            if (link == nullptr || speed == nullptr || duplex == nullptr)
                return kSdkNull;
            const Link now = phy.link();
            *link = now.up;
            *speed = now.speed;
            *duplex = now.full;
            return kSdkOk;
        },
        link, speed, duplex);
}

uint32_t l2sw_port_phyAutoNegoAbility_get(uint32_t unit, uint32_t port, SdkPortAbility *ability)
{
    return onPhy(
        "l2sw_port_phyAutoNegoAbility_get", unit, port,
        [&](Phy &phy) -> uint32_t {
            if (ability == nullptr)
                return kSdkNull;
            *ability = phy.advertised();
            return kSdkOk;
        },
        ability);
}

uint32_t l2sw_port_phyAutoNegoAbility_set(uint32_t unit, uint32_t port, SdkPortAbility *ability)
{
    return onPhy(
        "l2sw_port_phyAutoNegoAbility_set", unit, port,
        [&](Phy &phy) -> uint32_t {
            if (ability == nullptr)
                return kSdkNull;
            phy.advertise(*ability);
            return kSdkOk;
        },
        ability);
}

uint32_t l2sw_port_phyForceModeAbility_get(uint32_t unit, uint32_t port, SdkPortAbility *ability)
{
    return onPhy(
        "l2sw_port_phyForceModeAbility_get", unit, port,
        [&](Phy &phy) -> uint32_t {
            if (ability == nullptr)
                return kSdkNull;
            *ability = phy.forced();
            return kSdkOk;
        },
        ability);
}

uint32_t l2sw_port_phyForceModeAbility_set(uint32_t unit, uint32_t port, SdkPortAbility *ability)
{
    return onPhy(
        "l2sw_port_phyForceModeAbility_set", unit, port,
        [&](Phy &phy) -> uint32_t {
            if (ability == nullptr)
                return kSdkNull;
            return phy.force(*ability) ? kSdkOk : kSdkBadArgument;
        },
        ability);
}

uint32_t l2sw_port_phyReg_get(uint32_t unit, uint32_t port, uint32_t reg, uint32_t *value)
{
    return onPhy(
        "l2sw_port_phyReg_get", unit, port,
        [&](Phy &phy) -> uint32_t {
            if (value == nullptr)
                return kSdkNull;
            if (reg >= Phy::kRegisters)
                return kSdkBadArgument;
            *value = phy.read(reg);
            return kSdkOk;
        },
        reg, value);
}

uint32_t l2sw_port_phyReg_set(uint32_t unit, uint32_t port, uint32_t reg, uint32_t value)
{
    return onPhy(
        "l2sw_port_phyReg_set", unit, port,
        [&](Phy &phy) -> uint32_t {
            if (reg >= Phy::kRegisters || value > UINT16_MAX)
                return kSdkBadArgument;
            phy.write(reg, static_cast<uint16_t>(value));
            return kSdkOk;
        },
        reg, value);
}

uint32_t l2sw_port_phyLocalLoopbackEnable_set(uint32_t unit, uint32_t port, uint32_t on)
{
    return onPhy(
        "l2sw_port_phyLocalLoopbackEnable_set", unit, port,
        [&](Phy &phy) {
            phy.loop(on != 0);
            return kSdkOk;
        },
        on);
}
