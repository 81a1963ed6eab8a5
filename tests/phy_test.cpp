// Speed, duplex, negotiation and abilities of ports.
#include "port/phy.h"

#include <gmock/gmock.h>

#include <array>
#include <bit>
#include <cstring>
#include <utility>

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

Words wordsOf(const Call &call, size_t argument = 2)
{
    Words words;
    std::memcpy(words.data(), call.pointer<void>(argument), sizeof words);
    return words;
}

class Phy : public zrtest::RunningDeviceTest
{
protected:
    const ZrPortOps &port() { return dev.ops().port; }

    // Answers a call by words of its record, which the library cleared before.
    void answerAbility(const std::string &name, const Words &words, uint32_t status = 0)
    {
        dev.script(name, [words, status](const Call &call) {
            EXPECT_EQ(wordsOf(call), Words{}) << call.name;
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
    auto takeCaught() { return std::exchange(caught_, {}); }

private:
    std::vector<std::pair<std::string, Words>> caught_; // setter and its words
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
    // Any nonzero answer means a PHY.
    dev.script("l2sw_switch_isExtPort", [](const Call &call) { return call.number(1) == 3 ? 0x80000000 : 0; });
    for (const auto &code : codes) {
        dev.script("l2sw_port_phyStatus_get", [code](const Call &call) {
            EXPECT_EQ(call.number(1), kPhyPort);
            *call.pointer<uint32_t>(3) = code.speedCode;
            *call.pointer<uint32_t>(4) = code.duplexCode;
            return 0;
        });
        dev.script("l2sw_port_macForceLinkExt_get", [code](const Call &call) {
            EXPECT_EQ(call.number(1), kMacPort);
            EXPECT_EQ(wordsOf(call, 3), Words{});
            *call.pointer<SdkMacLink>(3) = {9, code.speedCode, code.duplexCode, 9, {}};
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
        uint32_t link = kUntouched;
        EXPECT_EQ(port().getLinkStatus(1, kMacPort, &link), 0U);
    }
}

// ---- setting speed and duplex ---------------------------------------------------------------

TEST_F(Phy, SpeedAllowsEverythingUpToItAndKeepsTheRest)
{
    const struct {
        uint32_t speed;
        std::string setter;
        Words words;
        uint32_t status;
    } cases[] = {
        {10, kSetForced, {7, 1, 1, 0, 0, 0, 5, 6}, 0xFFFFFFFF},
        {100, kSetForced, {7, 1, 1, 1, 1, 0, 5, 6}, 0xFFFFFFFF},
        {1000, kSetAuto, {7, 1, 1, 1, 1, 1, 5, 6}, 0x10},
    };
    answerAbility(kGetForced, {7, 0, 3, 0, 3, 3, 5, 6});
    for (const auto &speed : cases) {
        catchAbility(speed.setter, speed.status);
        EXPECT_EQ(port().setSpeed(1, kPhyPort, speed.speed), speed.status);
        EXPECT_THAT(takeCaught(), ElementsAre(std::pair(speed.setter, speed.words)));
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
        EXPECT_EQ(port().setDuplex(1, kPhyPort, duplex.duplex), 77U);
        EXPECT_THAT(takeCaught(), ElementsAre(std::pair(kSetForced, duplex.after)));
    }
}

TEST_F(Phy, AFailedReadOfTheAbilitiesDoesNotStopASetting)
{
    answerAbility(kGetForced, {1, 0, 0, 1}, 22); // as far as it came
    catchAbility(kSetForced);
    EXPECT_EQ(port().setSpeed(1, kPhyPort, 10), 0U);
    EXPECT_EQ(port().setDuplex(1, kPhyPort, 1), 0U);
    EXPECT_THAT(takeCaught(), ElementsAre(std::pair(kSetForced, Words{1, 1, 1, 0}),
                                          std::pair(kSetForced, Words{1, 1, 1, 1, 1})));
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
    EXPECT_THAT(takeCaught(), ElementsAre(std::pair(kSetAuto, negotiated), std::pair(kSetForced, forced),
                                          std::pair(kSetForced, forced), std::pair(kSetForced, forced)));
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

using Bytes = std::array<uint8_t, sizeof(LswmPortAbility)>;

// What a getter of abilities writes over a scribbled record.
Bytes bytesOf(uint32_t (*get)(uint32_t, uint32_t, LswmPortAbility *))
{
    LswmPortAbility ability;
    std::memset(&ability, 0xEE, sizeof ability);
    EXPECT_EQ(get(1, kPhyPort, &ability), 0U);
    return std::bit_cast<Bytes>(ability);
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
        EXPECT_EQ(bytesOf(port().getAutonegAbility), expected) << "own";

        catchAbility(kSetAuto, 66);
        const auto ability = std::bit_cast<LswmPortAbility>(expected);
        EXPECT_EQ(port().setAdvert(1, kPhyPort, &ability), 66U);
        words[place.word] = 1;
        EXPECT_THAT(takeCaught(), ElementsAre(std::pair(kSetAuto, words)));

        dev.script("l2sw_port_phyReg_get", [place](const Call &call) {
            *call.pointer<uint32_t>(3) = call.number(2) == place.reg ? place.bit : 0;
            return 0;
        });
        EXPECT_EQ(bytesOf(port().getRemoteAutonegAbility), expected) << "partner";
    }
    const LswmPortAbility none{};
    EXPECT_EQ(port().setAdvert(1, kPhyPort, &none), 66U);
    EXPECT_THAT(takeCaught(), ElementsAre(std::pair(kSetAuto, Words{1}))) << "still negotiates";
}

} // namespace
