// Statistics records: exported operations without a slot.
#include <fmt/format.h>

#include "records/stat_records.h"
#include "tools/zrbench/rows.h"

namespace zrbench
{

namespace
{

Outcome listRecords(Session &session, const Arguments &a)
{
    const auto get = session.operation<decltype(COM_QOS_GetStatPartInfo)>("COM_QOS_GetStatPartInfo");
    TextTable table({"TYPE", "ENTRIES", "USED"});
    for (uint32_t type = 0; type < ZR_QOS_STAT_TYPES; ++type) {
        const QosStatPartInfo *part = get(a.number("unit"), type);
        if (part == nullptr)
            throw UsageError{fmt::format("unit {} has no statistics records", a.number("unit"))};
        table.row({type,
                   part->entryCount == 0 ? nlohmann::json("pass-through") : nlohmann::json(part->entryCount),
                   part->usedCount});
    }
    return Outcome::shown(table);
}

constexpr Argument kStatType{.name = "type", .meaning = "a statistics type, 0 to 7"};
constexpr Argument kLogicStat{.name = "logic", .meaning = "the manager's identifier of a statistics entry"};
constexpr Argument kChipStat{.name = "chip", .meaning = "the chip's identifier of a statistics entry"};
constexpr Argument kCount{.name = "count", .meaning = "map entries"};

const Command kStatCommands[] = {
    exportRow<decltype(COM_QOS_StatInfoInit)>(
        "stat init", "COM_QOS_StatInfoInit", {kUnit, kStatType, kCount},
        "gives a statistics type COUNT map entries; with 0, identifiers pass through"),
    exportRow<decltype(COM_QOS_StatMapInfoInit)>("stat map", "COM_QOS_StatMapInfoInit",
                                                 {kUnit, kStatType, kCount},
                                                 "allocates only the memory of a statistics type's map"),
    {"stat list", {kUnit}, "shows how full the statistics records are", "COM_QOS_GetStatPartInfo", listRecords},
    inUseRow(exportRow<decltype(COM_QOS_IsLogicStatIdInUse)>(
        "stat inuse", "COM_QOS_IsLogicStatIdInUse", {kUnit, kStatType, kLogicStat},
        "shows whether a logic statistics identifier is recorded")),
    exportRow<decltype(COM_QOS_SetStatEntry)>("stat record", "COM_QOS_SetStatEntry",
                                              {kUnit, kStatType, kLogicStat, kChipStat},
                                              "records which chip identifier backs a logic one"),
    exportRow<decltype(COM_QOS_StatLogicIdToChipId)>("stat chip", "COM_QOS_StatLogicIdToChipId",
                                                     {kUnit, kStatType, kLogicStat, kChipStat},
                                                     "finds the chip identifier of a logic one"),
    exportRow<decltype(COM_QOS_StatChipIdToLogicId)>("stat logic", "COM_QOS_StatChipIdToLogicId",
                                                     {kUnit, kStatType, kChipStat, kLogicStat},
                                                     "finds the logic identifier of a chip one"),
    exportRow<decltype(COM_QOS_ReleseStatRecord)>("stat release", "COM_QOS_ReleseStatRecord",
                                                  {kUnit, kStatType, kLogicStat},
                                                  "releases the entry of a logic statistics identifier"),
};

} // namespace

std::span<const Command> statCommands()
{
    return kStatCommands;
}

} // namespace zrbench
