#include "tests/sweep/sweep.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <map>
#include <set>

namespace zrtest
{
namespace
{

std::vector<SweepCase> &all()
{
    static std::vector<SweepCase> cases;
    return cases;
}

// Calls that cannot fail, or whose failure says nothing about the operation.
bool neverJudged(const std::string &name)
{
    static const std::set<std::string> kNames = {"LSWM_ConfigFailPrint",
                                                 "LSWM_DebugInfoPrint",
                                                 "LSWM_PrintSwitchOn",
                                                 "LSWM_CmdCliPrint",
                                                 "LSWM_MemFree",
                                                 "memset_s",
                                                 "memcpy_s",
                                                 "strncpy_s",
                                                 "sprintf_s",
                                                 "PAL_TaskDelay",
                                                 "l2sw_fun_regist",
                                                 "l2sw_switch_isExtPort",
                                                 "l2sw_switch_port_L2P_get"};
    return kNames.contains(name);
}

constexpr uint32_t kStatuses[] = {1, 22, 0xFFFFFFFF};

bool contains(const std::vector<std::string> &names, const std::string &name)
{
    return std::find(names.begin(), names.end(), name) != names.end();
}

struct Place {
    std::string name;
    unsigned nth; // among the calls of that name
    size_t index; // among all calls
};

// Of a name that is called often, the first three calls and the last stand for all.
std::vector<Place> placesToFail(const std::vector<zrsim::Call> &calls)
{
    std::map<std::string, unsigned> totals;
    for (const zrsim::Call &call : calls)
        ++totals[call.name];
    std::map<std::string, unsigned> seen;
    std::vector<Place> places;
    for (size_t i = 0; i < calls.size(); ++i) {
        const std::string name = calls[i].name;
        const unsigned nth = ++seen[name];
        if (name != "LSWM_MemFree" && (nth <= 3 || nth == totals[name]))
            places.push_back({name, nth, i});
    }
    return places;
}

// Fails the index-th call that the library makes from now on, and all after it when asked to.
void failAt(size_t index, bool andAfter, uint32_t status)
{
    zrsim::gate().intercept(
        [index, andAfter, status, made = size_t{0}](const zrsim::Call &call, uint64_t &result) mutable {
            if (call.depth != 0)
                return false;
            const size_t mine = made++;
            if (std::string(call.name) == "LSWM_MemFree" || !(mine == index || (andAfter && mine > index)))
                return false;
            result = status;
            return true;
        });
}

void sweepOne(const SweepCase &sweep, const Place &place, bool andAfter, uint32_t status)
{
    Device device;
    device.bringUp();
    device.record(false);
    sweep.prepare();
    device.takeFailures();
    const unsigned before = zrsim::memory().liveBlocks();

    failAt(place.index, andAfter, status);
    Outputs outputs;
    const uint32_t answer = sweep.run(outputs);
    zrsim::gate().intercept({});

    const bool tolerated = contains(sweep.tolerated, place.name);
    if (neverJudged(place.name) || (contains(sweep.repeated, place.name) && !andAfter)) {
        // Whether it matters is the operation's own affair; what follows must hold all the same.
    } else if (!sweep.reportsNothing && !tolerated) {
        EXPECT_NE(answer, 0U) << "the failure was not reported";
    } else if (sweep.reportsNothing || !andAfter) {
        EXPECT_EQ(answer, 0U) << "a failure that does not concern it was reported";
    }
    if (answer != 0) {
        EXPECT_TRUE(sweep.writesOnFailure || outputs.untouched()) << "an output was written";
        EXPECT_LE(zrsim::memory().liveBlocks(), before + sweep.keeps) << "memory leaked";
    }
    EXPECT_EQ(zrsim::memory().badFrees(), 0U);
    EXPECT_EQ(zrsim::manager().mutexDepth, 0);

    if (sweep.notAgain || answer == 0)
        return;
    Outputs fresh;
    EXPECT_EQ(sweep.run(fresh), sweep.again) << "the operation does not work afterwards";
}

} // namespace

bool addSweep(std::vector<SweepCase> cases)
{
    for (SweepCase &sweep : cases)
        all().push_back(std::move(sweep));
    return true;
}

const std::vector<SweepCase> &sweepCases()
{
    return all();
}

void PrintTo(const SweepCase &sweep, std::ostream *out)
{
    *out << sweep.operation;
}

class FailureSweep : public ::testing::TestWithParam<SweepCase>
{
};

TEST_P(FailureSweep, EveryFailureIsSurvived)
{
    const SweepCase &sweep = GetParam();
    std::vector<Place> places;
    {
        Device device;
        device.bringUp();
        sweep.prepare();
        device.takeFailures();
        device.forget();
        Outputs outputs;
        EXPECT_EQ(sweep.run(outputs), 0U) << sweep.operation << " does not work on its prepared device";
        places = placesToFail(device.recorded());
    }
    const char *only = std::getenv("ZR_SWEEP");
    unsigned runs = 0;
    for (const Place &place : places) {
        for (bool andAfter : {false, true}) {
            for (uint32_t status : kStatuses) {
                const std::string id = fmt::format("{}:{}@{}{}={}", sweep.operation, place.name, place.nth,
                                                   andAfter ? "+" : "", static_cast<int32_t>(status));
                if (only != nullptr && id != only)
                    continue;
                SCOPED_TRACE("repeat with ZR_SWEEP='" + id + "'");
                sweepOne(sweep, place, andAfter, status);
                ++runs;
            }
        }
    }
    RecordProperty("runs", static_cast<int>(runs));
}

INSTANTIATE_TEST_SUITE_P(Operation, FailureSweep, ::testing::ValuesIn(sweepCases()),
                         [](const ::testing::TestParamInfo<SweepCase> &swept) {
                             return fmt::format("{}_{}", swept.param.operation, swept.index);
                         });

// What is exported and is no operation.
TEST(FailureSweepList, MissesNoExportedOperation)
{
    const std::set<std::string> data = {"g_HsecMeterInfo", "g_TrunkMeterInfo", "g_LswmL2Control",
                                        "g_stgInstace",    "g_vesperUnitMap",  "phyAddr",
                                        "g_rmaAddrTypeMap"};
    std::set<std::string> swept;
    for (const SweepCase &sweep : sweepCases())
        swept.insert(sweep.operation);

    std::ifstream exports(ZRLSW_SOURCE_DIR "/cmake/exports.txt");
    ASSERT_TRUE(exports);
    Texts missed;
    unsigned names = 0;
    for (std::string name; std::getline(exports, name); ++names)
        if (!data.contains(name) && !swept.contains(name))
            missed.push_back(name);
    EXPECT_GT(names, 300U);
    EXPECT_EQ(missed, Texts{});
}

} // namespace zrtest
