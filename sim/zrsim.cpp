#include "sim/zrsim.h"

#include <dlfcn.h>

#include <algorithm>
#include <cstring>
#include <nlohmann/json.hpp>
#include <string>

#include "sim/board/board.h"
#include "sim/gate.h"
#include "sim/manager/console.h"
#include "sim/manager/manager.h"
#include "sim/manager/memory.h"
#include "sim/sdk/sdk.h"

using namespace zrsim;

namespace
{

// Whether the stand-in itself provides a platform call of this name.
bool isPlatformCall(const char *name)
{
    Dl_info here{};
    Dl_info there{};
    void *symbol = dlsym(RTLD_DEFAULT, name);
    return std::strncmp(name, "zrsim_", 6) != 0 && symbol != nullptr && dladdr(symbol, &there) != 0 &&
           dladdr(reinterpret_cast<void *>(&zrsim_fail), &here) != 0 && there.dli_fbase == here.dli_fbase;
}

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
