// The ports of a rule on the chip.
#include "acl/acl.h"

#include "base/print.h"
#include "base/unit.h"
#include "platform/chip_sdk.h"
#include "platform/manager.h"
#include "records/acl_records.h"

namespace
{

// Changes the ports of every entry of the rule, up to the first that the chip refuses; the SDK's status.
uint32_t changeEntries(uint32_t (*change)(uint8_t unit, uint32_t id, uint32_t mask), uint32_t unit,
                       const AclRuleInfoView &rule, uint32_t ports)
{
    const uint32_t mask = ports & ZR_ACL_CHIP_PORTS;
    for (uint32_t i = 0; i < rule.count; ++i)
        if (uint32_t ret = change(zr::unit8(unit), rule.firstChipId + i, mask); ret != 0)
            return ret;
    return LSW_OK;
}

} // namespace

uint32_t ZR_ACL_ModifyEntryPortmap(uint32_t unit, uint32_t firstChipId, const uint32_t *ports)
{
    return HAL_ACL_ModifyEntryBitmapZr(unit, firstChipId, ports);
}

uint32_t HAL_ACL_ModifyEntryBitmapZr(uint32_t unit, uint32_t firstChipId, const uint32_t *ports)
{
    if (ports == nullptr)
        return LSW_NULL_POINTER;
    AclRuleInfoView rule;
    if (uint32_t ret = COM_ACL_GetRuleInfoFromChipId(unit, firstChipId, &rule); ret != LSW_OK)
        return ZR_FAILED(ACL, ret, "ZR GetRuleInfoFromChipId failed");
    if (uint32_t ret = changeEntries(l2sw_filter_igrAcl_entry_modifybitmap, unit, rule, ports[0]); ret != 0)
        return ZR_FAILED(ACL, ret, "ZR modify entry portmap failed");
    return LSW_OK;
}

uint32_t ZR_ACL_AddEntryPortmap(uint32_t unit, uint32_t firstChipId, const uint32_t *ports)
{
    return HAL_ACL_AddEntryBitmapZr(unit, firstChipId, ports);
}

uint32_t HAL_ACL_AddEntryBitmapZr(uint32_t unit, uint32_t firstChipId, const uint32_t *ports)
{
    if (ports == nullptr)
        return LSW_NULL_POINTER;
    AclRuleInfoView rule;
    if (uint32_t ret = COM_ACL_GetRuleInfoFromChipId(unit, firstChipId, &rule); ret != LSW_OK)
        return ZR_FAILED(ACL, ret, "ZR add entry get entryCount failed");
    if (uint32_t ret = changeEntries(l2sw_filter_igrAcl_entry_addbitmap, unit, rule, ports[0]); ret != 0)
        return ZR_FAILED(ACL, ret, "ZR add entry portmap failed");
    return LSW_OK;
}

uint32_t ZR_ACL_RemoveEntryPortmap(uint32_t unit, uint32_t firstChipId, const uint32_t *ports)
{
    return HAL_ACL_RemoveEntryBitmapZr(unit, firstChipId, ports);
}

uint32_t HAL_ACL_RemoveEntryBitmapZr(uint32_t unit, uint32_t firstChipId, const uint32_t *ports)
{
    if (ports == nullptr)
        return LSW_NULL_POINTER;
    AclRuleInfoView rule;
    if (uint32_t ret = COM_ACL_GetRuleInfoFromChipId(unit, firstChipId, &rule); ret != LSW_OK)
        return ZR_FAILED(ACL, ret, "ZR remove entry get entryCount failed");
    if (uint32_t ret = changeEntries(l2sw_filter_igrAcl_entry_removebitmap, unit, rule, ports[0]); ret != 0)
        return ZR_FAILED(ACL, ret, "ZR remove entry portmap failed");
    return LSW_OK;
}
