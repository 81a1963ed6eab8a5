// The SDK's ingress ACL functions over the table model.
#include "sim/chip/acl_table.h"
#include "sim/sdk/sdk.h"

using namespace zrsim;

namespace
{

uint32_t changePorts(const char *name, uint8_t unit, uint32_t id, AclTable::Ports change, uint32_t mask)
{
    return onChip(
        name, unit, [&](Chip &chip) { return chip.acl.changePorts(id, change, mask); }, id, mask);
}

// Works on the caller's records alone, for a unit that the SDK has initialised.
template <class Body> uint32_t onHost(uint32_t unit, Body &&body)
{
    if (unit >= kUnits)
        return kSdkBadUnit;
    return sdk().initialised(unit) ? body() : kSdkNotInitialised;
}

template <class... Pointers> bool anyNull(Pointers... pointers)
{
    return ((pointers == nullptr) || ...);
}

} // namespace

// A configuration is traced as a mere pointer: its bytes hold the address of its chain.
uint32_t l2sw_filter_igrAcl_field_add(uint32_t unit, FilterCfg *cfg, FilterField *field)
{
    return pass(
        "l2sw_filter_igrAcl_field_add",
        [&] {
            return onHost(unit, [&] { return anyNull(cfg, field) ? kSdkNull : AclTable::chain(*cfg, *field); });
        },
        unit, static_cast<void *>(cfg), field);
}

uint32_t l2swFilterIgrAclRuleNumGet(uint32_t unit, FilterCfg *cfg, FilterAct *act, uint32_t *count)
{
    return pass(
        "l2swFilterIgrAclRuleNumGet",
        [&] {
            return onHost(
                unit, [&] { return anyNull(cfg, act, count) ? kSdkNull : AclTable::size(*cfg, *act, *count); });
        },
        unit, static_cast<void *>(cfg), act, count);
}

uint32_t l2sw_filter_igrAcl_cfg_add(uint32_t unit, uint32_t id, FilterCfg *cfg, FilterAct *act,
                                    uint32_t *written)
{
    return onChip(
        "l2sw_filter_igrAcl_cfg_add", unit,
        [&](Chip &chip) {
            return anyNull(cfg, act, written) ? kSdkNull : chip.acl.write(id, *cfg, *act, *written);
        },
        id, static_cast<void *>(cfg), act, written);
}

uint32_t l2sw_filter_igrAcl_cfg_get(uint32_t unit, uint32_t id, FilterCfgRaw *raw, FilterAct *act)
{
    return onChip(
        "l2sw_filter_igrAcl_cfg_get", unit,
        [&](Chip &chip) { return anyNull(raw, act) ? kSdkNull : chip.acl.read(id, *raw, *act); }, id, raw, act);
}

uint32_t l2sw_filter_igrAcl_cfg_del(uint32_t unit, uint32_t id)
{
    return onChip(
        "l2sw_filter_igrAcl_cfg_del", unit, [&](Chip &chip) { return chip.acl.erase(id); }, id);
}

uint32_t l2sw_filter_igrAcl_entry_modifybitmap(uint8_t unit, uint32_t id, uint32_t mask)
{
    return changePorts("l2sw_filter_igrAcl_entry_modifybitmap", unit, id, AclTable::Ports::Replace, mask);
}

uint32_t l2sw_filter_igrAcl_entry_addbitmap(uint8_t unit, uint32_t id, uint32_t mask)
{
    return changePorts("l2sw_filter_igrAcl_entry_addbitmap", unit, id, AclTable::Ports::Add, mask);
}

uint32_t l2sw_filter_igrAcl_entry_removebitmap(uint8_t unit, uint32_t id, uint32_t mask)
{
    return changePorts("l2sw_filter_igrAcl_entry_removebitmap", unit, id, AclTable::Ports::Remove, mask);
}

uint32_t l2sw_filter_igrAcl_field_sel_set(uint8_t unit, uint32_t selector, uint32_t format, uint32_t offset)
{
    return onChip(
        "l2sw_filter_igrAcl_field_sel_set", unit,
        [&](Chip &chip) { return chip.acl.select(selector, format, offset); }, selector, format, offset);
}

uint32_t l2sw_stat_logging_counter_get(uint32_t unit, uint32_t counter, uint32_t *count)
{
    return onChip(
        "l2sw_stat_logging_counter_get", unit,
        [&](Chip &chip) { return anyNull(count) ? kSdkNull : chip.acl.counter(counter, *count); }, counter,
        count);
}
