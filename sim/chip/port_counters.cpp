#include "sim/chip/port_counters.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "sim/chip/chip.h"
#include "sim/chip/status.h"
#include "sim/command.h"

namespace zrsim
{
namespace
{

constexpr uint16_t kOdropCommand = 0x3208;
constexpr uint16_t kOdropValue = 0x3213;

// Words of the record, by direction: octets (64 bits wide), then frames by kind.
struct TrafficWords {
    uint32_t octets;
    std::array<uint32_t, 3> frames;
};
constexpr TrafficWords kIn = {0, {8, 62, 63}};
constexpr TrafficWords kOut = {22, {33, 34, 35}};

uint32_t portOf(const Words &words, size_t i = 0)
{
    const uint32_t port = words.number(i);
    if (!Ports::exists(port))
        words.refuse(fmt::format("there is no port {}", port));
    return port;
}

uint32_t linkedPortOf(Chip &chip, const Words &words, size_t i = 0)
{
    const uint32_t port = portOf(words, i);
    if (!chip.ports.macLink(port).up)
        words.refuse(fmt::format("port {} has no link", port));
    return port;
}

std::string count(Chip &chip, const Words &words)
{
    const uint32_t port = linkedPortOf(chip, words);
    const std::string &direction = words.text(1);
    const std::string &kind = words.text(2);
    if (direction != "in" && direction != "out")
        words.refuse(fmt::format("'{}' is neither in nor out", direction));
    if (kind != "unicast" && kind != "multicast" && kind != "broadcast")
        words.refuse(fmt::format("'{}' is no kind of frame", kind));
    chip.counters.count(port, direction == "in" ? PortCounters::Direction::In : PortCounters::Direction::Out,
                        kind == "unicast"     ? PortCounters::Kind::Unicast
                        : kind == "multicast" ? PortCounters::Kind::Multicast
                                              : PortCounters::Kind::Broadcast,
                        words.number(3), words.number(4, 10000, 64));
    return {};
}

const BoardCommand kTraffic("traffic PORT in|out unicast|multicast|broadcast FRAMES [BYTES]",
                            "counts frames of BYTES each (64) at a port",
                            [](Chip &chip, const Words &words) { return count(chip, words); });

const BoardCommand kForward("forward FROM TO FRAMES [BYTES]",
                            "sends unicast frames from one port towards another, if isolation permits",
                            [](Chip &chip, const Words &words) {
                                const uint32_t from = linkedPortOf(chip, words);
                                const uint32_t to = linkedPortOf(chip, words, 1);
                                const uint32_t frames = words.number(2);
                                const uint32_t bytes = words.number(3, 10000, 64);
                                using enum PortCounters::Direction;
                                using enum PortCounters::Kind;
                                chip.counters.count(from, In, Unicast, frames, bytes);
                                if (!chip.isolation.permits(from, to))
                                    return fmt::format("port {} may not forward to port {}\n", from, to);
                                chip.counters.count(to, Out, Unicast, frames, bytes);
                                return std::string();
                            });

const BoardCommand kCounter("counter PORT WORD VALUE", "sets one 32-bit word of a port's counter record",
                            [](Chip &chip, const Words &words) {
                                chip.counters.set(portOf(words), words.number(1, PortCounters::kWords - 1),
                                                  words.number(2));
                                return std::string();
                            });

const BoardCommand kOdrop("odrop PORT FRAMES", "frames dropped on the way out of a port",
                          [](Chip &chip, const Words &words) {
                              chip.counters.drop(portOf(words), words.number(1));
                              return std::string();
                          });

} // namespace

void PortCounters::attach(Chip &chip)
{
    chip.registers().onWrite(kOdropCommand, [this](uint16_t value) { command(value); });
    chip.registers().onRead(kOdropValue, [this] { return latched_; });
}

void PortCounters::reset()
{
    records_ = {};
    odrop_ = {};
    latched_ = 0;
}

void PortCounters::command(uint16_t value)
{
    constexpr uint16_t kExecute = 0x4000;
    constexpr uint32_t kFirstCount = 24; // of port 0
    constexpr uint32_t kLatch = 1;
    constexpr uint32_t kClear = 2;
    const uint32_t index = value >> 4 & 0x3FF;
    if ((value & kExecute) == 0 || index < kFirstCount || index >= kFirstCount + kPorts)
        return;
    uint16_t &odrop = odrop_[index - kFirstCount];
    if ((value & 0xF) == kLatch)
        latched_ = odrop;
    else if ((value & 0xF) == kClear)
        odrop = 0;
}

uint32_t PortCounters::read(uint32_t port, SdkPortCounters &record) const
{
    if (!Ports::exists(port))
        return kSdkBadPort;
    record = records_[port];
    return kSdkOk;
}

uint32_t PortCounters::clear(uint32_t port)
{
    if (!Ports::exists(port))
        return kSdkBadPort;
    records_[port] = {};
    return kSdkOk;
}

void PortCounters::count(uint32_t port, Direction direction, Kind kind, uint32_t frames, uint32_t bytesPerFrame)
{
    const TrafficWords &words = direction == Direction::In ? kIn : kOut;
    records_[port].wide[words.octets / 2] += static_cast<uint64_t>(frames) * bytesPerFrame;
    records_[port].word[words.frames[static_cast<size_t>(kind)]] += frames;
}

void PortCounters::dump(nlohmann::json &to) const
{
    for (uint32_t port = 0; port < kPorts; ++port) {
        nlohmann::json state;
        for (uint32_t word = 0; word < kWords; ++word)
            if (records_[port].word[word] != 0)
                state["words"][std::to_string(word)] = records_[port].word[word];
        if (odrop_[port] != 0)
            state["odrop"] = odrop_[port];
        if (!state.is_null())
            to[std::to_string(port)] = std::move(state);
    }
}

} // namespace zrsim
