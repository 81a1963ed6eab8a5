// The port that a frame comes in at: whether it takes the frame at all. Given: frame sizes of 64 bytes to the
// configured maximum, FCS included (IEEE 802.3 clause 3). The model's own choice: a tag counts as
// part of the size like everything else; the FCS is looked at last. A port in any loopback returns what is put
// into it: sim/pipeline/pipeline.cpp does that before this stage.
#include "sim/pipeline/passage.h"

namespace zrsim
{
namespace
{

constexpr uint32_t kSmallestFrame = 64;
constexpr uint32_t kLargestFrames[] = {1522, 1536, 1552, 10000}; // by size index

} // namespace

bool admitAtPort(Passage &passage)
{
    const Chip &chip = passage.chip;
    const uint32_t port = passage.port;
    const uint32_t size = passage.frame.wireSize();
    if (chip.inReset())
        return passage.drop(Reason::NotRunning, "port", "unit {} is in reset", chip.unit());
    if (!Ports::exists(port))
        return passage.drop(Reason::NoPort, "port", "the chip has no port {}", port);
    if (!chip.ports.enabled(port))
        return passage.drop(Reason::PortDisabled, "port", "port {} is disabled", port);
    const Link link = chip.ports.macLink(port);
    if (!link.up)
        return passage.drop(Reason::LinkDown, "port", "port {} has no link", port);
    if (!passage.frame.hasHeader())
        return passage.drop(Reason::Malformed, "port", "{} bytes hold no Ethernet header",
                            passage.frame.bytes().size());
    if (size < kSmallestFrame)
        return passage.drop(Reason::Runt, "port", "{} bytes with FCS are less than {}", size, kSmallestFrame);
    const uint32_t most = kLargestFrames[chip.ports.frameSize];
    if (size > most)
        return passage.drop(Reason::Oversize, "port", "{} bytes with FCS are more than the frame size {}", size,
                            most);
    if (!passage.fcsGood)
        return passage.drop(Reason::BadFcs, "port", "the FCS is wrong");
    constexpr uint32_t kMbits[] = {10, 100, 1000};
    passage.say("port", "port {} is up, {} {}; {} bytes with FCS", port, kMbits[link.speed],
                link.full ? "full" : "half", size);
    return true;
}

} // namespace zrsim
