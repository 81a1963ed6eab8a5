#include "sim/chip/port_extras.h"

#include <fmt/format.h>

#include <algorithm>
#include <nlohmann/json.hpp>

#include "sim/chip/chip.h"
#include "sim/chip/status.h"
#include "sim/command.h"

namespace zrsim
{
namespace
{

const BoardCommand kSnr("snr PORT A B C D [STATUS] [TRAP]",
                        "the signal-to-noise readings of a port's four pairs",
                        [](Chip &chip, const Words &words) {
                            const uint32_t port = words.number(0);
                            if (!Ports::hasPhy(port))
                                words.refuse(fmt::format("there is no PHY at port {}", port));
                            SdkPortSnr snr{};
                            for (size_t pair = 0; pair < 4; ++pair)
                                snr.word[pair] = words.number(pair + 1);
                            snr.word[4] = words.number(5, UINT32_MAX, 0);
                            snr.word[6] = words.number(6, UINT32_MAX, 0);
                            chip.extras.setSnr(port, snr);
                            return std::string();
                        });

} // namespace

void PortExtras::reset()
{
    ports_.fill({});
}

uint32_t PortExtras::readSnr(uint32_t port, SdkPortSnr &snr) const
{
    if (!Ports::hasPhy(port))
        return kSdkBadPort;
    snr = ports_[port].snr;
    return kSdkOk;
}

uint32_t PortExtras::forceLeds(uint32_t port, uint32_t a, uint32_t b)
{
    if (!Ports::exists(port))
        return kSdkBadPort;
    ports_[port].ledsForced = true;
    ports_[port].ledA = a;
    ports_[port].ledB = b;
    return kSdkOk;
}

uint32_t PortExtras::scanLink(uint32_t port)
{
    if (!Ports::hasPhy(port))
        return kSdkBadPort;
    ++ports_[port].linkScans;
    return kSdkOk;
}

void PortExtras::dump(nlohmann::json &to) const
{
    const Port fresh;
    for (uint32_t number = 0; number < kPorts; ++number) {
        const Port &port = ports_[number];
        nlohmann::json state;
        if (!std::equal(std::begin(port.snr.word), std::end(port.snr.word), std::begin(fresh.snr.word)))
            state["snr"] = port.snr.word;
        if (port.ledsForced)
            state["forcedLeds"] = {port.ledA, port.ledB};
        if (port.linkScans != 0)
            state["linkScans"] = port.linkScans;
        if (!state.is_null())
            to["ports"][std::to_string(number)] = std::move(state);
    }
}

} // namespace zrsim
