#include "records/meter_records.h"

#include "base/bitmap.h"
#include "base/id_map.h"
#include "platform/manager.h"

HsecMeterInfo g_HsecMeterInfo[LSWM_UNITS][ZR_HSEC_METER_TYPES];

namespace
{

zr::IdMap<HsecMeterEntry> mapOf(const HsecMeterInfo &info)
{
    return {info.entries, info.entryCount};
}

// Whether a bitmap would have to hold an identifier that it has no bit for.
bool beyondBitmap(const HsecMeterInfo &info, uint32_t id)
{
    return info.bitmapMode != 0 && id >= ZR_HSEC_BITMAP_IDS;
}

uint32_t allocLowest(zr::Bitmap<uint32_t, ZR_HSEC_BITMAP_IDS / 32> inUse, uint32_t count, uint32_t *id)
{
    const uint32_t lowest = inUse.firstClear(count);
    if (lowest >= count)
        return LSW_NO_RESOURCE;
    *id = lowest;
    return LSW_OK;
}

} // namespace

HsecMeterInfo *COM_HSEC_GetMeterInfo(uint32_t unit, uint32_t type)
{
    return unit < LSWM_UNITS && type < ZR_HSEC_METER_TYPES ? &g_HsecMeterInfo[unit][type] : nullptr;
}

uint32_t COM_HSEC_MeterInfoInit(uint32_t unit, uint32_t type, uint32_t base, uint32_t count, uint8_t bitmapMode)
{
    HsecMeterInfo *info = COM_HSEC_GetMeterInfo(unit, type);
    if (info == nullptr)
        return LSW_INVALID_ARGUMENT;
    if (info->entries != nullptr)
        return LSW_IN_USE;
    if (bitmapMode != 0 && count > ZR_HSEC_BITMAP_IDS)
        return LSW_INVALID_ARGUMENT;
    info->entries = zr::allocIdMap<HsecMeterEntry>(count);
    if (info->entries == nullptr)
        return LSW_NULL_POINTER;
    info->base = base;
    info->logicCount = count;
    info->entryCount = static_cast<uint16_t>(count);
    info->bitmapMode = bitmapMode;
    info->usedCount = 0;
    return LSW_OK;
}

uint32_t COM_HSEC_IsLogicMeterInUse(uint32_t unit, uint32_t type, uint32_t logicId)
{
    HsecMeterInfo *info = COM_HSEC_GetMeterInfo(unit, type);
    if (info == nullptr || beyondBitmap(*info, logicId))
        return 1;
    if (info->bitmapMode != 0)
        return zr::Bitmap(info->logicInUse).test(logicId);
    return mapOf(*info).findLogic(logicId) != nullptr;
}

uint32_t COM_HSEC_AllocLogicMeterId(uint32_t unit, uint32_t type, uint32_t *logicId)
{
    HsecMeterInfo *info = COM_HSEC_GetMeterInfo(unit, type);
    if (info == nullptr)
        return LSW_INVALID_ARGUMENT;
    if (logicId == nullptr)
        return LSW_NULL_POINTER;
    if (info->bitmapMode == 0)
        return LSW_NO_RESOURCE;
    return allocLowest(zr::Bitmap(info->logicInUse), info->logicCount, logicId);
}

uint32_t COM_HSEC_AllocChipMeter(uint32_t unit, uint32_t type, uint32_t *chipId)
{
    HsecMeterInfo *info = COM_HSEC_GetMeterInfo(unit, type);
    if (info == nullptr)
        return LSW_INVALID_ARGUMENT;
    if (chipId == nullptr)
        return LSW_NULL_POINTER;
    if (info->bitmapMode == 0)
        return LSW_NO_RESOURCE;
    return allocLowest(zr::Bitmap(info->chipInUse), info->entryCount, chipId);
}

uint32_t COM_HSEC_AllocMeterId(uint32_t unit, uint32_t type, uint32_t *logicId, uint32_t *chipId)
{
    if (COM_HSEC_GetMeterInfo(unit, type) == nullptr)
        return LSW_INVALID_ARGUMENT;
    if (logicId == nullptr || chipId == nullptr)
        return LSW_NULL_POINTER;
    if (uint32_t ret = COM_HSEC_AllocLogicMeterId(unit, type, logicId); ret != LSW_OK)
        return ret;
    return COM_HSEC_AllocChipMeter(unit, type, chipId);
}

uint32_t COM_HSEC_SetMeterEntry(uint32_t unit, uint32_t type, uint32_t logicId, uint32_t chipId)
{
    HsecMeterInfo *info = COM_HSEC_GetMeterInfo(unit, type);
    if (info == nullptr || beyondBitmap(*info, logicId) || beyondBitmap(*info, chipId))
        return LSW_INVALID_ARGUMENT;
    if (COM_HSEC_IsLogicMeterInUse(unit, type, logicId) != 0)
        return LSW_IN_USE;
    if (mapOf(*info).take(logicId, chipId) == nullptr)
        return LSW_NO_RESOURCE;
    ++info->usedCount;
    if (info->bitmapMode != 0) {
        zr::Bitmap(info->logicInUse).set(logicId);
        zr::Bitmap(info->chipInUse).set(chipId);
    }
    return LSW_OK;
}

uint32_t COM_HSEC_LogicMeterToChipMeter(uint32_t unit, uint32_t type, uint32_t logicId, uint32_t *chipId)
{
    const HsecMeterInfo *info = COM_HSEC_GetMeterInfo(unit, type);
    if (info == nullptr)
        return LSW_INVALID_ARGUMENT;
    if (chipId == nullptr)
        return LSW_NULL_POINTER;
    const HsecMeterEntry *entry = mapOf(*info).findLogic(logicId);
    if (entry == nullptr)
        return LSW_CHIP_FAILED;
    *chipId = entry->chipId;
    return LSW_OK;
}

uint32_t COM_HSEC_ChipMeterToLogicMeter(uint32_t unit, uint32_t type, uint32_t chipId, uint32_t *logicId)
{
    const HsecMeterInfo *info = COM_HSEC_GetMeterInfo(unit, type);
    if (info == nullptr)
        return LSW_INVALID_ARGUMENT;
    if (logicId == nullptr)
        return LSW_NULL_POINTER;
    const HsecMeterEntry *entry = mapOf(*info).findChip(chipId);
    if (entry == nullptr)
        return LSW_CHIP_FAILED;
    *logicId = entry->logicId;
    return LSW_OK;
}

uint32_t COM_HSEC_ReleseHsecRecord(uint32_t unit, uint32_t type, uint32_t logicId)
{
    HsecMeterInfo *info = COM_HSEC_GetMeterInfo(unit, type);
    if (info == nullptr || beyondBitmap(*info, logicId))
        return LSW_INVALID_ARGUMENT;
    HsecMeterEntry *entry = mapOf(*info).findLogic(logicId);
    if (entry != nullptr) {
        entry->valid = 0;
        --info->usedCount;
    }
    if (info->bitmapMode != 0) {
        zr::Bitmap(info->logicInUse).clear(logicId);
        if (entry != nullptr)
            zr::Bitmap(info->chipInUse).clear(entry->chipId);
    }
    return LSW_OK;
}

uint32_t COM_HSEC_EntryIdToLogicMeter(uint32_t unit, uint32_t type, uint32_t entryId, uint32_t *logicId)
{
    const HsecMeterInfo *info = COM_HSEC_GetMeterInfo(unit, type);
    if (info == nullptr)
        return LSW_INVALID_ARGUMENT;
    if (logicId == nullptr)
        return LSW_NULL_POINTER;
    if (info->entryCount == 0) {
        *logicId = entryId;
        return LSW_OK;
    }
    if (entryId >= info->entryCount)
        return LSW_NO_RESOURCE;
    *logicId = info->base + entryId;
    return LSW_OK;
}
