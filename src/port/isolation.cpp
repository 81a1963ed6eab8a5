// Permit maps of the chip and isolate maps of the manager.
#include "port/port.h"

#include "base/port_set.h"
#include "base/print.h"
#include "platform/chip_sdk.h"
#include "platform/manager.h"

uint32_t ZR_PORT_GetIsolateMap(uint32_t unit, uint32_t port, uint32_t *isolateMap)
{
    if (isolateMap == nullptr)
        return LSW_NULL_POINTER;
    uint32_t permitMap = 0;
    if (uint32_t ret = HAL_PORT_GetIsolateMapZr(unit, port, &permitMap); ret != LSW_OK)
        return ret;
    uint32_t validMap = 0;
    if (uint32_t ret = HAL_PORT_GetValidPortMapZr(unit, &validMap); ret != LSW_OK)
        return ret;
    *isolateMap = validMap & ~permitMap;
    return LSW_OK;
}

uint32_t HAL_PORT_GetIsolateMapZr(uint32_t unit, uint32_t port, uint32_t *permitMap)
{
    if (permitMap == nullptr)
        return LSW_NULL_POINTER;
    uint32_t map = 0;
    if (uint32_t ret = l2sw_port_isolation_get(unit, port, &map); ret != 0)
        return ZR_CHIP_FAILED(PORT, ret, "Port get isolate failed (ret = %d, unit = %u, port = %u)",
                              static_cast<int>(ret), unit, port);
    *permitMap = map;
    return LSW_OK;
}

uint32_t ZR_PORT_SetIsolate(uint32_t unit, uint32_t port, const uint32_t *portMap, uint32_t isolate)
{
    if (portMap == nullptr)
        return LSW_NULL_POINTER;
    uint32_t permitMap = 0;
    if (uint32_t ret = HAL_PORT_GetIsolateMapZr(unit, port, &permitMap); ret != LSW_OK)
        return ret;
    if (isolate == 1) {
        uint32_t validMap = 0;
        if (uint32_t ret = HAL_PORT_GetValidPortMapZr(unit, &validMap); ret != LSW_OK)
            return ret;
        permitMap &= validMap & ~*portMap;
    } else {
        permitMap |= *portMap;
    }
    return HAL_PORT_SetIsolateZr(unit, port, &permitMap);
}

uint32_t HAL_PORT_SetIsolateZr(uint32_t unit, uint32_t port, const uint32_t *permitMap)
{
    if (permitMap == nullptr)
        return LSW_NULL_POINTER;
    const uint32_t map = *permitMap;
    if (uint32_t ret = l2sw_port_isolation_set(unit, port, map); ret != 0)
        return ZR_CHIP_FAILED(PORT, ret,
                              "Port set isolate failed (ret = %d, unit = %u, port = %u, permitPortMap = 0x%x)",
                              static_cast<int>(ret), unit, port, map);
    return LSW_OK;
}

uint32_t ZR_PORT_SetAllIsolate(uint32_t unit, uint32_t isolate)
{
    const LswmUnitInfo *info = zr::unitInfo(unit);
    if (info == nullptr)
        return LSW_INVALID_ARGUMENT;
    uint32_t validMap = 0;
    if (uint32_t ret = HAL_PORT_GetValidPortMapZr(unit, &validMap); ret != LSW_OK)
        return ret;
    // A port never loses the way to itself and to the reserved port.
    const uint32_t othersMap = validMap & ~zr::portBit(info->reservedPort);
    for (uint32_t port : zr::PortSet(unit, LSWM_SET_VALID)) {
        if (port == info->reservedPort)
            continue;
        const uint32_t portMap = othersMap & ~zr::portBit(port);
        if (uint32_t ret = ZR_PORT_SetIsolate(unit, port, &portMap, isolate); ret != LSW_OK)
            return ZR_FAILED(PORT, ret, "ZR port set isolate failed, ret = %u, unit = %u, portId = %u", ret,
                             unit, port);
    }
    return LSW_OK;
}
