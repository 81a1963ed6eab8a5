// Recordings: what is recorded replays, what went another way is found at its call, and a bad file at its line.
#include <dlfcn.h>

#include <algorithm>
#include <thread>

#include "frame/op_tables.h"
#include "kit/zrbench.h"
#include "platform/manager.h"

namespace
{

using namespace zrtest;
using testing::HasSubstr;

#ifndef ZR_EMULATOR // the program starts itself anew, with the recorder in front

class RecordingTest : public ZrbenchTest
{
protected:
    const std::string self_ = std::filesystem::read_symlink("/proc/self/exe");

    // Records two units' VLANs, a failure among them.
    std::vector<std::string> record()
    {
        const std::string device = file("device.json", R"json({"steps": [
            "chip init 0", "chip init 1", "vlan init 0", "vlan create 0 5", "vlan add 0 5 2 untagged",
            "vlan create 1 7", "vlan members 0 5", {"do": "vlan create 3 5", "expect": 1},
            "fail l2sw_vlan_set=9", {"do": "vlan create 0 6", "expect": 4, "lines": [
                "Zr vlan create failed (unit:0, vlan:6, retVal:0x9).", "Zr vlan create failed.(unit:0, vlan:6)."]}]})json");
        EXPECT_EQ(bench("run --record made.rec " + device).status, kAsExpected);
        std::vector<std::string> lines;
        std::istringstream text(contents("made.rec"));
        for (std::string line; std::getline(text, line);)
            lines.push_back(line);
        return lines;
    }
    Ended replayed(const std::vector<std::string> &lines)
    {
        std::string text;
        for (const std::string &line : lines)
            text += line + "\n";
        return bench("replay " + file("changed.rec", text));
    }
    // The nth line that holds the text; counts from 0.
    static size_t lineWith(const std::vector<std::string> &lines, const std::string &text)
    {
        const auto found =
            std::ranges::find_if(lines, [&](const auto &line) { return line.find(text) != std::string::npos; });
        EXPECT_NE(found, lines.end()) << text;
        return static_cast<size_t>(found - lines.begin());
    }
};

TEST_F(RecordingTest, EveryExampleReplays)
{
    for (const char *name :
         {"acl", "bring-up", "in-service", "layer2", "port-diagnostics", "ports", "switching"}) {
        const Ended made =
            bench(fmt::format("run --record made.rec {}/examples/{}.json", ZRLSW_SOURCE_DIR, name));
        EXPECT_EQ(made.status, kAsExpected) << name << made.output;
        const Ended ended = bench("replay made.rec");
        EXPECT_EQ(ended.status, kAsExpected) << name << ended.output;
        EXPECT_THAT(ended.output, HasSubstr("identical"));
    }
}

// The 64-bit Arm recorder made it.
TEST_F(RecordingTest, ARecordingOfTheBoardReplaysAtTheDesk)
{
    const std::string made = ZRLSW_SOURCE_DIR "/examples/refused-port.rec";
    EXPECT_THAT(bench("replay " + made).output,
                HasSubstr("6 operations and 256 platform calls replayed, identical"));
    const Ended shown = bench("show --unit 1 --module VLAN --call l2sw_vlan_set " + made);
    EXPECT_THAT(shown.output, HasSubstr("made on aarch64"));
    EXPECT_THAT(shown.output, HasSubstr("memberMask=0x18003 untagMask=2 independentLearning=1}) = 22"));
}

TEST_F(RecordingTest, FindsTheFirstDifference)
{
    const std::vector<std::string> lines = record();
    ASSERT_EQ(replayed(lines).status, kAsExpected);
    struct Change {
        const char *line; // the first that holds this
        const char *from;
        const char *to; // null: the line is taken out; empty `from`: it changes places with the next
        const char *told;
    };
    for (const Change &change : std::initializer_list<Change>{
             {"| l2sw_setAsicReg(unit=0", "value=7", "value=8", "value: recorded 8, now 7"},
             {"| VESPER_ADPAPI_ResetChip(", "", "", "a call with other arguments"},
             {"| PAL_TaskDelay(", "", nullptr, "another call"},
             {"| l2sw_led_blinkRate_set(", "rate=5", "rate=6", "rate: recorded 6, now 5"},
             {"| l2sw_led_groupConfig_set(", "unit=0", "unit=1", "unit: recorded 1, now 0"},
             {"| LSWM_DebugInfoPrint(", "text=\"", "text=\"X", "text: recorded"},
             {"| l2sw_vlan_set(unit=0, vlan=5", "independentLearning=1", "independentLearning=0",
              "cfg.independentLearning: recorded 0, now 1"},
             {"| l2sw_vlan_set(unit=0, vlan=5", ") = 0", ") = 3", "a call that is not recorded"},
             {"< ZR_VLAN_GetPortMap(", " memberMask=4", " memberMask=9", "memberMask: recorded 9, now 4"},
             {"< ZR_VLAN_Create(unit=3, vlan=5", ") = 1", ") = 2", "result: recorded 2, now 1"},
             {"| l2sw_vlan_mbrCfg_set(", "l2sw_vlan_mbrCfg_set", "l2sw_vlan_tagMode_set", "another call"},
             {"| LSWM_ConfigFailPrint(", "status=9", "status=8", "status: recorded 8, now 9"}}) {
        std::vector<std::string> changed = lines;
        const size_t at = lineWith(lines, change.line);
        if (change.to == nullptr)
            changed.erase(changed.begin() + static_cast<long>(at));
        else if (*change.from == '\0')
            std::swap(changed[at], changed[at + 1]);
        else
            changed[at].replace(changed[at].find(change.from), std::strlen(change.from), change.to);
        const Ended ended = replayed(changed);
        EXPECT_EQ(ended.status, kNotAsExpected) << change.line << ended.output;
        EXPECT_THAT(ended.output, HasSubstr(change.told)) << change.line;
        if (std::string(change.told).find(": recorded") != std::string::npos) {
            EXPECT_THAT(ended.output, HasSubstr(fmt::format("changed.rec:{}: ", at + 1)));
        }
    }
}

TEST_F(RecordingTest, ABadFileIsRefusedAtItsLine)
{
    const std::vector<std::string> lines = record();
    const std::string text = contents("made.rec");
    struct Bad {
        std::string text;
        const char *told;
    };
    std::string future = text;
    future.replace(0, lines[0].size(), "zrlsw recording 2");
    std::string damaged = text;
    damaged.replace(damaged.find("| l2sw"), 8, "\x01!");
    for (const Bad &bad : {Bad{text.substr(0, text.size() - 3), "cut off within this line"},
                           Bad{future, "a recording of version"}, Bad{damaged, "damaged"},
                           Bad{"{\"steps\": []}\n", ":1: not a recording"}, Bad{"", ":1: not a recording"}}) {
        const Ended ended = bench("replay " + file("bad.rec", bad.text));
        EXPECT_EQ(ended.status, kUsage) << bad.told;
        EXPECT_THAT(ended.output, HasSubstr(bad.told));
        EXPECT_EQ(std::ranges::count(ended.output, '\n'), 1) << ended.output;
    }
}

// What the next test records: started as a program of its own.
TEST(DISABLED_TwoThreads, EachReadsARegisterOfItsUnit)
{
    void *library = dlopen(ZRLSW_LIBRARY, RTLD_NOW);
    reinterpret_cast<void (*)(uint32_t)>(dlsym(library, "ZR_COMMON_FuncListInit"))(0);
    const auto *common = static_cast<const ZrCommonOps *>(LSW_Common_GetFuncPtr(0));
    for (const uint32_t unit : {0U, 1U})
        common->initChip(unit);
    auto read = [common](uint32_t unit) {
        for (uint32_t i = 0; i < 200; ++i) {
            uint32_t value = 0;
            common->chipRegWrite(unit, 0x1300 + i % 4, i);
            common->chipRegRead(unit, 0x1300 + i % 4, &value);
        }
    };
    std::thread other(read, 1);
    read(0);
    other.join();
}

TEST_F(RecordingTest, TwoThreadsOnTwoUnitsAreToldApart)
{
    const std::string recorder = std::filesystem::path(ZRLSW_LIBRARY).parent_path() / "libzrrecord.so";
    const Ended made = shellCommand(fmt::format(
        "LD_PRELOAD={} ZRLSW_RECORD=made.rec {} --gtest_also_run_disabled_tests --gtest_filter=DISABLED_Two*",
        recorder, self_));
    ASSERT_EQ(made.status, 0) << made.output;
    const std::string text = contents("made.rec");
    EXPECT_THAT(text, HasSubstr(" 1 0 < ZR_COMMON_ChipRegRead(unit=0"));
    EXPECT_THAT(text, HasSubstr(" 2 0 < ZR_COMMON_ChipRegRead(unit=1"));
    const Ended ended = bench("replay made.rec");
    EXPECT_THAT(ended.output, HasSubstr("802 operations"));
    EXPECT_THAT(ended.output, HasSubstr("identical"));
}

TEST_F(RecordingTest, TheSizeLimitEndsItWithALine)
{
    setenv("ZRLSW_RECORD_LIMIT", "4K", 1);
    const std::vector<std::string> lines = record();
    unsetenv("ZRLSW_RECORD_LIMIT");
    EXPECT_THAT(lines.back(), HasSubstr(". end limit"));
    EXPECT_LE(contents("made.rec").size(), 4096U);
    EXPECT_THAT(bench("show made.rec").output, HasSubstr("ended by its size limit"));
}

#endif

} // namespace
