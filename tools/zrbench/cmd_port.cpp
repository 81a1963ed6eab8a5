// Ports: start-up, enable, speed, duplex, negotiation, loopback, link, and the overview of a unit's ports.
#include <fmt/format.h>

#include "port/port.h"
#include "tools/zrbench/rows.h"

namespace zrbench
{

namespace
{

constexpr std::string_view kAbilityWords = "none|10h|10f|100h|100f|1000f|pause|asym";
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
            throw UsageError{
                fmt::format("expected any of 10h 10f 100h 100f 1000f pause asym, found \"{}\"", word)};
    }
    return ability;
}

void checkAbilities(const nlohmann::json &words)
{
    abilityOf(words.get<std::string>());
}

constexpr Argument kSpeed{.name = "speed", .meaning = "10, 100 or 1000 Mbit/s"};
constexpr Argument kDuplex{"duplex", Type::Word, "half|full|keep"};
constexpr Argument kLoop{"mode", Type::Word, "none|mac|pcs|remote|remote4"};
constexpr Argument kLink{"link", Type::Word, "down|up"};
constexpr Argument kState{"state", Type::Word, "down|up"};

using AbilityGetter = uint32_t (*ZrPortOps::*)(uint32_t unit, uint32_t port, LswmPortAbility *ability);

Command abilityRow(std::string_view name, AbilityGetter slot, std::string_view help)
{
    return {name, {kUnit, kPort}, help, slotLabel(slot), [slot](Session &session, const Arguments &a) {
                LswmPortAbility ability{};
                const uint32_t status = session.slot(slot)(a.number("unit"), a.number("port"), &ability);
                return Outcome::of(status).out("abilities", showAbility(ability));
            }};
}

Outcome advertise(Session &session, const Arguments &a)
{
    const LswmPortAbility ability = abilityOf(a.text("abilities"));
    return Outcome::of(session.slot(&ZrPortOps::setAdvert)(a.number("unit"), a.number("port"), &ability));
}

Outcome overview(Session &session, const Arguments &a)
{
    const uint32_t unit = a.number("unit");
    std::vector<uint32_t> ports;
    if (a.has("ports")) {
        ports = a.ports("ports");
    } else {
        uint32_t valid = 0;
        const auto portMap =
            session.operation<decltype(HAL_PORT_GetValidPortMapZr)>("HAL_PORT_GetValidPortMapZr");
        if (const uint32_t status = portMap(unit, &valid); status != LSW_OK)
            return Outcome::of(status);
        for (uint32_t port = 0; port < 32; ++port)
            if ((valid >> port & 1U) != 0)
                ports.push_back(port);
    }

    TextTable table({"PORT", "ENABLE", "LINK", "SPEED", "DUPLEX", "AUTONEG", "LOOP", "ISOLATED FROM",
                     "COUNTER 0", "COUNTER 5", "DROPS"});
    for (const uint32_t port : ports) {
        using Getter = uint32_t (*ZrPortOps::*)(uint32_t unit, uint32_t port, uint32_t * value);
        auto cell = [&](Getter getter, std::string_view choices) {
            uint32_t value = 0;
            return session.slot(getter)(unit, port, &value) == LSW_OK ? worded(choices, value) : "?";
        };
        LswmPortStatistics statistics{};
        const bool counted = session.slot(&ZrPortOps::getStatistics)(unit, port, &statistics) == LSW_OK;
        auto counter = [&](size_t number) {
            return counted ? nlohmann::json(statistics.counter[number]) : "?";
        };
        uint32_t isolated = 0;
        const bool known = session.slot(&ZrPortOps::getIsolateMap)(unit, port, &isolated) == LSW_OK;
        // The registers of a port without PHY cannot be read, and nothing is printed about it.
        uint16_t phyStatus = 0;
        const bool hasPhy = session.slot(&ZrPortOps::regRead)(unit, port, 0, 1, &phyStatus) == LSW_OK;
        table.row({port, cell(&ZrPortOps::getEnable, kOnOff.choices),
                   cell(&ZrPortOps::getLinkStatus, kLink.choices), cell(&ZrPortOps::getSpeed, ""),
                   cell(&ZrPortOps::getDuplex, kDuplex.choices),
                   cell(&ZrPortOps::getAutonegEnable, kOnOff.choices),
                   hasPhy ? cell(&ZrPortOps::getLoopback, kLoop.choices) : "-",
                   known ? portList(isolated) : "?", counter(0), counter(5), counter(8)});
    }
    return Outcome::shown(table);
}

const Command kPortCommands[] = {
    slotRow("port init", &ZrPortOps::init, {kUnit},
            "sets frame size, cascade trunk and kh marker from the unit information"),
    slotRow("port enable", &ZrPortOps::setEnable, {kUnit, kPort, kOnOff}, "switches a port on or off"),
    slotRow("port enabled", &ZrPortOps::getEnable, {kUnit, kPort, kOnOff},
            "shows whether a port is switched on"),
    slotRow("port cpu", &ZrPortOps::cpuInit, {kUnit, kPort, Argument{"tag", Type::Word, "off|on"}},
            "makes a port the CPU port; frames trapped to it carry the CPU tag or do not"),
    slotRow("port link", &ZrPortOps::getLinkStatus, {kUnit, kPort, kLink}, "shows whether a port has a link"),
    slotRow("port linkevent", &ZrPortOps::linkEvt, {kUnit, kPort}, "reports a link event to the chip"),
    slotRow("port speed", &ZrPortOps::getSpeed, {kUnit, kPort, kSpeed}, "shows the speed of a port in Mbit/s"),
    slotRow("port setspeed", &ZrPortOps::setSpeed, {kUnit, kPort, kSpeed},
            "requests 10, 100 or 1000 Mbit/s; 1000 is negotiated, never forced"),
    slotRow("port duplex", &ZrPortOps::getDuplex, {kUnit, kPort, kDuplex}, "shows the duplex mode of a port"),
    slotRow("port setduplex", &ZrPortOps::setDuplex, {kUnit, kPort, kDuplex},
            "forces a duplex mode; keep forces the abilities of forced mode as they are"),
    slotRow("port autoneg", &ZrPortOps::getAutonegEnable, {kUnit, kPort, kOnOff},
            "shows whether a port negotiates"),
    slotRow("port setautoneg", &ZrPortOps::setAutonegEnable, {kUnit, kPort, kOnOff},
            "switches negotiation on, or off for forced mode with its abilities as they are"),
    abilityRow("port ability", &ZrPortOps::getAutonegAbility, "shows the abilities that a port advertises"),
    abilityRow("port remote", &ZrPortOps::getRemoteAutonegAbility,
               "shows the abilities that the link partner advertised"),
    {"port advertise",
     {kUnit,
      kPort,
      {.name = "abilities", .type = Type::Text, .choices = kAbilityWords, .check = checkAbilities}},
     "advertises abilities: none, or any of 10h 10f 100h 100f 1000f pause asym",
     slotLabel(&ZrPortOps::setAdvert),
     advertise},
    slotRow("port maxframe", &ZrPortOps::getMaxFrame, {kUnit, "bytes"},
            "shows the largest frame size in bytes"),
    slotRow("port loop", &ZrPortOps::getLoopback, {kUnit, kPort, kLoop}, "shows the loopback mode of a port"),
    slotRow("port setloop", &ZrPortOps::setLoopback, {kUnit, kPort, kLoop},
            "sets the loopback mode of a port; none ends mac and pcs"),
    {"port show",
     {kUnit, {"ports", Type::Ports, {}, true}},
     "shows the unit's ports at a glance; \"?\" could not be read, \"-\" needs a PHY",
     "",
     overview},
    boardRow("link", "link", {kUnit, kPort, kState}, "board: plugs the cable of a port in, or pulls it"),
    boardRow(
        "partner", "partner",
        {kUnit, kPort, {"mode", Type::Word, "auto|forced"}, {"abilities", Type::Text, kAbilityWords, true}},
        "board: sets the abilities of a port's link partner: any of 10h 10f 100h 100f 1000f pause asym"),
    boardRow("maclink", "mac", {kUnit, kPort, kSpeed, {"duplex", Type::Word, "half|full"}, kState},
             "board: forces the link of a port without PHY"),
};

} // namespace

std::span<const Command> portCommands()
{
    return kPortCommands;
}

} // namespace zrbench
