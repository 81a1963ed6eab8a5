// What zrbench refuses, and how it ends when something is wrong around it.
#include <sys/stat.h>

#include "kit/zrbench.h"

namespace
{

using namespace zrtest;
using testing::HasSubstr;
using testing::Not;

TEST_F(ZrbenchTest, ABadFileIsRefusedWithItsPlaceBeforeAnyStepIsMade)
{
    const auto unit = [](const char *fields) {
        return fmt::format(R"({{"units": [{{"unit": 1, {}}}]}})", fields);
    };
    const auto step = [](const char *text) { return fmt::format(R"({{"steps": [{}]}})", text); };
    // The first step must not be made.
    const auto after = [](const std::string &text) {
        return fmt::format(R"({{"steps": ["chip init 1", {}]}})", text);
    };
    const struct {
        std::string device;
        const char *named;
    } cases[] = {
        {"{\"steps\": [\n  \"chip init 1\",\n]}", "at line 3, column 1"},
        {std::string(100000, '['), ": expected JSON nested at most 64 deep"},
        {std::string(65, '[') + std::string(65, ']'), ": expected JSON nested at most 64 deep"},
        {std::string(64, '[') + "1" + std::string(64, ']'), ": expected an object with \"steps\""},
        {R"({"steps": [1e999]})", "number overflow parsing '1e999'"},
        {R"({"steps": [{"do": "ops", "do": "quit"}]})", "/steps/0/do: given twice"},
        {unit(R"("ports": {"1": {"kind": 1, "kind": 2}})"), "/units/0/ports/1/kind: given twice"},
        {R"({"environment": {"A\u0000B": "1"}})",
         "/environment/\"A\\u0000B\": expected a text without \\u0000"},
        {step(R"("cli 1 show\u0000x")"), "/steps/0: expected a text without \\u0000"},
        {R"([1])", ": expected an object with \"steps\", found [1]"},
        {R"({"stepz": []})", "/stepz: not known here; there is $schema, about, environment"},
        {R"({"environment": {"A": 1}})", "/environment/A: expected a text, found 1"},
        {R"({"units": [{"maxFrameSize": 1}]})", "/units/0: expected an object with \"unit\""},
        {R"({"units": [{"unit": 3}]})", "/units/0: expected a unit from 0 to 2, found 3"},
        {unit(R"("maxFrame": 1)"), "/units/0/maxFrame: expected one of maxFrameSize, reservedPort"},
        {unit(R"("reservedPort": -1)"), "/units/0/reservedPort: expected a number up to 4294967295"},
        {unit(R"("portSets": {"valid": "0-128"})"), "/units/0/portSets/valid: expected ports up to 127"},
        {unit(R"("portSets": {"valid": "5-3"})"), "/units/0/portSets/valid: expected ports"},
        {unit(R"("portSets": {"16": "1"})"), "/units/0/portSets/16: expected a set"},
        {unit(R"("ports": {"1": {"flags": 256}})"), "/units/0/ports/1/flags: expected a number up to 255"},
        {unit(R"("ports": {"1": {"speed": 1}})"), "/units/0/ports/1/speed: expected flags or kind"},
        {unit(R"("board": ["revision 3", "revison 3"])"),
         "/units/0/board/1: the board refuses this: unknown command 'revison'"},
        {R"({"cables": [["0/15", "3/15"]]})", "/cables/0/1: expected a unit and a port such as"},
        {R"({"cables": [["0/15", "1/15"], ["1/15", "2/15"]]})", "/cables/1/0: this port has a cable already"},
        {R"({"cables": [["0/15", "1/9"]]})", "/cables/0: the board refuses this: there is no port 9"},
        {step(R"(3)"), "/steps/0: expected a command line or an object, found 3"},
        {step(R"({})"), "/steps/0: expected an object with \"do\" or \"say\""},
        {step(R"({"say": "a", "do": "ops"})"), "/steps/0/do: not known here"},
        {R"({"steps": ["chip init 1", "fly 1"]})", "/steps/1: no command \"fly\"; help lists them"},
        {step(R"("reg fly 1 2")"), "/steps/0: no command \"reg fly\"; there is reg read, reg write"},
        {step(R"("reg reed 1 2")"), "/steps/0: no command \"reg reed\"; did you mean reg read?"},
        {step(R"("ergister 1 2")"), "/steps/0: no command \"ergister\"; help lists them"},
        {step(R"("port enable 1 2 of")"), "expected one of off, on, found \"of\"; did you mean off?"},
        {step(R"("fail l2sw_vlan_sett=1")"), "no call \"l2sw_vlan_sett\"; did you mean l2sw_vlan_set?"},
        {step(R"("reg read 1")"), "/steps/0: register is missing: reg read UNIT REGISTER"},
        {step(R"("reg read 1 2 3")"), "/steps/0: \"3\" is too much: reg read UNIT REGISTER"},
        {step(R"("reg read one 2")"),
         "/steps/0: unit: expected a number of 32 bits, decimal or 0x, found \"one\""},
        {step(R"("reg read 1 0x100000000")"), "/steps/0: register: expected a number of 32 bits"},
        {step(R"("reg read 1 -1")"), "/steps/0: register: expected a number of 32 bits"},
        {step(R"({"do": "reg read 1", "register": [2]})"), "/steps/0/register: expected a number of 32 bits"},
        {step(R"({"do": "reg read 1 2", "reg": 2})"), "/steps/0/reg: no such argument: reg read UNIT REGISTER"},
        {step(R"({"do": "ops", "expect": "four"})"),
         "/steps/0/expect: expected a number or one of ok, invalid-argument"},
        {step(R"({"do": "ops", "lines": "text"})"), "/steps/0/lines: expected a list"},
        {step(R"({"do": "ops", "out": [1]})"), "/steps/0/out: expected an object"},
        {step(R"({"do": "ops", "each": {}})"), "/steps/0/each: expected names with their values"},
        {step(R"({"do": "ops", "each": {"a": "0-999", "b": "0-100"}})"),
         "/steps/0/each/b: expected up to 100000"},
        {step(R"({"include": "device.json"})"), "/steps/0/include: includes itself: device.json, device.json"},
        {step(R"({"include": "none.json"})"), "/steps/0/include: none.json cannot be read"},
        {R"({"units": [{"unit": 1}, {"unit": 1}]})", "/units/1: this unit is given already"},
        {step(R"({"do": "ops", "each": {"a": "1-200000"}})"), "/steps/0/each/a: expected up to 100000 numbers"},
        {step(R"({"do": "chip init ${u/0}", "each": {"u": "1"}})"), "/steps/0: expected ${NAME"},
        {after(R"("acl add 1 {\"vlan\": 5000}")"), "/steps/1: rule/vlan: expected a number up to 4095"},
        {after(R"({"do": "acl add 1", "rule": {"vlan": "5/"}})"),
         "/steps/1/rule/vlan: expected a number up to"},
        {after(R"({"do": "acl add 1", "rule": {"srcMac": "02:00:00:00:00:01/"}})"),
         "/steps/1/rule/srcMac: expected"},
        {after(R"({"do": "acl add 1", "rule": {"count": "yes"}})"),
         "/rule/count: expected true or false, found"},
        {after(R"({"do": "acl add 1", "rule": {"counts": true}})"),
         "/rule: a rule has no \"counts\"; did you mean count?"},
        {after(R"({"do": "acl add 1", "rule": {"": true}})"), "/rule: a rule has no \"\"; it has part"},
        {after(R"({"do": "unit set 1", "info": {"ports": 3}})"), "/steps/1/info/ports: expected an object"},
        {after(R"({"do": "frame send 1 1", "frame": "012"})"), "/steps/1/frame: expected whole bytes"},
        {after(R"("time advance 5d")"), "/steps/1: time: expected a time such as 500ms, 90s, 5m or 24h"},
        {after(R"("fail l2sw_vlan_set")"), "/steps/1: call: expected NAME[@N[+]]=STATUS"},
        {after(R"("fail l2sw_nothing=1")"), "/steps/1: fail l2sw_nothing=1: the platform has no call"},
        {after(R"("port advertise 1 1 fast")"), "/steps/1: abilities: expected any of"},
        {after(R"("isolate set 1 1 32 on")"), "/steps/1: from: expected ports up to 31"},
        {after(R"("mac fill 1 02:00:00:00:00:01 1 1 5 0")"), "/steps/1: step: expected a step from 1 on"},
        {after(R"("mac add 256 02:00:00:00:00:01 1 1")"), "/steps/1: unit: expected a number up to 255"},
        {after(R"("meter set 256 0 1 1 1")"), "/steps/1: unit: expected a number up to 255"},
        {after('"' + std::string(100000, 'x') + '"'), "/steps/1: no command \"xxx"},
        {step(R"({"do": "trace loud"})"),
         "/steps/0/do: calls: expected one of off, calls, all, found \"loud\""},
    };
    for (const auto &row : cases) {
        const Ended ended = run(row.device);
        EXPECT_EQ(ended.status, kUsage) << row.device << "\n" << ended.output;
        EXPECT_THAT(ended.output, HasSubstr("zrbench: device.json: "));
        EXPECT_THAT(ended.output, HasSubstr(row.named)) << row.device;
        EXPECT_THAT(ended.output, Not(HasSubstr("   1  "))) << row.device;
        EXPECT_LT(ended.output.size(), 1000U);
    }
}

TEST_F(ZrbenchTest, ABadCommandLineEndsWithTwo)
{
    const std::string good = file("good.json", R"({"steps": ["chip init 1"]})");
    const std::string link = "link";
    std::filesystem::create_symlink(good, link);
    const std::string fifo = "./fifo";
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    const struct {
        std::string arguments;
        const char *named;
    } cases[] = {
        {"", "A subcommand is required"},
        {"run", "file is required"},
        {"run none.json", "none.json: cannot be read"},
        {"run " + good + " --lib /none/libzrlsw.so", "cannot load /none/libzrlsw.so"},
        {"run " + good + " --lib libzrsim.so", "has no ZR_COMMON_FuncListInit"},
        {"run " + good + " --platform libzrlsw.so", "cannot load"},
        {"run " + good + " --fail l2sw_switch_init", "expected NAME[@N[+]]=STATUS"},
        {"run " + good + " --fail l2sw_switch_init@0=1", "expected NAME[@N[+]]=STATUS"},
        {"run " + good + " --fail l2sw_nothing=1", "the platform has no call \"l2sw_nothing\""},
        {"run " + good + " --trace /none/trace", "cannot write /none/trace"},
        {"run " + good + " --dump /none/dump", "cannot write /none/dump"},
        {"run " + good + " --fail g_lswmInfo=1", "the platform has no call \"g_lswmInfo\""},
        {"run " + good + " --fail zrsim_dump=1", "the platform has no call \"zrsim_dump\""},
        {"run " + good + " --trace " + good, "good.json would be written over"},
        {"run " + good + " --junit " + link, "good.json would be written over"},
        {"run " + good + " --junit /dev/full", "cannot write /dev/full"},
        {"run " + good + " " + good + " --dump two",
         "--trace, --dump and --report take one device file at a time"},
        {"run " + good + " --dump " + link, "good.json would be written over"},
        {"run " + good + " --trace one --dump ./one", "--trace and --dump both write"},
        {"ops --lib " + fifo, "fifo: not a regular file"},
        {"ops --platform ./", ": not a regular file"},
        {"shell < ./", "cannot read standard input: Is a directory"},
        {"live " + good, "--port is required"},
        {"live " + good + " --port 1/0", "expected UNIT/PORT=INTERFACE such as 1/0=tap0"},
        {"live " + good + " --port 3/0=tap0", "expected UNIT/PORT=INTERFACE"},
        {"explain 'bogus('", "nothing is known of \"bogus(\""},
        {"explain " + std::string(100000, '1'), "expected a text of at most 1000 characters"},
        {"commands fly", "no command starts with \"fly\""},
        {"--color=pink ops", "pink"},
    };
    for (const auto &row : cases) {
        const Ended ended = bench(row.arguments);
        EXPECT_EQ(ended.status, kUsage) << row.arguments << "\n" << ended.output;
        EXPECT_THAT(ended.output, HasSubstr(row.named)) << row.arguments;
    }
    EXPECT_EQ(contents(good), R"({"steps": ["chip init 1"]})");
}

TEST_F(ZrbenchTest, LostOutputEndsWithTwo)
{
    if (!std::filesystem::exists("/dev/full"))
        GTEST_SKIP() << "no /dev/full";
    const std::string good = file("good.json", R"({"steps": ["chip init 1"]})");
    const std::string typed = file("typed", "chip init 1\nops\n");
    const struct {
        std::string arguments;
        const char *named;
    } cases[] = {
        {"--help >/dev/full", "cannot write standard output: No space left on device"},
        {"run " + good + " >/dev/full", "cannot write standard output"},
        {"run " + good + " >&-", "cannot write standard output"},
        {"run " + good + " --quiet --dump - >/dev/full", "cannot write standard output"},
        {"run " + good + " --quiet --trace - >/dev/full", "cannot write standard output"},
        {"run " + good + " --trace /dev/full", "cannot write /dev/full"},
        {"shell <" + typed + " >/dev/full", "cannot write standard output"},
        {"shell <&-", "cannot read standard input"},
        // Nothing can be told.
        {"run none.json 2>/dev/full", ""},
        {"run none.json 2>&-", ""},
        {"run " + good + " --trace trace <&- >&- 2>&-", ""},
    };
    for (const auto &row : cases) {
        const Ended ended = shellCommand(fmt::format("({})", commandLine(row.arguments)));
        EXPECT_EQ(ended.status, kUsage) << row.arguments << "\n" << ended.output;
        EXPECT_THAT(ended.output, HasSubstr(row.named)) << row.arguments;
    }
    EXPECT_THAT(contents("trace"), testing::EndsWith(" = 0\n"));
    // A reader that went away; what goes to files is complete.
    const Ended unread = shellCommand("(sleep 0.3; " + commandLine("run " + good) +
                                      " --dump dump 2>told; echo $? >ended) | true; cat told ended");
    EXPECT_THAT(unread.output, HasSubstr("zrbench: cannot write standard output: Broken pipe\n2\n"));
    EXPECT_THAT(contents("dump"), testing::EndsWith("}\n"));
}

// A platform that a board's maker ports may lack any of the inspection's functions.
TEST_F(ZrbenchTest, APlatformMayLackPartOfTheInspection)
{
    const std::filesystem::path whole = std::filesystem::path(ZRLSW_LIBRARY).parent_path() / "libzrsim.so";
    const std::string good = file("good.json", R"({"steps": ["chip init 1"]})");
    const struct {
        std::string missing;
        const char *option;
        const char *named;
    } cases[] = {
        {"zrsim_calls", "--fail l2sw_vlan_set@1=1", "fail NAME@N: this platform does not support it"},
        {"zrsim_on_call", "--trace -", "--trace: this platform does not support it"},
        {"zrsim_dump", "--dump -", "--dump: this platform does not support it"},
        {"zrsim_trace_level", "--level 2", "trace level: this platform does not support it"},
        {"zrsim_live_blocks", "", nullptr},
        {"zrsim_bad_frees", "", nullptr},
        {"zrsim_on_line", "", nullptr},
    };
    for (const auto &row : cases) {
        std::string bytes = contents(whole.string());
        const std::string symbol = std::string(1, '\0') + row.missing + std::string(1, '\0');
        for (size_t at = 0; (at = bytes.find(symbol, at)) != std::string::npos;)
            bytes[at + 1] = 'Z';
        const std::string part = "./" + file("libpart.so", bytes);
        const Ended ended = bench(fmt::format("run {} --platform {} {}", good, part, row.option));
        EXPECT_EQ(ended.status, row.named == nullptr ? kAsExpected : kUsage) << row.missing << ended.output;
        EXPECT_THAT(ended.output, HasSubstr(row.named == nullptr ? "1 steps" : row.named)) << row.missing;
    }
}

} // namespace
