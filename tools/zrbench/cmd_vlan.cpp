// VLANs.
#include <algorithm>
#include <array>
#include <fmt/format.h>

#include "l2/vlan.h"
#include "tools/zrbench/rows.h"

namespace zrbench
{

namespace
{

// The manager's lists have a fixed size; a shorter one is ended by a number that is no port.
Outcome addList(Session &session, const Arguments &a)
{
    const std::vector<uint32_t> ports = a.ports("ports");
    const std::vector<uint32_t> untagged = a.ports("untagged");
    if (ports.size() > ZR_VLAN_LIST_PORTS)
        throw UsageError{fmt::format("ports: {} given, a list holds {}", ports.size(), +ZR_VLAN_LIST_PORTS)};
    for (uint32_t port : untagged)
        if (std::ranges::count(ports, port) == 0)
            throw UsageError{fmt::format("untagged: port {} is not in ports", port)};

    std::array<uint32_t, ZR_VLAN_LIST_PORTS> list;
    std::array<uint32_t, ZR_VLAN_LIST_PORTS> untags{};
    list.fill(ZR_VLAN_LIST_END);
    std::ranges::copy(ports, list.begin());
    for (size_t i = 0; i < ports.size(); ++i)
        untags[i] = std::ranges::count(untagged, ports[i]) != 0 ? 1 : 0;
    return Outcome::of(session.slot(&ZrVlanOps::addMultiMember)(a.number("unit"), a.number("vlan"), list.data(),
                                                                untags.data()));
}

// A VLAN without members looks the same as one that was never created.
Outcome listVlans(Session &session, const Arguments &a)
{
    constexpr uint32_t kFirstVlan = 1;
    constexpr uint32_t kLastVlan = 4094;
    const uint32_t first = a.has("first") ? a.number("first") : kFirstVlan;
    const uint32_t last = a.has("last") ? a.number("last") : a.has("first") ? first : kLastVlan;
    const auto getPortMap = session.slot(&ZrVlanOps::getPortMap);
    TextTable table({"VLAN", "TAGGED", "UNTAGGED"});
    for (uint64_t vlan = first; vlan <= last; ++vlan) {
        uint32_t memberMask = 0;
        uint32_t untagMask = 0;
        if (const uint32_t status =
                getPortMap(a.number("unit"), static_cast<uint32_t>(vlan), &memberMask, &untagMask);
            status != LSW_OK)
            return Outcome::of(status);
        if (memberMask != 0 || untagMask != 0)
            table.row({vlan, portList(memberMask & ~untagMask), portList(untagMask)});
    }
    return Outcome::shown(table);
}

constexpr Argument kTagMode{.name = "mode", .choices = "by-vlan|as-received|tagged|priority-tagged"};
constexpr Argument kTagging{"tagging", Type::Word, "tagged|untagged"};

const Command kVlanCommands[] = {
    slotRow("vlan init", &ZrVlanOps::init, {kUnit},
            "initialises VLANs: takes the reserved port out of VLAN 1, enables ingress filters on all others"),
    slotRow("vlan create", &ZrVlanOps::create, {kUnit, kVlan}, "creates a VLAN with the cascade ports tagged"),
    slotRow("vlan delete", &ZrVlanOps::destroy, {kUnit, kVlan},
            "takes the cascade ports out of a VLAN and destroys it"),
    ordered(slotRow("vlan add", &ZrVlanOps::addMember, {kUnit, kPort, kVlan, kTagging},
                    "adds a port to a VLAN; an untagged member stays untagged"),
            {kUnit, kVlan, kPort, kTagging}),
    {"vlan add-list",
     {kUnit, kVlan, {"ports", Type::Ports}, {"untagged", Type::Ports, {}, true}},
     "adds up to 32 ports, those in UNTAGGED untagged; stops at the first failure",
     slotLabel(&ZrVlanOps::addMultiMember),
     addList},
    ordered(slotRow("vlan remove", &ZrVlanOps::delMember, {kUnit, kPort, kVlan}, "takes a port out of a VLAN"),
            {kUnit, kVlan, kPort}),
    slotRow("vlan members", &ZrVlanOps::getPortMap,
            {kUnit, kVlan, {"members", portList}, {"untagged", portList}}, "shows a VLAN's members"),
    {"vlan list",
     {kUnit, {.name = "first", .optional = true}, {.name = "last", .optional = true}},
     "lists the VLANs that have members: all, one, or FIRST to LAST",
     slotLabel(&ZrVlanOps::getPortMap),
     listVlans},
    slotRow("vlan set-pvid", &ZrVlanOps::setPortPvid, {kUnit, kPort, kVlan},
            "sets the VLAN of a port's untagged frames"),
    slotRow("vlan pvid", &ZrVlanOps::getPortPvid, {kUnit, kPort, kVlan},
            "shows the VLAN of a port's untagged frames"),
    slotRow("vlan filter", &ZrVlanOps::setIgrPortFilter,
            {kUnit, kPort, Argument{"state", Type::Word, "off|on"}},
            "switches a port's ingress filter, which drops frames of VLANs that the port is not a member of"),
    slotRow(
        "vlan tag-mode", &ZrVlanOps::setTagMode, {kUnit, kPort, kTagMode},
        "sets how frames leave a port: tagged or not by the VLAN's untagged set, as they came, always tagged, "
        "tagged with the priority alone"),
};

} // namespace

std::span<const Command> vlanCommands()
{
    return kVlanCommands;
}

} // namespace zrbench
