// Ports: start-up, enable, speed, duplex, negotiation, loopback, link, and the overview of a unit's ports.
#include <fmt/format.h>

#include "port/port.h"
#include "tools/zrbench/command.h"
#include "tools/zrbench/slots.h"

namespace zrbench
{

namespace
{

// The manager's values by their place in the list of words.
constexpr std::string_view kOff = "off|on";
constexpr std::string_view kDuplexes = "half|full|keep";
constexpr std::string_view kLoops = "none|mac|pcs|remote|remote4";

std::string_view wordAt(std::string_view words, uint32_t index)
{
    for (; index > 0 && !words.empty(); --index) {
        const size_t bar = words.find('|');
        words = bar == std::string_view::npos ? std::string_view() : words.substr(bar + 1);
    }
    return words.substr(0, words.find('|'));
}

uint32_t indexOf(std::string_view words, std::string_view word)
{
    uint32_t index = 0;
    while (wordAt(words, index) != word)
        ++index;
    return index;
}

// A value as its word; one that has none as its number.
std::string worded(std::string_view words, uint32_t value)
{
    const std::string_view word = value < 8 ? wordAt(words, value) : std::string_view();
    return word.empty() ? fmt::to_string(value) : std::string(word);
}

struct AbilityName {
    std::string_view name;
    uint8_t LswmPortAbility::*member;
};
constexpr AbilityName kAbilities[] = {
    {"10h", &LswmPortAbility::half10},     {"10f", &LswmPortAbility::full10},
    {"100h", &LswmPortAbility::half100},   {"100f", &LswmPortAbility::full100},
    {"1000f", &LswmPortAbility::full1000}, {"pause", &LswmPortAbility::pause},
    {"asym", &LswmPortAbility::pauseAsym},
};

std::string showAbility(const LswmPortAbility &ability)
{
    std::string text;
    for (const AbilityName &row : kAbilities)
        if (ability.*row.member != 0)
            text += (text.empty() ? "" : " ") + std::string(row.name);
    return text.empty() ? "none" : text;
}

LswmPortAbility abilityOf(std::string_view words)
{
    LswmPortAbility ability{};
    while (!words.empty()) {
        const std::string_view word = words.substr(0, words.find_first_of(" ,"));
        words.remove_prefix(std::min(words.size(), word.size() + 1));
        if (word.empty() || word == "none")
            continue;
        bool known = false;
        for (const AbilityName &row : kAbilities) {
            if (row.name == word)
                ability.*row.member = 1;
            known = known || row.name == word;
        }
        if (!known)
            throw UsageError{fmt::format(
                "expected abilities out of 10h 10f 100h 100f 1000f pause asym, found \"{}\"", word)};
    }
    return ability;
}

// ---- one slot each --------------------------------------------------------------------------

using Getter = uint32_t (*ZrPortOps::*)(uint32_t unit, uint32_t port, uint32_t *value);
using Setter = uint32_t (*ZrPortOps::*)(uint32_t unit, uint32_t port, uint32_t value);
using AbilityGetter = uint32_t (*ZrPortOps::*)(uint32_t unit, uint32_t port, LswmPortAbility *ability);

// Reads one value; `words` names it, or is empty for a number.
template <Getter slot> Outcome get(Bench &bench, const Arguments &a, const char *name, std::string_view words)
{
    uint32_t value = 0;
    Outcome outcome = Outcome::of((bench.tables().port->*slot)(a.number("unit"), a.number("port"), &value));
    if (outcome.status != 0)
        return outcome;
    return words.empty() ? outcome.out(name, value) : outcome.out(name, worded(words, value));
}

template <Setter slot> Outcome set(Bench &bench, const Arguments &a, uint32_t value)
{
    return Outcome::of((bench.tables().port->*slot)(a.number("unit"), a.number("port"), value));
}

template <AbilityGetter slot> Outcome abilities(Bench &bench, const Arguments &a)
{
    LswmPortAbility ability{};
    Outcome outcome = Outcome::of((bench.tables().port->*slot)(a.number("unit"), a.number("port"), &ability));
    return outcome.status == 0 ? outcome.out("abilities", showAbility(ability)) : outcome;
}

Outcome init(Bench &bench, const Arguments &a)
{
    return Outcome::of(bench.tables().port->init(a.number("unit")));
}

Outcome maxFrame(Bench &bench, const Arguments &a)
{
    uint32_t bytes = 0;
    Outcome outcome = Outcome::of(bench.tables().port->getMaxFrame(a.number("unit"), &bytes));
    return outcome.status == 0 ? outcome.out("bytes", bytes) : outcome;
}

Outcome linkEvent(Bench &bench, const Arguments &a)
{
    return Outcome::of(bench.tables().port->linkEvt(a.number("unit"), a.number("port")));
}

Outcome advertise(Bench &bench, const Arguments &a)
{
    const LswmPortAbility ability = abilityOf(a.text("abilities"));
    return Outcome::of(bench.tables().port->setAdvert(a.number("unit"), a.number("port"), &ability));
}

// ---- overview -------------------------------------------------------------------------------

using GetterOf = uint32_t(uint32_t unit, uint32_t port, uint32_t *value);

std::string cell(GetterOf *read, uint32_t unit, uint32_t port, std::string_view words)
{
    uint32_t value = 0;
    if (read(unit, port, &value) != 0)
        return "?";
    return words.empty() ? fmt::to_string(value) : worded(words, value);
}

std::string isolation(const ZrPortOps &ops, uint32_t unit, uint32_t port)
{
    uint32_t map = 0;
    return need(ops.getIsolateMap, "PORT 30")(unit, port, &map) == 0 ? showPorts(map) : "?";
}

// A port without PHY answers no register, and prints nothing about it.
bool hasPhy(const ZrPortOps &ops, uint32_t unit, uint32_t port)
{
    constexpr uint32_t kStatus = 1;
    uint16_t value = 0;
    return need(ops.regRead, "PORT 1")(unit, port, 0, kStatus, &value) == 0;
}

Outcome overview(Bench &bench, const Arguments &a)
{
    const uint32_t unit = a.number("unit");
    const ZrPortOps &ops = *bench.tables().port;
    std::vector<uint32_t> ports;
    if (a.has("ports")) {
        ports = a.ports("ports");
    } else {
        uint32_t valid = 0;
        auto *portMap = reinterpret_cast<decltype(&HAL_PORT_GetValidPortMapZr)>(
            bench.operation("HAL_PORT_GetValidPortMapZr"));
        if (uint32_t status = portMap(unit, &valid); status != 0)
            return Outcome::of(status);
        for (uint32_t port = 0; port < 32; ++port)
            if ((valid >> port & 1U) != 0)
                ports.push_back(port);
    }

    TextTable table({"PORT", "ENABLE", "LINK", "SPEED", "DUPLEX", "AUTONEG", "LOOP", "ISOLATED FROM",
                     "COUNTER 0", "COUNTER 5", "DROPS"});
    for (uint32_t port : ports) {
        LswmPortStatistics statistics{};
        const bool counted = need(ops.getStatistics, "PORT 15")(unit, port, &statistics) == 0;
        auto counter = [&](size_t number) {
            return counted ? fmt::to_string(statistics.counter[number]) : "?";
        };
        table.row({fmt::to_string(port), cell(need(ops.getEnable, "PORT 4"), unit, port, kOff),
                   cell(need(ops.getLinkStatus, "PORT 6"), unit, port, "down|up"),
                   cell(need(ops.getSpeed, "PORT 9"), unit, port, ""),
                   cell(need(ops.getDuplex, "PORT 18"), unit, port, kDuplexes),
                   cell(need(ops.getAutonegEnable, "PORT 11"), unit, port, kOff),
                   hasPhy(ops, unit, port) ? cell(need(ops.getLoopback, "PORT 21"), unit, port, kLoops) : "-",
                   isolation(ops, unit, port), counter(0), counter(5), counter(8)});
    }
    return Outcome::shown(table.text());
}

// ---- the world ------------------------------------------------------------------------------

Outcome link(Bench &bench, const Arguments &a)
{
    return Outcome::shown(
        bench.board(a.number("unit"), fmt::format("link {} {}", a.number("port"), a.text("state"))));
}

Outcome partner(Bench &bench, const Arguments &a)
{
    return Outcome::shown(
        bench.board(a.number("unit"), fmt::format("partner {} {} {}", a.number("port"), a.text("mode"),
                                                  a.has("abilities") ? a.text("abilities") : "")));
}

Outcome mac(Bench &bench, const Arguments &a)
{
    return Outcome::shown(
        bench.board(a.number("unit"), fmt::format("mac {} {} {} {}", a.number("port"), a.number("speed"),
                                                  a.text("duplex"), a.text("state"))));
}

constexpr Argument kUnit = {"unit", Type::Unit};
constexpr Argument kPort = {"port", Type::Port};
constexpr Argument kState = {"state", Type::Word, "down|up"};

} // namespace

std::span<const Command> portCommands()
{
    static const Command kCommands[] = {
        {"port init",
         {kUnit},
         "frame size, cascade trunk and kh marker from the unit information",
         "PORT 0",
         init},
        {"port enable",
         {kUnit, kPort, {"enable", Type::Word, kOff}},
         "switches a port on or off",
         "PORT 3",
         [](Bench &bench, const Arguments &a) {
             return set<&ZrPortOps::setEnable>(bench, a, indexOf(kOff, a.text("enable")));
         }},
        {"port enabled",
         {kUnit, kPort},
         "whether a port is switched on",
         "PORT 4",
         [](Bench &bench, const Arguments &a) { return get<&ZrPortOps::getEnable>(bench, a, "enable", kOff); }},
        {"port cpu",
         {kUnit, kPort, {"tag", Type::Word, kOff}},
         "makes a port the CPU port; frames trapped to it carry the CPU tag or do not",
         "PORT 5",
         [](Bench &bench, const Arguments &a) {
             return set<&ZrPortOps::cpuInit>(bench, a, indexOf(kOff, a.text("tag")));
         }},
        {"port link",
         {kUnit, kPort},
         "whether a port has a link",
         "PORT 6",
         [](Bench &bench, const Arguments &a) {
             return get<&ZrPortOps::getLinkStatus>(bench, a, "link", "down|up");
         }},
        {"port linkevent", {kUnit, kPort}, "tells the chip side of a link event", "PORT 7", linkEvent},
        {"port speed",
         {kUnit, kPort},
         "speed of a port in Mbit/s",
         "PORT 9",
         [](Bench &bench, const Arguments &a) { return get<&ZrPortOps::getSpeed>(bench, a, "speed", ""); }},
        {"port setspeed",
         {kUnit, kPort, {"speed", Type::Number}},
         "asks for 10, 100 or 1000 Mbit/s; 1000 is negotiated, never forced",
         "PORT 10",
         [](Bench &bench, const Arguments &a) {
             return set<&ZrPortOps::setSpeed>(bench, a, a.number("speed"));
         }},
        {"port duplex",
         {kUnit, kPort},
         "duplex of a port",
         "PORT 18",
         [](Bench &bench, const Arguments &a) {
             return get<&ZrPortOps::getDuplex>(bench, a, "duplex", kDuplexes);
         }},
        {"port setduplex",
         {kUnit, kPort, {"duplex", Type::Word, kDuplexes}},
         "forces a duplex, or forced mode as it was",
         "PORT 17",
         [](Bench &bench, const Arguments &a) {
             return set<&ZrPortOps::setDuplex>(bench, a, indexOf(kDuplexes, a.text("duplex")));
         }},
        {"port autoneg",
         {kUnit, kPort},
         "whether a port negotiates",
         "PORT 11",
         [](Bench &bench, const Arguments &a) {
             return get<&ZrPortOps::getAutonegEnable>(bench, a, "enable", kOff);
         }},
        {"port setautoneg",
         {kUnit, kPort, {"enable", Type::Word, kOff}},
         "negotiation or forced mode, with the abilities that the port had in it",
         "PORT 12",
         [](Bench &bench, const Arguments &a) {
             return set<&ZrPortOps::setAutonegEnable>(bench, a, indexOf(kOff, a.text("enable")));
         }},
        {"port ability",
         {kUnit, kPort},
         "abilities that a port advertises",
         "PORT 13",
         abilities<&ZrPortOps::getAutonegAbility>},
        {"port remote",
         {kUnit, kPort},
         "abilities that the link partner advertised",
         "PORT 14",
         abilities<&ZrPortOps::getRemoteAutonegAbility>},
        {"port advertise",
         {kUnit, kPort, {"abilities", Type::Text}},
         "advertises abilities: none, or out of 10h 10f 100h 100f 1000f pause asym",
         "PORT 31",
         advertise},
        {"port maxframe", {kUnit}, "largest frame in bytes", "PORT 19", maxFrame},
        {"port loop",
         {kUnit, kPort},
         "loopback of a port",
         "PORT 21",
         [](Bench &bench, const Arguments &a) {
             return get<&ZrPortOps::getLoopback>(bench, a, "mode", kLoops);
         }},
        {"port setloop",
         {kUnit, kPort, {"mode", Type::Word, kLoops}},
         "puts a port into a loopback; none ends mac and pcs",
         "PORT 22",
         [](Bench &bench, const Arguments &a) {
             return set<&ZrPortOps::setLoopback>(bench, a, indexOf(kLoops, a.text("mode")));
         }},
        {"port show",
         {kUnit, {"ports", Type::Ports, {}, true}},
         "the unit's ports at a glance; \"?\" could not be read, \"-\" needs a PHY",
         "",
         overview},
        {"link", {kUnit, kPort, kState}, "board: plugs the cable of a port in, or pulls it", "", link},
        {"partner",
         {kUnit, kPort, {"mode", Type::Word, "auto|forced"}, {"abilities", Type::Text, {}, true}},
         "board: what the link partner of a port can do: 10h 10f 100h 100f 1000f pause asym",
         "",
         partner},
        {"maclink",
         {kUnit, kPort, {"speed", Type::Number}, {"duplex", Type::Word, "half|full"}, kState},
         "board: forced link of a port without PHY",
         "",
         mac},
    };
    return kCommands;
}

} // namespace zrbench
