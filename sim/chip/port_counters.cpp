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

// Words of the record, as the header has them.
constexpr uint32_t kOctetsIn = 0;
constexpr uint32_t kOctetsOut = 22;
constexpr std::array<uint32_t, 3> kFramesIn = {8, 62, 63}; // by kind
constexpr std::array<uint32_t, 3> kFramesOut = {33, 34, 35};
constexpr std::array<uint32_t, 5> kFates = {0, 2, 4, 13, 9}; // by fate; a good frame has none

struct SizeClass {
    uint32_t most;
    uint32_t word;
};
constexpr SizeClass kSizes[] = {{64, 12}, {127, 14}, {255, 15}, {511, 16}, {1023, 17}, {UINT32_MAX, 18}};

uint32_t portOf(const Words &words, size_t i = 0)
{
    const uint32_t port = words.number(i);
    if (!Ports::exists(port))
        words.refuse(fmt::format("there is no port {}", port));
    return port;
}

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

void PortCounters::received(uint32_t port, Kind kind, uint32_t bytes, Fate fate)
{
    SdkPortCounters &record = records_[port];
    record.wide[kOctetsIn / 2] += bytes;
    if (fate != Fate::Good)
        ++record.word[kFates[static_cast<size_t>(fate)]];
    if (fate != Fate::Good && fate != Fate::Dropped)
        return;
    ++record.word[kFramesIn[static_cast<size_t>(kind)]];
    for (const SizeClass &size : kSizes) {
        if (bytes <= size.most) {
            ++record.word[size.word];
            break;
        }
    }
}

void PortCounters::sent(uint32_t port, Kind kind, uint32_t bytes)
{
    records_[port].wide[kOctetsOut / 2] += bytes;
    ++records_[port].word[kFramesOut[static_cast<size_t>(kind)]];
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
            to["ports"][std::to_string(port)] = std::move(state);
    }
}

} // namespace zrsim
