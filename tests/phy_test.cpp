// Speed, duplex, negotiation and abilities of ports.
#include "port/phy.h"

#include <gmock/gmock.h>

#include <array>
#include <cstring>

#include "port/port.h"
#include "sim/chip/chip.h"
#include "tests/kit/device.h"

namespace
{

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using zrsim::Call;
using zrtest::Texts;

constexpr uint32_t kUntouched = 0xEEEEEEEE;
constexpr uint32_t kPhyPort = 3;
constexpr uint32_t kMacPort = 16;

using Words = std::array<uint32_t, 8>;

Words wordsOf(const Call &call)
{
    Words words;
    std::memcpy(words.data(), call.pointer<void>(2), sizeof words);
    return words;
}

class Phy : public zrtest::RunningDeviceTest
{
protected:
    const ZrPortOps &port() { return dev.ops().port; }

    // Answers a call by words of its record.
    void answerAbility(const std::string &name, const Words &words, uint32_t status = 0)
    {
        dev.script(name, [words, status](const Call &call) {
            std::memcpy(call.pointer<void>(2), words.data(), sizeof words);
            return status;
        });
    }
    // Keeps what a setter of abilities was given.
    void catchAbility(const std::string &name, uint32_t status = 0)
    {
        dev.script(name, [this, name, status](const Call &call) {
            caught_.emplace_back(name, wordsOf(call));
            return status;
        });
    }
    std::vector<std::pair<std::string, Words>> caught_;
};

const std::string kSetAuto = "l2sw_port_phyAutoNegoAbility_set";
const std::string kGetAuto = "l2sw_port_phyAutoNegoAbility_get";
const std::string kSetForced = "l2sw_port_phyForceModeAbility_set";
const std::string kGetForced = "l2sw_port_phyForceModeAbility_get";

// ---- where values are read ------------------------------------------------------------------

TEST_F(Phy, SpeedAndDuplexCodesOfBothPaths)
{
    const struct {
        uint32_t speedCode, duplexCode;
        uint32_t speed, duplex;
    } codes[] = {
        {0, 0, 10, 0}, {1, 1, 100, 1}, {2, 1, 1000, 1}, {3, 2, 10, 0}, {0xFFFFFFFF, 0xFFFFFFFF, 10, 0}};
    for (const auto &code : codes) {
        dev.script("l2sw_port_phyStatus_get", [code](const Call &call) {
            EXPECT_EQ(call.number(1), kPhyPort);
            *call.pointer<uint32_t>(3) = code.speedCode;
            *call.pointer<uint32_t>(4) = code.duplexCode;
            return 0;
        });
        dev.script("l2sw_port_macForceLinkExt_get", [code](const Call &call) {
            EXPECT_EQ(call.number(1), kMacPort);
            const Words record = {9, code.speedCode, code.duplexCode, 9};
            std::memcpy(call.pointer<void>(3), record.data(), sizeof record);
            return 0;
        });
        for (uint32_t at : {kPhyPort, kMacPort}) {
            uint32_t speed = kUntouched;
            uint32_t duplex = kUntouched;
            EXPECT_EQ(port().getSpeed(1, at, &speed), 0U);
            EXPECT_EQ(port().getDuplex(1, at, &duplex), 0U);
            EXPECT_EQ(speed, code.speed) << "code " << code.speedCode;
            EXPECT_EQ(duplex, code.duplex) << "code " << code.duplexCode;
        }
    }
}

TEST_F(Phy, AnyNonzeroAnswerOfTheChipMeansPhyPath)
{
    dev.script("l2sw_switch_isExtPort",
               [](const Call &call) { return call.number(1) == 0 ? 0x80000000U : 0U; });
    dev.chip(1).ports.strap(kMacPort, {true, SDK_SPEED_100, false});
    uint32_t speed = 0;
    EXPECT_EQ(port().getSpeed(1, 0, &speed), 0U);
    EXPECT_EQ(dev.calls().back(), "l2sw_port_phyStatus_get(1, 0, &0, &0, &0) = 0");
    EXPECT_EQ(port().getSpeed(1, kMacPort, &speed), 0U);
    EXPECT_EQ(speed, 100U);
}

TEST_F(Phy, FailedReadsPrintAndLeaveTheOutput)
{
    using Getter = uint32_t (*)(uint32_t, uint32_t, uint32_t *);
    const ZrPortOps &ops = port();
    const struct {
        Getter get;
        uint32_t port;
        const char *call;
        const char *line;
    } cases[] = {
        {ops.getSpeed, kPhyPort, "l2sw_port_phyStatus_get",
         "2/22 get speed failed(unit = 1, port = 3, ret = 22)."},
        {ops.getSpeed, kMacPort, "l2sw_port_macForceLinkExt_get",
         "2/22 get speed failed(unit = 1, port = 16, ret = 22)."},
        {ops.getDuplex, kPhyPort, "l2sw_port_phyStatus_get",
         "2/22 get duplex mode failed(unit = 1, port = 3, duplex = 0)."},
        {ops.getDuplex, kMacPort, "l2sw_port_macForceLinkExt_get",
         "2/22 get duplex mode failed(unit = 1, port = 16, duplex = 0)."},
        {ops.getAutonegEnable, kPhyPort, kGetAuto.c_str(),
         "2/22 get anto neg failed(unit = 1, port = 3, ret = 22)."},
        {ZR_OP(HAL_PHY_GetMacLinkStatusZr), kPhyPort, "l2sw_port_macStatus_get",
         "2/22 get mac link status failed (unit = 1, port = 3)."},
    };
    for (const auto &failing : cases) {
        dev.fail(failing.call, 22);
        uint32_t value = kUntouched;
        EXPECT_EQ(failing.get(1, failing.port, &value), 4U);
        EXPECT_EQ(value, kUntouched);
        EXPECT_THAT(dev.takeFailures(), ElementsAre(failing.line));
        dev.failNone();
    }
}

TEST_F(Phy, FailedDuplexReadShowsTheCodeThatCameWithIt)
{
    dev.script("l2sw_port_phyStatus_get", [](const Call &call) {
        *call.pointer<uint32_t>(4) = 1;
        return 5;
    });
    uint32_t duplex = kUntouched;
    EXPECT_EQ(port().getDuplex(1, kPhyPort, &duplex), 4U);
    EXPECT_EQ(duplex, kUntouched);
    EXPECT_THAT(dev.takeFailures(), ElementsAre("2/5 get duplex mode failed(unit = 1, port = 3, duplex = 1)."));
}

TEST_F(Phy, NullOutputsAreRefusedBeforeTheChip)
{
    const ZrPortOps &ops = port();
    EXPECT_EQ(ops.getSpeed(1, 3, nullptr), 2U);
    EXPECT_EQ(ops.getDuplex(1, 3, nullptr), 2U);
    EXPECT_EQ(ops.getAutonegEnable(1, 16, nullptr), 2U);
    EXPECT_EQ(ops.getAutonegAbility(1, 3, nullptr), 2U);
    EXPECT_EQ(ops.getRemoteAutonegAbility(1, 3, nullptr), 2U);
    EXPECT_EQ(ops.setAdvert(1, 3, nullptr), 2U);
    EXPECT_EQ(ops.getLinkStatus(1, 3, nullptr), 2U);
    EXPECT_EQ(ZR_OP(HAL_PHY_GetMacLinkStatusZr)(1, 3, nullptr), 2U);
    EXPECT_THAT(dev.calls(), IsEmpty());
    EXPECT_THAT(dev.takeFailures(),
                ElementsAre("2/2 get speed failed reason null pointer (unit = 1, port = 3).",
                            "2/2 get auto neg enable failed reason null pointer (unit = 1, port = 16).",
                            "2/2 get auto ability mode failed reason null pointer (unit = 1, port = 3).",
                            "2/2 get auto ability mode failed reason null pointer (unit = 1, port = 3).",
                            "2/2 ZR PHY GetLinkstatusZr ret = 2, unitId = 1, portId = 3"));
}

TEST_F(Phy, RecordsReachTheChipClearedForReading)
{
    unsigned records = 0;
    for (const std::string &name : {kGetAuto, kGetForced, std::string("l2sw_port_macForceLinkExt_get")}) {
        const size_t place = name == "l2sw_port_macForceLinkExt_get" ? 3 : 2;
        dev.script(name, [&records, place](const Call &call) {
            Words words;
            std::memcpy(words.data(), call.pointer<void>(place), sizeof words);
            EXPECT_EQ(words, Words{}) << call.name;
            ++records;
            return 0;
        });
    }
    uint32_t value = 0;
    LswmPortAbility ability{};
    EXPECT_EQ(port().setSpeed(1, kPhyPort, 100), 0U);
    EXPECT_EQ(port().setDuplex(1, kPhyPort, 1), 0U);
    EXPECT_EQ(port().setAutonegEnable(1, kPhyPort, 0), 0U);
    EXPECT_EQ(port().setAutonegEnable(1, kPhyPort, 1), 0U);
    EXPECT_EQ(port().getAutonegEnable(1, kPhyPort, &value), 0U);
    EXPECT_EQ(port().getAutonegAbility(1, kPhyPort, &ability), 0U);
    EXPECT_EQ(port().getSpeed(1, kMacPort, &value), 0U);
    EXPECT_EQ(port().getDuplex(1, kMacPort, &value), 0U);
    EXPECT_EQ(port().getLinkStatus(1, kMacPort, &value), 0U);
    EXPECT_EQ(records, 9U);
}

// ---- setting speed and duplex ---------------------------------------------------------------

TEST_F(Phy, SpeedAllowsEverythingUpToItAndKeepsTheRest)
{
    const struct {
        uint32_t speed;
        std::string setter;
        Words words;
    } cases[] = {
        {10, kSetForced, {7, 1, 1, 0, 0, 0, 5, 6}},
        {100, kSetForced, {7, 1, 1, 1, 1, 0, 5, 6}},
        {1000, kSetAuto, {7, 1, 1, 1, 1, 1, 5, 6}},
    };
    answerAbility(kGetForced, {7, 0, 3, 0, 3, 3, 5, 6});
    catchAbility(kSetForced, 0xFFFFFFFF);
    catchAbility(kSetAuto, 0x10);
    for (const auto &speed : cases) {
        caught_.clear();
        EXPECT_EQ(port().setSpeed(1, kPhyPort, speed.speed), speed.speed == 1000 ? 0x10U : 0xFFFFFFFFU);
        EXPECT_THAT(caught_, ElementsAre(std::pair(speed.setter, speed.words)));
    }
    EXPECT_THAT(dev.takeFailures(), IsEmpty()) << "a refused setting prints nothing";
}

TEST_F(Phy, DuplexChangesTheSpeedsThatAreAllowed)
{
    const struct {
        const char *name;
        uint32_t duplex;
        Words before, after;
    } cases[] = {
        {"half on 10 and 100", 0, {1, 1, 1, 1, 1, 1, 1, 1}, {1, 1, 0, 1, 0, 1, 1, 1}},
        {"half on 100 full alone", 0, {0, 0, 0, 0, 1, 0, 0, 1}, {0, 1, 0, 1, 0, 0, 0, 1}},
        {"half on 10", 0, {0, 0, 1, 0, 0, 0, 1, 0}, {0, 1, 0, 0, 0, 0, 1, 0}},
        {"full on 10 half alone", 1, {0, 1, 0, 0, 0, 0, 0, 0}, {0, 1, 1, 0, 0, 0, 0, 0}},
        {"full on 100 half alone", 1, {9, 0, 0, 1, 0, 9, 9, 9}, {9, 1, 1, 1, 1, 9, 9, 9}},
        {"full on gigabit alone", 1, {0, 0, 0, 0, 0, 1, 0, 0}, {0, 1, 1, 0, 0, 1, 0, 0}},
        {"kept", 2, {8, 0, 7, 0, 6, 5, 4, 3}, {8, 0, 7, 0, 6, 5, 4, 3}},
    };
    catchAbility(kSetForced, 77);
    for (const auto &duplex : cases) {
        SCOPED_TRACE(duplex.name);
        answerAbility(kGetForced, duplex.before);
        caught_.clear();
        EXPECT_EQ(port().setDuplex(1, kPhyPort, duplex.duplex), 77U);
        EXPECT_THAT(caught_, ElementsAre(std::pair(kSetForced, duplex.after)));
    }
}

TEST_F(Phy, AFailedReadOfTheAbilitiesDoesNotStopASetting)
{
    answerAbility(kGetForced, {1, 0, 0, 1}, 22); // as far as it came
    catchAbility(kSetForced);
    EXPECT_EQ(port().setSpeed(1, kPhyPort, 10), 0U);
    EXPECT_EQ(port().setDuplex(1, kPhyPort, 1), 0U);
    EXPECT_THAT(caught_, ElementsAre(std::pair(kSetForced, Words{1, 1, 1, 0}),
                                     std::pair(kSetForced, Words{1, 1, 1, 1, 1})));
}

TEST_F(Phy, UnsupportedSpeedsAndDuplexesSetNothing)
{
    for (uint32_t speed : {0U, 1U, 2500U, 0xFFFFFFFFU}) {
        EXPECT_EQ(port().setSpeed(1, kPhyPort, speed), 8U);
        EXPECT_THAT(dev.takeFailures(), ElementsAre("2/8 unsupport speed (unit = 1, port = 3, speed = " +
                                                    std::to_string(speed) + ")."));
    }
    for (uint32_t duplex : {3U, 0xFFFFFFFFU}) {
        EXPECT_EQ(port().setDuplex(1, kPhyPort, duplex), 8U);
        EXPECT_THAT(dev.takeFailures(), ElementsAre("2/8 unsupport duplex mode (unit = 1, port = 3, duplex = " +
                                                    std::to_string(duplex) + ")."));
    }
    for (const std::string &call : dev.calls())
        EXPECT_EQ(call.find("_set("), std::string::npos) << call;
}

// ---- negotiation ----------------------------------------------------------------------------

TEST_F(Phy, NegotiationWritesBackTheAbilitiesOfItsMode)
{
    const Words negotiated = {0, 1, 0, 1, 0, 1, 0, 1};
    const Words forced = {3, 0, 1, 0, 1, 0, 1, 0};
    answerAbility(kGetAuto, negotiated);
    answerAbility(kGetForced, forced);
    catchAbility(kSetAuto);
    catchAbility(kSetForced);
    for (uint32_t enable : {1U, 0U, 2U, 0x101U})
        EXPECT_EQ(port().setAutonegEnable(1, kMacPort, enable), 0U);
    EXPECT_THAT(caught_, ElementsAre(std::pair(kSetAuto, negotiated), std::pair(kSetForced, forced),
                                     std::pair(kSetForced, forced), std::pair(kSetForced, forced)));
}

TEST_F(Phy, NegotiationReportsTheCallThatFailed)
{
    const struct {
        uint32_t enable;
        std::string call;
        const char *line;
        size_t made;
    } cases[] = {
        {1, kGetAuto, "2/22 get anto neg failed(unit = 1, port = 3, ret = 22).", 1},
        {1, kSetAuto, "2/22 set anto neg failed(unit = 1, port = 3, ret = 22).", 2},
        {0, kGetForced, "2/22 get force mode failed(unit = 1, port = 3, ret = 22).", 1},
        {2, kSetForced, "2/22 set force mode failed(unit = 1, port = 3, ret = 22).", 2},
    };
    for (const auto &failing : cases) {
        dev.forget();
        dev.fail(failing.call, 22);
        EXPECT_EQ(port().setAutonegEnable(1, kPhyPort, failing.enable), 4U);
        EXPECT_THAT(dev.takeFailures(), ElementsAre(failing.line));
        EXPECT_EQ(dev.calls().size(), failing.made);
        dev.failNone();
    }
}

TEST_F(Phy, NegotiationStateIsTheRecordsFirstWordAndOffWithoutPhy)
{
    answerAbility(kGetAuto, {42});
    uint32_t enable = kUntouched;
    EXPECT_EQ(port().getAutonegEnable(1, kPhyPort, &enable), 0U);
    EXPECT_EQ(enable, 42U);
    dev.forget();
    EXPECT_EQ(port().getAutonegEnable(1, kMacPort, &enable), 0U);
    EXPECT_EQ(enable, 0U);
    EXPECT_THAT(dev.calls(), ElementsAre("l2sw_switch_isExtPort(1, 16) = 0"));
}

// ---- abilities ------------------------------------------------------------------------------

using Bytes = std::array<uint8_t, 12>;

Bytes bytesOf(const LswmPortAbility &ability)
{
    Bytes bytes;
    std::memcpy(bytes.data(), &ability, sizeof bytes);
    return bytes;
}

LswmPortAbility scribbled()
{
    LswmPortAbility ability;
    std::memset(&ability, 0xEE, sizeof ability);
    return ability;
}

// Byte of the manager, word of the chip, register and bit of the partner.
constexpr struct {
    size_t byte, word;
    uint32_t reg, bit;
} kPlaces[] = {{0, 1, 5, 0x0020},  {1, 2, 5, 0x0040}, {2, 3, 5, 0x0080}, {3, 4, 5, 0x0100},
               {4, 5, 10, 0x0800}, {8, 6, 5, 0x0400}, {9, 7, 5, 0x0800}};

TEST_F(Phy, EachAbilityHasItsByteItsWordAndItsRegisterBit)
{
    for (const auto &place : kPlaces) {
        SCOPED_TRACE(place.byte);
        Bytes expected{};
        expected[place.byte] = 1;

        Words words{};
        words[0] = 1; // negotiation on is no ability
        words[place.word] = 0x101;
        answerAbility(kGetAuto, words);
        LswmPortAbility ability = scribbled();
        EXPECT_EQ(port().getAutonegAbility(1, kPhyPort, &ability), 0U);
        EXPECT_EQ(bytesOf(ability), expected) << "own";

        caught_.clear();
        catchAbility(kSetAuto, 66);
        EXPECT_EQ(port().setAdvert(1, kPhyPort, &ability), 66U);
        words[place.word] = 1;
        EXPECT_THAT(caught_, ElementsAre(std::pair(kSetAuto, words)));

        dev.script("l2sw_port_phyReg_get", [place](const Call &call) {
            *call.pointer<uint32_t>(3) = call.number(2) == place.reg ? place.bit : 0;
            return 0;
        });
        ability = scribbled();
        EXPECT_EQ(port().getRemoteAutonegAbility(1, kPhyPort, &ability), 0U);
        EXPECT_EQ(bytesOf(ability), expected) << "partner";
    }
}

TEST_F(Phy, PartnerOfEveryAbility)
{
    dev.script("l2sw_port_phyReg_get", [](const Call &call) {
        *call.pointer<uint32_t>(3) = call.number(2) == 5 ? 0x0DE1 : call.number(2) == 10 ? 0x0800 : 0xFFFF;
        return 0;
    });
    LswmPortAbility ability = scribbled();
    EXPECT_EQ(port().getRemoteAutonegAbility(1, kPhyPort, &ability), 0U);
    EXPECT_EQ(bytesOf(ability), (Bytes{1, 1, 1, 1, 1, 0, 0, 0, 1, 1, 0, 0}));
    EXPECT_THAT(dev.calls(), ElementsAre("l2sw_port_phyReg_get(1, 3, 5, &3553) = 0",
                                         "l2sw_port_phyReg_get(1, 3, 10, &2048) = 0"));
}

TEST_F(Phy, AdvertisingNothingStillNegotiates)
{
    catchAbility(kSetAuto);
    const LswmPortAbility none{};
    EXPECT_EQ(port().setAdvert(1, kPhyPort, &none), 0U);
    EXPECT_THAT(caught_, ElementsAre(std::pair(kSetAuto, Words{1})));
}

TEST_F(Phy, FailedAbilityReadsLeaveTheRecordCleared)
{
    LswmPortAbility ability = scribbled();
    dev.fail(kGetAuto, 22);
    EXPECT_EQ(port().getAutonegAbility(1, kPhyPort, &ability), 4U);
    EXPECT_EQ(bytesOf(ability), Bytes{});
    EXPECT_THAT(dev.takeFailures(), ElementsAre("2/22 get auto neg ability failed (unit = 1, port = 3)."));
    for (unsigned nth : {1U, 2U}) {
        ability = scribbled();
        dev.failNone();
        dev.fail("l2sw_port_phyReg_get", 23, nth);
        dev.forget();
        EXPECT_EQ(port().getRemoteAutonegAbility(1, kPhyPort, &ability), 4U);
        EXPECT_EQ(bytesOf(ability), Bytes{});
        EXPECT_EQ(dev.calls().size(), nth);
        EXPECT_THAT(dev.takeFailures(), ElementsAre("2/23 get phy reg failed (unit = 1, port = 3)."));
    }
}

} // namespace
