// The SDK's ingress ACL functions over the table model.
#include "sim/chip/acl_table.h"
#include "sim/sdk/sdk.h"

using namespace zrsim;

namespace
{

uint32_t changePorts(const char *name, uint8_t unit, uint32_t id, AclTable::Ports change, uint32_t mask)
{
    return onChip({name, {unit, id, mask}}, [&](Chip &chip) { return chip.acl.changePorts(id, change, mask); });
}

// Works on the caller's records alone, for a unit that the SDK has initialised.
template <class Body> uint32_t onHost(const Shim &shim, Body &&body)
{
    return pass(shim, [&]() -> uint32_t {
        const uint32_t unit = shim.number(0);
        if (unit >= kUnits)
            return kSdkBadUnit;
        if (!sdk().initialised(unit))
            return kSdkNotInitialised;
        return shim.anyNull() ? kSdkNull : body();
    });
}

} // namespace

// A configuration is traced as a mere pointer: its bytes hold the address of its chain.
uint32_t l2sw_filter_igrAcl_field_add(uint32_t unit, FilterCfg *cfg, FilterField *field)
{
    return onHost({__func__, {unit, static_cast<void *>(cfg), field}},
                  [&] { return AclTable::chain(*cfg, *field); });
}

uint32_t l2swFilterIgrAclRuleNumGet(uint32_t unit, FilterCfg *cfg, FilterAct *act, uint32_t *count)
{
    return onHost({__func__, {unit, static_cast<void *>(cfg), act, count}},
                  [&] { return AclTable::size(*cfg, *act, *count); });
}

uint32_t l2sw_filter_igrAcl_cfg_add(uint32_t unit, uint32_t id, FilterCfg *cfg, FilterAct *act,
                                    uint32_t *written)
{
    return onChip({__func__, {unit, id, static_cast<void *>(cfg), act, written}},
                  [&](Chip &chip) { return chip.acl.write(id, *cfg, *act, *written); });
}

uint32_t l2sw_filter_igrAcl_cfg_get(uint32_t unit, uint32_t id, FilterCfgRaw *raw, FilterAct *act)
{
    return onChip({__func__, {unit, id, raw, act}}, [&](Chip &chip) { return chip.acl.read(id, *raw, *act); });
}

uint32_t l2sw_filter_igrAcl_cfg_del(uint32_t unit, uint32_t id)
{
    return onChip({__func__, {unit, id}}, [&](Chip &chip) { return chip.acl.erase(id); });
}

uint32_t l2sw_filter_igrAcl_entry_modifybitmap(uint8_t unit, uint32_t id, uint32_t mask)
{
    return changePorts(__func__, unit, id, AclTable::Ports::Replace, mask);
}

uint32_t l2sw_filter_igrAcl_entry_addbitmap(uint8_t unit, uint32_t id, uint32_t mask)
{
    return changePorts(__func__, unit, id, AclTable::Ports::Add, mask);
}

uint32_t l2sw_filter_igrAcl_entry_removebitmap(uint8_t unit, uint32_t id, uint32_t mask)
{
    return changePorts(__func__, unit, id, AclTable::Ports::Remove, mask);
}

uint32_t l2sw_filter_igrAcl_field_sel_set(uint8_t unit, uint32_t selector, uint32_t format, uint32_t offset)
{
    return onChip({__func__, {unit, selector, format, offset}},
                  [&](Chip &chip) { return chip.acl.select(selector, format, offset); });
}

uint32_t l2sw_stat_logging_counter_get(uint32_t unit, uint32_t counter, uint32_t *count)
{
    return onChip({__func__, {unit, counter, count}},
                  [&](Chip &chip) { return chip.acl.counter(counter, *count); });
}
