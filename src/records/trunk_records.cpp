#include "records/trunk_records.h"

TrunkMeterInfo g_TrunkMeterInfo[LSWM_UNITS];

TrunkMeterInfo *COM_TRUNK_GetMeterInfo(uint32_t unit)
{
    return unit < LSWM_UNITS ? &g_TrunkMeterInfo[unit] : nullptr;
}

uint32_t COM_TRUNK_LogicidToChipid(uint32_t unit, uint32_t logicTrunkId, uint32_t *chipTrunkId)
{
    const TrunkMeterInfo *info = COM_TRUNK_GetMeterInfo(unit);
    if (info == nullptr)
        return LSW_INVALID_ARGUMENT;
    if (chipTrunkId == nullptr)
        return LSW_NULL_POINTER;
    for (uint32_t group = 0; group < ZR_TRUNK_GROUPS; ++group) {
        if (info->logicTrunkId[group] == logicTrunkId) {
            *chipTrunkId = group;
            return LSW_OK;
        }
    }
    return LSW_NOT_FOUND;
}

uint32_t COM_TRUNK_IsLogicTrunkExist(uint32_t unit, uint32_t logicTrunkId)
{
    uint32_t chipTrunkId = 0;
    return COM_TRUNK_LogicidToChipid(unit, logicTrunkId, &chipTrunkId);
}

uint32_t COM_TRUNK_SetMeterInfo(uint32_t unit, uint32_t logicTrunkId, uint32_t chipTrunkId)
{
    TrunkMeterInfo *info = COM_TRUNK_GetMeterInfo(unit);
    if (info == nullptr || chipTrunkId >= ZR_TRUNK_GROUPS)
        return LSW_INVALID_ARGUMENT;
    if (COM_TRUNK_IsLogicTrunkExist(unit, logicTrunkId) == LSW_OK)
        return LSW_OK;
    info->unitId = unit;
    info->logicTrunkId[chipTrunkId] = logicTrunkId;
    ++info->trunkNum;
    return LSW_OK;
}
