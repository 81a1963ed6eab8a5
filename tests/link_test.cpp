// Link state of ports as the chip reads it; devices/links.json has what both ends of a cable agree on.
#include <gmock/gmock.h>

#include <array>
#include <cstring>

#include "port/phy.h"
#include "port/port.h"
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

} // namespace
