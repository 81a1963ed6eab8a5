#include <fmt/format.h>

#include <algorithm>

#include "l2/mac.h"
#include "tools/zrbench/command.h"
#include "tools/zrbench/slots.h"

namespace zrbench
{

namespace
{

// The manager's record carries a port in 16 bits and a unit in 8.
template <class T> T narrow(const Arguments &a, std::string_view name, uint32_t value)
{
    if (value != static_cast<T>(value))
        throw UsageError{fmt::format("{}: {} does not fit into the manager's record", name, a.number(name))};
    return static_cast<T>(value);
}

uint8_t typeOf(const Arguments &a)
{
    const std::string type = a.has("type") ? a.text("type") : "static";
    return type == "dynamic" ? 0 : type == "static" ? LSWM_MAC_STATIC : LSWM_MAC_BLOCKING;
}

// An entry of the arguments that are there: mac, vlan, port, type, entryUnit (the unit if missing).
LswmMacEntry entryOf(const Arguments &a)
{
    LswmMacEntry entry{};
    if (a.has("mac"))
        std::copy_n(a.mac("mac").begin(), sizeof entry.mac, entry.mac);
    if (a.has("vlan")) {
        entry.entryVlan = a.number("vlan");
        entry.vlan = narrow<uint16_t>(a, "vlan", entry.entryVlan);
    }
    if (a.has("port"))
        entry.port = narrow<uint16_t>(a, "port", a.number("port"));
    entry.type = typeOf(a);
    // "blocking" means one VLAN, "blocking-everywhere" all of them.
    entry.vlanSpecific = a.has("type") && a.text("type") == "blocking" ? 1 : 0;
    entry.unit = a.has("entryUnit") ? narrow<uint8_t>(a, "entryUnit", a.number("entryUnit"))
                                    : static_cast<uint8_t>(a.number("unit"));
    return entry;
}

void addNumber(uint8_t mac[6], uint32_t number)
{
    uint64_t value = number;
    for (int i = 5; i >= 0; --i, value >>= 8) {
        value += mac[i];
        mac[i] = static_cast<uint8_t>(value);
    }
}

Outcome fill(Bench &bench, const Arguments &a)
{
    LswmMacEntry entry = entryOf(a);
    const uint32_t count = a.number("count");
    const uint32_t step = a.number("step", 1);
    Outcome outcome = Outcome::of(0);
    uint32_t added = 0;
    for (; added < count; ++added) {
        outcome.status = bench.tables().mac->addMac(a.number("unit"), &entry);
        if (outcome.status != 0)
            break;
        addNumber(entry.mac, step);
    }
    return outcome.out("added", added);
}

uint32_t readIndex(Bench &bench, uint32_t unit, uint32_t index, LswmMacEntry &entry)
{
    LswmMacQuery query{};
    query.index = index;
    return need(bench.tables().mac->getMacEntry, "MAC 12")(unit, ZR_MAC_QUERY_INDEX, &query, &entry);
}

const char *typeName(const LswmMacEntry &entry)
{
    return entry.type == LSWM_MAC_STATIC ? "static" : "dynamic";
}

std::string portName(const LswmMacEntry &entry)
{
    return entry.noPort != 0 ? "none" : std::to_string(entry.port);
}

Outcome getEntry(Bench &bench, const Arguments &a)
{
    LswmMacEntry entry{};
    LswmMacQuery query{};
    query.index = a.number("index");
    Outcome outcome = Outcome::of(bench.tables().mac->getMacEntry(
        a.number("unit"), a.number("queryType", ZR_MAC_QUERY_INDEX), &query, &entry));
    if (outcome.status == 0)
        outcome.out("mac", showMac(entry.mac))
            .out("vlan", entry.entryVlan)
            .out("port", entry.port)
            .out("type", typeName(entry))
            .out("noPort", entry.noPort);
    return outcome;
}

// The manager has no other way to list a table than to read every index; an empty one answers 4.
Outcome list(Bench &bench, const Arguments &a)
{
    TextTable table({"INDEX", "ADDRESS", "VLAN", "PORT", "TYPE"});
    uint32_t found = 0;
    for (uint32_t index = 0; index < ZR_MAC_CAPACITY; ++index) {
        LswmMacEntry entry{};
        const uint32_t status = readIndex(bench, a.number("unit"), index, entry);
        if (status == 1)
            throw UsageError{"the library has no such unit"};
        if (status != 0)
            continue;
        if (++found <= a.number("most", 50))
            table.row({std::to_string(index), showMac(entry.mac), std::to_string(entry.entryVlan),
                       portName(entry), typeName(entry)});
    }
    return Outcome::shown(table.text() + fmt::format("{} of {} entries used\n", found, +ZR_MAC_CAPACITY));
}

// Never called: the library only keeps it.
void callBack()
{
}

const Argument kUnit = {"unit", Type::Unit};
const Argument kMac = {"mac", Type::Mac};
const Argument kVlan = {"vlan", Type::Vlan};
const Argument kPort = {"port", Type::Port};
const Argument kType = {"type", Type::Word, "dynamic|static|blocking|blocking-everywhere", true};
const Argument kEntryUnit = {"entryUnit", Type::Number, {}, true};

const Command kCommands[] = {
    {"mac init",
     {kUnit},
     "starts a unit's address table",
     "MAC 0",
     [](Bench &bench, const Arguments &a) { return Outcome::of(bench.tables().mac->init(a.number("unit"))); }},
    {"mac sync",
     {kUnit, kMac, kVlan, kType},
     "adds a synchronised address at the first cascade port",
     "MAC 1",
     [](Bench &bench, const Arguments &a) {
         LswmMacEntry entry = entryOf(a);
         Outcome outcome = Outcome::of(bench.tables().mac->syncMacInsert(a.number("unit"), &entry));
         return outcome.out("port", entry.port);
     }},
    {"mac add",
     {kUnit, kMac, kVlan, kPort, kType},
     "adds an address (static unless said otherwise)",
     "MAC 2",
     [](Bench &bench, const Arguments &a) {
         const LswmMacEntry entry = entryOf(a);
         return Outcome::of(bench.tables().mac->addMac(a.number("unit"), &entry));
     }},
    {"mac fill",
     {kUnit,
      kMac,
      kVlan,
      kPort,
      {"count", Type::Number},
      {"step", Type::Number, {}, true},
      {"type", Type::Word, kType.choices, true}},
     "adds addresses from one on, `step` apart, until one is refused",
     "MAC 2",
     fill},
    {"mac set-age",
     {kUnit, {"time", Type::Number}},
     "sets the ageing time, in the chip's unit",
     "MAC 3",
     [](Bench &bench, const Arguments &a) {
         return Outcome::of(bench.tables().mac->setAgeTime(a.number("unit"), a.number("time")));
     }},
    {"mac age",
     {kUnit},
     "reads the ageing time",
     "MAC 4",
     [](Bench &bench, const Arguments &a) {
         uint32_t time = 0;
         Outcome outcome = Outcome::of(bench.tables().mac->getAgeTime(a.number("unit"), &time));
         if (outcome.status == 0)
             outcome.out("time", time);
         return outcome;
     }},
    {"mac clear",
     {kUnit},
     "deletes every address, static ones too",
     "MAC 5",
     [](Bench &bench, const Arguments &a) {
         return Outcome::of(bench.tables().mac->delAllMac(a.number("unit")));
     }},
    {"mac delete",
     {kUnit, kMac, kVlan},
     "deletes an address in one VLAN",
     "MAC 6",
     [](Bench &bench, const Arguments &a) {
         const LswmMacEntry entry = entryOf(a);
         return Outcome::of(bench.tables().mac->delByVlanMac(a.number("unit"), &entry));
     }},
    {"mac flush-port",
     {kUnit, kPort, kEntryUnit},
     "forgets what was learned on a port",
     "MAC 7",
     [](Bench &bench, const Arguments &a) {
         const LswmMacEntry entry = entryOf(a);
         return Outcome::of(bench.tables().mac->delByPort(a.number("unit"), &entry));
     }},
    {"mac flush-vlan",
     {kUnit, kVlan},
     "forgets what was learned in a VLAN",
     "MAC 8",
     [](Bench &bench, const Arguments &a) {
         return Outcome::of(bench.tables().mac->delByVlan(a.number("unit"), a.number("vlan")));
     }},
    {"mac flush-port-vlan",
     {kUnit, kPort, kVlan, kEntryUnit},
     "forgets what was learned on a port in a VLAN",
     "MAC 9",
     [](Bench &bench, const Arguments &a) {
         const LswmMacEntry entry = entryOf(a);
         return Outcome::of(bench.tables().mac->delByPortVlan(a.number("unit"), &entry));
     }},
    {"mac delete-everywhere",
     {kUnit, kMac},
     "deletes an address in every VLAN",
     "MAC 10",
     [](Bench &bench, const Arguments &a) {
         return Outcome::of(bench.tables().mac->delByMac(a.number("unit"), a.mac("mac").data()));
     }},
    {"mac flush",
     {kUnit},
     "forgets what was learned on every valid port",
     "MAC 11",
     [](Bench &bench, const Arguments &a) {
         return Outcome::of(bench.tables().mac->delDynMac(a.number("unit")));
     }},
    {"mac get",
     {kUnit, {"index", Type::Number}, {"queryType", Type::Number, {}, true}},
     "reads the entry at a table index",
     "MAC 12",
     getEntry},
    {"mac list",
     {kUnit, {"most", Type::Number, {}, true}},
     "lists the table by reading every index, `most` (50) rows of it",
     "MAC 12",
     list},
    {"mac learning",
     {kUnit, kPort, {"enable", Type::Word, "on|off"}},
     "switches learning on a port",
     "MAC 13",
     [](Bench &bench, const Arguments &a) {
         return Outcome::of(bench.tables().mac->setPortLearnMode(a.number("unit"), a.number("port"),
                                                                 a.text("enable") == "on" ? 1 : 0));
     }},
    {"mac learns",
     {kUnit, kPort},
     "reads whether a port learns",
     "MAC 14",
     [](Bench &bench, const Arguments &a) {
         uint32_t enable = 0;
         Outcome outcome =
             Outcome::of(bench.tables().mac->getPortLearnMode(a.number("unit"), a.number("port"), &enable));
         if (outcome.status == 0)
             outcome.out("enable", enable);
         return outcome;
     }},
    {"mac capacity",
     {kUnit},
     "reads the table's size and fill",
     "MAC 16",
     [](Bench &bench, const Arguments &a) {
         uint32_t capacity = 0;
         uint32_t used = 0;
         Outcome outcome = Outcome::of(bench.tables().mac->getCapacity(a.number("unit"), &capacity, &used));
         if (outcome.status == 0)
             outcome.out("capacity", capacity).out("used", used);
         return outcome;
     }},
    {"mac callback",
     {{"type", Type::Number}},
     "registers a callback; only type 3 is kept",
     "MAC 17",
     [](Bench &bench, const Arguments &a) {
         bench.tables().mac->registerCallBack(a.number("type"), callBack);
         return Outcome::shown("");
     }},
    {"mac learn",
     {kUnit, kMac, kVlan, kPort, {"count", Type::Number, {}, true}},
     "lets frames come in from a station, or from `count` with addresses in a row",
     "COMMON 3",
     [](Bench &bench, const Arguments &a) {
         return Outcome::shown(bench.board(
             a.number("unit"), fmt::format("learn {} {} {} {}", showMac(a.mac("mac").data()), a.number("vlan"),
                                           a.number("port"), a.number("count", 1))));
     }},
};

} // namespace

std::span<const Command> macCommands()
{
    return kCommands;
}

} // namespace zrbench
