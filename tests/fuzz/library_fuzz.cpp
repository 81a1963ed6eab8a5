// Plays bytes as calls of the twelve tables, over the stand-in: hostile numbers, null or exactly sized memory,
// platform calls that fail, platform results that no chip gives, and frames.
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "frame/func_list.h"
#include "l2/vlan.h"
#include "sim/gate.h"
#include "sim/manager/console.h"
#include "sim/manager/manager.h"
#include "sim/manager/memory.h"
#include "sim/zrsim.h"
#include "tests/fuzz/fresh_library.h"

namespace
{

constexpr unsigned kMostCalls = 64;

class Bytes
{
public:
    Bytes(const uint8_t *data, size_t size) : next_(data), end_(data + size) {}

    bool empty() const { return next_ == end_; }
    uint8_t byte() { return empty() ? 0 : *next_++; }
    uint32_t word()
    {
        uint32_t value = 0;
        for (unsigned i = 0; i < 4; ++i)
            value = value << 8 | byte();
        return value;
    }
    // Most numbers are small: units, ports, identifiers; the rest are the ends of ranges, or arbitrary.
    uint32_t number()
    {
        static constexpr uint32_t kEnds[] = {255,     256,        511,        1024,      4094,
                                             4095,    4096,       0x7FFF,     0xFFFF,    0x10000,
                                             0x1FFFF, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF};
        const uint8_t kind = byte();
        if (kind < 240)
            return kind;
        return kind - 240U < std::size(kEnds) ? kEnds[kind - 240] : word();
    }
    uint32_t unit()
    {
        const uint8_t kind = byte();
        return kind < 250 ? kind % 3 : kind < 254 ? kind - 247U : number();
    }
    // Zeros with some words set.
    void fill(uint8_t *memory, size_t size)
    {
        std::memset(memory, 0, size);
        for (unsigned patches = byte() % 16; patches > 0; --patches) {
            const size_t at = (byte() << 2) % size;
            const uint32_t value = number();
            std::memcpy(memory + at, &value, std::min(sizeof value, size - at));
        }
    }

private:
    const uint8_t *next_;
    const uint8_t *end_;
};

// The arguments of one call. Each pointer's memory is a block of its own, so that the address sanitizer sees
// the first byte beyond it.
class Arguments
{
public:
    Arguments(Bytes &bytes, std::string_view table) : bytes_(bytes), table_(table) {}

    template <class P> P next()
    {
        const bool first = first_;
        first_ = false;
        if constexpr (std::is_same_v<P, void (*)()>)
            return bytes_.byte() % 2 == 0 ? nullptr : [] {};
        else if constexpr (std::is_pointer_v<P>)
            return reinterpret_cast<P>(memory<std::remove_const_t<std::remove_pointer_t<P>>, P>());
        else if (first)
            return static_cast<P>(bytes_.unit());
        else if (const uint32_t number = bytes_.number(); text_ == 0)
            return static_cast<P>(number);
        else
            // The size of the buffer before it: the caller's word, and true.
            return static_cast<P>(std::exchange(text_, 0));
    }

private:
    template <class T, class P> uint8_t *memory()
    {
        constexpr bool input = std::is_const_v<std::remove_pointer_t<P>>;
        constexpr bool text = std::is_same_v<T, char>;
        const uint8_t kind = bytes_.byte();
        if (kind % 16 == 15) {
            text_ = text ? kind : 0;
            return nullptr;
        }
        size_t count = 1;
        if constexpr (text)
            count = input ? kind : kind * 16U + 1;
        else if constexpr (std::is_same_v<T, uint8_t>)
            count = 6; // a MAC address
        else if constexpr (std::is_same_v<T, uint32_t> && input)
            count = table_ == "ZrVlanOps" ? ZR_VLAN_LIST_PORTS : sizeof(LswmPortSet) / sizeof(uint32_t);
        const size_t size = count * sizeof(T) + (text && input ? 1 : 0);
        uint8_t *block = blocks_.emplace_back(new uint8_t[size]).get();
        if (text && input) {
            for (size_t i = 0; i < count; ++i)
                block[i] = bytes_.byte();
            block[count] = 0;
        } else
            bytes_.fill(block, size);
        text_ = text && !input ? static_cast<uint32_t>(size) : 0;
        return block;
    }

    Bytes &bytes_;
    std::string_view table_;
    bool first_ = true;
    uint32_t text_ = 0; // size of the buffer that was the last argument
    std::vector<std::unique_ptr<uint8_t[]>> blocks_;
};

void must(bool holds, const char *what, const char *after)
{
    if (!holds) {
        std::fprintf(stderr, "ERROR: %s, after %s\n", what, after);
        std::abort();
    }
}

template <class R, class... P>
void play(R (*operation)(P...), const char *table, const char *member, Bytes &bytes)
{
    const unsigned before = zrsim::memory().liveBlocks();
    Arguments arguments(bytes, table);
    const std::tuple<P...> values{arguments.next<P>()...};
    if constexpr (std::is_same_v<R, char *>) {
        if (char *text = std::apply(operation, values); text != nullptr)
            LSWM_MemFree(text);
    } else
        std::apply(operation, values);
    const std::string_view name = member;
    // The records' arrays stay.
    const bool keeps = name == "init" || name == "initChip";
    must(keeps || zrsim::memory().liveBlocks() == before, "memory kept", member);
    must(zrsim::memory().badFrees() == 0, "a block freed that was not live", member);
    must(zrsim::manager().mutexDepth == 0 && !zrsim::manager().mutexMisuse, "mutex not balanced", member);
}

// The table of a slot's type.
template <class Table> Table &table()
{
    auto &all = zrsim::manager().tables;
    return std::get<Table &>(std::tie(all.common, all.port, all.mac, all.vlan, all.qos, all.acl, all.hsec,
                                      all.mc, all.stormctl, all.stp, all.trunk, all.fmea));
}

using Slot = void (*)(Bytes &);
#define SLOT(Table, number, member, operation)                                                                 \
    [](Bytes &bytes) { play(table<Table>().member, #Table, #member, bytes); },
constexpr Slot kSlots[] = {ZR_SLOTS(SLOT)};

// Services whose failure would upset the books that are checked, or that cannot fail.
bool isService(std::string_view name)
{
    return name == "LSWM_MemFree" || name.starts_with("LSWM_Sem") || name.ends_with("Print");
}

// Fails the library's calls from the nth on, one or all; a read may claim success with arbitrary outputs.
void disturb(Bytes &bytes)
{
    const uint8_t kind = bytes.byte();
    const unsigned from = bytes.byte();
    const uint32_t status = (kind & 2) != 0 ? bytes.number() : 0;
    const uint32_t value = bytes.number();
    zrsim::gate().intercept([=, made = 0U](const zrsim::Call &call, uint64_t &result) mutable {
        const std::string_view name = call.name;
        if (call.depth != 0 || isService(name) || made++ < from || ((kind & 1) == 0 && made > from + 1))
            return false;
        // A field node that is taken without being chained would be nobody's.
        if (status == 0 && name == "l2sw_filter_igrAcl_field_add")
            return false;
        result = status;
        if ((kind & 4) == 0)
            return true;
        // What is no read has nothing to say; the records of ACL rules hold addresses.
        const bool reads = name.starts_with("l2sw") || name.starts_with("HAL_PORT_Smi");
        if (!reads || name.find("get") == name.npos)
            return (kind & 8) != 0 && reads;
        for (const zrsim::Argument &arg : call.args) {
            const bool output = arg.kind == zrsim::Argument::Kind::Output ||
                                (arg.kind == zrsim::Argument::Kind::Record && name.find("Acl") == name.npos);
            for (size_t i = 0; output && arg.bits != 0 && i < arg.bytes; ++i)
                arg.pointer<uint8_t>()[i] = static_cast<uint8_t>(value >> i % 4 * 8);
        }
        return true;
    });
}

// Any bytes as a frame into any port.
void sendFrame(Bytes &bytes)
{
    const uint32_t unit = bytes.unit();
    const uint32_t port = bytes.number();
    const int flags = bytes.byte();
    std::vector<uint8_t> frame(bytes.number() % 0x11000);
    for (uint8_t &byte : frame)
        byte = bytes.byte();
    zrsim_frame(
        unit, port, frame.data(), frame.size(), flags, [](const zrsim_frame_event *, void *) {}, nullptr);
}

// A device as the manager knows it: any ports, or the usual ones.
void describeUnits(Bytes &bytes)
{
    const uint32_t valid = bytes.number();
    for (uint32_t unit = 0; unit < LSWM_UNITS; ++unit) {
        g_lswmInfo[unit].maxFrameSize = 1536;
        g_lswmInfo[unit].reservedPort = valid == 0 ? 17 : bytes.number();
        g_lswmInfo[unit].cascadeTrunkId = valid == 0 ? 1 : bytes.number();
        for (LswmPortInfo &port : g_lswmInfo[unit].port)
            port.flags = LSWM_PORT_MAC_REPORTED;
        zrsim::manager().portMaps[unit][LSWM_SET_VALID].word[0] = valid == 0 ? 0x3801F : valid;
        zrsim::manager().portMaps[unit][LSWM_SET_PRISEL_A].word[0] = 0x7;
        zrsim::manager().portMaps[unit][LSWM_SET_CASCADE].word[0] = 0x18000;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static const zrfuzz::FreshLibrary library;
    library.restore();
    zrsim_reset();
    zrsim::console().onLine([](const zrsim::Line &) {});
    Bytes bytes(data, size);
    const uint8_t start = bytes.byte();
    zrsim::console().traceLevel((start & 0x80) != 0 ? 0xFF : 0);
    describeUnits(bytes);
    library.function<void(uint32_t)>("ZR_COMMON_FuncListInit")(0);
    for (uint32_t unit = 0; unit < LSWM_UNITS; ++unit)
        if ((start >> unit & 1) != 0)
            zrsim::manager().tables.common.initChip(unit);
    for (unsigned calls = 0; calls < kMostCalls && !bytes.empty(); ++calls) {
        const uint8_t code = bytes.byte();
        if (code < std::size(kSlots))
            kSlots[code](bytes);
        else if (code % 4 == 1)
            sendFrame(bytes);
        else if (code % 4 == 0)
            zrsim::gate().intercept({});
        else
            disturb(bytes);
    }
    zrsim_reset();
    return 0;
}
