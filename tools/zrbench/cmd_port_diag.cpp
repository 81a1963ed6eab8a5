// Counters, diagnostics and isolation of ports.
#include <fmt/format.h>

#include "tools/zrbench/command.h"

namespace zrbench
{

namespace
{

std::string hex(uint32_t value, unsigned digits)
{
    return fmt::format("{:#0{}x}", value, digits + 2);
}

// Bit n = port n: what the first word of a port map can hold.
uint32_t portMap(const std::vector<uint32_t> &ports)
{
    uint32_t map = 0;
    for (uint32_t port : ports) {
        if (port > 31)
            throw UsageError{fmt::format("expected ports from 0 to 31, found {}", port)};
        map |= 1U << port;
    }
    return map;
}

// PHY register argument: page in the upper, register number in the lower 16 bits.
uint32_t pagedRegister(const Arguments &a)
{
    const uint32_t page = a.number("page", 0);
    if (a.number("register") > 0xFFFF || page > 0xFFFF)
        throw UsageError{"expected a register and a page of 16 bits each"};
    return page << 16 | a.number("register");
}

// What is known of a counter besides its number.
std::string_view counterNote(size_t counter)
{
    switch (counter) {
    case 8:
        return "odrop, accumulated";
    case 11:
        return "63 + 64 + 65, 32 bits";
    case 12:
        return "67 + 68 + 69, 32 bits";
    default:
        return "";
    }
}

Outcome statistics(Bench &bench, const Arguments &a)
{
    LswmPortStatistics record{};
    constexpr uint32_t kCounters = sizeof record.counter / sizeof record.counter[0];
    const uint32_t only = a.number("counter", 0);
    if (only >= kCounters)
        throw UsageError{fmt::format("expected a counter from 0 to {}, found {}", kCounters - 1, only)};
    Outcome outcome =
        Outcome::of(bench.tables().port->getStatistics(a.number("unit"), a.number("port"), &record));
    if (outcome.status != 0)
        return outcome;
    if (a.has("counter"))
        return outcome.out("value", record.counter[only]);
    TextTable table({"COUNTER", "VALUE", ""});
    uint32_t counting = 0;
    for (uint32_t counter = 0; counter < kCounters; ++counter) {
        if (record.counter[counter] == 0)
            continue;
        ++counting;
        table.row({fmt::to_string(counter), fmt::to_string(record.counter[counter]),
                   std::string(counterNote(counter))});
    }
    outcome.text = counting != 0 ? table.text() : "every counter is 0\n";
    return outcome;
}

// A text operation's buffer of the size asked for, by default large enough.
class TextBuffer
{
public:
    explicit TextBuffer(const Arguments &a) : size_(a.number("size", 2048))
    {
        constexpr uint32_t kMost = 1 << 20;
        if (size_ > kMost)
            throw UsageError{fmt::format("expected a size up to {}, found {}", kMost, size_)};
        bytes_.resize(size_ + 1); // a buffer of size 0 is not terminated by the library
    }
    char *data() { return bytes_.data(); }
    uint32_t size() const { return size_; }
    std::string text(uint32_t offset = 0) const
    {
        return offset < size_ ? bytes_.c_str() + offset : std::string();
    }

private:
    uint32_t size_;
    std::string bytes_;
};

Outcome debugDump(Bench &bench, const Arguments &a)
{
    TextBuffer buffer(a);
    Outcome outcome = Outcome::of(
        bench.tables().port->getDebugInfo(a.number("unit"), a.number("port"), buffer.data(), buffer.size()));
    outcome.text = buffer.text();
    return outcome;
}

Outcome linkDownRegisters(Bench &bench, const Arguments &a)
{
    TextBuffer buffer(a);
    const uint32_t offset = a.number("offset", 0);
    Outcome outcome = Outcome::of(bench.tables().port->getLinkDownPhyReg(a.number("unit"), a.number("port"),
                                                                         buffer.data(), buffer.size(), offset));
    outcome.text = buffer.text(offset) + "\n"; // the text is one line and has no end of its own
    return outcome;
}

Outcome snr(Bench &bench, const Arguments &a)
{
    LswmPortSnr record{};
    Outcome outcome = Outcome::of(bench.tables().port->getSnr(a.number("unit"), a.number("port"), &record));
    if (outcome.status == 0)
        outcome.out("a", record.snrA)
            .out("b", record.snrB)
            .out("c", record.snrC)
            .out("d", record.snrD)
            .out("status", record.status)
            .out("trap", record.trap);
    return outcome;
}

Outcome phyRead(Bench &bench, const Arguments &a)
{
    uint16_t value = 0;
    Outcome outcome = Outcome::of(
        bench.tables().port->regRead(a.number("unit"), a.number("port"), 0, pagedRegister(a), &value));
    if (outcome.status == 0)
        outcome.out("value", hex(value, 4));
    return outcome;
}

Outcome phyWrite(Bench &bench, const Arguments &a)
{
    const uint32_t value = a.number("value");
    if (value > 0xFFFF)
        throw UsageError{fmt::format("expected a value of 16 bits, found {:#x}", value)};
    return Outcome::of(bench.tables().port->regWrite(a.number("unit"), a.number("port"), 0, pagedRegister(a),
                                                     static_cast<uint16_t>(value)));
}

Outcome khCheck(Bench &bench, const Arguments &a)
{
    uint32_t intact = 0;
    Outcome outcome = Outcome::of(bench.tables().port->getKhCheck(a.number("unit"), a.number("port"), &intact));
    return outcome.status == 0 ? outcome.out("intact", intact) : outcome;
}

Outcome chipId(Bench &bench, const Arguments &a)
{
    uint32_t identifier = 0;
    Outcome outcome =
        Outcome::of(bench.tables().port->getChipId(a.number("unit"), a.number("port"), &identifier));
    return outcome.status == 0 ? outcome.out("identifier", hex(identifier, 4)) : outcome;
}

uint32_t onOff(const Arguments &a)
{
    return a.text("isolate") == "on" ? 1 : 0;
}

Outcome setIsolate(Bench &bench, const Arguments &a)
{
    const uint32_t map = portMap(a.ports("from"));
    return Outcome::of(bench.tables().port->setIsolate(a.number("unit"), a.number("port"), &map, onOff(a)));
}

Outcome isolateMap(Bench &bench, const Arguments &a)
{
    uint32_t map = 0;
    Outcome outcome = Outcome::of(bench.tables().port->getIsolateMap(a.number("unit"), a.number("port"), &map));
    return outcome.status == 0 ? outcome.out("from", showPorts(map)) : outcome;
}

// The board's own stimuli, typed.
Outcome traffic(Bench &bench, const Arguments &a)
{
    return Outcome::shown(bench.board(
        a.number("unit"), fmt::format("traffic {} {} {} {} {}", a.number("port"), a.text("direction"),
                                      a.text("kind"), a.number("frames"), a.number("bytes", 64))));
}

Outcome forward(Bench &bench, const Arguments &a)
{
    return Outcome::shown(bench.board(a.number("unit"), fmt::format("forward {} {} {}", a.number("from"),
                                                                    a.number("to"), a.number("frames"))));
}

Outcome odrop(Bench &bench, const Arguments &a)
{
    return Outcome::shown(
        bench.board(a.number("unit"), fmt::format("odrop {} {}", a.number("port"), a.number("frames"))));
}

constexpr Argument kUnit = {"unit", Type::Unit};
constexpr Argument kPort = {"port", Type::Port};
constexpr Argument kSize = {"size", Type::Number, {}, true};

} // namespace

std::span<const Command> portDiagnosticsCommands()
{
    static const Command kCommands[] = {
        {"port stats",
         {kUnit, kPort, {"counter", Type::Number, {}, true}},
         "shows the counters of a port that are not 0, or the value of one",
         "PORT 15",
         statistics},
        {"port clear",
         {kUnit, kPort},
         "clears the counters of a port",
         "PORT 16",
         [](Bench &bench, const Arguments &a) {
             return Outcome::of(bench.tables().port->clearStatistics(a.number("unit"), a.number("port")));
         }},
        {"port dump",
         {kUnit, kPort, kSize},
         "shows the debug dump of a port, read into a buffer of SIZE bytes",
         "PORT 23",
         debugDump},
        {"port linkdown",
         {kUnit, kPort, kSize, {"offset", Type::Number, {}, true}},
         "shows the PHY registers that tell why a link is down, read into a buffer of SIZE bytes at OFFSET",
         "PORT 28",
         linkDownRegisters},
        {"port snr", {kUnit, kPort}, "signal-to-noise readings of a port's four pairs", "PORT 24", snr},
        {"port kh",
         {kUnit, kPort},
         "whether the chip still holds the marker of port start-up",
         "PORT 25",
         khCheck},
        {"port chipid", {kUnit, kPort}, "the chip's identifier", "PORT 26", chipId},
        {"port led",
         {kUnit, kPort, {"a", Type::Number}, {"b", Type::Number}},
         "forces the LEDs of a port; A and B are the chip SDK's",
         "PORT 27",
         [](Bench &bench, const Arguments &a) {
             return Outcome::of(bench.tables().port->setLedForce(a.number("unit"), a.number("port"),
                                                                 a.number("a"), a.number("b")));
         }},
        {"port linkscan",
         {kUnit, kPort},
         "applies the link-scan work-around of gigabit PHYs",
         "PORT 8",
         [](Bench &bench, const Arguments &a) {
             return Outcome::of(bench.tables().port->linkScanWar(a.number("unit"), a.number("port")));
         }},
        {"phy read",
         {kUnit, kPort, {"register", Type::Number}, {"page", Type::Number, {}, true}},
         "reads a PHY register",
         "PORT 1",
         phyRead},
        {"phy write",
         {kUnit, kPort, {"register", Type::Number}, {"value", Type::Number}, {"page", Type::Number, {}, true}},
         "writes a PHY register",
         "PORT 2",
         phyWrite},
        {"isolate set",
         {kUnit, kPort, {"from", Type::Ports}, {"isolate", Type::Word, "on|off"}},
         "isolates a port from others, or releases it",
         "PORT 20",
         setIsolate},
        {"isolate all",
         {kUnit, {"isolate", Type::Word, "on|off"}},
         "isolates every port but the reserved one from all others, or releases them all",
         "PORT 29",
         [](Bench &bench, const Arguments &a) {
             return Outcome::of(bench.tables().port->setAllIsolate(a.number("unit"), onOff(a)));
         }},
        {"isolate show", {kUnit, kPort}, "the ports that a port is isolated from", "PORT 30", isolateMap},
        {"traffic",
         {kUnit,
          kPort,
          {"direction", Type::Word, "in|out"},
          {"kind", Type::Word, "unicast|multicast|broadcast"},
          {"frames", Type::Number},
          {"bytes", Type::Number, {}, true}},
         "board: frames of BYTES each (64) that come in or go out at a port",
         "",
         traffic},
        {"forward",
         {kUnit, {"from", Type::Port}, {"to", Type::Port}, {"frames", Type::Number}},
         "board: frames sent from one port towards another, which isolation may forbid",
         "",
         forward},
        {"odrop",
         {kUnit, kPort, {"frames", Type::Number}},
         "board: frames dropped on the way out of a port",
         "",
         odrop},
    };
    return kCommands;
}

} // namespace zrbench
