#include <fmt/format.h>

#include "platform/manager.h"
#include "records/acl_records.h"
#include "tools/zrbench/acl_rule.h"
#include "tools/zrbench/command.h"
#include "tools/zrbench/slots.h"

using nlohmann::json;

namespace zrbench
{

namespace
{

// An exported operation of the records that has no slot.
#define ZR_RECORD_OP(bench, name) (*reinterpret_cast<decltype(name) *>((bench).operation(#name)))

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

Outcome program(Bench &bench, const Arguments &a)
{
    const ZrAclOps &acl = *bench.tables().acl;
    LswmAclRule rule = parseRule(a.json("rule"));
    AclEntryPlace place{};
    const uint32_t status = acl.addEntry(a.number("unit"), &rule, &place);
    return programmed(status, rule, place);
}

// Draws a logic rule id, programs and records.
Outcome add(Bench &bench, const Arguments &a)
{
    const ZrAclOps &acl = *bench.tables().acl;
    const uint32_t unit = a.number("unit");
    LswmAclRule rule = parseRule(a.json("rule"));
    uint32_t logicRuleId = 0;
    if (uint32_t ret = need(acl.allocLogicRuleId, "ACL 1")(unit, rule.partition, &logicRuleId); ret != LSW_OK)
        return Outcome::of(ret);
    AclEntryPlace place{};
    if (uint32_t ret = need(acl.addEntry, "ACL 6")(unit, &rule, &place); ret != LSW_OK)
        return Outcome::of(ret);
    const uint32_t status =
        need(acl.setRuleMapEntry, "ACL 4")(unit, logicRuleId, place.firstChipId, place.count);
    Outcome outcome = programmed(status, rule, place);
    if (status == LSW_OK)
        outcome.out("logic", logicRuleId);
    return outcome;
}

// Finds a rule by its logic rule id, removes its entries and gives its ids back.
Outcome remove(Bench &bench, const Arguments &a)
{
    const ZrAclOps &acl = *bench.tables().acl;
    const uint32_t unit = a.number("unit");
    const uint32_t logicRuleId = a.number("logic");
    uint32_t chipRuleId = 0;
    if (uint32_t ret = need(acl.logicRuleToChipRule, "ACL 2")(unit, logicRuleId, &chipRuleId); ret != LSW_OK)
        return Outcome::of(ret);
    if (uint32_t ret = need(acl.delEntry, "ACL 8")(unit, chipRuleId); ret != LSW_OK)
        return Outcome::of(ret);
    return Outcome::of(need(acl.releaseRuleRecord, "ACL 5")(unit, logicRuleId));
}

// ---- single slots -------------------------------------------------------------------------------

Outcome read(Bench &bench, const Arguments &a)
{
    LswmAclRule rule{};
    Outcome outcome = Outcome::of(bench.tables().acl->getEntry(a.number("unit"), a.number("chip"), &rule));
    if (outcome.status == LSW_OK)
        outcome.out("rule", json(showRule(rule)));
    return outcome;
}

using PortmapSlot = uint32_t (*)(uint32_t unit, uint32_t firstChipId, const uint32_t *ports);

Outcome changePorts(PortmapSlot change, const Arguments &a)
{
    LswmPortSet ports{};
    for (uint32_t port : a.ports("ports"))
        ports.word[port / 32] |= uint32_t{1} << (port % 32);
    return Outcome::of(change(a.number("unit"), a.number("chip"), ports.word));
}

// ---- listings -----------------------------------------------------------------------------------

std::string hitsOf(Bench &bench, uint32_t unit, uint32_t chipRuleId)
{
    LswmCounter counter{};
    const ZrHsecOps &hsec = *bench.tables().hsec;
    if (hsec.getStat == nullptr || hsec.getStat(unit, chipRuleId, &counter) != LSW_OK)
        return "?";
    return fmt::format("{}", counter.count);
}

// Every recorded rule by its first chip rule id, in ascending order.
template <class Visit> void everyRule(Bench &bench, uint32_t unit, Visit visit)
{
    for (uint32_t chipRuleId = 0; chipRuleId < ZR_ACL_MAX_RULES; ++chipRuleId) {
        AclRuleInfoView rule{};
        if (ZR_RECORD_OP(bench, COM_ACL_GetRuleInfoFromChipId)(unit, chipRuleId, &rule) == LSW_OK &&
            rule.firstChipId == chipRuleId)
            visit(rule);
    }
}

std::string entriesOf(uint32_t firstId, uint32_t count)
{
    return count == 1 ? fmt::format("{}", firstId) : fmt::format("{}-{}", firstId, firstId + count - 1);
}

std::string ruleTable(Bench &bench, uint32_t unit)
{
    TextTable table({"LOGIC", "CHIP", "COUNTER", "HITS", "METER", "RULE"});
    everyRule(bench, unit, [&](const AclRuleInfoView &found) {
        const uint32_t chipRuleId = found.firstChipId;
        uint32_t counter = 0;
        const bool counts =
            ZR_RECORD_OP(bench, COM_ACL_GetCounterIdFromChipRuleId)(unit, chipRuleId, &counter) == LSW_OK;
        uint32_t meter = 0;
        uint32_t policed = 0;
        ZR_RECORD_OP(bench, COM_ACL_GetRuleCarMapEntry)(unit, chipRuleId, &meter, &policed);
        LswmAclRule rule{};
        const uint32_t status = need(bench.tables().acl->getEntry, "ACL 7")(unit, chipRuleId, &rule);
        // These two have columns of their own, from the records.
        rule.action.flags &= ~uint32_t{LSWM_ACTION_COUNT | LSWM_ACTION_CAR};
        table.row({fmt::format("{}", found.logicRuleId), entriesOf(chipRuleId, found.count),
                   counts ? fmt::format("{}", counter) : "-", counts ? hitsOf(bench, unit, chipRuleId) : "-",
                   policed != 0 ? fmt::format("{}", meter) : "-",
                   status == LSW_OK ? briefRule(showRule(rule)) + (found.count > 1 ? " ..." : "")
                                    : fmt::format("status {}", status)});
    });
    return table.text() +
           "A rule is shown by its first entry; the chip does not tell vlan, priority and udf.\n";
}

std::string partitionTable(Bench &bench, uint32_t unit)
{
    TextTable table({"PARTITION", "CHIP IDS", "USED", "FREE"});
    for (uint32_t partition = 0; partition < ZR_ACL_PARTITIONS; ++partition) {
        uint32_t firstId = 0;
        uint32_t count = 0;
        if (ZR_RECORD_OP(bench, COM_ACL_GetChipRulePartRange)(unit, partition, &firstId, &count) != LSW_OK)
            throw UsageError{fmt::format("unit {} has no ACL records", unit)};
        uint32_t used = 0;
        for (uint32_t id = firstId; id < firstId + count; ++id) {
            AclRuleInfoView rule{};
            used += ZR_RECORD_OP(bench, COM_ACL_GetRuleInfoFromChipId)(unit, id, &rule) == LSW_OK ? 1 : 0;
        }
        table.row({fmt::format("{}", partition), count == 0 ? "-" : entriesOf(firstId, count),
                   fmt::format("{}", used), fmt::format("{}", count - used)});
    }
    return table.text();
}

Outcome list(Bench &bench, const Arguments &a)
{
    const uint32_t unit = a.number("unit");
    const std::string partitions = partitionTable(bench, unit);
    return Outcome::shown(ruleTable(bench, unit) + "\n" + partitions);
}

Outcome counters(Bench &bench, const Arguments &a)
{
    const uint32_t unit = a.number("unit");
    const AclCounterInfo *info = ZR_RECORD_OP(bench, COM_ACL_GetCounterInfo)(unit);
    if (info == nullptr)
        throw UsageError{fmt::format("unit {} has no ACL records", unit)};
    TextTable table({"COUNTER", "LOGIC", "CHIP", "HITS"});
    everyRule(bench, unit, [&](const AclRuleInfoView &rule) {
        uint32_t counter = 0;
        if (ZR_RECORD_OP(bench, COM_ACL_GetCounterIdFromChipRuleId)(unit, rule.firstChipId, &counter) == LSW_OK)
            table.row({fmt::format("{}", counter), fmt::format("{}", rule.logicRuleId),
                       entriesOf(rule.firstChipId, rule.count), hitsOf(bench, unit, rule.firstChipId)});
    });
    Outcome outcome = Outcome::shown(table.text());
    return outcome.out("used", info->usedNum).out("of", info->counterNum);
}

const Argument kUnit{"unit", Type::Unit};
const Argument kLogic{"logic", Type::Number};
const Argument kChip{"chip", Type::Number};
const Argument kPartition{"partition", Type::Number};
const Argument kPorts{"ports", Type::Ports};
const Argument kRule{"rule", Type::Json};

const Command kCommands[] = {
    {"acl init",
     {kUnit},
     "initialises a unit's ACLs and installs the default policies",
     "ACL 13",
     [](Bench &bench, const Arguments &a) { return Outcome::of(bench.tables().acl->init(a.number("unit"))); }},
    {"acl add", {kUnit, kRule}, "adds a rule: draws ids, programs and records it", "ACL 1, 6, 4", add},
    {"acl delete", {kUnit, kLogic}, "removes a rule: its entries, counter and ids", "ACL 2, 8, 5", remove},
    {"acl list", {kUnit}, "shows the rules and how full each partition is", "ACL 7, HSEC 4", list},
    {"acl counters", {kUnit}, "shows the hit counters of the rules", "HSEC 4", counters},
    {"acl facing",
     {kUnit, {"port", Type::Port}, {"side", Type::Word, "wan|lan"}},
     "tells which side a chip port faces: WAN ports are under the default policies",
     "ACL 3",
     [](Bench &bench, const Arguments &a) {
         return Outcome::of(bench.tables().acl->updateLanWanPolicy(a.number("unit"), a.number("port"),
                                                                   a.text("side") == "wan" ? 1 : 0));
     }},
    {"acl inuse",
     {kUnit, kLogic},
     "tells whether a logic rule id is taken",
     "ACL 0",
     [](Bench &bench, const Arguments &a) {
         Outcome outcome = Outcome::shown("");
         return outcome.out("inUse", bench.tables().acl->isLogicRuleInUse(a.number("unit"), a.number("logic")));
     }},
    {"acl alloc",
     {kUnit, kPartition},
     "chooses a free logic rule id, without taking it",
     "ACL 1",
     [](Bench &bench, const Arguments &a) {
         uint32_t logicRuleId = 0;
         Outcome outcome = Outcome::of(
             bench.tables().acl->allocLogicRuleId(a.number("unit"), a.number("partition"), &logicRuleId));
         return outcome.status == LSW_OK ? outcome.out("logic", logicRuleId) : outcome;
     }},
    {"acl find",
     {kUnit, kLogic},
     "finds a rule's first chip rule id",
     "ACL 2",
     [](Bench &bench, const Arguments &a) {
         uint32_t chipRuleId = 0;
         Outcome outcome = Outcome::of(
             bench.tables().acl->logicRuleToChipRule(a.number("unit"), a.number("logic"), &chipRuleId));
         return outcome.status == LSW_OK ? outcome.out("chip", chipRuleId) : outcome;
     }},
    {"acl record",
     {kUnit, kLogic, kChip, {"entries", Type::Number}},
     "records a programmed rule",
     "ACL 4",
     [](Bench &bench, const Arguments &a) {
         return Outcome::of(bench.tables().acl->setRuleMapEntry(a.number("unit"), a.number("logic"),
                                                                a.number("chip"), a.number("entries")));
     }},
    {"acl release",
     {kUnit, kLogic},
     "gives the ids of a rule back",
     "ACL 5",
     [](Bench &bench, const Arguments &a) {
         return Outcome::of(bench.tables().acl->releaseRuleRecord(a.number("unit"), a.number("logic")));
     }},
    {"acl program", {kUnit, kRule}, "programs a rule without recording it", "ACL 6", program},
    {"acl read", {kUnit, kChip}, "reads a recorded rule back from the chip", "ACL 7", read},
    {"acl erase",
     {kUnit, kChip},
     "clears a recorded rule's entries and frees its counter",
     "ACL 8",
     [](Bench &bench, const Arguments &a) {
         return Outcome::of(bench.tables().acl->delEntry(a.number("unit"), a.number("chip")));
     }},
    {"acl setports",
     {kUnit, kChip, kPorts},
     "replaces the ports of a recorded rule",
     "ACL 9",
     [](Bench &bench, const Arguments &a) { return changePorts(bench.tables().acl->modifyEntryPortmap, a); }},
    {"acl addports",
     {kUnit, kChip, kPorts},
     "adds ports to a recorded rule",
     "ACL 10",
     [](Bench &bench, const Arguments &a) { return changePorts(bench.tables().acl->addEntryPortmap, a); }},
    {"acl delports",
     {kUnit, kChip, kPorts},
     "takes ports from a recorded rule",
     "ACL 11",
     [](Bench &bench, const Arguments &a) { return changePorts(bench.tables().acl->removeEntryPortmap, a); }},
};

} // namespace

std::span<const Command> aclCommands()
{
    return kCommands;
}

} // namespace zrbench
