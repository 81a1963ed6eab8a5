#include "qos/rma.h"

#include "platform/chip_sdk.h"
#include "platform/manager.h"

// The chip numbers its types as the manager does.
const uint32_t g_rmaAddrTypeMap[ZR_RMA_TYPES + 1] = {
    0,  1,  2,  3,  4,  5,  6,  7,  8,  9,  10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20, 21, 22, 23, 24, 25,
    26, 27, 28, 29, 30, 31, 32, 33, 34, 35, 36, 37, 38, 39, 40, 41, 42, 43, 44, 45, 46, 47, 48, 49, 50, 51};

uint32_t ZR_MC_Init(uint32_t unit)
{
    return HAL_RMA_InitZr(unit);
}

uint32_t HAL_RMA_InitZr(uint32_t unit)
{
    if (HAL_RMA_LldpEnableSet(unit, 1) != 0)
        return LSW_CHIP_FAILED;
    for (uint32_t type = 0; type < ZR_RMA_TYPES; ++type)
        if (HAL_RMA_ActionSet(unit, type, ZR_RMA_ACTION_INIT) != LSW_OK)
            return LSW_CHIP_FAILED;
    return LSW_OK;
}

void HAL_RMA_RmaTypeToZrType(uint32_t type, uint32_t *chipType)
{
    if (chipType != nullptr)
        *chipType = type < ZR_RMA_TYPES ? g_rmaAddrTypeMap[type] : uint32_t{ZR_RMA_TYPE_INVALID};
}

uint32_t HAL_RMA_ActionSet(uint32_t unit, uint32_t type, uint32_t action)
{
    uint32_t chipType = ZR_RMA_TYPE_INVALID;
    HAL_RMA_RmaTypeToZrType(type, &chipType);
    if (chipType == ZR_RMA_TYPE_INVALID || action >= ZR_RMA_ACTIONS)
        return LSW_INVALID_ARGUMENT;
    return l2sw_trap_rmaAction_set(unit, chipType, action) == 0 ? LSW_OK : LSW_CHIP_FAILED;
}

uint32_t HAL_RMA_LldpEnableSet(uint32_t unit, int32_t enable)
{
    return l2sw_trap_lldpEnable_set(unit, enable == 1 ? 1 : 0);
}
