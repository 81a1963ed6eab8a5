// What zrbench shows of a unit, and of what a step changes.
#include <nlohmann/json.hpp>

#include <sstream>

#include "kit/zrbench.h"

namespace
{

using namespace zrtest;
using testing::HasSubstr;
using testing::Not;

TEST_F(ZrbenchTest, AUnitIsShownOnOnePageOf80Columns)
{
    const Ended ended =
        shellCommand(commandLine("shell --up -c 'storm set 1 1 broadcast on 9; meter add 1 0 800 900; stp bind "
                                 "1 1 10; stp state 1 1 2 blocking; "
                                 "isolate set 1 2 0-1 on; trunk create 1 7; trunk add 1 0 2; link 1 3 down; "
                                 "mac add 1 02:00:00:00:00:99 10 3; "
                                 "port enable 1 0 off; show 1; stp show 1; port vlan 1 4; port map 1'"));
    EXPECT_EQ(ended.status, kAsExpected) << ended.output;
    for (const char *piece :
         {"0     off        10    by-vlan  on      -           -         -",
          "2     1000 full  10    by-vlan  on      1:blocking  0-1       0", "3     down       20",
          "10    0-2,4,15-16  0-2        1", "1 static, by port 3: 1", "7: chip group 0, chip ports 2",
          "5 rules, 5 of 32 counters", "0: 800 kbit/s bucket 2160", "port 1 broadcast by meter 9", "8 queues",
          "1         10     2     blocking",
          "pvid=1  priority=0  filter=on  tagMode=by-vlan  tagged=10,20  untagged=1",
          "17    7          reserved, to the host"})
        EXPECT_THAT(ended.output, HasSubstr(piece));
    std::istringstream page(ended.output.substr(ended.output.find("show 1  ")));
    std::string line;
    for (std::getline(page, line); std::getline(page, line) && !line.empty();)
        EXPECT_LE(line.size(), 87U) << line; // 80 and the indent of a step's text
}

TEST_F(ZrbenchTest, WhatIsMissingIsNamed)
{
    const Ended ended =
        shell("show 1\nstp show 2\nvlan create 1 10\nchip init 1\nshow 1\nacl add 1 {\"ports\": \"3\"}\n"
              "meter add 1 0 8 8\nvlan create 1 4096\nqos show 3\n");
    for (const char *piece :
         {"unit 1 was never brought up: chip init 1", "unit 2 was never brought up: chip init 2",
          "hint: unit 1 was never brought up: chip init 1", "no ACL: acl init 1", "no addresses",
          "no storm control", "hint: unit 1 has no ACL records yet: acl init 1",
          "hint: unit 1 has no meter records yet: meter init 1"})
        EXPECT_THAT(ended.output, HasSubstr(piece));
    EXPECT_THAT(ended.output.substr(ended.output.find("vlan create 1 4096")), Not(HasSubstr("hint:")));
}

TEST_F(ZrbenchTest, AMonitoredStepTellsWhatItChanged)
{
    const Ended ended =
        shellCommand(commandLine("--json shell --up -c 'monitor on; frame send 1 0 " +
                                 std::string(120, '0').replace(12, 12, "020000000007") +
                                 "; link 1 3 down; time advance 6m; monitor off; link 1 3 up'"));
    std::vector<nlohmann::json> steps;
    std::istringstream lines(ended.output);
    for (std::string line; std::getline(lines, line);)
        steps.push_back(nlohmann::json::parse(line, nullptr, false));
    ASSERT_GE(steps.size(), 6U) << ended.output;
    const auto events = [&](size_t step) { return steps[step].value("events", std::vector<std::string>()); };
    EXPECT_THAT(events(1), testing::IsSupersetOf({"unit 1 02:00:00:00:00:07 VLAN 10 at port 0",
                                                  "unit 1 port 0 +1 unicast in, +64 octets in"}));
    EXPECT_THAT(events(2), testing::ElementsAre("unit 1 port 3 link 1000 full -> down"));
    EXPECT_THAT(events(3), testing::Contains("unit 1 02:00:00:00:00:07 VLAN 10 gone from port 0"));
    EXPECT_THAT(events(5), testing::IsEmpty());
}

} // namespace
