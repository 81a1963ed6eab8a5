// The board's commands for the address table: stations and time.
#include <fmt/format.h>

#include <algorithm>

#include "sim/chip/chip.h"
#include "sim/command.h"
#include "sim/pipeline/capture.h"

namespace zrsim
{
namespace
{

void next(MacAddress &mac)
{
    for (auto byte = mac.rbegin(); byte != mac.rend() && ++*byte == 0; ++byte) {
    }
}

std::string learn(Chip &chip, const Words &words)
{
    const Frame bytes = frameFromHex(words.text(0));
    if (bytes.size() != 6)
        words.refuse(fmt::format("'{}' is no MAC address", words.text(0)));
    MacAddress mac;
    std::ranges::copy(bytes, mac.begin());
    const uint32_t vlan = words.number(1, MacTable::kVlans - 1);
    const uint32_t port = words.number(2, MacTable::kPorts - 1);
    const uint32_t count = words.number(3, MacTable::kEntries, 1);
    if (chip.inReset())
        words.refuse("the chip is in reset");

    uint32_t learned = 0;
    std::string text;
    for (uint32_t i = 0; i < count; ++i, next(mac)) {
        if (const char *why = chip.mac.learn(mac, vlan, port); why == nullptr)
            ++learned;
        else if (text.empty())
            text = fmt::format("first not learned: {:02x}, {}\n", fmt::join(mac, ":"), why);
    }
    text = fmt::format("learned {} of {}\n", learned, count) + text;
    if (learned != count)
        throw BoardError{text};
    return text;
}

const BoardCommand kLearn("learn MAC VLAN PORT [COUNT]",
                          "frames come in from a station, or from so many with addresses in a row", learn);

const BoardCommand kTime("mac-time N", "lets N units of the ageing time pass over the address table",
                         [](Chip &chip, const Words &words) {
                             return fmt::format("{} addresses aged out\n", chip.mac.pass(words.number(0)));
                         });

} // namespace
} // namespace zrsim
