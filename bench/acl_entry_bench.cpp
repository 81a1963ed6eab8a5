// Adding and deleting ACL rules beside code written for the one rule that makes the same SDK calls and keeps
// no records; choosing a run in a nearly full partition beside a scan bit by bit.
#include "acl/acl.h"
#include "bench/pair.h"
#include "platform/bounded.h"
#include "platform/chip_sdk.h"
#include "platform/manager.h"
#include "records/acl_records.h"

namespace
{

using zrbench_pair::opaque;
using zrbench_pair::pair;
using zrbench_pair::tables;

constexpr uint32_t kUnit = 1;
constexpr uint32_t kFullUnit = 0;
constexpr uint32_t kPartition = 1; // ids 16 to 73

LswmAclRule twoFieldRule()
{
    LswmAclRule rule{};
    rule.partition = kPartition;
    rule.match.flags = LSWM_MATCH_IP_PROTOCOL | LSWM_MATCH_L4_DST_PORT;
    rule.match.ipProtocol = 17;
    rule.match.ipProtocolMask = 0xFF;
    rule.match.l4DstPort = 67;
    rule.action.flags = LSWM_ACTION_FORWARD_C | LSWM_ACTION_COUNT;
    return rule;
}

LswmAclRule fourFieldRule()
{
    LswmAclRule rule = twoFieldRule();
    rule.match.flags |= LSWM_MATCH_ETHER_TYPE | LSWM_MATCH_UDF;
    return rule;
}

LswmAclRule oneEntry = twoFieldRule();
LswmAclRule twoEntries = fourFieldRule();

// Everything but the last two ids of the partition is taken.
bool fillUnits()
{
    if (ZR_ACL_Init(kUnit) != 0 || COM_ACL_RuleInfoInit(kFullUnit, 96) != 0 ||
        ZR_ACL_InitPartInfo(kFullUnit) != 0)
        return false;
    for (uint32_t id = 16; id < 72; ++id)
        if (COM_ACL_SetRuleRecord(kFullUnit, id, id, 1) != 0)
            return false;
    return true;
}
const bool filled = fillUnits();

// ---- the library, as the manager calls it -------------------------------------------------------

void addAndDelete(LswmAclRule &rule)
{
    const ZrAclOps &acl = tables().acl;
    const uint32_t unit = opaque(kUnit);
    uint32_t logicRuleId = 0;
    AclEntryPlace place{};
    acl.allocLogicRuleId(unit, rule.partition, &logicRuleId);
    acl.addEntry(unit, &rule, &place);
    acl.setRuleMapEntry(unit, logicRuleId, place.firstChipId, place.count);

    uint32_t firstChipId = 0;
    acl.logicRuleToChipRule(unit, logicRuleId, &firstChipId);
    acl.delEntry(unit, firstChipId);
    acl.releaseRuleRecord(unit, logicRuleId);
}

// ---- the same calls by hand ---------------------------------------------------------------------

void addWord(uint32_t unit, FilterCfg &cfg, uint32_t type, uint32_t value, uint32_t mask)
{
    auto *field = static_cast<FilterField *>(LSWM_MemAlloc(sizeof(FilterField)));
    memset_s(field, sizeof *field, 0, sizeof *field);
    field->type = type;
    field->data.word = {value, mask};
    l2sw_filter_igrAcl_field_add(unit, &cfg, field);
}

void convert(uint32_t unit, const LswmAclRule &rule, bool four, FilterCfg &cfg, FilterAct &act)
{
    const LswmAclMatch &match = rule.match;
    if (four) {
        addWord(unit, cfg, SDK_FIELD_ETHER_TYPE, match.etherType, match.etherTypeMask);
        addWord(unit, cfg, SDK_FIELD_SELECTOR_15, match.udf, match.udfMask);
    }
    addWord(unit, cfg, SDK_FIELD_IP_PROTOCOL, match.ipProtocol, match.ipProtocolMask);
    addWord(unit, cfg, SDK_FIELD_UDP_DST_PORT, match.l4DstPort, 0xFFFF);
    cfg.portBitmap = match.portBitmap & 0x3801F;
    cfg.portMask = 0x3801F;
    act.switch14 = 1;
    act.counterEnable = 1;
    act.counterId = rule.action.counterId;
}

void freeChain(FilterCfg &cfg)
{
    while (cfg.head != nullptr) {
        FilterField *next = cfg.head->next;
        LSWM_MemFree(cfg.head);
        cfg.head = next;
    }
}

void addAndDeleteByHand(const LswmAclRule &rule, bool four)
{
    const uint32_t unit = opaque(kUnit);
    uint32_t count = 0;
    {
        FilterCfg cfg{};
        FilterAct act{};
        convert(unit, rule, four, cfg, act);
        l2swFilterIgrAclRuleNumGet(unit, &cfg, &act, &count);
        freeChain(cfg);
    }
    {
        FilterCfg cfg{};
        FilterAct act{};
        convert(unit, rule, four, cfg, act);
        l2sw_filter_igrAcl_cfg_add(unit, 16, &cfg, &act, &count);
        freeChain(cfg);
    }
    for (uint32_t i = 0; i < count; ++i)
        l2sw_filter_igrAcl_cfg_del(unit, 16 + i);
}

uint32_t scanForRun(const uint32_t *words, uint32_t first, uint32_t end, uint32_t count)
{
    uint32_t length = 0;
    for (uint32_t id = first; id < end; ++id) {
        length = (words[id / 32] >> id % 32 & 1) == 0 ? length + 1 : 0;
        if (length == count)
            return id + 1 - count;
    }
    return end;
}

const bool registered =
    filled &&
    pair(
        "acl add and delete, 1 entry", [] { addAndDelete(*opaque(&oneEntry)); },
        [] { addAndDeleteByHand(*opaque(&oneEntry), false); }) &&
    pair(
        "acl add and delete, 2 entries", [] { addAndDelete(*opaque(&twoEntries)); },
        [] { addAndDeleteByHand(*opaque(&twoEntries), true); }) &&
    pair(
        "acl run of 2 in a nearly full partition",
        [] {
            uint32_t first = 0;
            COM_ACL_AllocChipRuleId(opaque(kFullUnit), opaque(kPartition), opaque(2U), &first);
            benchmark::DoNotOptimize(first);
        },
        [] {
            const AclRuleInfo *info = COM_ACL_GetRuleInfo(opaque(kFullUnit));
            benchmark::DoNotOptimize(scanForRun(info->chipInUse, opaque(16U), opaque(74U), opaque(2U)));
        });

} // namespace
