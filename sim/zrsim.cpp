#include "sim/zrsim.h"
#include "sim/command.h"

#include <dlfcn.h>

#include <algorithm>
#include <cstring>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>

#include "sim/board/board.h"
#include "sim/gate.h"
#include "sim/manager/console.h"
#include "sim/manager/manager.h"
#include "sim/manager/memory.h"
#include "sim/pipeline/pipeline.h"
#include "sim/sdk/sdk.h"

using namespace zrsim;

namespace
{

// Whether the stand-in itself provides a platform call of this name.
bool isPlatformCall(const char *name)
{
    Dl_info here{};
    Dl_info there{};
    if (std::strncmp(name, "zrsim_", 6) == 0 || dladdr(reinterpret_cast<void *>(&zrsim_fail), &here) == 0)
        return false;
    // Not by the program's scope: a recorder in front of the platform has the same names.
    void *self = dlopen(here.dli_fname, RTLD_LAZY | RTLD_NOLOAD);
    if (self == nullptr)
        return false;
    void *symbol = dlsym(self, name);
    dlclose(self);
    return symbol != nullptr && dladdr(symbol, &there) != 0 && there.dli_fbase == here.dli_fbase;
}

// Tells a caller of the C interface.
class Teller final : public Witness
{
public:
    Teller(zrsim_frame_fn fn, void *context, bool stages) : fn_(fn), context_(context), stages_(stages) {}
    bool wantsStages() const override { return stages_; }
    void stage(uint32_t unit, uint32_t port, const char *name, const std::string &text) override
    {
        tell({ZRSIM_FRAME_STAGE, unit, port, name, text.c_str(), 0, 0, 0, nullptr, 0});
    }
    void left(const Departure &to) override
    {
        tell({to.toCpu ? ZRSIM_FRAME_CPU : ZRSIM_FRAME_OUT, to.unit, to.port, nullptr, nullptr, to.tagged,
              to.vlan, to.dot1p, to.bytes.data(), to.bytes.size()});
    }
    void dropped(uint32_t unit, uint32_t port, Reason reason) override
    {
        tell({ZRSIM_FRAME_DROPPED, unit, port, info(reason).name, info(reason).text, 0, 0, 0, nullptr, 0});
    }

private:
    void tell(const zrsim_frame_event &event)
    {
        if (fn_ != nullptr)
            fn_(&event, context_);
    }

    zrsim_frame_fn fn_;
    void *context_;
    bool stages_;
};

} // namespace

extern "C" {

void zrsim_on_line(zrsim_line_fn fn, void *context)
{
    if (fn == nullptr)
        console().onLine({});
    else
        console().onLine([fn, context](const Line &line) {
            fn(line.kind, line.module, line.status, line.text.c_str(), context);
        });
}

void zrsim_on_call(zrsim_call_fn fn, void *context)
{
    if (fn == nullptr)
        gate().observe({});
    else
        gate().observe([fn, context](const Call &call) { fn(call.text.c_str(), call.depth, context); });
}

int zrsim_fail(const char *name, unsigned nth, int andAfter, uint32_t status)
{
    if (!isPlatformCall(name))
        return 1;
    gate().fail(name, nth, andAfter != 0, status);
    return 0;
}

void zrsim_fail_none(void)
{
    gate().clearInjections();
}

unsigned zrsim_calls(const char *name)
{
    return name == nullptr ? gate().calls() : gate().calls(name);
}

int zrsim_frame(uint32_t unit, uint32_t port, const uint8_t *bytes, size_t size, int flags, zrsim_frame_fn fn,
                void *context)
{
    if (unit >= kUnits || size > Pipeline::kLargestFrame)
        return 1;
    Teller teller(fn, context, (flags & ZRSIM_FRAME_EXPLAIN) != 0);
    const bool fcsGood = (flags & ZRSIM_FRAME_BAD_FCS) == 0;
    std::optional<Board::Snapshot> before;
    if ((flags & ZRSIM_FRAME_DRY) != 0)
        before = board().snapshot();
    pipeline().send(unit, port, {bytes, size}, fcsGood, teller);
    if (before)
        board().restore(*before);
    return 0;
}

void zrsim_trace_level(uint32_t level)
{
    console().traceLevel(level);
}

unsigned zrsim_live_blocks(void)
{
    return memory().liveBlocks();
}

unsigned zrsim_bad_frees(void)
{
    return memory().badFrees();
}

const char *zrsim_board_usage(unsigned nth)
{
    return boardUsage(nth);
}

size_t zrsim_dump(char *buffer, size_t size)
{
    nlohmann::json state;
    board().dump(state["board"]);
    state["manager"]["liveBlocks"] = memory().liveBlocks();
    state["manager"]["liveBytes"] = memory().liveBytes();
    state["manager"]["mutexes"] = manager().mutexes;
    const std::string text = state.dump(2);
    if (size > 0) {
        const size_t count = std::min(size - 1, text.size());
        std::memcpy(buffer, text.data(), count);
        buffer[count] = '\0';
    }
    return text.size();
}

void zrsim_reset(void)
{
    gate().reset();
    console().onLine({});
    console().traceLevel(0);
    memory().reset();
    manager().reset();
    sdk().reset();
    board().reset();
}

} // extern "C"
