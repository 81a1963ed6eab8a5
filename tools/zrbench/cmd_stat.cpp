#include <fmt/format.h>

#include "platform/manager.h"
#include "records/stat_records.h"
#include "tools/zrbench/qos_commands.h"

namespace zrbench
{

namespace
{

#define ZR_STAT_OP(bench, name) (*reinterpret_cast<decltype(name) *>((bench).operation(#name)))

constexpr Argument kUnit{"unit", Type::Unit};
constexpr Argument kType{"type", Type::Number};
constexpr Argument kLogic{"logic", Type::Number};
constexpr Argument kChip{"chip", Type::Number};
constexpr Argument kCount{"count", Type::Number};

Outcome list(Bench &bench, const Arguments &a)
{
    TextTable table({"TYPE", "ENTRIES", "USED"});
    for (uint32_t type = 0; type < ZR_QOS_STAT_TYPES; ++type) {
        const QosStatPartInfo *part = ZR_STAT_OP(bench, COM_QOS_GetStatPartInfo)(a.number("unit"), type);
        if (part == nullptr)
            throw UsageError{fmt::format("unit {} has no statistics records", a.number("unit"))};
        table.row({fmt::to_string(type),
                   part->entryCount == 0 ? "pass-through" : fmt::to_string(part->entryCount),
                   fmt::to_string(part->usedCount)});
    }
    return Outcome::shown(table.text());
}

const Command kCommands[] = {
    {"stat init",
     {kUnit, kType, kCount},
     "gives a statistics type so many map entries; without any, identifiers pass through",
     "COM_QOS_StatInfoInit",
     [](Bench &bench, const Arguments &a) {
         return Outcome::of(
             ZR_STAT_OP(bench, COM_QOS_StatInfoInit)(a.number("unit"), a.number("type"), a.number("count")));
     }},
    {"stat map",
     {kUnit, kType, kCount},
     "gives a statistics type the memory of its map alone",
     "COM_QOS_StatMapInfoInit",
     [](Bench &bench, const Arguments &a) {
         return Outcome::of(
             ZR_STAT_OP(bench, COM_QOS_StatMapInfoInit)(a.number("unit"), a.number("type"), a.number("count")));
     }},
    {"stat list", {kUnit}, "shows how full the statistics records are", "COM_QOS_GetStatPartInfo", list},
    {"stat inuse",
     {kUnit, kType, kLogic},
     "tells whether a logic statistics identifier is recorded",
     "COM_QOS_IsLogicStatIdInUse",
     [](Bench &bench, const Arguments &a) {
         Outcome outcome = Outcome::shown("");
         return outcome.out("inUse", ZR_STAT_OP(bench, COM_QOS_IsLogicStatIdInUse)(
                                         a.number("unit"), a.number("type"), a.number("logic")));
     }},
    {"stat record",
     {kUnit, kType, kLogic, kChip},
     "records which chip identifier backs a logic one",
     "COM_QOS_SetStatEntry",
     [](Bench &bench, const Arguments &a) {
         return Outcome::of(ZR_STAT_OP(bench, COM_QOS_SetStatEntry)(a.number("unit"), a.number("type"),
                                                                    a.number("logic"), a.number("chip")));
     }},
    {"stat chip",
     {kUnit, kType, kLogic},
     "finds the chip identifier of a logic one",
     "COM_QOS_StatLogicIdToChipId",
     [](Bench &bench, const Arguments &a) {
         uint32_t chip = 0;
         Outcome outcome = Outcome::of(ZR_STAT_OP(bench, COM_QOS_StatLogicIdToChipId)(
             a.number("unit"), a.number("type"), a.number("logic"), &chip));
         return outcome.status == LSW_OK ? outcome.out("chip", chip) : outcome;
     }},
    {"stat logic",
     {kUnit, kType, kChip},
     "finds the logic identifier of a chip one",
     "COM_QOS_StatChipIdToLogicId",
     [](Bench &bench, const Arguments &a) {
         uint32_t logic = 0;
         Outcome outcome = Outcome::of(ZR_STAT_OP(bench, COM_QOS_StatChipIdToLogicId)(
             a.number("unit"), a.number("type"), a.number("chip"), &logic));
         return outcome.status == LSW_OK ? outcome.out("logic", logic) : outcome;
     }},
    {"stat release",
     {kUnit, kType, kLogic},
     "frees the entry of a logic statistics identifier",
     "COM_QOS_ReleseStatRecord",
     [](Bench &bench, const Arguments &a) {
         return Outcome::of(ZR_STAT_OP(bench, COM_QOS_ReleseStatRecord)(a.number("unit"), a.number("type"),
                                                                        a.number("logic")));
     }},
};

} // namespace

std::span<const Command> statCommands()
{
    return kCommands;
}

} // namespace zrbench
