// Port start-up, frame size, CPU port, port map and port enable.
#include "port/port.h"

#include "base/port_set.h"
#include "base/print.h"
#include "l2/trunk.h"
#include "platform/chip_sdk.h"
#include "platform/manager.h"

namespace
{

// The chip holds the unit's largest frame as an index.
constexpr struct {
    uint32_t bytes;
    uint32_t index;
} kFrameSizes[] = {{1522, 0}, {1536, 1}, {1552, 2}, {10000, 3}};

constexpr uint32_t kCpuTagEtherType = 0x8874;

} // namespace

uint32_t ZR_PORT_Init(uint32_t unit)
{
    const LswmUnitInfo *info = zr::unitInfo(unit);
    if (info == nullptr)
        return LSW_INVALID_ARGUMENT;
    if (uint32_t ret = ZR_PORT_SetMaxFrame(unit, info->maxFrameSize); ret != LSW_OK)
        return ZR_FAILED(PORT, ret, "ZR SetMaxFrame unitId = %u, ret = %u", unit, ret);
    if (uint32_t ret = ZR_TRUNK_InitMode(unit); ret != LSW_OK)
        return ZR_FAILED(PORT, ret, "ZR TRUNK InitMode unitId = %u, ret = %u", unit, ret);
    for (uint32_t port : zr::PortSet(unit, LSWM_SET_CASCADE)) {
        if (uint32_t ret = HAL_TRUNK_AddMemberZr(unit, info->cascadeTrunkId, port); ret != LSW_OK)
            return ZR_FAILED(PORT, ret, "ZR TRUNK AddMember ret = %u, unitId = %u, portId = %u", ret, unit,
                             port);
    }
    if (uint32_t ret = HAL_PORT_KhInitZr(unit); ret != LSW_OK)
        return ZR_FAILED(PORT, ret, "ZR kh init unitId = %u, ret = %u", unit, ret);
    return LSW_OK;
}

uint32_t HAL_PORT_KhInitZr(uint32_t unit)
{
    if (uint32_t ret = l2sw_setAsicReg(zr::unit8(unit), ZR_PORT_KH_REG, ZR_PORT_KH_MARK); ret != 0)
        return ZR_CHIP_FAILED(PORT, ret, "Port kh init failed (unit:%u ret:%u)", unit, ret);
    return LSW_OK;
}

// ---- frame size -----------------------------------------------------------------------------

uint32_t ZR_PORT_SetMaxFrame(uint32_t unit, uint32_t maxFrameSize)
{
    if (uint32_t ret = HAL_PORT_SetMaxFrameZr(unit, maxFrameSize); ret != LSW_OK)
        return ZR_FAILED(PORT, ret, "HAL PORT SetMaxFrame Zr unitId = %u, ret = %u, maxFrameSize = %u", unit,
                         ret, maxFrameSize);
    return LSW_OK;
}

uint32_t HAL_PORT_SetMaxFrameZr(uint32_t unit, uint32_t maxFrameSize)
{
    for (const auto &size : kFrameSizes) {
        if (size.bytes == maxFrameSize)
            return l2sw_port_mtu_set(unit, size.index, size.index);
    }
    return LSW_INVALID_ARGUMENT;
}

uint32_t ZR_PORT_GetMaxFrame(uint32_t unit, uint32_t *maxFrameSize)
{
    if (uint32_t ret = HAL_PORT_GetMaxFrameZr(unit, maxFrameSize); ret != LSW_OK)
        return ZR_FAILED(PORT, ret, "HAL PORT GetMaxFrame Zr unitId = %u, ret = %u", unit, ret);
    return LSW_OK;
}

uint32_t HAL_PORT_GetMaxFrameZr(uint32_t unit, uint32_t *maxFrameSize)
{
    if (maxFrameSize == nullptr)
        return LSW_NULL_POINTER;
    uint32_t index = 0;
    if (l2sw_port_mtu_get(unit, &index) != 0)
        return LSW_CHIP_FAILED;
    for (const auto &size : kFrameSizes) {
        if (size.index == index) {
            *maxFrameSize = size.bytes;
            return LSW_OK;
        }
    }
    return LSW_CHIP_FAILED;
}

// ---- CPU port, port map, port enable --------------------------------------------------------

uint32_t ZR_PORT_CpuInit(uint32_t unit, uint32_t port, uint32_t addTag)
{
    return HAL_PORT_CpuInitZr(unit, port, addTag);
}

uint32_t HAL_PORT_CpuInitZr(uint32_t unit, uint32_t port, uint32_t addTag)
{
    if (uint32_t ret = l2sw_cpu_tagPort_set(unit, port, 0); ret != 0)
        return ZR_CHIP_FAILED(PORT, ret, "Config Cpu port failed(unit = %u, portId = %u, ret = %u).", unit,
                              port, ret);
    if (uint32_t ret = l2sw_cpu_enable_set(unit, addTag); ret != 0)
        return ZR_CHIP_FAILED(PORT, ret, "Config trap to cpu add tag failed(unit = %u, ret = %u).", unit, ret);
    if (uint32_t ret = l2sw_cpu_tag_ethertype_set(unit, kCpuTagEtherType); ret != 0)
        return ZR_CHIP_FAILED(PORT, ret, "Config cpu ethernet type failed(unit = %u, ret = %u).", unit, ret);
    return LSW_OK;
}

uint32_t HAL_PORT_GetValidPortMapZr(uint32_t unit, uint32_t *portMap)
{
    if (portMap == nullptr)
        return LSW_NULL_POINTER;
    uint32_t mask = 0;
    if (uint32_t ret = l2sw_switch_logPortMask_get(unit, &mask); ret != 0)
        return ZR_CHIP_FAILED(PORT, ret, "Zr Port Get Valid PortMap failed (ret = %d, unit = %u)",
                              static_cast<int>(ret), unit);
    *portMap = mask;
    return LSW_OK;
}

uint32_t ZR_PORT_SetEnable(uint32_t unit, uint32_t port, uint32_t enable)
{
    return HAL_PORT_SetEnableZr(unit, port, enable);
}

uint32_t HAL_PORT_SetEnableZr(uint32_t unit, uint32_t port, uint32_t enable)
{
    if (uint32_t ret = l2sw_port_adminEnable_set(unit, port, enable); ret != 0)
        return ZR_CHIP_FAILED(PORT, ret,
                              "Port set Enable failed(ret = %u, unit = %u, portId = %u, enable = %u).", ret,
                              unit, port, enable);
    return LSW_OK;
}

uint32_t ZR_PORT_GetEnable(uint32_t unit, uint32_t port, uint32_t *enable)
{
    return HAL_PORT_GetEnableZr(unit, port, enable);
}

uint32_t HAL_PORT_GetEnableZr(uint32_t unit, uint32_t port, uint32_t *enable)
{
    if (enable == nullptr)
        return ZR_FAILED(PORT, LSW_NULL_POINTER,
                         "get enable failed reason null pointer (unit = %u, port = %u).", unit, port);
    if (uint32_t ret = l2sw_port_adminEnable_get(unit, port, enable); ret != 0)
        return ZR_CHIP_FAILED(PORT, ret, "Port get enable failed(ret = %u, unit = %u, portId = %u).", ret, unit,
                              port);
    return LSW_OK;
}
