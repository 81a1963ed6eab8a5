// The board's commands for what lies between units: cables and time.
#include <fmt/format.h>

#include "sim/board/board.h"
#include "sim/board/clock.h"
#include "sim/command.h"

namespace zrsim
{
namespace
{

uint32_t portOf(const Words &words, size_t i)
{
    const uint32_t port = words.number(i);
    if (!Ports::exists(port))
        words.refuse(fmt::format("there is no port {}", port));
    return port;
}

// Both ends find a partner, as with any other cable.
void plug(Cables::End end, bool in)
{
    Ports &ports = board().chip(end.unit).ports;
    if (Ports::hasPhy(end.port))
        ports.plug(end.port, in);
}

std::string cable(Chip &chip, const Words &words)
{
    const Cables::End here{chip.unit(), portOf(words, 0)};
    if (const Cables::End *peer = board().cables.peer(here)) {
        plug(*peer, false);
        plug(here, false);
        board().cables.disconnect(here);
    }
    if (words.text(1) == "none")
        return {};
    const uint32_t unit = words.number(1, kUnits - 1);
    const Cables::End there{unit, portOf(words, 2)};
    if (there == here)
        words.refuse("a cable has two ends");
    if (const Cables::End *peer = board().cables.peer(there))
        plug(*peer, false);
    board().cables.connect(here, there);
    plug(here, true);
    plug(there, true);
    return {};
}

const BoardCommand kCable("cable PORT none|UNIT PORT",
                          "connects a port with a port of a unit, or takes its cable away", cable);

const BoardCommand kTime("time [MS]", "the time in milliseconds, once MS have passed on all units",
                         [](Chip &, const Words &words) {
                             boardClock().ns += uint64_t{words.number(0, UINT32_MAX, 0)} * 1'000'000;
                             uint32_t aged = 0;
                             for (uint32_t unit = 0; unit < kUnits; ++unit)
                                 aged += board().chip(unit).mac.age();
                             return fmt::format("ms={} aged={}\n", boardClock().ns / 1'000'000, aged);
                         });

} // namespace
} // namespace zrsim
