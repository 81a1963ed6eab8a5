// ACL start-up: records, chip partitions, field selectors.
#include "acl/acl.h"

#include "base/print.h"
#include "base/unit.h"
#include "platform/chip_sdk.h"
#include "platform/manager.h"
#include "records/acl_records.h"

namespace
{

constexpr AclRulePartInfo kChipPartitions[ZR_ACL_PARTITIONS] = {{0, 16}, {16, 58}, {74, 6}, {80, 16}};

// A packet word that rules can match: the SDK's format code and the offset within that format.
struct FieldSelector {
    uint32_t selector;
    uint32_t format;
    uint32_t offset;
};
constexpr FieldSelector kUdfWord = {15, 1, 20};
constexpr FieldSelector kCapwapWords[] = {{3, 6, 8}, {4, 6, 10}};

uint32_t setSelector(uint32_t unit, const FieldSelector &word)
{
    return l2sw_filter_igrAcl_field_sel_set(zr::unit8(unit), word.selector, word.format, word.offset);
}

} // namespace

uint32_t ZR_ACL_Init(uint32_t unit)
{
    if (uint32_t ret = COM_ACL_RuleInfoInit(unit, ZR_ACL_RULES); ret != LSW_OK)
        return ZR_FAILED(ACL, ret, "ZR ACL Ruleinfo init unitId = %u", unit);
    // GCOVR_EXCL_START: these two refuse nothing on a unit that has its rules.
    if (uint32_t ret = COM_ACL_CounterInfoInit(unit, ZR_ACL_COUNTERS); ret != LSW_OK)
        return ZR_FAILED(ACL, ret, "ZR ACL Counterinfo init unitId = %u", unit);
    if (uint32_t ret = ZR_ACL_InitPartInfo(unit); ret != LSW_OK)
        return ZR_FAILED(ACL, ret, "ZR ACL RulePartinfo init unitId = %u", unit);
    // GCOVR_EXCL_STOP
    if (uint32_t ret = ZR_ACL_InitLanWanDefualtPolicy(unit); ret != LSW_OK)
        return ZR_FAILED(ACL, ret, "ZR ACL lan wan policy init unitId = %u", unit);
    if (uint32_t ret = HAL_ACL_InitFieldSelectorZr(unit); ret != LSW_OK)
        return ZR_FAILED(ACL, ret, "ZR ACL field selector init unitId = %u", unit);
    return LSW_OK;
}

uint32_t ZR_ACL_InitPartInfo(uint32_t unit)
{
    uint32_t total = 0;
    for (uint32_t partition = 0; partition < ZR_ACL_PARTITIONS; ++partition) {
        const AclRulePartInfo &range = kChipPartitions[partition];
        total += COM_ACL_ChipRulePartInit(unit, partition, range.firstId, range.count);
    }
    if (total != 0)
        return ZR_FAILED(ACL, total, "ZR ACL RulePartinfo init unitId = %u", unit);
    return LSW_OK;
}

uint32_t HAL_ACL_InitFieldSelectorZr(uint32_t unit)
{
    if (setSelector(unit, kUdfWord) != 0)
        return LSW_CHIP_FAILED;
    return HAL_ACL_InitCapwapKeepaliveFiled(unit);
}

uint32_t HAL_ACL_InitCapwapKeepaliveFiled(uint32_t unit)
{
    for (const FieldSelector &word : kCapwapWords)
        if (setSelector(unit, word) != 0)
            return LSW_CHIP_FAILED;
    return LSW_OK;
}
