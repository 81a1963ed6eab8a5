// The SDK's PHY functions.
#include "sim/sdk/sdk.h"

using namespace zrsim;

namespace
{

// One function over the PHY of a port that has one; the port is the second argument.
template <class Body> uint32_t onPhy(const Shim &shim, Body &&body)
{
    return onChip(shim, [&](Chip &chip) -> uint32_t {
        const uint32_t port = shim.number(1);
        if (!Ports::hasPhy(port))
            return kSdkBadPort;
        return statusOf([&] { return body(chip.ports.phy(port)); });
    });
}

} // namespace

uint32_t l2sw_port_phyStatus_get(uint32_t unit, uint32_t port, uint32_t *link, uint32_t *speed,
                                 uint32_t *duplex)
{
    return onPhy({__func__, {unit, port, link, speed, duplex}}, [&](Phy &phy) {
        const Link now = phy.link();
        *link = now.up;
        *speed = now.speed;
        *duplex = now.full;
    });
}

uint32_t l2sw_port_phyAutoNegoAbility_get(uint32_t unit, uint32_t port, SdkPortAbility *ability)
{
    return onPhy({__func__, {unit, port, ability}}, [&](Phy &phy) { *ability = phy.advertised(); });
}

uint32_t l2sw_port_phyAutoNegoAbility_set(uint32_t unit, uint32_t port, SdkPortAbility *ability)
{
    return onPhy({__func__, {unit, port, ability}}, [&](Phy &phy) { phy.advertise(*ability); });
}

uint32_t l2sw_port_phyForceModeAbility_get(uint32_t unit, uint32_t port, SdkPortAbility *ability)
{
    return onPhy({__func__, {unit, port, ability}}, [&](Phy &phy) { *ability = phy.forced(); });
}

uint32_t l2sw_port_phyForceModeAbility_set(uint32_t unit, uint32_t port, SdkPortAbility *ability)
{
    return onPhy({__func__, {unit, port, ability}},
                 [&](Phy &phy) { return phy.force(*ability) ? kSdkOk : kSdkBadArgument; });
}

uint32_t l2sw_port_phyReg_get(uint32_t unit, uint32_t port, uint32_t reg, uint32_t *value)
{
    return onPhy({__func__, {unit, port, reg, value}}, [&](Phy &phy) -> uint32_t {
        if (reg >= Phy::kRegisters)
            return kSdkBadArgument;
        *value = phy.read(reg);
        return kSdkOk;
    });
}

uint32_t l2sw_port_phyReg_set(uint32_t unit, uint32_t port, uint32_t reg, uint32_t value)
{
    return onPhy({__func__, {unit, port, reg, value}}, [&](Phy &phy) -> uint32_t {
        if (reg >= Phy::kRegisters || value > UINT16_MAX)
            return kSdkBadArgument;
        phy.write(reg, static_cast<uint16_t>(value));
        return kSdkOk;
    });
}

uint32_t l2sw_port_phyLocalLoopbackEnable_set(uint32_t unit, uint32_t port, uint32_t on)
{
    return onPhy({__func__, {unit, port, on}}, [&](Phy &phy) { phy.loop(on != 0); });
}

uint32_t l2sw_port_snr_get(uint32_t unit, uint32_t port, SdkPortSnr *snr)
{
    return onChip({__func__, {unit, port, snr}}, [&](Chip &chip) { return chip.extras.readSnr(port, *snr); });
}

uint32_t l2sw_port_led_force_set(uint32_t unit, uint32_t port, uint32_t a, uint32_t b)
{
    return onChip({__func__, {unit, port, a, b}},
                  [&](Chip &chip) { return chip.extras.forceLeds(port, a, b); });
}

uint32_t l2sw_gephy_workaround_04_parallel(uint32_t unit, uint32_t port, uint32_t zero)
{
    return onChip({__func__, {unit, port, zero}}, [&](Chip &chip) { return chip.extras.scanLink(port); });
}
