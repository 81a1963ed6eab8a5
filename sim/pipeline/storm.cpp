// Storm control of what is flooded. Given: the library maps the manager's packet types to storm types 0, 1 and
// 3; per port and type a meter. The model's own choice: storm type 0 is unknown unicast, 1 multicast, 3
// broadcast; a frame over the rate is dropped for all its destinations.
#include "sim/pipeline/passage.h"

namespace zrsim
{
namespace
{

enum StormType : uint32_t { kUnknownUnicast = 0, kMulticast = 1, kBroadcast = 3 };

} // namespace

bool limitStorm(Passage &passage)
{
    Chip &chip = passage.chip;
    const Frame &frame = passage.frame;
    if (!passage.flooded || !chip.storm.enabled())
        return true;
    const StormType type = !frame.toGroup() ? kUnknownUnicast : frame.toAll() ? kBroadcast : kMulticast;
    const StormControl::Binding &bound = chip.storm.binding(passage.port, type);
    if (!bound.enabled)
        return true;
    if (!chip.meters.admit(bound.meter, frame.wireSize()))
        return passage.drop(Reason::Storm, "storm", "port {} type {}: over the rate of meter {}", passage.port,
                            static_cast<uint32_t>(type), bound.meter);
    passage.say("storm", "port {} type {}: within the rate of meter {}", passage.port,
                static_cast<uint32_t>(type), bound.meter);
    return true;
}

} // namespace zrsim
