#include "tests/kit/device.h"

#include <dlfcn.h>
#include <fmt/format.h>

#include <stdexcept>
#include <utility>

#include "frame/func_list.h"
#include "sim/zrsim.h"

namespace zrtest
{
namespace
{

Device *current = nullptr;

bool reachesHardware(const std::string &name)
{
    return name.rfind("l2sw", 0) == 0 || name.rfind("HAL_PORT_Smi", 0) == 0 || name == "PAL_TaskDelay" ||
           name == "VESPER_ADPAPI_ResetChip" || name == "excute_command" || name == "drv_env_num_get";
}

} // namespace

Device &device()
{
    return *current;
}

Device::Device()
{
    if (current != nullptr)
        throw std::logic_error("one device at a time");
    current = this;
    zrsim_reset();
    zrsim::console().onLine([this](const zrsim::Line &line) {
        if (line.kind == ZRSIM_LINE_FAIL)
            failures_.push_back(fmt::format("{}/{} {}", line.module, line.status, line.text));
        else if (line.kind == ZRSIM_LINE_TRACE)
            traces_.push_back(fmt::format("{} {}", line.module, line.text));
        else
            cli_ += line.text;
    });
    for (uint32_t unit = 0; unit < LSWM_UNITS; ++unit) {
        g_lswmInfo[unit].maxFrameSize = 1536;
        g_lswmInfo[unit].reservedPort = 17;
        g_lswmInfo[unit].cascadeTrunkId = 1;
        for (LswmPortInfo &port : g_lswmInfo[unit].port)
            port.flags = LSWM_PORT_MAC_REPORTED;
        setPorts(unit, LSWM_SET_VALID, {0, 1, 2, 3, 4, 15, 16, 17});
        setPorts(unit, LSWM_SET_PRISEL_A, {0, 1, 2});
        setPorts(unit, LSWM_SET_PRISEL_B, {3, 4});
        setPorts(unit, LSWM_SET_CASCADE, {15, 16});
    }

    library_ = dlopen(ZRLSW_LIBRARY, RTLD_NOW | RTLD_LOCAL);
    if (library_ == nullptr) {
        current = nullptr;
        throw std::runtime_error(dlerror());
    }
    ZR_OP(ZR_COMMON_FuncListInit)(0);
    record(true);
}

Device::~Device()
{
    zrsim_reset();
    dlclose(library_);
    current = nullptr;
}

void Device::record(bool on)
{
    zrsim::gate().observe({});
    if (on)
        zrsim::gate().observe([this](const zrsim::Call &call) {
            if (call.depth == 0)
                recorded_.push_back(call);
        });
}

void Device::bringUp()
{
    record(false);
    for (uint32_t unit = 0; unit < LSWM_UNITS; ++unit)
        EXPECT_EQ(ops().common.initChip(unit), 0U);
    takeFailures();
    takeTraces();
    forget();
    record(true);
}

void Device::setPorts(uint32_t unit, uint32_t set, const std::vector<uint32_t> &ports)
{
    portSet(unit, set) = LswmPortSet{};
    for (uint32_t port : ports)
        portSet(unit, set).word[port / 32] |= 1U << port % 32;
}

void *Device::symbol(const char *name) const
{
    return dlsym(library_, name);
}

Texts Device::calls() const
{
    Texts texts;
    for (const zrsim::Call &call : recorded_)
        if (reachesHardware(call.name))
            texts.push_back(call.text);
    return texts;
}

void Device::fail(const std::string &name, uint32_t status, unsigned nth)
{
    zrsim::gate().fail(name, nth == 0 ? 0 : zrsim::gate().calls(name) + nth, false, status);
}

void Device::script(const std::string &name, std::function<uint64_t(const zrsim::Call &)> answer)
{
    zrsim::gate().script(name, std::move(answer));
}

Texts Device::takeFailures()
{
    return std::exchange(failures_, {});
}

Texts Device::takeTraces()
{
    return std::exchange(traces_, {});
}

std::string Device::takeCli()
{
    return std::exchange(cli_, {});
}

void DeviceTest::TearDown()
{
    EXPECT_EQ(dev.takeFailures(), Texts{}) << "failure lines that the test did not take";
    EXPECT_EQ(zrsim::memory().badFrees(), 0U);
    EXPECT_EQ(zrsim::manager().mutexDepth, 0);
    EXPECT_FALSE(zrsim::manager().mutexMisuse);
}

} // namespace zrtest
