// A unit on one page, and the pages of its parts: what is set. Where only the virtual chip can tell, its state
// is asked; on a board these parts say so.
#include <algorithm>
#include <fmt/format.h>
#include <map>
#include <optional>

#include "acl/acl.h"
#include "l2/mac.h"
#include "platform/chip_sdk.h"
#include "port/port.h"
#include "records/acl_records.h"
#include "tools/zrbench/rows.h"
#include "tools/zrbench/values.h"

using nlohmann::json;

namespace zrbench
{

namespace
{

constexpr std::string_view kTagModes = "by-vlan|as-received|tagged|priority-tagged";
constexpr std::string_view kStormTypes = "unknown-unicast|multicast|2|broadcast";

// What is known of one unit.
struct UnitState {
    bool seen = false; // the platform tells the chips' state
    json chip;
    json library;

    // An empty object where there is nothing.
    const json &at(const std::string &pointer) const
    {
        static const json nothing = json::object();
        const json::json_pointer place(pointer);
        return chip.contains(place) ? chip.at(place) : nothing;
    }
    bool up() const { return !seen || (chip.is_object() && !chip.value("inReset", true)); }
};

UnitState stateOf(const Session &session, uint32_t unit)
{
    if (session.inspection().dump == nullptr)
        return {};
    const json state = session.state();
    const std::string number = fmt::to_string(unit);
    return {true, state.value(json::json_pointer("/board/units/" + number), json::object()),
            state.value(json::json_pointer("/library/units/" + number), json::object())};
}

// The state of a unit whose parts only the virtual chip tells. Throws UsageError.
UnitState chipState(const Session &session, uint32_t unit)
{
    UnitState state = stateOf(session, unit);
    if (!state.seen)
        throw UsageError{"this platform does not tell the chips' state"};
    return state;
}

std::string notUp(uint32_t unit)
{
    return fmt::format("unit {} was never brought up: chip init {}\n", unit, unit);
}

std::vector<uint32_t> portsOf(const Session &session, uint32_t unit)
{
    return portList(session.portSet(unit, LSWM_SET_VALID)).get<std::vector<uint32_t>>();
}

// "1:blocking" for each instance in which the port does not forward.
std::string stpOf(const UnitState &state, uint32_t port)
{
    std::string text;
    for (const auto &[instance, found] : state.at("/stp/instances").items()) {
        const json held = found.value(json::json_pointer(fmt::format("/ports/{}", port)), json());
        if (held.is_string() && held != "forwarding")
            text += fmt::format("{}{}:{}", text.empty() ? "" : " ", instance, held.get<std::string>());
    }
    return text.empty() ? "-" : text;
}

// The group of the chip that a port belongs to.
json trunkOf(const Session &session, const UnitState &state, uint32_t unit, uint32_t port)
{
    const uint32_t chipPort =
        session.platformCall<decltype(l2sw_switch_port_L2P_get)>("l2sw_switch_port_L2P_get")(unit, port);
    for (const json &group : state.at("/trunk/groups"))
        for (const json &member : group.value("chipPorts", json::array()))
            if (member == chipPort)
                return group.value("group", json("-"));
    return "-";
}

TextTable portTable(const Session &session, const UnitState &state, uint32_t unit)
{
    TextTable table({"PORT", "LINK", "PVID", "TAGS", "FILTER", "STP", "ISOLATED", "TRUNK", "IN", "OUT"});
    const auto ask = [&](auto getter, uint32_t port) -> std::optional<uint32_t> {
        uint32_t value = 0;
        return session.slot(getter)(unit, port, &value) == LSW_OK ? std::optional(value) : std::nullopt;
    };
    for (const uint32_t port : portsOf(session, unit)) {
        const std::optional<uint32_t> enabled = ask(&ZrPortOps::getEnable, port);
        const std::optional<uint32_t> link = ask(&ZrPortOps::getLinkStatus, port);
        std::string shownLink = !enabled || !link ? "?" : *enabled == 0 ? "off" : "down";
        if (enabled.value_or(0) != 0 && link.value_or(0) != 0)
            shownLink = fmt::format("{} {}", ask(&ZrPortOps::getSpeed, port).value_or(0),
                                    ask(&ZrPortOps::getDuplex, port).value_or(0) != 0 ? "full" : "half");
        const std::optional<uint32_t> pvid = ask(&ZrVlanOps::getPortPvid, port);
        const std::optional<uint32_t> isolated = ask(&ZrPortOps::getIsolateMap, port);
        const json vlan = state.at(fmt::format("/vlan/ports/{}", port));
        LswmPortStatistics counters{};
        const bool counted = session.slot(&ZrPortOps::getStatistics)(unit, port, &counters) == LSW_OK;
        table.row(
            {port, shownLink, pvid ? json(*pvid) : "?",
             vlan.contains("tagMode") ? json(numberName(kTagModes, vlan["tagMode"].get<uint32_t>())) : "?",
             vlan.contains("ingressFilter") ? json(vlan["ingressFilter"] != 0 ? "on" : "off") : "?",
             state.seen ? stpOf(state, port) : "?", isolated ? portList(*isolated) : "?",
             state.seen ? trunkOf(session, state, unit, port) : "?", counted ? json(counters.counter[11]) : "?",
             counted ? json(counters.counter[12]) : "?"});
    }
    return table;
}

std::string vlanText(const UnitState &state)
{
    TextTable table({"VLAN", "MEMBERS", "UNTAGGED", "INSTANCE"});
    std::map<uint32_t, json> vlans;
    for (const auto &[vlan, held] : state.at("/vlan/vlans").items())
        vlans[parseNumber(vlan).value_or(0)] = held;
    for (const auto &[vlan, held] : vlans)
        table.row({vlan, held.value("members", json::array()), held.value("untagged", json::array()),
                   state.at(fmt::format("/stp/vlans/{}", vlan)).value("instance", 0U)});
    return vlans.empty() ? "no VLANs\n" : table.text(80);
}

// "0: 3, 4: 1"
std::string counted(const std::map<uint32_t, uint32_t> &ports)
{
    std::string text;
    for (const auto &[port, count] : ports)
        text += fmt::format("{}{}: {}", text.empty() ? "" : ", ", port, count);
    return text;
}

std::string addressText(const UnitState &state)
{
    std::map<uint32_t, uint32_t> ports[2];
    size_t count[2] = {};
    for (const json &entry : state.at("/mac/entries")) {
        const size_t kind = entry.value("static", false) ? 1 : 0;
        ++count[kind];
        ++ports[kind][entry.value("port", uint32_t{0})];
    }
    if (count[0] + count[1] == 0)
        return "no addresses\n";
    return fmt::format("addresses  {} learned{}{}, {} static{}{}; {} entries, ageing {} s\n", count[0],
                       count[0] != 0 ? ", by port " : "", counted(ports[0]), count[1],
                       count[1] != 0 ? ", by port " : "", counted(ports[1]), +ZR_MAC_CAPACITY,
                       state.at("/mac").value("ageTime", 0U));
}

std::string trunkText(const UnitState &state)
{
    std::string text;
    for (const json &group : state.at("/trunk/groups")) {
        const json members = group.value("chipPorts", json::array());
        const json trunk = state.library.value(
            json::json_pointer(fmt::format("/trunk/groups/{}/trunk", plainText(group.value("group", json())))),
            json());
        if (!members.empty() || !trunk.is_null())
            text += fmt::format("trunk      {}: chip group {}, chip ports {}\n",
                                trunk.is_null() ? "not recorded" : plainText(trunk),
                                plainText(group.value("group", json())), plainText(members));
    }
    return text.empty() ? "no trunks\n" : text;
}

std::string aclText(const Session &session, const UnitState &state, uint32_t unit)
{
    const json rules = state.library.value("/acl/rules"_json_pointer, json());
    if (!rules.is_array())
        return fmt::format("no ACL: acl init {}\n", unit);
    std::string text = fmt::format("acl        {} rules, {} of {} counters\n", rules.size(),
                                   plainText(state.library.value("/acl/counters/used"_json_pointer, json(0))),
                                   plainText(state.library.value("/acl/counters/of"_json_pointer, json(0))));
    const auto range =
        session.operation<decltype(COM_ACL_GetChipRulePartRange)>("COM_ACL_GetChipRulePartRange");
    std::string parts;
    for (uint32_t partition = 0; partition < ZR_ACL_PARTITIONS; ++partition) {
        uint32_t first = 0;
        uint32_t count = 0;
        if (range(unit, partition, &first, &count) != LSW_OK || count == 0)
            continue;
        size_t used = 0;
        for (const json &rule : rules)
            for (const json &id : rule.value("chipIds", json::array()))
                used += id >= first && id < first + count ? 1 : 0;
        parts += fmt::format("{}{}: {} of {} entries", parts.empty() ? "" : ", ", partition, used, count);
    }
    return text + fmt::format("           partition {}\n", parts);
}

std::string limitText(const UnitState &state, uint32_t unit)
{
    std::string meters;
    for (const auto &[meter, held] : state.at("/meters").items())
        meters += fmt::format("{}{}: {} {} bucket {}", meters.empty() ? "" : ", ", meter,
                              (held.value("mode", 0U) == 0 ? 8 : 1) * held.value("rate", uint64_t{0}),
                              held.value("mode", 0U) == 0 ? "kbit/s" : "frames/s", held.value("bucket", 0U));
    std::string storms;
    for (const auto &[port, held] : state.at("/storm/ports").items())
        for (const auto &[type, limit] : held.at("types").items())
            storms +=
                fmt::format("{}port {} {} by meter {}", storms.empty() ? "" : ", ", port,
                            numberName(kStormTypes, parseNumber(type).value_or(99)), limit.value("meter", 0U));
    const json qos = state.at("/qos");
    return (meters.empty() ? std::string("no chip meters\n") : fmt::format("meters     {}\n", meters)) +
           (storms.empty() ? "no storm control\n" : fmt::format("storm      {}\n", storms)) +
           (qos.contains("queues") ? fmt::format("qos        {} queues; qos show {} has the maps\n",
                                                 plainText(qos["queues"]), unit)
                                   : fmt::format("no QoS: qos init {}\n", unit));
}

Outcome showUnit(Session &session, const Arguments &a)
{
    const uint32_t unit = a.number("unit");
    const UnitState state = stateOf(session, unit);
    if (!state.up())
        return Outcome::shown(notUp(unit));
    const TextTable ports = portTable(session, state, unit);
    std::string below;
    if (!state.seen)
        below = "What stands as \"?\", and all else, this platform does not tell.\n";
    else
        for (const std::string &part : {vlanText(state), addressText(state), trunkText(state),
                                        aclText(session, state, unit), limitText(state, unit)})
            below += foldedLines(part, 80, 11);
    const uint32_t size = session.unitInfo(unit).maxFrameSize;
    Outcome outcome = Outcome::shown(ports, "\n" + below);
    outcome.out("revision", state.at("").value("revision", json("?"))).out("frameSize", size);
    if (const json cpu = state.at("/ports/cpu"); cpu.contains("port"))
        outcome.out("cpuPort", cpu["port"]);
    return outcome;
}

Outcome showStp(Session &session, const Arguments &a)
{
    const UnitState state = chipState(session, a.number("unit"));
    if (!state.up())
        return Outcome::shown(notUp(a.number("unit")));
    std::map<uint32_t, std::vector<uint32_t>> vlans;
    for (const auto &[vlan, held] : state.at("/stp/vlans").items())
        vlans[held.value("instance", 0U)].push_back(parseNumber(vlan).value_or(0));
    for (const auto &[instance, unused] : state.at("/stp/instances").items())
        vlans[parseNumber(instance).value_or(0)];
    TextTable table({"INSTANCE", "VLANS", "PORT", "STATE"});
    for (const auto &[instance, bound] : vlans) {
        const json ports = state.at(fmt::format("/stp/instances/{}/ports", instance));
        for (const auto &[port, held] : ports.items())
            table.row({instance, bound, parseNumber(port).value_or(0), held});
        if (ports.empty())
            table.row({instance, bound, "-", "-"});
    }
    return Outcome::shown(table,
                          "VLANs that are bound to no instance are in instance 0; other ports forward.\n");
}

Outcome showTrunks(Session &session, const Arguments &a)
{
    const UnitState state = chipState(session, a.number("unit"));
    return Outcome::shown(state.up() ? trunkText(state) : notUp(a.number("unit")));
}

Outcome showPortVlans(Session &session, const Arguments &a)
{
    const uint32_t port = a.number("port");
    const UnitState state = chipState(session, a.number("unit"));
    if (!state.up())
        return Outcome::shown(notUp(a.number("unit")));
    const json held = state.at(fmt::format("/vlan/ports/{}", port));
    if (held.empty())
        throw UsageError{fmt::format("the chip has no port {}", port)};
    json tagged = json::array();
    json untagged = json::array();
    const auto has = [&](const json &entry, const char *set) {
        const json ports = entry.value(set, json::array());
        return std::find(ports.begin(), ports.end(), port) != ports.end();
    };
    for (const auto &[vlan, entry] : state.at("/vlan/vlans").items())
        if (has(entry, "members"))
            (has(entry, "untagged") ? untagged : tagged).push_back(parseNumber(vlan).value_or(0));
    std::sort(tagged.begin(), tagged.end());
    std::sort(untagged.begin(), untagged.end());
    Outcome outcome = Outcome::shown("");
    return outcome.out("pvid", held.value("pvid", 0U))
        .out("priority", held.value("priority", 0U))
        .out("filter", held.value("ingressFilter", 0U) != 0 ? "on" : "off")
        .out("tagMode", numberName(kTagModes, held.value("tagMode", 0U)))
        .out("tagged", tagged)
        .out("untagged", untagged);
}

// The manager and the chip number ports apart, and commands take one or the other.
Outcome mapPorts(Session &session, const Arguments &a)
{
    const uint32_t unit = a.number("unit");
    const auto chipPort = session.platformCall<decltype(l2sw_switch_port_L2P_get)>("l2sw_switch_port_L2P_get");
    const auto external = session.platformCall<decltype(l2sw_switch_isExtPort)>("l2sw_switch_isExtPort");
    const LswmUnitInfo &info = session.unitInfo(unit);
    TextTable table({"PORT", "CHIP PORT", "MEANING"});
    for (const uint32_t port : portsOf(session, unit)) {
        const bool cascade = (session.portSet(unit, LSWM_SET_CASCADE) >> port & 1) != 0;
        table.row({port, chipPort(unit, port),
                   cascade                     ? "cascade, to another unit"
                   : port == info.reservedPort ? "reserved, to the host"
                   : external(unit, port) != 0 ? "with PHY"
                                               : "without PHY"});
    }
    return Outcome::shown(
        table,
        "Commands take PORT; trunk groups list chip ports. The chip's ACL names ports as PORT does: 0 to 4, "
        "15 to 17.\n");
}

constexpr Argument kShownUnit{.name = "unit", .most = LSWM_UNITS - 1, .meaning = kUnit.meaning};

const Command kShowCommands[] = {
    {"show", {kShownUnit}, "shows what is set on a unit, on one page", "", showUnit},
    {"stp show", {kShownUnit}, "shows the spanning-tree instances, their VLANs and port states", "", showStp},
    {"trunk show", {kShownUnit}, "shows the trunks, recorded or not, with their chip ports", "", showTrunks},
    {"port vlan", {kShownUnit, kPort}, "shows the VLAN settings of a port", "", showPortVlans},
    {"port map", {kShownUnit}, "shows the manager's ports with those of the chip", "", mapPorts},
};

} // namespace

std::span<const Command> showCommands()
{
    return kShowCommands;
}

} // namespace zrbench
