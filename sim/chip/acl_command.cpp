// The board's way to see what the ingress ACL does with a frame.
#include <fmt/format.h>

#include "sim/chip/chip.h"
#include "sim/command.h"
#include "sim/pipeline/capture.h"

namespace zrsim
{
namespace
{

constexpr size_t kShortestFrame = 14; // an Ethernet header

std::string describe(const AclHit &hit)
{
    const FilterAct &act = *hit.action;
    std::string text = fmt::format("entry {}", hit.entry);
    const struct {
        uint32_t on;
        uint32_t number;
        bool hasValue;
    } switches[] = {
        {act.switch9, 9, false},   {act.switch10, 10, false}, {act.switch11, 11, false},
        {act.switch14, 14, false}, {act.switch16, 16, true},  {act.switch18, 18, true},
        {act.switch19, 19, true},
    };
    for (const auto &row : switches)
        if (row.on != 0)
            text += fmt::format(", switch {}", row.number) +
                    (row.hasValue ? fmt::format(" value {}", act.value) : "");
    if (act.redirectEnable != 0)
        text += fmt::format(", to ports {:#x}", act.redirectPorts);
    if (hit.counter)
        text += fmt::format(", counter {} = {}", *hit.counter, hit.count);
    if (hit.meter)
        text += fmt::format(", meter {} {}", *hit.meter, hit.conforms ? "conforms" : "exceeded");
    return text;
}

std::vector<Frame> framesOf(const Words &words)
{
    std::string rest = words.text(1);
    for (size_t i = 2; i < words.count(); ++i)
        rest += " " + words.text(i);
    Frame frame = frameFromHex(rest);
    return frame.empty() ? framesFromFile(rest) : std::vector<Frame>{std::move(frame)};
}

std::string match(Chip &chip, const Words &words)
{
    const uint32_t port = words.number(0, 31);
    std::string text;
    for (const Frame &frame : framesOf(words)) {
        if (frame.size() < kShortestFrame)
            words.refuse("a frame has at least 14 bytes");
        const auto hit = chip.acl.run(port, frame);
        text += fmt::format("port {}, {} bytes: {}\n", port, frame.size(), hit ? describe(*hit) : "no rule");
    }
    return text;
}

const BoardCommand
    kMatch("match PORT FRAME|FILE",
           "runs frames (hexadecimal, or a pcap file) that come in at a chip port through the ACL", match);

} // namespace
} // namespace zrsim
