// ACL rules, as the manager handles them and slot by slot.
#include <fmt/format.h>

#include "records/acl_records.h"
#include "tools/zrbench/acl_rule.h"
#include "tools/zrbench/rows.h"

using nlohmann::json;

namespace zrbench
{

namespace
{

// An exported operation of the records that has no slot.
#define ZR_RECORD_OP(session, name) (*(session).operation<decltype(name)>(#name))

// ---- rules in one step: what the manager does with several slots ------------------------------

Outcome programmed(uint32_t status, const LswmAclRule &rule, const AclEntryPlace &place)
{
    Outcome outcome = Outcome::of(status);
    if (status != LSW_OK)
        return outcome;
    outcome.out("chip", place.firstChipId).out("entries", place.count);
    if ((rule.action.flags & LSWM_ACTION_COUNT) != 0)
        outcome.out("counter", rule.action.counterId);
    return outcome;
}

Outcome program(Session &session, const Arguments &a)
{
    LswmAclRule rule = parseRule(a.json("rule"));
    AclEntryPlace place{};
    const uint32_t status = session.slot(&ZrAclOps::addEntry)(a.number("unit"), &rule, &place);
    return programmed(status, rule, place);
}

// Allocates a logic rule id, programs the rule and records it.
Outcome add(Session &session, const Arguments &a)
{
    const uint32_t unit = a.number("unit");
    LswmAclRule rule = parseRule(a.json("rule"));
    uint32_t logicRuleId = 0;
    if (uint32_t ret = session.slot(&ZrAclOps::allocLogicRuleId)(unit, rule.partition, &logicRuleId);
        ret != LSW_OK)
        return Outcome::of(ret);
    AclEntryPlace place{};
    if (uint32_t ret = session.slot(&ZrAclOps::addEntry)(unit, &rule, &place); ret != LSW_OK)
        return Outcome::of(ret);
    const uint32_t status =
        session.slot(&ZrAclOps::setRuleMapEntry)(unit, logicRuleId, place.firstChipId, place.count);
    Outcome outcome = programmed(status, rule, place);
    if (status == LSW_OK)
        outcome.out("logic", logicRuleId);
    return outcome;
}

// Finds a rule by its logic rule id, deletes its entries and releases its ids.
Outcome remove(Session &session, const Arguments &a)
{
    const uint32_t unit = a.number("unit");
    const uint32_t logicRuleId = a.number("logic");
    uint32_t chipRuleId = 0;
    if (uint32_t ret = session.slot(&ZrAclOps::logicRuleToChipRule)(unit, logicRuleId, &chipRuleId);
        ret != LSW_OK)
        return Outcome::of(ret);
    if (uint32_t ret = session.slot(&ZrAclOps::delEntry)(unit, chipRuleId); ret != LSW_OK)
        return Outcome::of(ret);
    return Outcome::of(session.slot(&ZrAclOps::releaseRuleRecord)(unit, logicRuleId));
}

// ---- single slots -------------------------------------------------------------------------------

Outcome read(Session &session, const Arguments &a)
{
    LswmAclRule rule{};
    return Outcome::of(session.slot(&ZrAclOps::getEntry)(a.number("unit"), a.number("chip"), &rule))
        .out("rule", json(showRule(rule)));
}

constexpr Argument kLogicRule{.name = "logic", .meaning = "the manager's identifier of a rule"};
constexpr Argument kChipRule{.name = "chip", .meaning = "the first chip entry of a rule"};
const Argument kRule{.name = "rule", .type = Type::Json, .choices = ruleKeys(), .check = checkRule};

using PortmapSlot = uint32_t (*ZrAclOps::*)(uint32_t unit, uint32_t firstChipId, const uint32_t *ports);

Command portsRow(std::string_view name, PortmapSlot slot, std::string_view help)
{
    return {name,
            {kUnit, kChipRule, {"ports", Type::Ports}},
            help,
            slotLabel(slot),
            [slot](Session &session, const Arguments &a) {
                LswmPortSet ports{};
                for (const uint32_t port : a.ports("ports"))
                    ports.word[port / 32] |= uint32_t{1} << (port % 32);
                return Outcome::of(session.slot(slot)(a.number("unit"), a.number("chip"), ports.word));
            }};
}

// ---- listings -----------------------------------------------------------------------------------

json hitsOf(Session &session, uint32_t unit, uint32_t chipRuleId)
{
    LswmCounter counter{};
    const uint32_t status = session.slot(&ZrHsecOps::getStat)(unit, chipRuleId, &counter);
    return status == LSW_OK ? json(counter.count) : "?";
}

// Every recorded rule by its first chip rule id, in ascending order.
template <class Visit> void everyRule(Session &session, uint32_t unit, Visit visit)
{
    for (uint32_t chipRuleId = 0; chipRuleId < ZR_ACL_MAX_RULES; ++chipRuleId) {
        AclRuleInfoView rule{};
        if (ZR_RECORD_OP(session, COM_ACL_GetRuleInfoFromChipId)(unit, chipRuleId, &rule) == LSW_OK &&
            rule.firstChipId == chipRuleId)
            visit(rule);
    }
}

json entriesOf(uint32_t firstId, uint32_t count)
{
    json ids = json::array();
    while (count-- > 0)
        ids.push_back(firstId++);
    return ids;
}

Outcome ruleTable(Session &session, uint32_t unit)
{
    TextTable table({"LOGIC", "CHIP", "COUNTER", "HITS", "METER", "RULE"});
    everyRule(session, unit, [&](const AclRuleInfoView &found) {
        const uint32_t chipRuleId = found.firstChipId;
        uint32_t counter = 0;
        const bool counts =
            ZR_RECORD_OP(session, COM_ACL_GetCounterIdFromChipRuleId)(unit, chipRuleId, &counter) == LSW_OK;
        uint32_t meter = 0;
        uint32_t policed = 0;
        ZR_RECORD_OP(session, COM_ACL_GetRuleCarMapEntry)(unit, chipRuleId, &meter, &policed);
        LswmAclRule rule{};
        const uint32_t status = session.slot(&ZrAclOps::getEntry)(unit, chipRuleId, &rule);
        // Counter and meter have their own columns, from the records.
        rule.action.flags &= ~uint32_t{LSWM_ACTION_COUNT | LSWM_ACTION_CAR};
        table.row({found.logicRuleId, entriesOf(chipRuleId, found.count), counts ? json(counter) : "-",
                   counts ? hitsOf(session, unit, chipRuleId) : "-", policed != 0 ? json(meter) : "-",
                   status == LSW_OK ? briefRule(showRule(rule)) + (found.count > 1 ? " ..." : "")
                                    : fmt::format("status {}", status)});
    });
    return Outcome::shown(table, "A rule is shown by its first entry; vlan, priority, udf and the actions trap "
                                 "and redirect are not read back.\n");
}

std::string partitionTable(Session &session, uint32_t unit)
{
    TextTable table({"PARTITION", "CHIP IDS", "USED", "FREE"});
    for (uint32_t partition = 0; partition < ZR_ACL_PARTITIONS; ++partition) {
        uint32_t firstId = 0;
        uint32_t count = 0;
        if (ZR_RECORD_OP(session, COM_ACL_GetChipRulePartRange)(unit, partition, &firstId, &count) != LSW_OK)
            throw UsageError{fmt::format("unit {} has no ACL records", unit)};
        uint32_t used = 0;
        for (uint32_t id = firstId; id < firstId + count; ++id) {
            AclRuleInfoView rule{};
            used += ZR_RECORD_OP(session, COM_ACL_GetRuleInfoFromChipId)(unit, id, &rule) == LSW_OK ? 1 : 0;
        }
        table.row({partition, entriesOf(firstId, count), used, count - used});
    }
    return table.text();
}

Outcome listRules(Session &session, const Arguments &a)
{
    const uint32_t unit = a.number("unit");
    const std::string partitions = partitionTable(session, unit);
    Outcome outcome = ruleTable(session, unit);
    outcome.text += "\n" + partitions;
    return outcome;
}

Outcome counters(Session &session, const Arguments &a)
{
    const uint32_t unit = a.number("unit");
    const AclCounterInfo *info = ZR_RECORD_OP(session, COM_ACL_GetCounterInfo)(unit);
    if (info == nullptr)
        throw UsageError{fmt::format("unit {} has no ACL records", unit)};
    TextTable table({"COUNTER", "LOGIC", "CHIP", "HITS"});
    everyRule(session, unit, [&](const AclRuleInfoView &rule) {
        uint32_t counter = 0;
        if (ZR_RECORD_OP(session, COM_ACL_GetCounterIdFromChipRuleId)(unit, rule.firstChipId, &counter) ==
            LSW_OK)
            table.row({counter, rule.logicRuleId, entriesOf(rule.firstChipId, rule.count),
                       hitsOf(session, unit, rule.firstChipId)});
    });
    Outcome outcome = Outcome::shown(table);
    return outcome.out("used", info->usedNum).out("of", info->counterNum);
}

const Command kAclCommands[] = {
    slotRow("acl init", &ZrAclOps::init, {kUnit},
            "initialises a unit's ACLs and installs the default policies"),
    {"acl add", {kUnit, kRule}, "adds a rule: allocates ids, programs and records it", "ACL 1, 6, 4", add},
    {"acl delete", {kUnit, kLogicRule}, "removes a rule: its entries, counter and ids", "ACL 2, 8, 5", remove},
    {"acl list", {kUnit}, "shows the rules and how full each partition is", "ACL 7, HSEC 4", listRules},
    {"acl counters", {kUnit}, "shows the hit counters of the rules", "HSEC 4", counters},
    slotRow("acl facing", &ZrAclOps::updateLanWanPolicy,
            {kUnit, kPort, Argument{"side", Type::Word, "lan|wan"}},
            "sets which side a chip port faces: the default policies apply to WAN ports"),
    inUseRow(slotRow("acl inuse", &ZrAclOps::isLogicRuleInUse, {kUnit, kLogicRule},
                     "shows whether a logic rule id is in use")),
    slotRow("acl alloc", &ZrAclOps::allocLogicRuleId, {kUnit, "partition", kLogicRule},
            "chooses a free logic rule id, without taking it"),
    slotRow("acl find", &ZrAclOps::logicRuleToChipRule, {kUnit, kLogicRule, kChipRule},
            "finds a rule's first chip rule id"),
    slotRow("acl record", &ZrAclOps::setRuleMapEntry, {kUnit, kLogicRule, kChipRule, "entries"},
            "records a programmed rule"),
    slotRow("acl release", &ZrAclOps::releaseRuleRecord, {kUnit, kLogicRule}, "releases the ids of a rule"),
    {"acl program",
     {kUnit, kRule},
     "programs a rule without recording it",
     slotLabel(&ZrAclOps::addEntry),
     program},
    {"acl read",
     {kUnit, kChipRule},
     "reads a recorded rule back from the chip",
     slotLabel(&ZrAclOps::getEntry),
     read},
    slotRow("acl erase", &ZrAclOps::delEntry, {kUnit, kChipRule},
            "clears a recorded rule's entries and releases its counter"),
    portsRow("acl setports", &ZrAclOps::modifyEntryPortmap, "replaces the ports of a recorded rule"),
    portsRow("acl addports", &ZrAclOps::addEntryPortmap, "adds ports to a recorded rule"),
    portsRow("acl delports", &ZrAclOps::removeEntryPortmap, "removes ports from a recorded rule"),
};

} // namespace

std::span<const Command> aclCommands()
{
    return kAclCommands;
}

} // namespace zrbench
