// Device files: how they are put together, and several of them in one run.
#include <nlohmann/json.hpp>

#include "kit/zrbench.h"

namespace
{

using namespace zrtest;
using testing::HasSubstr;
using testing::Not;

class ZrbenchFilesTest : public ZrbenchTest
{
};

TEST_F(ZrbenchFilesTest, FilesIncludeOthersAndRepeatStepsOverSeveralNames)
{
    std::filesystem::create_directory("common");
    file("common/up.json", R"json({
        "about": "not this one", "environment": {"lsw1_vq9_rgmii2_para": "0x321"},
        "units": [{"unit": 1, "maxFrameSize": 1536}], "cables": [["0/15", "1/15"]],
        "steps": [{"include": "../init.json"}]})json");
    file("init.json", R"({"steps": [{"do": "chip init $u", "each": {"u": "0-1"}}, "vlan init 1"]})");
    const Ended ended = run(R"json({
        // what the board engineer wrote
        "$schema": "zrbench.schema.json", "about": "this one",
        "steps": [{"include": "common/up.json"}, /* before */ "vlan create 1 10", "vlan create 1 20",
            {"do": "vlan add 1 $v $p tagged", "each": {"v": "10,20", "p": "1-3"}},
            {"do": "vlan members 1 20", "out": {"members": "1-3"}},
            {"do": "unit show 1", "shows": ["1536"]},
            {"do": "vlan create 1 4096", "expect": "chip failed",
             "lines": ["Zr vlan create failed (unit:1, vlan:4096, retVal:0x10003).",
                       "Zr vlan create failed.(unit:1, vlan:4096)."]}]})json");
    EXPECT_EQ(ended.status, kAsExpected) << ended.output;
    EXPECT_THAT(ended.output, HasSubstr("this one"));
    EXPECT_THAT(ended.output, Not(HasSubstr("not this one")));
    EXPECT_THAT(ended.output,
                HasSubstr("vlan add 1 $v $p tagged  (p = 1-3, v = 10,20)             6 times ok"));

    file("init.json", R"({"steps": ["vlan init"]})");
    EXPECT_THAT(bench("run common/up.json").output,
                HasSubstr("common/up.json: common/../init.json: /steps/0: "));
    file("init.json", R"({"steps": [{"include": "common/up.json"}]})");
    EXPECT_THAT(bench("run common/up.json").output,
                HasSubstr("includes itself: common/up.json, common/../init.json, common/../common/up.json"));
}

TEST_F(ZrbenchFilesTest, SeveralFilesRunApartAndTellABuildServer)
{
    const std::string good =
        file("good.json", R"({"steps": ["chip init 1", {"do": "reg read 1 4096", "out": {"value": 0}}]})");
    const std::string touched = file("touched.json", R"({"steps": ["chip init 1", "reg write 1 4096 7"]})");
    const std::string bad = file("<bad>.json", R"({"steps": ["chip init 3", "chip init 1"]})");
    const std::string broken = file("broken.json", R"({"steps": ["no such"]})");

    EXPECT_EQ(bench("--quiet run touched.json good.json --junit ok.xml").status, kAsExpected)
        << "a library of its own";
    const Ended ended = bench("run '<bad>.json' broken.json good.json --junit all.xml");
    EXPECT_EQ(ended.status, kUsage);
    EXPECT_THAT(ended.output, HasSubstr("good.json: 2 steps, 0 refused"));
    const std::string xml = contents("all.xml");
    for (const char *piece : {"<testsuite name=\"&lt;bad>.json\" tests=\"2\" failures=\"1\"",
                              "<failure message=\"chip init 3: expected status 0\"/>",
                              "<testsuite name=\"broken.json\" tests=\"1\" failures=\"0\" errors=\"1\">",
                              "no command &quot;no&quot;",
                              "<testcase classname=\"steps\" name=\"2 reg read 1 4096\"/>", "</testsuites>\n"})
        EXPECT_THAT(xml, HasSubstr(piece));

    const Ended stopped = bench("run --stop '<bad>.json' good.json");
    EXPECT_EQ(stopped.status, kNotAsExpected);
    EXPECT_THAT(stopped.output, HasSubstr("<bad>.json: 1 steps"));
    EXPECT_THAT(stopped.output, Not(HasSubstr("good.json")));

    EXPECT_EQ(shellCommand(commandLine("--quiet run - < good.json")).status, kAsExpected);
}

// What is not an expectation stays as it is, to the byte.
TEST_F(ZrbenchFilesTest, ExpectationsAreTakenAnewWhereTheyWereNotMet)
{
    file("common.json", R"({"steps": [{"do": "reg read 1 1", "out": {"value": 9}}]})");
    const std::string before = R"json({ // a board's "steps": [
  "steps": ["chip init 1", "vlan init 1",
    {"include": "common.json"}, /* { */
    {"do": "vlan create 1 10",   "expect": "in use", "note": "\"]}"},
    "vlan create 1 4096",
    {"do": "vlan members 1 10", "out": {"untagged": "-", /* ] */ "members": "7"}},
    {"do": "vlan create 1 $v", "each": {"v": "20,4096"}},
    {"do": "acl init 1"}
  ]})json";
    std::string after = before;
    for (
        const auto &[from, to] :
        {std::pair(R"("in use")", R"(0)"),
         {R"("7")", R"("-")"},
         {R"({"do": "acl init 1"})", R"({"do": "acl init 1", "holds": 3})"},
         {R"("vlan create 1 4096")",
          R"({"do": "vlan create 1 4096", "expect": 4, "lines": ["Zr vlan create failed (unit:1, vlan:4096, retVal:0x10003).", "Zr vlan create failed.(unit:1, vlan:4096)."]})"}})
        after.replace(after.find(from), std::string(from).size(), to);
    file("device.json", before);
    std::filesystem::create_symlink("device.json", "link.json");
    const Ended ended = bench("--quiet run --update link.json");
    EXPECT_EQ(ended.status, kNotAsExpected);
    EXPECT_EQ(contents("device.json"), after) << ended.output;
    EXPECT_TRUE(std::filesystem::is_symlink("link.json"));
    for (const char *piece :
         {"link.json: /steps/3/expect: \"in use\" -> 0", "link.json: /steps/5/out/members: \"7\" -> \"-\"",
          "common.json: /steps/0: included; left as it is",
          "link.json: /steps/6: its runs differ; left as it is", "link.json: /steps/7/holds: 3"})
        EXPECT_THAT(ended.output, HasSubstr(piece));
    EXPECT_THAT(bench("run --update device.json").output, HasSubstr("2 not as expected"));
    EXPECT_EQ(contents("device.json"), after) << "nothing more to take";

    file("device.json", before);
    std::filesystem::create_directory("device.json.new");
    EXPECT_EQ(bench("--quiet run --update device.json").status, kUsage);
    EXPECT_EQ(contents("device.json"), before);
}

TEST_F(ZrbenchFilesTest, ASessionBecomesADeviceFileThatRunsAsItDid)
{
    file("up.json", R"({"units": [{"unit": 1, "maxFrameSize": 1536}], "steps": ["chip init 1"]})");
    std::filesystem::create_directory("cases");
    const std::string typed =
        "vlan init 1\nvlan create 1 10\nvlan members 1 10\nexpect chip-failed vlan create 1 4096\n"
        "acl init 1\nno such\nhelp vlan\nreg read 1 0x13c5\n";
    shell(typed + "save cases/one.json\nsave none/one.json\n", "up.json");
    const std::string saved = contents("cases/one.json");
    for (const char *piece :
         {R"({"include": "../up.json"})", R"("vlan init 1")",
          R"({"do": "vlan members 1 10", "out": {"members": "-", "untagged": "-"}})", R"("holds": 3)"})
        EXPECT_THAT(saved, HasSubstr(piece));
    EXPECT_EQ(bench("--quiet run cases/one.json").output,
              "cases/one.json: 7 steps, 1 refused as expected, 0 not as expected, 3 memory blocks held\n");

    EXPECT_EQ(shellCommand(commandLine("--quiet shell --up -c 'mac capacity 2; save up2.json'")).status,
              kAsExpected);
    EXPECT_EQ(bench("--quiet run up2.json").status, kAsExpected);
}

TEST_F(ZrbenchFilesTest, TwoDumpsDifferInOneLineAValue)
{
    const std::string start = R"("chip init 1", "vlan init 1", "vlan create 1 9", "vlan create 1 10")";
    EXPECT_EQ(steps(start, "--dump a").status, kAsExpected);
    EXPECT_EQ(steps(start + R"(, "vlan add 1 10 4 tagged", "vlan delete 1 9")", "--dump b").status,
              kAsExpected);
    const Ended same = bench("diff a a");
    EXPECT_EQ(same.status, kAsExpected);
    EXPECT_EQ(same.output, "");
    const Ended different = bench("diff a b");
    EXPECT_EQ(different.status, kNotAsExpected);
    EXPECT_THAT(different.output, testing::ContainsRegex("(^|\n)unit 1 vlan 10 members - -> 4\n"));
    EXPECT_LT(different.output.find("vlan 9 members - -> absent\n"), different.output.find("vlan 10"));
    EXPECT_THAT(bench("--json diff a b").output,
                HasSubstr(R"({"from":[],"path":"unit 1 vlan 10 members","to":[4]})"));

    file("list", "[1]");
    for (const auto &[files, complaint] : std::vector<std::pair<std::string, std::string>>{
             {"a none", "zrbench: none: cannot be read\n"},
             {"list a", "zrbench: list: no dump: expected an object with \"board\", found [1]\n"},
             {"a device.json", "zrbench: device.json: no dump"}}) {
        const Ended refused = bench("diff " + files);
        EXPECT_EQ(refused.status, kUsage);
        EXPECT_THAT(refused.output, testing::StartsWith(complaint));
    }
    EXPECT_THAT(shell("checkpoint here\ndiff there\n").output,
                HasSubstr("no checkpoint \"there\"; there is here"));
}

} // namespace
