// The MAC address table.
#include <fmt/format.h>

#include <algorithm>

#include "l2/mac.h"
#include "tools/zrbench/mac_entry.h"

namespace zrbench
{

LswmMacEntry entryOf(const Arguments &a)
{
    LswmMacEntry entry{};
    if (a.has("mac"))
        std::ranges::copy(a.mac("mac"), entry.mac);
    if (a.has("vlan"))
        entry.entryVlan = entry.vlan = static_cast<uint16_t>(a.number("vlan"));
    if (a.has("port"))
        entry.port = static_cast<uint16_t>(a.number("port"));
    const std::string type = a.has("type") ? a.text("type") : "static";
    entry.type = type == "dynamic" ? 0 : type == "static" ? LSWM_MAC_STATIC : LSWM_MAC_BLOCKING;
    // "blocking" means one VLAN, "blocking-everywhere" all of them.
    entry.vlanSpecific = type == "blocking" ? 1 : 0;
    entry.unit = static_cast<uint8_t>(a.number(a.has("entryUnit") ? "entryUnit" : "unit"));
    return entry;
}

namespace
{

void addNumber(uint8_t mac[6], uint32_t number)
{
    uint64_t value = number;
    for (int i = 5; i >= 0; --i, value >>= 8) {
        value += mac[i];
        mac[i] = static_cast<uint8_t>(value);
    }
}

Outcome fill(Session &session, const Arguments &a)
{
    LswmMacEntry entry = entryOf(a);
    Outcome outcome = Outcome::of(LSW_OK);
    uint32_t added = 0;
    for (; added < a.number("count"); ++added) {
        outcome.status = session.slot(&ZrMacOps::addMac)(a.number("unit"), &entry);
        if (outcome.status != LSW_OK)
            break;
        addNumber(entry.mac, a.number("step"));
    }
    outcome.outputs.emplace_back("added", added); // known after a failure, too
    return outcome;
}

Outcome sync(Session &session, const Arguments &a)
{
    LswmMacEntry entry = entryOf(a);
    Outcome outcome = Outcome::of(session.slot(&ZrMacOps::syncMacInsert)(a.number("unit"), &entry));
    outcome.outputs.emplace_back("port", entry.port); // written before the chip is asked
    return outcome;
}

Outcome deleteEverywhere(Session &session, const Arguments &a)
{
    return Outcome::of(session.slot(&ZrMacOps::delByMac)(a.number("unit"), a.mac("mac").data()));
}

const char *typeName(const LswmMacEntry &entry)
{
    return entry.type == LSWM_MAC_STATIC ? "static" : "dynamic";
}

Outcome getEntry(Session &session, const Arguments &a)
{
    LswmMacEntry entry{};
    LswmMacQuery query{};
    query.index = a.number("index");
    return Outcome::of(
               session.slot(&ZrMacOps::getMacEntry)(a.number("unit"), a.number("queryType"), &query, &entry))
        .out("mac", showMac(entry.mac))
        .out("vlan", entry.entryVlan)
        .out("port", entry.port)
        .out("type", typeName(entry))
        .out("noPort", entry.noPort);
}

// The only way to list the table is to read every index; an empty one returns 4.
Outcome listAddresses(Session &session, const Arguments &a)
{
    TextTable table({"INDEX", "ADDRESS", "VLAN", "PORT", "TYPE"});
    uint32_t found = 0;
    for (uint32_t index = 0; index < ZR_MAC_CAPACITY; ++index) {
        LswmMacEntry entry{};
        LswmMacQuery query{};
        query.index = index;
        const uint32_t status =
            session.slot(&ZrMacOps::getMacEntry)(a.number("unit"), ZR_MAC_QUERY_INDEX, &query, &entry);
        if (status == LSW_INVALID_ARGUMENT)
            throw UsageError{"the library has no such unit"};
        if (status != LSW_OK)
            continue;
        if (++found <= a.number("most"))
            table.row({index, showMac(entry.mac), entry.entryVlan,
                       entry.noPort != 0 ? nlohmann::json("none") : nlohmann::json(entry.port),
                       typeName(entry)});
    }
    return Outcome::shown(table, fmt::format("{} of {} entries used\n", found, +ZR_MAC_CAPACITY));
}

Outcome registerCallback(Session &session, const Arguments &a)
{
    // Never called: the library only keeps it.
    session.slot (&ZrMacOps::registerCallBack)(a.number("type"), [] {});
    return Outcome::shown("");
}

void checkStep(const nlohmann::json &step)
{
    if (step == 0)
        throw UsageError{"expected a step from 1 on, found 0"};
}

constexpr Argument kMac{"mac", Type::Mac};
constexpr Argument kMacType{"type", Type::Word, "dynamic|static|blocking|blocking-everywhere", true};
constexpr Argument kStep{.name = "step",
                         .optional = true,
                         .otherwise = 1,
                         .check = checkStep,
                         .meaning = "from one address to the next"};
constexpr Argument kAge{.name = "time",
                        .meaning = "the ageing time in the chip's unit; the stand-in counts seconds"};
constexpr uint32_t kMostFilled = 100000; // far beyond the table, for a chip that refuses none

const Command kMacCommands[] = {
    slotRow("mac init", &ZrMacOps::init, {kUnit}, "initialises a unit's address table"),
    {"mac sync",
     {kByteUnit, kMac, kEntryVlan, kMacType},
     "adds a synchronised address at the first cascade port",
     slotLabel(&ZrMacOps::syncMacInsert),
     sync},
    entryRow("mac add", &ZrMacOps::addMac, {kMac, kEntryVlan, kEntryPort, kMacType},
             "adds an address, static unless TYPE says otherwise"),
    {"mac fill",
     {kByteUnit, kMac, kEntryVlan, kEntryPort, {.name = "count", .most = kMostFilled}, kStep, kMacType},
     "adds COUNT addresses from MAC on, STEP apart, until one is refused",
     slotLabel(&ZrMacOps::addMac),
     fill},
    slotRow("mac set-age", &ZrMacOps::setAgeTime, {kUnit, kAge}, "sets the ageing time"),
    slotRow("mac age", &ZrMacOps::getAgeTime, {kUnit, kAge}, "shows the ageing time"),
    slotRow("mac clear", &ZrMacOps::delAllMac, {kUnit}, "deletes every address, static ones too"),
    entryRow("mac delete", &ZrMacOps::delByVlanMac, {kMac, kEntryVlan}, "deletes an address in one VLAN"),
    entryRow("mac flush-port", &ZrMacOps::delByPort, {kEntryPort, kEntryUnit},
             "deletes what was learned on a port"),
    slotRow("mac flush-vlan", &ZrMacOps::delByVlan, {kUnit, kVlan}, "deletes what was learned in a VLAN"),
    entryRow("mac flush-port-vlan", &ZrMacOps::delByPortVlan, {kEntryPort, kEntryVlan, kEntryUnit},
             "deletes what was learned on a port in a VLAN"),
    {"mac delete-everywhere",
     {kUnit, kMac},
     "deletes an address in every VLAN",
     slotLabel(&ZrMacOps::delByMac),
     deleteEverywhere},
    slotRow("mac flush", &ZrMacOps::delDynMac, {kUnit}, "deletes what was learned on every valid port"),
    {"mac get",
     {kUnit, {"index"}, {.name = "queryType", .optional = true, .otherwise = ZR_MAC_QUERY_INDEX}},
     "reads the entry at a table index",
     slotLabel(&ZrMacOps::getMacEntry),
     getEntry},
    {"mac list",
     {kUnit, {.name = "most", .optional = true, .otherwise = 50, .meaning = "rows to show, 50 when left out"}},
     "lists the table by reading every index, MOST (50) rows of it",
     slotLabel(&ZrMacOps::getMacEntry),
     listAddresses},
    slotRow("mac learning", &ZrMacOps::setPortLearnMode, {kUnit, kPort, kOnOff}, "switches learning on a port"),
    slotRow("mac learns", &ZrMacOps::getPortLearnMode, {kUnit, kPort, "enable"}, "shows whether a port learns"),
    slotRow("mac capacity", &ZrMacOps::getCapacity, {kUnit, "capacity", "used"},
            "shows the table's size and how much of it is used"),
    {"mac callback",
     {{"type"}},
     "registers a callback; only type 3 is kept",
     slotLabel(&ZrMacOps::registerCallBack),
     registerCallback},
};

} // namespace

std::span<const Command> macCommands()
{
    return kMacCommands;
}

} // namespace zrbench
