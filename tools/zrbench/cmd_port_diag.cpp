// Counters, diagnostics and isolation of ports.
#include <fmt/format.h>

#include "tools/zrbench/rows.h"
#include "tools/zrbench/values.h"

namespace zrbench
{

namespace
{

nlohmann::json hex(uint32_t value)
{
    return fmt::format("{:#06x}", value);
}

// PHY register argument: page in the upper, register number in the lower 16 bits.
uint32_t pagedRegister(const Arguments &a)
{
    return a.number("page") << 16 | a.number("register");
}

// The manager's counters by what they stand for. The chip's record is opaque: which frames it counts where is
// the stand-in's own choice. Counter 11 is 63 + 64 + 65 and counter 12 is 67 + 68 + 69 in 32 bits; 1 and 6 tell
// the same as 63 and 67.
constexpr uint32_t kCounters = std::extent_v<decltype(LswmPortStatistics::counter)>;
constexpr Argument kCounter{
    .name = "counter",
    .choices =
        "octets-in=0|octets-out=5|odrop=8|frames-in=11|frames-out=12|drops-in=14|size-64=17|size-1024-up=18|"
        "size-65-127=19|size-128-255=22|size-256-511=25|size-512-1023=28|oversize=40|fcs-errors=49|"
        "undersize=60|unicast-in=63|multicast-in=64|broadcast-in=65|unicast-out=67|multicast-out=68|"
        "broadcast-out=69|all=80",
    .optional = true,
    .most = kCounters,
    .meaning = "a counter's number or name; all for those that are 0 as well"};

Outcome statistics(Session &session, const Arguments &a)
{
    LswmPortStatistics record{};
    Outcome outcome =
        Outcome::of(session.slot(&ZrPortOps::getStatistics)(a.number("unit"), a.number("port"), &record));
    if (outcome.status != LSW_OK)
        return outcome;
    const bool all = a.has("counter") && a.number("counter") == kCounters;
    if (a.has("counter") && !all)
        return outcome.out("value", record.counter[a.number("counter")]);
    outcome.rows = nlohmann::json::array();
    for (uint32_t counter = 0; counter < kCounters; ++counter) {
        if (record.counter[counter] == 0 && !all)
            continue;
        std::string name(numberName(kCounter.choices, counter));
        if (name.empty())
            name = fmt::format("counter-{}", counter);
        outcome.text += fmt::format("{:>14}: {}\n", name, record.counter[counter]);
        outcome.rows.push_back({{"counter", counter}, {"name", name}, {"value", record.counter[counter]}});
    }
    if (outcome.text.empty())
        outcome.text = "every counter is 0\n";
    return outcome;
}

// The buffer of an operation that writes text, of the size asked for; the text from `offset` on. A buffer of
// size 0 is not terminated by the library.
Outcome textOf(const Arguments &a, size_t offset, auto operation)
{
    const uint32_t size = a.number("size");
    std::string buffer(size + 1, '\0');
    Outcome outcome = Outcome::of(operation(buffer.data(), size));
    outcome.text = offset < size ? buffer.c_str() + offset : "";
    return outcome;
}

Outcome debugDump(Session &session, const Arguments &a)
{
    return textOf(a, 0, [&](char *buffer, uint32_t size) {
        return session.slot(&ZrPortOps::getDebugInfo)(a.number("unit"), a.number("port"), buffer, size);
    });
}

Outcome linkDownRegisters(Session &session, const Arguments &a)
{
    const uint32_t offset = a.number("offset");
    Outcome outcome = textOf(a, offset, [&](char *buffer, uint32_t size) {
        return session.slot(&ZrPortOps::getLinkDownPhyReg)(a.number("unit"), a.number("port"), buffer, size,
                                                           offset);
    });
    outcome.text += "\n"; // the text is one line without an end of its own
    return outcome;
}

Outcome snr(Session &session, const Arguments &a)
{
    LswmPortSnr record{};
    return Outcome::of(session.slot(&ZrPortOps::getSnr)(a.number("unit"), a.number("port"), &record))
        .out("a", record.snrA)
        .out("b", record.snrB)
        .out("c", record.snrC)
        .out("d", record.snrD)
        .out("status", record.status)
        .out("trap", record.trap);
}

Outcome phyRead(Session &session, const Arguments &a)
{
    uint16_t value = 0;
    return Outcome::of(session.slot(&ZrPortOps::regRead)(a.number("unit"), a.number("port"), 0,
                                                         pagedRegister(a), &value))
        .out("value", hex(value));
}

Outcome phyWrite(Session &session, const Arguments &a)
{
    return Outcome::of(session.slot(&ZrPortOps::regWrite)(
        a.number("unit"), a.number("port"), 0, pagedRegister(a), static_cast<uint16_t>(a.number("value"))));
}

Outcome setIsolate(Session &session, const Arguments &a)
{
    uint32_t map = 0;
    for (const uint32_t port : a.ports("from"))
        map |= 1U << port;
    return Outcome::of(
        session.slot(&ZrPortOps::setIsolate)(a.number("unit"), a.number("port"), &map, a.number("isolate")));
}

constexpr Argument kSize{.name = "size",
                         .optional = true,
                         .otherwise = 2048,
                         .most = 1 << 20,
                         .meaning = "bytes, 2048 when left out"};
constexpr Argument kRegister{.name = "register", .most = UINT16_MAX, .meaning = "a register of the PHY"};
constexpr Argument kPage{.name = "page", .optional = true, .most = UINT16_MAX};
constexpr Argument kIsolate{"isolate", Type::Word, "off|on"};
constexpr Argument kFrames{.name = "frames", .meaning = "a number of frames"};

const Command kPortDiagCommands[] = {
    {"port stats",
     {kUnit, kPort, kCounter},
     "shows the counters of a port that are not 0, or all, or the value of one",
     slotLabel(&ZrPortOps::getStatistics),
     statistics},
    slotRow("port clear", &ZrPortOps::clearStatistics, {kUnit, kPort}, "clears the counters of a port"),
    {"port dump",
     {kUnit, kPort, kSize},
     "shows the debug dump of a port, read into a buffer of SIZE bytes",
     slotLabel(&ZrPortOps::getDebugInfo),
     debugDump},
    {"port linkdown",
     {kUnit, kPort, kSize, {.name = "offset", .optional = true}},
     "shows the PHY registers that tell why a link is down, read into a buffer of SIZE bytes at OFFSET",
     slotLabel(&ZrPortOps::getLinkDownPhyReg),
     linkDownRegisters},
    {"port snr",
     {kUnit, kPort},
     "shows the signal-to-noise readings of a port's four pairs",
     slotLabel(&ZrPortOps::getSnr),
     snr},
    slotRow("port kh", &ZrPortOps::getKhCheck, {kUnit, kPort, "intact"},
            "shows whether the chip still holds the marker of port start-up"),
    slotRow("port chipid", &ZrPortOps::getChipId, {kUnit, kPort, {"identifier", hex}},
            "shows the chip's identifier"),
    slotRow("port led", &ZrPortOps::setLedForce, {kUnit, kPort, "a", "b"},
            "forces the LEDs of a port; A and B are passed to the chip SDK"),
    slotRow("port linkscan", &ZrPortOps::linkScanWar, {kUnit, kPort},
            "applies the link-scan workaround for gigabit PHYs"),
    {"phy read",
     {kUnit, kPort, kRegister, kPage},
     "reads a PHY register",
     slotLabel(&ZrPortOps::regRead),
     phyRead},
    {"phy write",
     {kUnit, kPort, kRegister, {.name = "value", .most = UINT16_MAX}, kPage},
     "writes a PHY register",
     slotLabel(&ZrPortOps::regWrite),
     phyWrite},
    {"isolate set",
     {kUnit, kPort, {.name = "from", .type = Type::Ports, .most = 31}, kIsolate},
     "isolates a port from others, or lifts the isolation",
     slotLabel(&ZrPortOps::setIsolate),
     setIsolate},
    slotRow("isolate all", &ZrPortOps::setAllIsolate, {kUnit, kIsolate},
            "isolates every port but the reserved one from all others, or lifts all isolation"),
    slotRow("isolate show", &ZrPortOps::getIsolateMap, {kUnit, kPort, {"from", portList}},
            "shows the ports that a port is isolated from"),
    boardRow("odrop", "odrop", {kUnit, kPort, kFrames}, "board: frames dropped on the way out of a port"),
};

} // namespace

std::span<const Command> portDiagnosticsCommands()
{
    return kPortDiagCommands;
}

} // namespace zrbench
