#include "sim/pipeline/pipeline.h"

#include <algorithm>
#include <bit>
#include <iterator>

namespace zrsim
{
namespace
{

constexpr Stage kStages[] = {admitAtPort,       checkReserved, classifyVlan,  filterIngress,
                             checkSpanningTree, learnSource,   applyAcl,      findDestination,
                             limitStorm,        filterEgress,  choosePriority};

constexpr size_t kAddresses = 12; // bytes in front of a tag
constexpr size_t kTag = 4;
constexpr size_t kSmallest = 60; // without FCS

// Egress tag modes of a port: the chip's numbering is given, their meaning is the model's own choice.
enum TagMode : uint8_t { kByVlan = 0, kAsItCame = 1, kTagged = 2, kPriorityTagged = 3 };

bool leavesTagged(const Passage &passage, uint32_t port)
{
    switch (passage.chip.vlan.port(port)->tagMode) {
    case kAsItCame:
        return passage.frame.tagged();
    case kTagged:
    case kPriorityTagged:
        return true;
    default:
        return (passage.chip.vlan.entry(passage.vlan).untagMask >> port & 1U) == 0;
    }
}

// The frame behind its addresses with `front` in place of its own tag, padded where that leaves it too short.
std::span<const uint8_t> rewrite(std::vector<uint8_t> &to, const Frame &frame, std::span<const uint8_t> front)
{
    const auto bytes = frame.bytes();
    const auto rest = bytes.subspan(kAddresses + (frame.tagged() ? kTag : 0));
    to.assign(bytes.begin(), bytes.begin() + kAddresses);
    to.insert(to.end(), front.begin(), front.end());
    to.insert(to.end(), rest.begin(), rest.end());
    to.resize(std::max(to.size(), kSmallest));
    return to;
}

PortCounters::Kind kindOf(const Frame &frame)
{
    using enum PortCounters::Kind;
    return !frame.toGroup() ? Unicast : frame.toAll() ? Broadcast : Multicast;
}

PortCounters::Fate fateOf(Reason reason)
{
    using enum PortCounters::Fate;
    switch (reason) {
    case Reason::None:
        return Good;
    case Reason::BadFcs:
        return Fcs;
    case Reason::Malformed:
    case Reason::Runt:
        return Undersize;
    case Reason::Oversize:
        return Oversize;
    default:
        return Dropped;
    }
}

std::array<uint8_t, kTag> tag(uint32_t tpid, uint32_t control)
{
    return {static_cast<uint8_t>(tpid >> 8), static_cast<uint8_t>(tpid), static_cast<uint8_t>(control >> 8),
            static_cast<uint8_t>(control)};
}

} // namespace

Pipeline &pipeline()
{
    static Pipeline instance(board());
    return instance;
}

void Pipeline::pass(Cables::End to, std::span<const uint8_t> bytes, bool fcsGood, bool returned)
{
    if (queued_ == hops_.size())
        hops_.emplace_back();
    Hop &hop = hops_[queued_++];
    hop.unit = to.unit;
    hop.port = to.port;
    hop.fcsGood = fcsGood;
    hop.returned = returned;
    hop.bytes.assign(bytes.begin(), bytes.end());
}

void Pipeline::send(uint32_t unit, uint32_t port, std::span<const uint8_t> bytes, bool fcsGood,
                    Witness &witness)
{
    visits_ = {};
    queued_ = 0;
    pass({unit, port}, bytes, fcsGood, false);
    for (size_t i = 0; i < queued_; ++i)
        enter(hops_[i], witness);
}

void Pipeline::enter(const Hop &hop, Witness &witness)
{
    const Frame frame(hop.bytes);
    Chip &chip = board_.chip(hop.unit);
    Passage passage{chip, hop.port, frame, hop.fcsGood, witness};
    bool goesOn = true;
    if (Ports::exists(hop.port)) {
        uint8_t &visits = visits_[hop.unit][hop.port];
        if (visits == kMostVisits)
            goesOn = passage.drop(Reason::Loop, "port", "the frame was here {} times", kMostVisits);
        else if (++visits; !hop.returned && !chip.inReset() && chip.ports.enabled(hop.port) &&
                           chip.ports.looped(hop.port))
            return turnBack(passage);
    }
    for (size_t i = 0; goesOn && i < std::size(kStages); ++i)
        goesOn = kStages[i](passage);
    if (passage.reason == Reason::None)
        deliver(passage);
    count(passage);
    if (passage.reason != Reason::None) {
        chip.drop.note(hop.port, info(passage.reason).captureBit);
        witness.dropped(chip.unit(), hop.port, passage.reason);
    }
}

// A looped port sends a frame back to where it came from, past the switch.
void Pipeline::turnBack(const Passage &passage)
{
    const Frame &frame = passage.frame;
    const Cables::End here{passage.chip.unit(), passage.port};
    passage.say("port", "port {} is in loopback: the frame returns", passage.port);
    if (const Cables::End *peer = board_.cables.peer(here))
        return pass(*peer, frame.bytes(), passage.fcsGood, false);
    passage.witness.left(
        {here.unit, here.port, false, frame.tagged(), frame.vid(), frame.dot1p(), 0, frame.bytes()});
}

// A port that is not there or has no link receives nothing that it could count.
void Pipeline::count(const Passage &passage)
{
    switch (passage.reason) {
    case Reason::NotRunning:
    case Reason::NoPort:
    case Reason::PortDisabled:
    case Reason::LinkDown:
        return;
    default:
        const Frame &frame = passage.frame;
        const auto kind = frame.hasHeader() ? kindOf(frame) : PortCounters::Kind::Unicast;
        passage.chip.counters.received(passage.port, kind, frame.wireSize(), fateOf(passage.reason));
    }
}

void Pipeline::deliver(Passage &passage)
{
    Chip &chip = passage.chip;
    const Frame &frame = passage.frame;
    if (passage.trapped) {
        const Ports::CpuPort &cpu = chip.ports.cpu;
        if (!cpu.chosen) {
            passage.drop(Reason::NoCpuPort, "cpu", "unit {} has no CPU port", chip.unit());
            return;
        }
        if (cpu.tag)
            passage.say("cpu", "to CPU port {} with CPU tag {:#06x}", cpu.port, cpu.etherType);
        else
            passage.say("cpu", "to CPU port {}", cpu.port);
        auto bytes = frame.bytes();
        if (cpu.tag) { // in front of the frame's own tag: where it came in
            const auto front = tag(cpu.etherType, passage.port);
            rewritten_.assign(bytes.begin(), bytes.begin() + kAddresses);
            rewritten_.insert(rewritten_.end(), front.begin(), front.end());
            rewritten_.insert(rewritten_.end(), bytes.begin() + kAddresses, bytes.end());
            bytes = rewritten_;
        }
        chip.counters.sent(cpu.port, kindOf(frame), static_cast<uint32_t>(bytes.size()) + Frame::kFcs);
        passage.witness.left(
            {chip.unit(), cpu.port, true, frame.tagged(), passage.vlan, passage.dot1p, 0, bytes});
        return;
    }
    for (uint32_t rest = passage.egress; rest != 0; rest &= rest - 1) {
        const auto port = static_cast<uint32_t>(std::countr_zero(rest));
        const bool tagged = leavesTagged(passage, port);
        const uint32_t vlan = chip.vlan.port(port)->tagMode == kPriorityTagged ? 0 : passage.vlan;
        const uint32_t dot1p = passage.aclPriority.value_or(passage.dot1p);
        std::span<const uint8_t> bytes = frame.bytes();
        if (tagged && !(frame.tagged() && frame.vid() == vlan && frame.dot1p() == dot1p))
            bytes = rewrite(rewritten_, frame, tag(Frame::kTpid, dot1p << 13 | vlan));
        else if (!tagged && frame.tagged())
            bytes = rewrite(rewritten_, frame, {});
        hand(passage, {chip.unit(), port, false, tagged, vlan, dot1p, passage.queue, bytes});
    }
}

// Over the cable or the loopback of a port, or out into the world.
void Pipeline::hand(Passage &passage, const Departure &departure)
{
    Chip &chip = passage.chip;
    const Cables::End here{departure.unit, departure.port};
    const Cables::End *peer = board_.cables.peer(here);
    const bool returned = chip.ports.looped(departure.port);
    chip.counters.sent(departure.port, kindOf(passage.frame),
                       static_cast<uint32_t>(departure.bytes.size()) + Frame::kFcs);
    if (passage.told) {
        const std::string form =
            departure.tagged ? fmt::format("tagged VLAN {} priority {}", departure.vlan, departure.dot1p)
                             : "untagged";
        const std::string where = returned ? "back by its loopback"
                                  : peer != nullptr
                                      ? fmt::format("over the cable to {}/{}", peer->unit, peer->port)
                                      : "out";
        passage.say("deliver", "port {}, {}: {}", departure.port, form, where);
    }
    if (!returned && peer == nullptr) {
        passage.witness.left(departure);
        return;
    }
    pass(returned ? here : *peer, departure.bytes, true, returned);
}

} // namespace zrsim
