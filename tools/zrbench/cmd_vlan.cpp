#include <algorithm>
#include <array>
#include <fmt/format.h>

#include "l2/vlan.h"
#include "tools/zrbench/command.h"

namespace zrbench
{

namespace
{

// The manager's lists have a fixed size; a shorter one ends with a port that is none.
Outcome addList(Bench &bench, const Arguments &a)
{
    const std::vector<uint32_t> ports = a.ports("ports");
    const std::vector<uint32_t> untagged = a.has("untagged") ? a.ports("untagged") : std::vector<uint32_t>{};
    if (ports.size() > ZR_VLAN_LIST_PORTS)
        throw UsageError{fmt::format("ports: {} given, a list holds {}", ports.size(), +ZR_VLAN_LIST_PORTS)};
    for (uint32_t port : untagged)
        if (std::ranges::count(ports, port) == 0)
            throw UsageError{fmt::format("untagged: port {} is not among the ports", port)};

    std::array<uint32_t, ZR_VLAN_LIST_PORTS> list;
    std::array<uint32_t, ZR_VLAN_LIST_PORTS> untags{};
    list.fill(ZR_VLAN_LIST_END);
    std::ranges::copy(ports, list.begin());
    for (size_t i = 0; i < ports.size(); ++i)
        untags[i] = std::ranges::count(untagged, ports[i]) != 0 ? 1 : 0;
    return Outcome::of(
        bench.tables().vlan->addMultiMember(a.number("unit"), a.number("vlan"), list.data(), untags.data()));
}

Outcome members(Bench &bench, const Arguments &a)
{
    uint32_t memberMask = 0;
    uint32_t untagMask = 0;
    Outcome outcome = Outcome::of(
        bench.tables().vlan->getPortMap(a.number("unit"), a.number("vlan"), &memberMask, &untagMask));
    if (outcome.status == 0)
        outcome.out("members", showPorts(memberMask)).out("untagged", showPorts(untagMask));
    return outcome;
}

// A VLAN without members cannot be told from one that was never created.
Outcome list(Bench &bench, const Arguments &a)
{
    constexpr uint32_t kFirstVlan = 1;
    constexpr uint32_t kLastVlan = 4094;
    const uint32_t first = a.number("first", kFirstVlan);
    const uint32_t last = a.number("last", a.has("first") ? first : kLastVlan);
    TextTable table({"VLAN", "TAGGED", "UNTAGGED"});
    for (uint64_t vlan = first; vlan <= last; ++vlan) {
        uint32_t memberMask = 0;
        uint32_t untagMask = 0;
        if (uint32_t status = bench.tables().vlan->getPortMap(a.number("unit"), static_cast<uint32_t>(vlan),
                                                              &memberMask, &untagMask);
            status != 0)
            return Outcome::of(status);
        if (memberMask != 0 || untagMask != 0)
            table.row({fmt::format("{}", vlan), showPorts(memberMask & ~untagMask), showPorts(untagMask)});
    }
    return Outcome::shown(table.text());
}

Outcome pvid(Bench &bench, const Arguments &a)
{
    uint32_t vlan = 0;
    Outcome outcome = Outcome::of(bench.tables().vlan->getPortPvid(a.number("unit"), a.number("port"), &vlan));
    if (outcome.status == 0)
        outcome.out("vlan", vlan);
    return outcome;
}

const Argument kUnit = {"unit", Type::Unit};
const Argument kPort = {"port", Type::Port};
const Argument kVlan = {"vlan", Type::Vlan};

const Command kCommands[] = {
    {"vlan init",
     {kUnit},
     "starts the VLAN function: reserved port out of VLAN 1, ingress filters on but there",
     "VLAN 0",
     [](Bench &bench, const Arguments &a) { return Outcome::of(bench.tables().vlan->init(a.number("unit"))); }},
    {"vlan create",
     {kUnit, kVlan},
     "creates a VLAN with the cascade ports tagged",
     "VLAN 1",
     [](Bench &bench, const Arguments &a) {
         return Outcome::of(bench.tables().vlan->create(a.number("unit"), a.number("vlan")));
     }},
    {"vlan delete",
     {kUnit, kVlan},
     "takes the cascade ports out of a VLAN and destroys it",
     "VLAN 2",
     [](Bench &bench, const Arguments &a) {
         return Outcome::of(bench.tables().vlan->destroy(a.number("unit"), a.number("vlan")));
     }},
    {"vlan add",
     {kUnit, kVlan, kPort, {"tagging", Type::Word, "tagged|untagged"}},
     "adds a port to a VLAN; an untagged member stays untagged",
     "VLAN 3",
     [](Bench &bench, const Arguments &a) {
         const uint32_t untag = a.text("tagging") == "untagged" ? 1 : 0;
         return Outcome::of(
             bench.tables().vlan->addMember(a.number("unit"), a.number("port"), a.number("vlan"), untag));
     }},
    {"vlan add-list",
     {kUnit, kVlan, {"ports", Type::Ports}, {"untagged", Type::Ports, {}, true}},
     "adds up to 32 ports, those in UNTAGGED untagged; stops at the first failure",
     "VLAN 4",
     addList},
    {"vlan remove",
     {kUnit, kVlan, kPort},
     "takes a port out of a VLAN",
     "VLAN 5",
     [](Bench &bench, const Arguments &a) {
         return Outcome::of(
             bench.tables().vlan->delMember(a.number("unit"), a.number("port"), a.number("vlan")));
     }},
    {"vlan members", {kUnit, kVlan}, "shows a VLAN's members", "VLAN 6", members},
    {"vlan list",
     {kUnit, {"first", Type::Vlan, {}, true}, {"last", Type::Vlan, {}, true}},
     "lists the VLANs that have members: all, one, or FIRST to LAST",
     "VLAN 6",
     list},
    {"vlan set-pvid",
     {kUnit, kPort, kVlan},
     "sets the VLAN of a port's untagged frames",
     "VLAN 7",
     [](Bench &bench, const Arguments &a) {
         return Outcome::of(
             bench.tables().vlan->setPortPvid(a.number("unit"), a.number("port"), a.number("vlan")));
     }},
    {"vlan pvid", {kUnit, kPort}, "shows the VLAN of a port's untagged frames", "VLAN 8", pvid},
    {"vlan filter",
     {kUnit, kPort, {"state", Type::Word, "on|off"}},
     "lets a port drop frames of VLANs that it is no member of, or not",
     "VLAN 9",
     [](Bench &bench, const Arguments &a) {
         return Outcome::of(bench.tables().vlan->setIgrPortFilter(a.number("unit"), a.number("port"),
                                                                  a.text("state") == "on" ? 1 : 0));
     }},
    {"vlan tag-mode",
     {kUnit, kPort, {"mode", Type::Number}},
     "sets a port's egress tag mode, 0 to 3",
     "VLAN 11",
     [](Bench &bench, const Arguments &a) {
         return Outcome::of(
             bench.tables().vlan->setTagMode(a.number("unit"), a.number("port"), a.number("mode")));
     }},
};

} // namespace

std::span<const Command> vlanCommands()
{
    return kCommands;
}

} // namespace zrbench
