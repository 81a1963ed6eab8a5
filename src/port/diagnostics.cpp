// State and registers of a port, kh marker, chip identifier, LEDs, link-scan work-around.
#include "port/port.h"

#include "base/port_set.h"
#include "base/print.h"
#include "platform/chip_sdk.h"
#include "platform/manager.h"
#include "port/phy.h"

namespace
{

constexpr uint32_t kChipIdReg = 0x1300;

constexpr uint32_t kPhyMdiReg = 16;
constexpr uint32_t kPhyPageReg = 31;

constexpr uint32_t kMdiUnknown = 0xFF;
constexpr uint8_t kMdiModes[4] = {2, 0, kMdiUnknown, 1}; // by bits 15 and 14 of kPhyMdiReg

// A PHY register argument: page in the upper, register number in the lower 16 bits.
struct PhyReg {
    uint32_t page;
    uint32_t number;
};

PhyReg splitReg(uint32_t reg)
{
    return {reg >> 16, reg & 0xFFFF};
}

// What the record shows for a value whose reader returned `ret`.
void markUnreadable(uint32_t ret, uint32_t &value)
{
    if (ret != 0)
        value = ZR_PORT_DEBUG_UNREADABLE;
}

} // namespace

uint32_t HAL_PORT_PortDebugInfoGetZr(uint32_t unit, uint32_t port, PortDebugInfo *info)
{
    if (info == nullptr)
        return LSW_NULL_POINTER;
    markUnreadable(HAL_PORT_GetEnableZr(unit, port, &info->enable), info->enable);
    markUnreadable(HAL_PHY_GetLinkstatusZr(unit, port, &info->phyLink), info->phyLink);
    markUnreadable(HAL_PHY_GetMacLinkStatusZr(unit, port, &info->macLink), info->macLink);
    markUnreadable(HAL_PORT_GetLoopbackZr(unit, port, &info->loop), info->loop);
    markUnreadable(HAL_PHY_GetSpeedZr(unit, port, &info->speed), info->speed);
    markUnreadable(HAL_PHY_GetDuplexZr(unit, port, &info->duplex), info->duplex);
    markUnreadable(HAL_PORT_GetMdixModeZr(unit, port, &info->mdixCfg), info->mdixCfg);
    markUnreadable(HAL_PHY_GetAutonegEnableZr(unit, port, &info->autoneg), info->autoneg);
    HAL_PORT_GetAutonegAbilityZr(unit, port, &info->localAbility);
    HAL_PORT_GetAutonegRemoteAbilityZr(unit, port, &info->remoteAbility);
    return LSW_OK;
}

uint32_t HAL_PORT_GetMdixModeZr(uint32_t unit, uint32_t port, uint32_t *mode)
{
    if (mode == nullptr)
        return LSW_NULL_POINTER;
    uint32_t value = 0;
    const uint32_t ret = l2sw_port_phyReg_get(unit, port, kPhyMdiReg, &value);
    const uint32_t mdi = kMdiModes[value >> 14 & 3];
    if (mdi == kMdiUnknown)
        return ZR_FAILED(PORT, LSW_UNSUPPORTED, "unknow mdi stat (unit = %u, port = %u).", unit, port);
    *mode = mdi;
    return ret;
}

uint32_t ZR_PORT_GetSnr(uint32_t unit, uint32_t port, LswmPortSnr *snr)
{
    return HAL_PORT_GetSnrZr(unit, port, snr);
}

uint32_t HAL_PORT_GetSnrZr(uint32_t unit, uint32_t port, LswmPortSnr *snr)
{
    if (snr == nullptr)
        return LSW_NULL_POINTER;
    SdkPortSnr chip{};
    if (uint32_t ret = l2sw_port_snr_get(unit, port, &chip); ret != 0)
        return ZR_CHIP_FAILED(PORT, ret, "get l2sw snr failed (unit = %u, port = %u, ret = %u).", unit, port,
                              ret);
    // The two sides number the status and the word before it the other way round.
    *snr = {.snrA = chip.word[0],
            .snrB = chip.word[1],
            .snrC = chip.word[2],
            .snrD = chip.word[3],
            .word4 = chip.word[5],
            .status = chip.word[4],
            .trap = chip.word[6],
            .word7 = chip.word[7]};
    return LSW_OK;
}

uint32_t ZR_PORT_RegRead(uint32_t unit, uint32_t port, uint32_t, uint32_t reg, uint16_t *value)
{
    return HAL_PORT_RegReadZr(unit, port, reg, value);
}

uint32_t HAL_PORT_RegReadZr(uint32_t unit, uint32_t port, uint32_t reg, uint16_t *value)
{
    if (value == nullptr)
        return LSW_NULL_POINTER;
    const auto [page, number] = splitReg(reg);
    if (page != 0 && l2sw_port_phyReg_set(unit, port, kPhyPageReg, page) != 0)
        return LSW_CHIP_FAILED;
    uint32_t phyValue = 0;
    if (l2sw_port_phyReg_get(unit, port, number, &phyValue) != 0)
        return LSW_CHIP_FAILED;
    if (page != 0 && l2sw_port_phyReg_set(unit, port, kPhyPageReg, 0) != 0)
        return LSW_CHIP_FAILED;
    *value = static_cast<uint16_t>(phyValue);
    return LSW_OK;
}

uint32_t ZR_PORT_RegWrite(uint32_t unit, uint32_t port, uint32_t, uint32_t reg, uint16_t value)
{
    return HAL_PORT_RegWriteZr(unit, port, reg, value);
}

uint32_t HAL_PORT_RegWriteZr(uint32_t unit, uint32_t port, uint32_t reg, uint16_t value)
{
    const auto [page, number] = splitReg(reg);
    if (page != 0 && l2sw_port_phyReg_set(unit, port, kPhyPageReg, page) != 0)
        return LSW_CHIP_FAILED;
    if (l2sw_port_phyReg_set(unit, port, number, value) != 0)
        return LSW_CHIP_FAILED;
    if (page != 0 && l2sw_port_phyReg_set(unit, port, kPhyPageReg, 0) != 0)
        return LSW_CHIP_FAILED;
    return LSW_OK;
}

uint32_t ZR_PORT_GetKhCheck(uint32_t unit, uint32_t port, uint32_t *intact)
{
    return HAL_PORT_GetKhCheckZr(unit, port, intact);
}

uint32_t HAL_PORT_GetKhCheckZr(uint32_t unit, uint32_t port, uint32_t *intact)
{
    if (intact == nullptr)
        return LSW_NULL_POINTER;
    uint32_t value = 0;
    if (uint32_t ret = l2sw_getAsicReg(zr::unit8(unit), ZR_PORT_KH_REG, &value); ret != 0)
        return ZR_CHIP_FAILED(PORT, ret, "Port kh check failed (unit:%u, port:%u, ret:%u)", unit, port, ret);
    *intact = value == ZR_PORT_KH_MARK;
    return LSW_OK;
}

uint32_t ZR_PORT_GetChipId(uint32_t unit, uint32_t port, uint32_t *identifier)
{
    return HAL_PORT_GetChipIdZr(unit, port, identifier);
}

uint32_t HAL_PORT_GetChipIdZr(uint32_t unit, uint32_t port, uint32_t *identifier)
{
    if (identifier == nullptr)
        return LSW_NULL_POINTER;
    if (uint32_t ret = l2sw_getAsicReg(zr::unit8(unit), kChipIdReg, identifier); ret != 0)
        return ZR_CHIP_FAILED(PORT, ret, "Port get chip id failed (unit:%u, port:%u, ret:%u)", unit, port, ret);
    return LSW_OK;
}

uint32_t ZR_PORT_SetLEDForce(uint32_t unit, uint32_t port, uint32_t a, uint32_t b)
{
    return HAL_PORT_SetLEDForceZr(unit, port, a, b);
}

uint32_t HAL_PORT_SetLEDForceZr(uint32_t unit, uint32_t port, uint32_t a, uint32_t b)
{
    if (uint32_t ret = l2sw_port_led_force_set(unit, port, a, b); ret != 0)
        return ZR_CHIP_FAILED(PORT, ret, "led force set unit %u port %u", unit, port);
    return LSW_OK;
}

uint32_t ZR_PORT_LinkScanWar(uint32_t unit, uint32_t port)
{
    return HAL_PORT_LinkScanWarZr(unit, port);
}

uint32_t HAL_PORT_LinkScanWarZr(uint32_t unit, uint32_t port)
{
    const LswmUnitInfo *info = zr::unitInfo(unit);
    if (info == nullptr || port >= LSWM_PORTS)
        return LSW_INVALID_ARGUMENT;
    if (info->port[port].kind == LSWM_PORT_NO_LINK_SCAN)
        return LSW_OK;
    if (uint32_t ret = l2sw_gephy_workaround_04_parallel(unit, port, 0); ret != 0)
        return ZR_CHIP_FAILED(PORT, ret, "portlinkscan workaround %u port %u", unit, port);
    return LSW_OK;
}
