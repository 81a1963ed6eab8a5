// A fresh device for every test: the stand-in at its power-on state and the library loaded anew, as the
// manager loads it, with its twelve tables filled. The library's static records start from zero each time.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "sim/board/board.h"
#include "sim/gate.h"
#include "sim/manager/console.h"
#include "sim/manager/manager.h"
#include "sim/manager/memory.h"

namespace zrtest
{

using Texts = std::vector<std::string>;

class Device
{
public:
    // A standard device: ports 0 to 4 and 15 to 17 valid on every unit, 15 and 16 cascade ports, port 17
    // reserved, cascade trunk 1, frame size 1536, priority selection for ports 0 to 2 and 3 to 4, every
    // port may be reported by a MAC read.
    Device();
    Device(const Device &) = delete;
    Device &operator=(const Device &) = delete;
    ~Device();

    // Brings all three units up through the common table.
    void bringUp();

    const zrsim::OperationTables &ops() const { return zrsim::manager().tables; }
    zrsim::Chip &chip(uint32_t unit) { return zrsim::board().chip(unit); }
    LswmPortSet &portSet(uint32_t unit, uint32_t set) { return zrsim::manager().portMaps[unit][set]; }
    void setPorts(uint32_t unit, uint32_t set, const std::vector<uint32_t> &ports);

    // An exported name of the loaded library, or null.
    void *symbol(const char *name) const;

    // Calls of the chip SDK and of the board that the library made since the last forget(), as
    // "name(arguments) = result" (sim/gate.h tells how arguments are shown).
    Texts calls() const;
    // All platform calls that the library made itself, in full.
    const std::vector<zrsim::Call> &recorded() const { return recorded_; }
    void forget() { recorded_.clear(); }
    // A device records from its start; bringUp() goes unrecorded.
    void record(bool on);

    // Every later call of `name` answers `status`, or only the nth from now on (from 1).
    void fail(const std::string &name, uint32_t status, unsigned nth = 0);
    // Answers every later call of `name`; pointers among its arguments may be written through.
    void script(const std::string &name, std::function<uint64_t(const zrsim::Call &)> answer);
    void clearInjections() { zrsim::gate().clearInjections(); }

    // Failure lines since the last take, as "module/status text"; the fixture fails a test that leaves any.
    Texts takeFailures();
    // Trace lines, as "module text", and command-line texts.
    Texts takeTraces();
    std::string takeCli();

private:
    void *library_ = nullptr;
    std::vector<zrsim::Call> recorded_;
    Texts failures_;
    Texts traces_;
    std::string cli_;
};

// The device that is alive; there is one at a time.
Device &device();

// An exported operation or record of the loaded library: ZR_OP(HAL_VLAN_CreateZr)(1, 100).
template <class Function> Function *operation(const char *name)
{
    void *found = device().symbol(name);
    EXPECT_NE(found, nullptr) << name << " is not exported";
    return reinterpret_cast<Function *>(found);
}
#define ZR_OP(name) (*::zrtest::operation<decltype(name)>(#name))

class DeviceTest : public ::testing::Test
{
protected:
    // Ends a test that left failure lines, freed what was not live, or upset the mutexes.
    void TearDown() override;
    Device dev;
};

// Same, with the three units brought up and nothing recorded yet.
class RunningDeviceTest : public DeviceTest
{
protected:
    void SetUp() override { dev.bringUp(); }
};

} // namespace zrtest
