// The bench manager as its users meet it: what it prints, and how it exits.
#include <nlohmann/json.hpp>

#include <iterator>
#include <map>
#include <regex>
#include <set>

#include "kit/zrbench.h"

namespace
{

using namespace zrtest;
using testing::HasSubstr;
using testing::Not;

TEST_F(ZrbenchTest, RunTellsEveryStepWithWhatItBroughtAbout)
{
    const Ended ended = run(R"json({
        "about": "one unit",
        "environment": {"lsw2_vq9_rgmii2_para": "0x321"},
        "units": [{"unit": 2, "maxFrameSize": 1536, "board": ["revision 7"]}],
        "steps": [
            {"say": "a heading"},
            {"do": "chip init 2", "note": "a note"},
            {"do": "reg read", "unit": 2, "register": "0x13C5", "out": {"value": 801}},
            "reg write 2 0x1000 0xABCD",
            {"do": "reg read 2 4096", "out": {"value": "0xabcd"}},
            {"do": "cli 2 compare rgmii param", "shows": ["Success! RGMII2 ENV lsw2_vq9_rgmii2_para(0x321)"]},
            {"do": "chip init 3", "expect": 1}
        ]
})json");
    EXPECT_EQ(ended.status, kAsExpected) << ended.output;
    for (const char *piece :
         {"one unit\n", "a heading\n", "   1  chip init 2", "a note", "- [1 chip] The chip 2 ver is 7",
          "reg read 2 0x13C5", "value=0x321", "value=0xabcd", "status 1 (invalid argument)",
          "6 steps, 1 refused as expected, 0 not as expected, 0 memory blocks held"})
        EXPECT_THAT(ended.output, HasSubstr(piece));
}

TEST_F(ZrbenchTest, AProgramReadsStepsAsJson)
{
    const std::string device = file("device.json", R"json({"steps": [
        {"say": "start"}, {"do": "chip init $u", "each": {"u": "0-1"}}, {"do": "vlan init 1", "note": "first"},
        "vlan create 1 10", {"do": "vlan add 1 10 $p tagged", "each": {"p": "0,1,4"}},
        {"do": "vlan members 1 10", "out": {"members": "0-1,4", "untagged": []}}, "vlan list 1 10 10",
        "reg write 1 4096 0xab", {"do": "reg read 1 4096", "out": {"value": "0xab"}}, "vlan create 1 4096", "cli 1 help"]})json");
    // What else is asked for does not come between.
    const Ended ended = shellCommand(
        "(" + commandLine("--json run " + device + " --dump - --trace - --level 3") + " 2>/dev/null)");
    EXPECT_EQ(ended.status, kNotAsExpected);
    std::vector<nlohmann::json> steps;
    std::istringstream lines(ended.output);
    for (std::string line; std::getline(lines, line);)
        steps.push_back(nlohmann::json::parse(line));
    ASSERT_EQ(steps.size(), 11U) << ended.output;
    EXPECT_EQ(steps[0]["section"], "start");
    EXPECT_EQ(steps[0]["runs"][1]["command"], "chip init 1");
    EXPECT_EQ(steps[1]["note"], "first");
    EXPECT_EQ(steps[4]["out"], (nlohmann::json{{"members", {0, 1, 4}}, {"untagged", nlohmann::json::array()}}));
    EXPECT_EQ(steps[5]["rows"][0],
              (nlohmann::json{{"vlan", 10}, {"tagged", {0, 1, 4}}, {"untagged", nlohmann::json::array()}}));
    EXPECT_FALSE(steps[5].contains("status"));
    EXPECT_EQ(steps[7]["out"]["value"], 0xAB);
    EXPECT_EQ(steps[8]["statusName"], "chip failed");
    EXPECT_EQ(steps[8]["expected"], false);
    EXPECT_EQ(
        steps[8]["lines"][1],
        (nlohmann::json{{"module", 4}, {"status", 4}, {"text", "Zr vlan create failed.(unit:1, vlan:4096)."}}));
    EXPECT_THAT(steps[9]["text"], HasSubstr("help"));
    EXPECT_EQ(steps[10]["notAsExpected"], 1);

    const Ended filtered = shellCommand(commandLine(
        "--json run " + device + " | jq -c 'select(.status > 0) | [.step, .command, .statusName]'"));
    EXPECT_EQ(filtered.output, "[9,\"vlan create 1 4096\",\"chip failed\"]\n");

    const Ended piped = shell("mac capacity 1\nno such\n", "--json");
    EXPECT_EQ(piped.status, kUsage);
    EXPECT_THAT(piped.output, HasSubstr("\"summary\":\"shell\""));
}

TEST_F(ZrbenchTest, NumbersHaveNames)
{
    const Ended ended =
        steps(R"json("chip init 1", "vlan init 1", "port enable 1 0 on", "link 1 0 up", "mc init 1",
        {"do": "stp state 1 0 2 blocking"}, {"do": "storm set", "unit": 1, "port": 1, "packets": "broadcast", "enable": "on", "meter": 3},
        {"do": "vlan tag-mode 1 4 priority-tagged"}, "level details",
        {"do": "acl init 1", "holds": 3},
        {"do": "acl add 1", "rule": {"ipProto": "icmpv6", "etherType": "ipv6/0xff00", "ports": "0-4,15"}, "out": {"logic": 5}},
        {"do": "board 1 counter 0 2 7"}, {"do": "port stats 1 0 fcs-errors", "out": {"value": 7}},
        {"do": "port stats 1 0", "shows": ["    fcs-errors: 7"]}, {"do": "port stats 1 0 all", "shows": ["counter-79: 0"]})json");
    EXPECT_THAT(ended.output, HasSubstr("15 steps")) << ended.output;
    EXPECT_THAT(ended.output, Not(HasSubstr("expected status 0")));
    EXPECT_THAT(
        shell("stp state 1 0 2 blockin\nacl add 1 {\"ports\": \"5\"}\nacl add 1 {\"ipProto\": \"tpc\"}\n")
            .output,
        testing::AllOf(HasSubstr("or one of forwarding, blocking, found \"blockin\"; did you mean"),
                       HasSubstr("chip ports, 0 to 4 and 15 to 17"), HasSubstr("one of icmp, igmp, tcp")));
}

TEST_F(ZrbenchTest, WhatIsNotAsExpectedIsNamedAndEndsWithOne)
{
    const struct {
        const char *step;
        const char *named;
    } cases[] = {
        {R"("chip init 3")", "expected status 0"},
        {R"({"do": "chip init 1", "expect": 4})", "expected status 4"},
        {R"({"do": "ops", "expect": 4})", "expected status 4; this command has none"},
        {R"({"do": "chip init 1", "lines": ["Chip Q9 Init"]})", "this line is missing: Chip Q9 Init"},
        {R"("fail l2sw_switch_init=9", {"do": "chip init 1", "expect": 4})",
         "this line is not expected: Chip Q9 Init"},
        {R"("chip init 2", "fail HAL_PORT_SmiWrite=1",
            {"do": "reg read 2 1", "expect": 4, "lines": ["Chip smi read unit 2 addr 0x1"]})",
         "this line is not expected: l2sw Op_Wait failed, unit 2 reg 0x1f op 0xe"},
        {R"("chip init 2", "reg read 2 0x3333", "board 2 smi-stick 23", {"do": "reg read 2 0x2222", "expect": 4,
            "lines": ["Chip smi read unit 2 addr 0x2222",
                      "l2sw wait timeout unit 2 reg 0x17 op 0x2222 val 0x3333"]})",
         "the lines come in another order"},
        {R"("chip init 1", {"do": "reg read 1 0x1300", "out": {"value": 3}})", "expected value=3"},
        {R"("chip init 1", {"do": "reg read 1 0x1300", "out": {"other": 3}})", "there is no output other"},
        {R"("chip init 1", {"do": "drop capture 1 3", "holds": 1})", "keeps 0 memory blocks, expected 1"},
        {R"("board 1 revison 3")", "the board refuses this"},
        {R"({"do": "board 1 revison 3", "shows": ["known command"]}, "chip init 3")", "expected status 0"},
        {R"({"do": "unit show 1", "shows": ["frame size 9"]})", "\"frame size 9\" is not shown"},
        {R"("chip init 0", {"do": "reg write 0 $r 1", "each": {"r": "4096,4099"}},
            {"do": "reg read 0 $r", "each": {"r": "4095-4099"}, "out": {"value": 1}})",
         "expected value=1\n       reg read 0 4097: ok\n"},
    };
    for (const auto &row : cases) {
        const Ended ended = steps(row.step);
        EXPECT_EQ(ended.status, kNotAsExpected) << row.step << "\n" << ended.output;
        EXPECT_THAT(ended.output, HasSubstr(fmt::format("NOT AS EXPECTED: {}", row.named)));
        EXPECT_THAT(ended.output, HasSubstr("1 not as expected"));
    }
}

TEST_F(ZrbenchTest, AStepRepeatsForEachValueAndIsToldOnce)
{
    const Ended ended = steps(R"("chip init 0",
        {"do": "reg write 0 ${r+0x1000} ${r*256}", "each": {"r": "1-200"}},
        {"do": "reg read 0 0x${r+4096:x}", "each": {"r": "7,200"}, "out": {"value": "${r*256}"}},
        {"do": "chip init $u", "each": {"u": "3,4"}, "expect": 1})");
    EXPECT_EQ(ended.status, kAsExpected) << ended.output;
    EXPECT_THAT(ended.output, HasSubstr("(r = 1-200)"));
    EXPECT_THAT(ended.output, HasSubstr("200 times ok"));
    EXPECT_THAT(ended.output, HasSubstr("2 times status 1 (invalid argument)"));
}

TEST_F(ZrbenchTest, FailuresAreInjectedByNameAndCount)
{
    const std::string resets = R"({"do": "chip init 1", "expect": 4, "lines": ["Chip Q9 Vesper Reset"]})";
    const struct {
        std::string options;
        std::string steps;
    } cases[] = {
        {"--fail VESPER_ADPAPI_ResetChip=1", resets + "," + resets},
        {"--fail VESPER_ADPAPI_ResetChip@2=-1", resets + R"(, "chip init 1")"},
        {"--fail VESPER_ADPAPI_ResetChip@3=1", R"("chip init 1",)" + resets + R"(, "chip init 1")"},
        {"--fail VESPER_ADPAPI_ResetChip@3+=1", R"("chip init 1",)" + resets + "," + resets},
        // Two failures at once; the second is seen once the first is over.
        {"--fail VESPER_ADPAPI_ResetChip@1=1 --fail l2sw_switch_init@1=22",
         resets + R"(, {"do": "chip init 1", "expect": 4, "lines": ["Chip Q9 Init"]}, "chip init 1")"},
        // In a file the count starts where the step stands.
        {"", R"("chip init 1", "fail VESPER_ADPAPI_ResetChip@2=1",)" + resets + R"(, "chip init 1")"},
        {"", R"("fail VESPER_ADPAPI_ResetChip=1", "fail none", "chip init 1")"},
    };
    for (const auto &row : cases) {
        const Ended ended = steps(row.steps, row.options);
        EXPECT_EQ(ended.status, kAsExpected) << row.options << " " << row.steps << "\n" << ended.output;
    }
}

TEST_F(ZrbenchTest, TraceDumpAndQuietGoWhereTheyAreSent)
{
    const std::string device = file("device.json", R"({"steps": ["chip init 2", "reg write 2 0x1000 0x77"]})");
    const Ended quiet = bench(fmt::format("--quiet run {} --trace trace --dump dump", device));
    EXPECT_EQ(quiet.status, kAsExpected);
    EXPECT_EQ(quiet.output,
              device + ": 2 steps, 0 refused as expected, 0 not as expected, 0 memory blocks held\n");

    const std::string trace = contents("trace");
    EXPECT_THAT(trace, HasSubstr("LSW_Common_GetFuncPtr(0) = ptr\n"));
    EXPECT_THAT(trace, HasSubstr("# chip init 2\nVESPER_ADPAPI_ResetChip(0xffffffff, 0xb00001, 0) = 0\n"));
    EXPECT_THAT(
        trace, HasSubstr("  HAL_PORT_SmiWrite(1, 29, 24, 119) = 0\n  HAL_PORT_SmiRead(1, 29, 24, &119) = 0\n"));
    EXPECT_THAT(trace, HasSubstr("\nl2sw_setAsicReg(2, 4096, 119) = 0\n"));

    const nlohmann::json dump = nlohmann::json::parse(contents("dump"));
    EXPECT_EQ(dump["board"]["units"]["2"]["registers"]["0x1000"], "0x0077");
    EXPECT_EQ(dump["board"]["units"]["1"]["inReset"], true);

    const Ended mixed = bench("run " + device + " --trace -");
    EXPECT_THAT(mixed.output, HasSubstr("# reg write 2 0x1000 0x77\n"));
    EXPECT_THAT(mixed.output, Not(HasSubstr("\033[")));
    EXPECT_THAT(bench("--color run " + device).output, HasSubstr("\033[32mok\033[0m"));
}

TEST_F(ZrbenchTest, TheShellTakesPipedLinesAndGoesOnAfterABadOne)
{
    const Ended ended = shell("# a remark\n"
                              "\n"
                              "  chip init 1\n"
                              "reg read\n"
                              "trace calls\n"
                              "reg read 1 0x1300\r\n"
                              "unit set 1 {\"maxFrameSize\": 1600, \"portSets\": {\"cascade\": \"15,16\"}}\n"
                              "unit set 1 {\"maxFrameSize\": 1, \"ports\": 3}\n"
                              "unit set 1 {\"maxFrameSize\n"
                              "reg read \xff 1\n"
                              "unit show 1\n"
                              "chip init 7\n"
                              "quit\n"
                              "chip init 9\n");
    EXPECT_EQ(ended.status, kUsage);
    for (const char *piece :
         {"line 4: unit is missing: reg read UNIT REGISTER", "> l2sw_getAsicReg(1, 4864, &0x5109) = 0",
          "value=0x5109", "line 8: info/ports: expected an object", "line 9: info: expected a JSON value",
          "line 10: unit: expected a number of 32 bits, decimal or 0x, found \"\xEF\xBF\xBD\"",
          "frame size 1600, reserved port 0", "set cascade 15-16", "chip init 7",
          "status 1 (invalid argument)"})
        EXPECT_THAT(ended.output, HasSubstr(piece));
    EXPECT_THAT(ended.output, Not(HasSubstr("chip init 9")));

    const Ended good = shell("expect 1 chip init 7\n", file("first.json", R"({"steps": ["chip init 2"]})"));
    EXPECT_EQ(good.status, kAsExpected) << good.output;
    EXPECT_THAT(good.output, HasSubstr("   1  chip init 2"));
    EXPECT_THAT(good.output, HasSubstr("   2  expect 1 chip init 7"));
}

TEST_F(ZrbenchTest, AShellWithoutATerminalEndsWithWhatBecameOfItsSteps)
{
    file("inner", "reg read 1 0x1300\nreg read 1\n");
    file("loop", "source loop");
    file("device.json", R"({"steps": ["chip init 2", {"do": "chip init 3", "expect": 1}]})");
    const struct {
        const char *commands;
        int status;
        const char *piece;
    } cases[] = {
        {"chip init 1; unit set 1 {\"about;\": 1}", kUsage, "command 2: info/about;: expected one of"},
        {"chip init 1; ; ops", kAsExpected, "   2  ops\n"},
        {"chip init 7; ops", kNotAsExpected, "NOT AS EXPECTED: expected status 0\n   2  ops\n"},
        {"expect invalid-argument chip init 7", kAsExpected, "status 1 (invalid argument)"},
        {"expect 4 chip init 7", kNotAsExpected, "NOT AS EXPECTED: expected status 4"},
        {"expect some chip init 7", kUsage,
         "status: expected a number or one of ok, invalid-argument, null-pointer"},
        {"expect 1 chip start 7", kUsage, "command 1: command: no command \"chip start\"; there is chip init"},
        {"chip init 1; source inner; ops", kUsage, "inner: line 2: register is missing"},
        {"source device.json; exit; ops", kAsExpected, "   3  chip init 3"},
        {"source nowhere", kUsage, "command 1: nowhere: cannot be read"},
        {"source loop", kUsage, "loop: line 1: loop: files name each other more than 16 deep"},
        {"? trace", kAsExpected, "trace off|calls|all"},
        {"chip init 1; vlan members 1 ?", kAsExpected, "  VLAN: a VLAN, 1 to 4094; a number"},
        {"board 1 revison 3", kNotAsExpected, "'help' lists them; did you mean revision?"},
        {"link 1 9 up", kNotAsExpected, "usage: link UNIT PORT down|up\n"},
    };
    for (const auto &row : cases) {
        const Ended ended = bench(fmt::format("shell -c '{}'", row.commands));
        EXPECT_EQ(ended.status, row.status) << row.commands << "\n" << ended.output;
        EXPECT_THAT(ended.output, HasSubstr(row.piece)) << row.commands;
    }
    const Ended refused = steps(R"("source inner")");
    EXPECT_EQ(refused.status, kUsage);
    EXPECT_THAT(refused.output, HasSubstr("/steps/0: source inner: only the shell does this"));

    // What the documents say of scripts.
    std::istringstream document(contents(ZRLSW_SOURCE_DIR "/docs/shell.md"));
    size_t scripts = 0;
    for (std::string line; std::getline(document, line);) {
        const size_t start = line.find("zrbench shell");
        if (!line.starts_with("    ") || start == std::string::npos || line.ends_with("--up") ||
            line.find('<') != std::string::npos)
            continue;
        const Ended ended = shellCommand(line.substr(4, start - 4) + commandLine(line.substr(start + 8)));
        EXPECT_EQ(ended.status, kAsExpected) << line << "\n" << ended.output;
        ++scripts;
    }
    EXPECT_EQ(scripts, 2U);

    const Ended up = bench("shell --up -c 'expect ok vlan members 2 20'");
    EXPECT_EQ(up.status, kAsExpected) << up.output;
    EXPECT_THAT(up.output, HasSubstr("members=3-4"));
    EXPECT_EQ(bench("shell --up --fail VESPER_ADPAPI_ResetChip=1 -c ''").status, kNotAsExpected);
}

TEST_F(ZrbenchTest, EverySlotIsShownInOrderWithItsOperationAndCommand)
{
    std::istringstream exported(contents(ZRLSW_SOURCE_DIR "/cmake/exports.txt"));
    const std::set<std::string> exports(std::istream_iterator<std::string>(exported), {});
    const std::string shown = bench("ops").output;
    const std::regex row(R"((\w+) +(\d+) +(?:(\(reserved\))|[^(\n]*?(\w+)\(.*\)[^)\n]*[^)\s]) *\n)");
    std::map<std::string, int> slots; // by module
    std::set<std::string> named;
    int reserved = 0;
    for (std::sregex_iterator match(shown.begin(), shown.end(), row), end; match != end; ++match) {
        EXPECT_EQ(std::stoi((*match)[2]), slots[(*match)[1]]++) << match->str();
        if ((*match)[3].matched)
            ++reserved;
        else
            EXPECT_TRUE(exports.contains((*match)[4]) && named.insert((*match)[4]).second) << match->str();
    }
    EXPECT_EQ(slots.size(), 12U);
    EXPECT_EQ(named.size(), 109U) << shown;
    EXPECT_EQ(reserved, 8);
    EXPECT_THAT(shown, HasSubstr("109 of 109 operations filled"));
}

TEST_F(ZrbenchTest, TheDocumentHasTheCommandsOfTheTable)
{
    EXPECT_THAT(
        contents(ZRLSW_SOURCE_DIR "/docs/device-files.md"),
        HasSubstr("<!-- commands -->\n" + bench("commands --markdown").output + "<!-- end of commands -->"))
        << "sh cmake/reference.sh build/release/bin/zrbench writes it anew";
}

TEST_F(ZrbenchTest, DeviceFilesRunAsTheyExpect)
{
    for (const char *folder : {"/examples", "/examples/tasks", "/tests/devices"}) {
        size_t files = 0;
        for (const auto &entry : std::filesystem::directory_iterator(ZRLSW_SOURCE_DIR + std::string(folder))) {
            if (entry.path().extension() != ".json")
                continue;
            ++files;
            const Ended ended = bench("--quiet run '" + entry.path().string() + "'");
            // A cross build reads no frames of words.
            EXPECT_TRUE(ended.status == kAsExpected || lacksPackets(ended)) << ended.output;
        }
        EXPECT_GT(files, 0U) << folder;
    }
}

} // namespace
