#include "l2/trunk.h"

#include "base/print.h"
#include "platform/chip_sdk.h"
#include "platform/manager.h"
#include "records/trunk_records.h"

namespace
{

// Constants of the chip's trunk hashing; the SDK defines their bits.
constexpr uint32_t kTrunkMode = 1;
constexpr uint32_t kHashGroups = 0xFF;
constexpr uint32_t kHashInputs = 0x7F;

// Chip ports that a group takes. An add shifts the mask that it read down by the group's first chip port:
// the SDK is assumed to return group 1's mask in chip port numbers and to take it counted from chip port 4.
constexpr struct {
    uint32_t firstChipPort;
    uint32_t chipPorts;
} kGroups[ZR_TRUNK_GROUPS] = {{0, 4}, {4, 32}};

} // namespace

uint32_t ZR_TRUNK_AddMember(uint32_t unit, uint32_t port, uint32_t trunk)
{
    if (uint32_t ret = HAL_TRUNK_AddMemberZr(unit, trunk, port); ret != LSW_OK)
        return ZR_FAILED(TRUNK, ret, "HAL TRUNK AddMember Zr ret = %u, unitId = %u, portId = %u, trunkId = %u",
                         ret, unit, port, trunk);
    return LSW_OK;
}

uint32_t HAL_TRUNK_AddMemberZr(uint32_t unit, uint32_t trunk, uint32_t port)
{
    const uint32_t chipPort = l2sw_switch_port_L2P_get(unit, port);
    if (trunk >= ZR_TRUNK_GROUPS)
        return LSW_INVALID_ARGUMENT;
    const auto &group = kGroups[trunk];
    const uint32_t bit = chipPort - group.firstChipPort; // wraps below the first port: refused too
    if (bit >= group.chipPorts)
        return LSW_INVALID_ARGUMENT;

    uint32_t mask = 0;
    if (uint32_t ret = l2sw_trunk_port_get(unit, trunk, &mask); ret != 0)
        return ZR_CHIP_FAILED(TRUNK, ret,
                              "l2sw trunk port get failed(ret = %d, unit = %u, trunkId = %u, portId = %u).",
                              static_cast<int>(ret), unit, trunk, port);
    mask = mask >> group.firstChipPort | 1U << bit;
    if (uint32_t ret = l2sw_trunk_port_set(unit, trunk, mask); ret != 0)
        return ZR_CHIP_FAILED(TRUNK, ret,
                              "l2sw trunk port set failed(ret = %d, unit = %u, trunkId = %u, portId = %u).",
                              static_cast<int>(ret), unit, trunk, port);
    return LSW_OK;
}

uint32_t ZR_TRUNK_DelMember(uint32_t unit, uint32_t port, uint32_t trunk)
{
    if (uint32_t ret = HAL_TRUNK_DelMemberZr(unit, trunk, port); ret != LSW_OK)
        return ZR_FAILED(TRUNK, ret, "HAL TRUNK DelMember Zr ret = %u, unitId = %u, portId = %u, trunkId = %u",
                         ret, unit, port, trunk);
    return LSW_OK;
}

uint32_t HAL_TRUNK_DelMemberZr(uint32_t unit, uint32_t trunk, uint32_t port)
{
    const uint32_t chipPort = l2sw_switch_port_L2P_get(unit, port);
    if (trunk != 0 || chipPort >= kGroups[0].chipPorts) {
        ZR_PRINT_FAILED(TRUNK, 0,
                        "l2sw trunk del port input err(ret = %d, unit = %u, trunkId = %u, portId = %u).", 0,
                        unit, trunk, port);
        return LSW_INVALID_ARGUMENT;
    }
    uint32_t mask = 0;
    if (uint32_t ret = l2sw_trunk_port_get(unit, 0, &mask); ret != 0)
        return ZR_CHIP_FAILED(TRUNK, ret,
                              "l2sw trunk del port get failed(ret = %d, unit = %u, trunkId = %u, portId = %u).",
                              static_cast<int>(ret), unit, 0U, port);
    mask &= ~(1U << chipPort);
    if (uint32_t ret = l2sw_trunk_port_set(unit, 0, mask); ret != 0)
        return ZR_CHIP_FAILED(TRUNK, ret,
                              "l2sw trunk del port set failed(ret = %d, unit = %d, trunkId = %u, portId = %u).",
                              static_cast<int>(ret), static_cast<int>(unit), 0U, port);
    return LSW_OK;
}

uint32_t ZR_TRUNK_GetMember(uint32_t unit, uint32_t logicTrunkId, uint32_t *memberMask)
{
    uint32_t trunk = 0;
    if (uint32_t ret = COM_TRUNK_LogicidToChipid(unit, logicTrunkId, &trunk); ret != LSW_OK)
        return ZR_CHIP_FAILED(
            TRUNK, ret, "ZR get member (logicTrunkId to trunkId failed)ret = %d unit =%u logicTrunkId =%u.",
            static_cast<int>(ret), unit, logicTrunkId);
    if (uint32_t ret = HAL_TRUNK_GetMemberZr(unit, trunk, memberMask); ret != LSW_OK)
        return ZR_FAILED(TRUNK, ret, "HAL TRUNK GetMember Zr ret = %u, unitId = %u, trunkId = %u", ret, unit,
                         logicTrunkId);
    return LSW_OK;
}

uint32_t HAL_TRUNK_GetMemberZr(uint32_t unit, uint32_t trunk, uint32_t *memberMask)
{
    if (memberMask == nullptr)
        return LSW_NULL_POINTER;
    uint32_t mask = 0;
    if (uint32_t ret = l2sw_trunk_port_get(unit, trunk, &mask); ret != 0)
        return ZR_CHIP_FAILED(TRUNK, ret, "l2sw trunk get port failed(ret = %d, unit = %u, trunkId = %u).",
                              static_cast<int>(ret), unit, trunk);
    *memberMask = mask;
    return LSW_OK;
}

uint32_t ZR_TRUNK_Create(uint32_t unit, uint32_t logicTrunkId)
{
    if (uint32_t ret = COM_TRUNK_SetMeterInfo(unit, logicTrunkId, 0); ret != LSW_OK)
        return ZR_FAILED(TRUNK, ret, "TRUNK ZR create fail ret = %u, unitId = %u, trunkId = %u", ret, unit,
                         logicTrunkId);
    return LSW_OK;
}

uint32_t ZR_TRUNK_Delete(uint32_t unit, uint32_t logicTrunkId)
{
    TrunkMeterInfo *info = COM_TRUNK_GetMeterInfo(unit);
    if (info == nullptr)
        return LSW_INVALID_ARGUMENT;
    uint32_t trunk = 0;
    if (uint32_t ret = COM_TRUNK_LogicidToChipid(unit, logicTrunkId, &trunk); ret != LSW_OK)
        return ZR_FAILED(TRUNK, ret, "TRUNK ZR del fail ret = %u, unitId = %u, trunkId = %u", ret, unit,
                         logicTrunkId);
    --info->trunkNum;
    info->logicTrunkId[trunk] = 0;
    return LSW_OK;
}

uint32_t ZR_TRUNK_GetTrunkNum(uint32_t unit, uint32_t *number)
{
    const TrunkMeterInfo *info = COM_TRUNK_GetMeterInfo(unit);
    if (info == nullptr)
        return LSW_INVALID_ARGUMENT;
    if (number == nullptr)
        return LSW_NULL_POINTER;
    *number = info->trunkNum + 1;
    return LSW_OK;
}

uint32_t ZR_TRUNK_InitMode(uint32_t unit)
{
    if (uint32_t ret = HAL_TRUNK_InitHashModeZr(unit); ret != LSW_OK)
        return ZR_FAILED(PORT, ret, "HAL TRUNK InitHashMode Zr ret = %u, unitId = %u", ret, unit);
    if (uint32_t ret = HAL_TRUNK_InitHashSelectZr(unit); ret != LSW_OK)
        return ZR_FAILED(PORT, ret, "HAL TRUNK InitHashSelect Zr ret = %u, unitId = %u", ret, unit);
    return LSW_OK;
}

uint32_t HAL_TRUNK_InitHashModeZr(uint32_t unit)
{
    if (uint32_t ret = l2sw_trunk_mode_set(unit, kTrunkMode); ret != 0)
        return ZR_CHIP_FAILED(TRUNK, ret, "l2sw trunk mode set failed (ret = %u, unit = %u).", ret, unit);
    return LSW_OK;
}

uint32_t HAL_TRUNK_InitHashSelectZr(uint32_t unit)
{
    if (uint32_t ret = l2sw_trunk_distributionAlgorithm_set(unit, kHashGroups, kHashInputs); ret != 0)
        return ZR_CHIP_FAILED(TRUNK, ret, "l2sw trunk distributionAlgorithm set failed (ret = %u, unit = %u).",
                              ret, unit);
    return LSW_OK;
}
