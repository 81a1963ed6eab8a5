// Link abilities: what a port advertises and what its link partner advertised.
#include "port/port.h"

#include "base/memory.h"
#include "base/print.h"
#include "platform/chip_sdk.h"
#include "platform/manager.h"

namespace
{

// The manager's byte and the chip's word of each ability. The manager has no byte for the chip's word
// "auto-negotiation on".
constexpr struct {
    uint8_t LswmPortAbility::*manager;
    uint32_t SdkPortAbility::*chip;
} kAbilities[] = {
    {&LswmPortAbility::half10, &SdkPortAbility::half10},
    {&LswmPortAbility::full10, &SdkPortAbility::full10},
    {&LswmPortAbility::half100, &SdkPortAbility::half100},
    {&LswmPortAbility::full100, &SdkPortAbility::full100},
    {&LswmPortAbility::full1000, &SdkPortAbility::full1000},
    {&LswmPortAbility::pause, &SdkPortAbility::pause},
    {&LswmPortAbility::pauseAsym, &SdkPortAbility::pauseAsym},
};

// PHY registers that hold what the link partner advertised (IEEE 802.3 clause 22.2.4).
enum { kPartnerAbility, kGigabitStatus, kPartnerRegs };
constexpr uint32_t kPartnerReg[kPartnerRegs] = {5, 10};

// Where each ability of the partner is found (IEEE 802.3 tables 28B-1 and 40-3).
constexpr struct {
    uint8_t LswmPortAbility::*manager;
    uint8_t reg; // index into kPartnerReg
    uint8_t bit;
} kPartnerBits[] = {
    {&LswmPortAbility::half10, kPartnerAbility, 5},     {&LswmPortAbility::full10, kPartnerAbility, 6},
    {&LswmPortAbility::half100, kPartnerAbility, 7},    {&LswmPortAbility::full100, kPartnerAbility, 8},
    {&LswmPortAbility::full1000, kGigabitStatus, 11},   {&LswmPortAbility::pause, kPartnerAbility, 10},
    {&LswmPortAbility::pauseAsym, kPartnerAbility, 11},
};

} // namespace

uint32_t ZR_PORT_GetAutonegAbility(uint32_t unit, uint32_t port, LswmPortAbility *ability)
{
    return HAL_PORT_GetAutonegAbilityZr(unit, port, ability);
}

uint32_t HAL_PORT_GetAutonegAbilityZr(uint32_t unit, uint32_t port, LswmPortAbility *ability)
{
    if (ability == nullptr)
        return ZR_FAILED(PORT, LSW_NULL_POINTER,
                         "get auto ability mode failed reason null pointer (unit = %u, port = %u).", unit,
                         port);
    zr::clear(*ability);
    SdkPortAbility advertised{};
    if (uint32_t ret = l2sw_port_phyAutoNegoAbility_get(unit, port, &advertised); ret != 0)
        return ZR_CHIP_FAILED(PORT, ret, "get auto neg ability failed (unit = %u, port = %u).", unit, port);
    for (const auto &entry : kAbilities)
        ability->*entry.manager = static_cast<uint8_t>(advertised.*entry.chip);
    return LSW_OK;
}

uint32_t ZR_PORT_SetAdvert(uint32_t unit, uint32_t port, const LswmPortAbility *ability)
{
    return HAL_PORT_SetAutonegAbilityZr(unit, port, ability);
}

uint32_t HAL_PORT_SetAutonegAbilityZr(uint32_t unit, uint32_t port, const LswmPortAbility *ability)
{
    if (ability == nullptr)
        return LSW_NULL_POINTER;
    SdkPortAbility advertised{};
    advertised.autoNego = 1;
    for (const auto &entry : kAbilities)
        advertised.*entry.chip = ability->*entry.manager;
    return l2sw_port_phyAutoNegoAbility_set(unit, port, &advertised);
}

uint32_t ZR_PORT_GetRemoteAutonegAbility(uint32_t unit, uint32_t port, LswmPortAbility *ability)
{
    return HAL_PORT_GetAutonegRemoteAbilityZr(unit, port, ability);
}

uint32_t HAL_PORT_GetAutonegRemoteAbilityZr(uint32_t unit, uint32_t port, LswmPortAbility *ability)
{
    if (ability == nullptr)
        return ZR_FAILED(PORT, LSW_NULL_POINTER,
                         "get auto ability mode failed reason null pointer (unit = %u, port = %u).", unit,
                         port);
    zr::clear(*ability);
    uint32_t value[kPartnerRegs] = {};
    for (uint32_t reg = 0; reg < kPartnerRegs; ++reg) {
        if (uint32_t ret = l2sw_port_phyReg_get(unit, port, kPartnerReg[reg], &value[reg]); ret != 0)
            return ZR_CHIP_FAILED(PORT, ret, "get phy reg failed (unit = %u, port = %u).", unit, port);
    }
    for (const auto &entry : kPartnerBits)
        ability->*entry.manager = value[entry.reg] >> entry.bit & 1U;
    return LSW_OK;
}
