// Link state of ports, and the links that both ends of a cable agree on.
#include <gmock/gmock.h>

#include <array>
#include <cstring>
#include <functional>

#include "port/phy.h"
#include "port/port.h"
#include "sim/chip/chip.h"
#include "sim/command.h"
#include "tests/kit/device.h"

namespace
{

using ::testing::ElementsAre;
using zrsim::Call;

constexpr uint32_t kUntouched = 0xEEEEEEEE;
constexpr uint32_t kPhyPort = 3;
constexpr uint32_t kMacPort = 16;

using Words = std::array<uint32_t, 8>;

class Link : public zrtest::RunningDeviceTest
{
protected:
    const ZrPortOps &port() { return dev.ops().port; }

    void board(const std::string &line)
    {
        bool understood = false;
        const std::string answer = zrsim::runBoardLine(1, line, understood);
        EXPECT_TRUE(understood) << line << ": " << answer;
    }
};

TEST_F(Link, LinkIsTheSecondReadingOfTheStatusRegister)
{
    const struct {
        uint32_t first, second, link;
    } cases[] = {{0, 4, 1}, {4, 0, 0}, {4, 4, 1}, {0, 0xFFFB, 0}};
    for (const auto &reading : cases) {
        dev.forget();
        dev.script("l2sw_port_phyReg_get", [reading, n = 0](const Call &call) mutable {
            EXPECT_EQ(call.number(2), 1U);
            *call.pointer<uint32_t>(3) = n++ == 0 ? reading.first : reading.second;
            return 0;
        });
        uint32_t link = kUntouched;
        EXPECT_EQ(port().getLinkStatus(1, kPhyPort, &link), 0U);
        EXPECT_EQ(link, reading.link);
        EXPECT_EQ(dev.calls().size(), 3U);
    }
}

TEST_F(Link, LinkWithoutPhyIsTheForcedOne)
{
    for (uint32_t state : {0U, 1U, 2U}) {
        dev.script("l2sw_port_macForceLinkExt_get", [state](const Call &call) {
            const Words record = {1, 1, 1, state};
            std::memcpy(call.pointer<void>(3), record.data(), sizeof record);
            return 0;
        });
        uint32_t link = kUntouched;
        EXPECT_EQ(port().getLinkStatus(1, kMacPort, &link), 0U);
        EXPECT_EQ(link, state == 1);
        dev.script("l2sw_port_macStatus_get", [state](const Call &call) {
            const Words record = {1, 1, 1, state};
            std::memcpy(call.pointer<void>(2), record.data(), sizeof record);
            return 0;
        });
        link = kUntouched;
        EXPECT_EQ(ZR_OP(HAL_PHY_GetMacLinkStatusZr)(1, kPhyPort, &link), 0U);
        EXPECT_EQ(link, state == 1);
    }
}

TEST_F(Link, FailedLinkReadStoresWhatItHas)
{
    uint32_t link = kUntouched;
    dev.script("l2sw_port_phyReg_get", [n = 0](const Call &call) mutable {
        *call.pointer<uint32_t>(3) = 4;
        return n++ == 0 ? 0xFFFFFFFFU : 5U; // the sum wraps
    });
    EXPECT_EQ(port().getLinkStatus(1, kPhyPort, &link), LSW_CHIP_FAILED);
    EXPECT_EQ(link, 1U);
    EXPECT_THAT(dev.takeFailures(), ElementsAre("2/4 get link status failed (unit = 1, port = 3).",
                                                "2/4 ZR PHY GetLinkstatusZr ret = 4, unitId = 1, portId = 3"));
}

// ---- both ends of a cable -------------------------------------------------------------------

// What a port ends up with, seen through the table.
std::string seen(const ZrPortOps &ops)
{
    uint32_t link = 9;
    uint32_t speed = 9;
    uint32_t duplex = 9;
    EXPECT_EQ(ops.getLinkStatus(1, kPhyPort, &link), 0U);
    EXPECT_EQ(ops.getSpeed(1, kPhyPort, &speed), 0U);
    EXPECT_EQ(ops.getDuplex(1, kPhyPort, &duplex), 0U);
    return link == 0 ? "down" : std::to_string(speed) + (duplex == 1 ? " full" : " half");
}

TEST_F(Link, LinkFollowsWhatBothSidesAllow)
{
    using Setting = std::function<void(const ZrPortOps &)>;
    auto speed = [](uint32_t value) {
        return [value](const ZrPortOps &ops) { EXPECT_EQ(ops.setSpeed(1, kPhyPort, value), 0U); };
    };
    auto forced = [](uint32_t value, uint32_t duplex) {
        return [value, duplex](const ZrPortOps &ops) {
            EXPECT_EQ(ops.setSpeed(1, kPhyPort, value), 0U);
            EXPECT_EQ(ops.setDuplex(1, kPhyPort, duplex), 0U);
        };
    };
    auto advert = [](LswmPortAbility ability) {
        return [ability](const ZrPortOps &ops) { EXPECT_EQ(ops.setAdvert(1, kPhyPort, &ability), 0U); };
    };
    const struct {
        const char *name;
        Setting own;
        const char *partner;
        const char *link;
    } cases[] = {
        {"both gigabit", speed(1000), "auto 10h 10f 100h 100f 1000f", "1000 full"},
        {"partner without gigabit", speed(1000), "auto 10h 10f 100h 100f", "100 full"},
        {"partner half only", speed(1000), "auto 10h 100h", "100 half"},
        {"own abilities decide", advert({0, 1, 0, 0, 0, {}, 0, 0, {}}), "auto 10h 10f 100h 100f 1000f",
         "10 full"},
        {"nothing in common", advert({0, 0, 0, 0, 1, {}, 0, 0, {}}), "auto 10h 10f 100h 100f", "down"},
        {"nothing advertised", advert({}), "auto 10h 10f 100h 100f 1000f", "down"},
        {"forced full against negotiation", forced(100, 1), "auto 10h 10f 100h 100f 1000f", "100 full"},
        {"forced half", forced(100, 0), "auto 10h 10f 100h 100f 1000f", "100 half"},
        {"forced 10", forced(10, 0), "auto 10h 10f 100h 100f 1000f", "10 half"},
        {"forced speed that the partner lacks", forced(100, 1), "auto 10h 10f", "down"},
        {"a forced partner is taken as half duplex", speed(1000), "forced 100f", "100 half"},
        {"both forced alike", forced(10, 1), "forced 10f", "10 full"},
        {"both forced apart", forced(10, 1), "forced 100f", "down"},
    };
    EXPECT_EQ(port().setEnable(1, kPhyPort, 1), 0U);
    for (const auto &ends : cases) {
        SCOPED_TRACE(ends.name);
        board("link 3 down");
        board(std::string("partner 3 ") + ends.partner);
        ends.own(port());
        EXPECT_EQ(seen(port()), "down");
        board("link 3 up");
        EXPECT_EQ(seen(port()), ends.link);
    }
    board("link 3 down");
}

TEST_F(Link, BoardRefusesWhatTheWorldCannotDo)
{
    const std::string before = zrsim::show(dev.chip(1).ports.forcedLink(kMacPort));
    for (const char *line :
         {"link 16 up", "link 9 up", "link 40 up", "link 3 sideways", "link 3 up now", "link 3",
          "mac 3 100 full up", "mac 16 2500 full up", "mac 16 100 up", "partner 16 auto 100f",
          "partner 3 forced 1000f", "partner 3 auto 100x", "partner 3"}) {
        bool understood = true;
        EXPECT_NE(zrsim::runBoardLine(1, line, understood), "") << line;
        EXPECT_FALSE(understood) << line;
    }
    EXPECT_EQ(zrsim::show(dev.chip(1).ports.forcedLink(kMacPort)), before);
    board("mac 16 100 half up");
    uint32_t speed = 0;
    EXPECT_EQ(port().getSpeed(1, kMacPort, &speed), 0U);
    EXPECT_EQ(speed, 100U);
    board("mac 16 1000 full up");
}

} // namespace
