// Why a frame ends. The names are what a manager's tools show; docs/stand-in.md explains them.
#pragma once

#include <cstdint>

namespace zrsim
{

enum class Reason : uint8_t {
    None,
    NotRunning,
    NoPort,
    PortDisabled,
    LinkDown,
    Malformed,
    Runt,
    Oversize,
    BadFcs,
    Reserved,
    NoCpuPort,
    UnknownVlan,
    IngressFilter,
    SpanningTree,
    SourceBlocked,
    Acl,
    Policed,
    DestinationBlocked,
    SamePort,
    NoMember,
    Storm,
    Isolated,
    EgressSpanningTree,
    EgressLinkDown,
    Loop,
    Count,
};

struct ReasonInfo {
    const char *name;
    uint8_t captureBit; // of the chip's drop-reason result
    const char *text;
};

constexpr uint8_t kNotCaptured = 0xFF;

// In the order of the enumeration.
constexpr ReasonInfo kReasons[] = {
    {"", kNotCaptured, ""},
    {"not-running", kNotCaptured, "the chip is in reset"},
    {"no-port", kNotCaptured, "the chip has no such port"},
    {"port-disabled", 0, "the port is disabled"},
    {"link-down", 0, "the port has no link"},
    {"malformed", 1, "no whole Ethernet header"},
    {"runt", 1, "shorter than 64 bytes with its FCS"},
    {"oversize", 1, "longer than the configured frame size"},
    {"bad-fcs", 1, "the FCS is wrong"},
    {"reserved", 6, "the action of the reserved address drops it"},
    {"no-cpu-port", 6, "trapped, but the unit has no CPU port"},
    {"unknown-vlan", 7, "the VLAN does not exist"},
    {"ingress-filter", 7, "the ingress port is not a member of the VLAN"},
    {"spanning-tree", 3, "the ingress port does not forward in the VLAN's instance"},
    {"source-blocked", 8, "a blocking entry has the source address"},
    {"acl", 5, "the action of an ACL rule drops it"},
    {"policed", 10, "over the rate of the ACL rule's meter"},
    {"destination-blocked", 8, "a blocking entry has the destination address"},
    {"same-port", 11, "its only destination is the port or trunk that it came from"},
    {"no-member", 11, "the VLAN has no member that it could go to"},
    {"storm", 4, "over the rate of storm control"},
    {"isolated", 9, "the permit map of the ingress port leaves no destination"},
    {"egress-spanning-tree", 3, "no destination forwards in the VLAN's instance"},
    {"egress-link-down", 11, "no destination is enabled and has a link"},
    {"loop", 11, "it has come in at this port 16 times"},
};
static_assert(sizeof(kReasons) / sizeof(kReasons[0]) == static_cast<size_t>(Reason::Count));

constexpr const ReasonInfo &info(Reason reason)
{
    return kReasons[static_cast<size_t>(reason)];
}

} // namespace zrsim
