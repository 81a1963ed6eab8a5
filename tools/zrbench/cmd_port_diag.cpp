// Counters, diagnostics and isolation of ports.
#include <algorithm>
#include <fmt/format.h>

#include "tools/zrbench/rows.h"

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

// What a counter stands for. The chip's record is opaque: where frames are counted is the stand-in's own
// choice.
std::string_view counterNote(size_t counter)
{
    constexpr std::pair<size_t, std::string_view> kNotes[] = {
        {0, "octets in"},
        {5, "octets out"},
        {8, "odrop, accumulated"},
        {11, "63 + 64 + 65, 32 bits"},
        {12, "67 + 68 + 69, 32 bits"},
        {14, "dropped on the way in"},
        {40, "longer than the frame size"},
        {49, "wrong FCS"},
        {60, "shorter than 64 bytes"},
        {63, "unicast in"},
        {64, "multicast in"},
        {65, "broadcast in"},
        {67, "unicast out"},
        {68, "multicast out"},
        {69, "broadcast out"},
    };
    const auto *found = std::ranges::find(kNotes, counter, &std::pair<size_t, std::string_view>::first);
    return found == std::ranges::end(kNotes) ? "" : found->second;
}

constexpr uint32_t kCounters = std::extent_v<decltype(LswmPortStatistics::counter)>;

Outcome statistics(Session &session, const Arguments &a)
{
    LswmPortStatistics record{};
    Outcome outcome =
        Outcome::of(session.slot(&ZrPortOps::getStatistics)(a.number("unit"), a.number("port"), &record));
    if (outcome.status != LSW_OK)
        return outcome;
    if (a.has("counter"))
        return outcome.out("value", record.counter[a.number("counter")]);
    TextTable table({"COUNTER", "VALUE", "MEANING"});
    uint32_t counting = 0;
    for (uint32_t counter = 0; counter < kCounters; ++counter) {
        if (record.counter[counter] == 0)
            continue;
        ++counting;
        table.row({counter, record.counter[counter], counterNote(counter)});
    }
    outcome.text = counting != 0 ? table.text() : "every counter is 0\n";
    outcome.rows = table.rows();
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

constexpr Argument kSize{.name = "size", .optional = true, .otherwise = 2048, .most = 1 << 20};
constexpr Argument kRegister{.name = "register", .most = UINT16_MAX};
constexpr Argument kPage{.name = "page", .optional = true, .most = UINT16_MAX};
constexpr Argument kIsolate{"isolate", Type::Word, "off|on"};
constexpr Argument kFrames{"frames"};

const Command kCommands[] = {
    {"port stats",
     {kUnit, kPort, {.name = "counter", .optional = true, .most = kCounters - 1}},
     "shows the counters of a port that are not 0, or the value of one",
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
    return kCommands;
}

} // namespace zrbench
