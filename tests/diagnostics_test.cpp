#include "port/port.h"

#include <gmock/gmock.h>

#include <array>
#include <bit>
#include <cstring>

#include "sim/chip/chip.h"
#include "tests/kit/device.h"
#include "tests/kit/guarded_text.h"

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using zrsim::Call;

namespace zrtest
{
namespace
{

// A script: success, with `value` in the argument of number `output`.
template <class T> auto answering(size_t output, T value)
{
    return [output, value](const Call &call) {
        *call.pointer<T>(output) = value;
        return 0U;
    };
}

// A port whose every reader answers a value of its own: PHY register n holds n * 0x101.
class Diagnostics : public RunningDeviceTest
{
protected:
    void SetUp() override
    {
        RunningDeviceTest::SetUp();
        port_ = &dev.ops().port;
    }

    void scriptReaders()
    {
        dev.script("l2sw_port_adminEnable_get", answering(2, 1));
        dev.script("l2sw_switch_isExtPort", [](const Call &) { return 1U; });
        dev.script("l2sw_port_phyStatus_get", [](const Call &call) {
            *call.pointer<uint32_t>(2) = 1;
            *call.pointer<uint32_t>(3) = 2;
            *call.pointer<uint32_t>(4) = 1;
            return 0U;
        });
        dev.script("l2sw_port_macStatus_get", answering(2, SdkMacLink{0, 0, 0, 1, {}}));
        dev.script("l2sw_port_macLocalLoopbackEnable_get", answering(2, 1));
        dev.script("l2sw_port_phyReg_get", [](const Call &call) {
            *call.pointer<uint32_t>(3) = call.number(2) * 0x101;
            return 0U;
        });
        dev.script("l2sw_port_phyAutoNegoAbility_get", answering(2, SdkPortAbility{1, 0, 1, 1, 0, 0, 0, 1}));
        dev.script("l2sw_port_snr_get", answering(2, SdkPortSnr{{11, 12, 13, 14, 15, 16, 17, 18}}));
        dev.script("l2sw_switch_ahb_read", [](const Call &call) {
            EXPECT_EQ(call.number(1), 0x9000084CU);
            *call.pointer<uint32_t>(2) = 0x37;
            return 0U;
        });
    }
    void failing(const char *name)
    {
        dev.script(name, [](const Call &) { return 22U; });
    }

    std::string dump(uint32_t unit = 1, uint32_t port = 3)
    {
        char text[2048];
        EXPECT_EQ(port_->getDebugInfo(unit, port, text, sizeof text), 0U);
        return text;
    }
    std::string stateDump()
    {
        char text[2048] = "";
        const uint32_t length = ZR_OP(HAL_PORT_DumpNormalDebugInfoZr)(1, 3, text, sizeof text);
        EXPECT_EQ(length, std::strlen(text));
        return text;
    }

    const ZrPortOps *port_ = nullptr;
};

constexpr char kRegisters[] = "\r\n-----------reg info unit 1 port 3--------------\r\n"
                              "0x00:0x0000 0x01:0x0101 0x02:0x0202 0x03:0x0303 \r\n"
                              "0x04:0x0404 0x05:0x0505 0x06:0x0606 0x07:0x0707 \r\n"
                              "0x08:0x0808 0x09:0x0909 0x0a:0x0a0a 0x0b:0x0b0b \r\n"
                              "0x0c:0x0c0c 0x0d:0x0d0d 0x0e:0x0e0e 0x0f:0x0f0f \r\n"
                              "0x10:0x1010 0x11:0x1111 0x12:0x1212 0x13:0x1313 \r\n"
                              "0x14:0x1414 0x15:0x1515 0x16:0x1616 0x17:0x1717 \r\n"
                              "0x18:0x1818 0x19:0x1919 0x1a:0x1a1a 0x1b:0x1b1b \r\n"
                              "0x1c:0x1c1c 0x1d:0x1d1d 0x1e:0x1e1e 0x1f:0x1f1f \r\n";
constexpr char kState[] = "\r\n-----------debug info unit 1 port 3--------------\r\n"
                          "enable:1 \r\n"
                          "phyLink:0 \r\n"
                          "macLink:1 \r\n"
                          "loop:1 \r\n"
                          "speed:1000 \r\n"
                          "duplex:1 \r\n"
                          "mdixStatus:0 \r\n"
                          "mdixCfg:2 \r\n"
                          "autoneg:1 \r\n"
                          "autonegStatus:0 \r\n"
                          "snr info: \r\n"
                          "snrA: 11 snrB: 12 snrC: 13 snrD: 14 trap: 17 status: 15\r\n"
                          "chip FS data 0x37 level: TT faster\r\n"
                          "local ability \r\n"
                          "  10MH:0 10MF:1 100MH:1 100MF:0 1000M:0 pause:0 pauseAsyn:1\r\n"
                          "remote ability \r\n"
                          "  10MH:0 10MF:0 100MH:0 100MF:1 1000M:1 pause:1 pauseAsyn:0\r\n";
constexpr char kLinkDown[] = "PhyReg 1-10: 0x00:0x0000 0x01:0x0101 0x02:0x0202 0x03:0x0303 0x04:0x0404 "
                             "0x05:0x0505 0x06:0x0606 0x07:0x0707 0x08:0x0808 0x09:0x0909 0x0a:0x0a0a ";

// ---- the debug dump ----------------------------------------------------------------------------

TEST_F(Diagnostics, DumpShowsRegistersThenState)
{
    scriptReaders();
    EXPECT_EQ(dump(), std::string(kRegisters) + kState);

    char text[2048];
    EXPECT_EQ(ZR_OP(HAL_PORT_DumpRegInfo)(1, 3, text, sizeof text), sizeof kRegisters - 1);
    EXPECT_STREQ(text, kRegisters);
}

TEST_F(Diagnostics, UnreadableRegistersShowTheLastReading)
{
    dev.script("l2sw_port_phyReg_get", [](const Call &call) {
        const uint32_t reg = call.number(2);
        if (reg == 0 || reg == 6 || reg == 7)
            return 22U;
        *call.pointer<uint32_t>(3) = 0x8000 + reg;
        return 0U;
    });
    char text[2048];
    ZR_OP(HAL_PORT_DumpRegInfo)(1, 3, text, sizeof text);
    EXPECT_THAT(text, HasSubstr("0x00:0x0000 0x01:0x8001 0x02:0x8002 0x03:0x8003 \r\n"
                                "0x04:0x8004 0x05:0x8005 0x06:0x8005 0x07:0x8005 \r\n0x08:0x8008 "));
}

TEST_F(Diagnostics, UnreadableStateShows255)
{
    const std::string noAbility =
        " ability \r\n  10MH:0 10MF:0 100MH:0 100MF:0 1000M:0 pause:0 pauseAsyn:0\r\n";
    const struct {
        const char *call;
        Texts lines;
        size_t failureLines;
    } cases[] = {
        {"l2sw_port_adminEnable_get", {"\nenable:255 \r\n"}, 1},
        {"l2sw_port_phyStatus_get", {"speed:255 \r\n", "duplex:255 \r\n"}, 2},
        {"l2sw_port_macStatus_get", {"macLink:255 \r\n"}, 1},
        {"l2sw_port_macLocalLoopbackEnable_get", {"loop:255 \r\n"}, 1},
        {"l2sw_port_phyAutoNegoAbility_get", {"autoneg:255 \r\n", "local" + noAbility}, 2},
        {"l2sw_port_phyReg_get", {"phyLink:255 \r\n", "mdixCfg:255 \r\n", "remote" + noAbility}, 2},
        {"l2sw_switch_ahb_read", {"chip FS data 0x0 level: unknow\r\n"}, 0},
    };
    for (const auto &unreadable : cases) {
        scriptReaders();
        failing(unreadable.call);
        const std::string text = stateDump();
        for (const std::string &line : unreadable.lines)
            EXPECT_THAT(text, HasSubstr(line)) << unreadable.call;
        EXPECT_THAT(text, AllOf(HasSubstr("mdixStatus:0 \r\n"), HasSubstr("autonegStatus:0 \r\n")));
        EXPECT_EQ(dev.takeFailures().size(), unreadable.failureLines) << unreadable.call;
    }
}

TEST_F(Diagnostics, WithoutSnrTheDumpHasNoState)
{
    scriptReaders();
    failing("l2sw_port_snr_get");
    EXPECT_EQ(dump(), kRegisters);
    char text[8] = "before";
    EXPECT_EQ(ZR_OP(HAL_PORT_DumpNormalDebugInfoZr)(1, 3, text, sizeof text), LSW_CHIP_FAILED);
    EXPECT_STREQ(text, "before");
    EXPECT_EQ(dev.takeFailures().size(), 4U);
}

TEST_F(Diagnostics, FsDataNamesItsLevelByBits2To15)
{
    scriptReaders();
    for (auto [data, line] : {std::pair(0x3BU, "data 0x3b level: FF\r\n"),
                              {0x20U, "data 0x20 level: TT normal\r\n"},
                              {0xABCD0026U, "data 0xabcd0026 level: TT slower\r\n"},
                              {0x28U, "data 0x28 level: SS\r\n"},
                              {0x10U, "data 0x10 level: unknow\r\n"},
                              {0x1038U, "data 0x1038 level: unknow\r\n"}}) {
        dev.script("l2sw_switch_ahb_read", answering(2, data));
        EXPECT_THAT(stateDump(), HasSubstr(line));
    }
}

// ---- texts and their buffers -------------------------------------------------------------------

// The dump's lines; a heading starts with an empty one that belongs to it.
Texts lines(const std::string &text)
{
    Texts pieces;
    for (size_t from = 0; from < text.size();) {
        const size_t to = text.find("\r\n", from + 2) + 2;
        pieces.push_back(text.substr(from, to - from));
        from = to;
    }
    return pieces;
}

// Register values wider than 16 bits make a row longer than the heading of the state, which must not follow
// when the row was cut.
TEST_F(Diagnostics, DumpIsCutAtALineAndStaysInItsBuffer)
{
    scriptReaders();
    for (bool wide : {false, true}) {
        if (wide)
            dev.script("l2sw_port_phyReg_get", answering(3, 0xFFFFFFFF));
        const std::string whole = dump();
        const Texts pieces = lines(whole);
        const Texts statePieces(pieces.begin() + 9, pieces.end());
        ASSERT_EQ(statePieces.size(), 18U);
        for (uint32_t size = 0; size < whole.size() + 3; ++size) {
            GuardedText both(size);
            EXPECT_EQ(port_->getDebugInfo(1, 3, both.data(), size), 0U);
            ASSERT_EQ(both.text(), fitting(pieces, size)) << size;
            GuardedText state(size);
            const uint32_t length = ZR_OP(HAL_PORT_DumpNormalDebugInfoZr)(1, 3, state.data(), size);
            ASSERT_EQ(state.text(), fitting(statePieces, size)) << size;
            EXPECT_EQ(length, state.text().size()) << size;
            dev.forget();
        }
    }
}

TEST_F(Diagnostics, LinkDownTextStaysBetweenOffsetAndSize)
{
    scriptReaders();
    const std::string whole = kLinkDown;
    Texts pieces = {"PhyReg 1-10: "};
    for (size_t at = pieces[0].size(); at < whole.size(); at += 12)
        pieces.push_back(whole.substr(at, 12));
    ASSERT_EQ(pieces.size(), 12U);
    const uint32_t longest = static_cast<uint32_t>(whole.size()) + 2;
    for (uint32_t size = 0; size <= longest; ++size) {
        for (uint32_t offset : {0U, 1U, 40U, size - 1, size, size + 1, 0x80000000U, 0xFFFFFFFFU}) {
            GuardedText buffer(size);
            EXPECT_EQ(port_->getLinkDownPhyReg(1, 3, buffer.data(), size, offset), 0U);
            ASSERT_EQ(buffer.text(offset), offset < size ? fitting(pieces, size - offset) : "")
                << size << " " << offset;
            dev.forget();
        }
    }
}

TEST_F(Diagnostics, LinkDownTextEndsAtTheFirstUnreadableRegister)
{
    scriptReaders();
    dev.script("l2sw_port_phyReg_get", [](const Call &call) {
        *call.pointer<uint32_t>(3) = 0x12345678;
        return call.number(2) == 2 ? 22U : 0U;
    });
    char text[256];
    EXPECT_EQ(port_->getLinkDownPhyReg(1, 3, text, sizeof text, 0), 4U);
    EXPECT_STREQ(text, "PhyReg 1-10: 0x00:0x5678 0x01:0x5678 ");
    EXPECT_EQ(dev.calls().size(), 3U);
    // The status does not depend on the room.
    EXPECT_EQ(port_->getLinkDownPhyReg(1, 3, text, 4, 4), 4U);
    EXPECT_EQ(port_->getLinkDownPhyReg(1, 3, text, 0, 0), 4U);
}

// ---- registers ---------------------------------------------------------------------------------

TEST_F(Diagnostics, PhyRegistersAreReachedOverTheirPage)
{
    uint16_t value = 0;
    dev.script("l2sw_port_phyReg_get", [](const Call &call) {
        *call.pointer<uint32_t>(3) = 0xABCD0040 + call.number(2);
        return 0U;
    });
    dev.script("l2sw_port_phyReg_set", [](const Call &) { return 0U; });
    EXPECT_EQ(port_->regRead(2, 4, 99, 16, &value), 0U);
    EXPECT_EQ(value, 0x50);
    EXPECT_EQ(port_->regRead(2, 4, 99, 0x30011, &value), 0U);
    EXPECT_EQ(value, 0x51);
    EXPECT_EQ(port_->regWrite(2, 4, 99, 16, 0xBEEF), 0U);
    EXPECT_EQ(port_->regWrite(2, 4, 99, 0xFFFF0012, 0xBEEF), 0U);
    EXPECT_THAT(
        dev.calls(),
        ElementsAre("l2sw_port_phyReg_get(2, 4, 16, &0xabcd0050) = 0", "l2sw_port_phyReg_set(2, 4, 31, 3) = 0",
                    "l2sw_port_phyReg_get(2, 4, 17, &0xabcd0051) = 0", "l2sw_port_phyReg_set(2, 4, 31, 0) = 0",
                    "l2sw_port_phyReg_set(2, 4, 16, 0xbeef) = 0", "l2sw_port_phyReg_set(2, 4, 31, 0xffff) = 0",
                    "l2sw_port_phyReg_set(2, 4, 18, 0xbeef) = 0", "l2sw_port_phyReg_set(2, 4, 31, 0) = 0"));
}

TEST_F(Diagnostics, MdiModeComesFromTheTopBitsOfRegister16)
{
    const struct {
        uint32_t value, readStatus;
        uint32_t status, mode;
    } cases[] = {{0x0000, 0, 0, 2},      {0x3FFF, 0, 0, 2},   {0x4000, 0, 0, 0},
                 {0x7FFF, 0, 0, 0},      {0xC000, 0, 0, 1},   {0xC000, 0xFFFFFFFF, 0xFFFFFFFF, 1},
                 {0x1C000, 0, 0, 1},     {0x4000, 22, 22, 0}, {0x8000, 0, 8, 0xEEEE},
                 {0xBFFF, 22, 8, 0xEEEE}};
    for (const auto &reg16 : cases) {
        dev.script("l2sw_port_phyReg_get", [&](const Call &call) {
            EXPECT_EQ(call.number(2), 16U);
            *call.pointer<uint32_t>(3) = reg16.value;
            return reg16.readStatus;
        });
        uint32_t mode = 0xEEEE;
        EXPECT_EQ(ZR_OP(HAL_PORT_GetMdixModeZr)(1, 3, &mode), reg16.status) << reg16.value;
        EXPECT_EQ(mode, reg16.mode) << reg16.value;
        EXPECT_EQ(dev.takeFailures(),
                  reg16.status == 8 ? Texts{"2/8 unknow mdi stat (unit = 1, port = 3)."} : Texts{});
    }
}

TEST_F(Diagnostics, SnrStatusChangesPlacesOnTheWay)
{
    scriptReaders();
    LswmPortSnr snr{};
    ASSERT_EQ(port_->getSnr(1, 3, &snr), 0U);
    EXPECT_THAT((std::bit_cast<std::array<uint32_t, 8>>(snr)), ElementsAre(11, 12, 13, 14, 16, 15, 17, 18));
}

TEST_F(Diagnostics, KhMarkerMustBeWhole)
{
    for (auto [held, whole] : {std::pair(0x55AAU, 1U), {0x155AAU, 0U}, {0x55ABU, 0U}, {0U, 0U}}) {
        dev.script("l2sw_getAsicReg", answering(2, held));
        uint32_t intact = 7;
        ASSERT_EQ(port_->getKhCheck(1, 3, &intact), 0U);
        EXPECT_EQ(intact, whole) << held;
        EXPECT_EQ(dev.recorded().back().number(1), 0x3DE3U);
    }
}

// ---- chip identifier, LEDs, link-scan work-around ----------------------------------------------

TEST_F(Diagnostics, SingleCallsReachTheSdkWithTheirArguments)
{
    uint32_t identifier = 0;
    EXPECT_EQ(port_->getChipId(1, 3, &identifier), 0U);
    EXPECT_EQ(identifier, 0x5109U);
    EXPECT_EQ(port_->setLedForce(2, 15, 6, 7), 0U);
    g_lswmInfo[1].port[2].kind = 2;
    g_lswmInfo[1].port[3].kind = 1; // not this port
    EXPECT_EQ(port_->linkScanWar(1, 2), 0U);
    EXPECT_EQ(port_->linkScanWar(1, 3), 0U);
    EXPECT_THAT(dev.calls(),
                ElementsAre("l2sw_getAsicReg(1, 4864, &0x5109) = 0", "l2sw_port_led_force_set(2, 15, 6, 7) = 0",
                            "l2sw_gephy_workaround_04_parallel(1, 2, 0) = 0"));
}

} // namespace
} // namespace zrtest
