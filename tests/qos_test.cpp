// QoS start-up: what reaches the chip and in which order.
#include <fmt/format.h>
#include <gmock/gmock.h>

#include "platform/manager.h"
#include "qos/qos.h"
#include "tests/kit/device.h"

namespace zrtest
{
namespace
{

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class QosTest : public RunningDeviceTest
{
protected:
    // Every later call of `name` succeeds and leaves its record, the last argument, in `records`.
    void capture(const std::string &name)
    {
        dev.script(name, [this](const zrsim::Call &call) {
            const auto *record = call.pointer<SdkQosRecord>(call.args.size() - 1);
            records.emplace_back(std::begin(record->word), std::end(record->word));
            return 0;
        });
    }
    std::vector<std::vector<uint32_t>> records;
};

TEST_F(QosTest, StartUpProgramsTheWholeUnitInOrder)
{
    Texts expected = {"l2sw_qos_init(1, 8) = 0", "l2sw_Flow_Control_Pause_All_set(1, 1535) = 0",
                      "l2sw_qos_priSel_set(1, 0, 32:{01000000050000000700000006}) = 0"};
    for (uint32_t port : {0, 1, 2, 3, 4})
        expected.push_back(fmt::format("l2sw_qos_portPriSelIndex_set(1, {}, 0) = 0", port));
    expected.push_back("l2sw_qos_priMap_set(1, 8, "
                       "32:{0000000001000000020000000300000004000000050000000600000007}) = 0");
    for (uint32_t dscp = 0; dscp < 64; ++dscp)
        expected.push_back(fmt::format("l2sw_qos_dscpPriRemap_set(1, {}, {}) = 0", dscp, dscp / 8));
    for (uint32_t p = 0; p < 8; ++p)
        expected.push_back(fmt::format("l2sw_qos_1pPriRemap_set(1, {}, {}) = 0", p, p));
    for (uint32_t port : {0, 1, 2, 3, 4, 15, 16, 17})
        expected.push_back(fmt::format("l2sw_qos_schedulingQueue_set(1, {}, 32:{{}}) = 0", port));

    EXPECT_EQ(dev.ops().qos.init(1), 0U);
    EXPECT_EQ(dev.calls(), expected);
}

TEST_F(QosTest, EveryPortOfBothSetsIsBoundInAscendingOrder)
{
    dev.script("l2sw_qos_portPriSelIndex_set", [](const zrsim::Call &) { return 0; });
    dev.setPorts(1, 1, {127, 0, 31, 32});
    dev.setPorts(1, 2, {0, 96});
    EXPECT_EQ(ZR_OP(ZR_QOS_PortPriSelInit)(1), 0U);
    std::vector<uint32_t> ports;
    for (const zrsim::Call &call : dev.recorded())
        ports.push_back(call.number(1));
    EXPECT_THAT(ports, ElementsAre(0, 31, 32, 127, 0, 96));

    dev.forget();
    dev.setPorts(1, 0, {});
    dev.setPorts(1, 1, {});
    dev.setPorts(1, 2, {});
    EXPECT_EQ(ZR_OP(ZR_QOS_PortPriSelInit)(1), 0U);
    EXPECT_EQ(ZR_OP(ZR_QOS_QueScheduleInit)(1), 0U);
    EXPECT_THAT(dev.calls(), IsEmpty());
}

TEST_F(QosTest, APriorityMapIsCopiedAsFarAsItGoes)
{
    const uint32_t map[9] = {7, 6, 5, 4, 3, 2, 1, 9, 8};
    capture("l2sw_qos_priMap_set");
    EXPECT_EQ(ZR_OP(HAL_QOS_SetPriMapZr)(1, 8, map, 8), 0U);
    EXPECT_EQ(ZR_OP(HAL_QOS_SetPriMapZr)(1, 8, map, 3), 0U);
    EXPECT_EQ(ZR_OP(HAL_QOS_SetPriMapZr)(1, 8, map, 0), 0U);
    EXPECT_THAT(records, ElementsAre(ElementsAre(7, 6, 5, 4, 3, 2, 1, 9), ElementsAre(7, 6, 5, 0, 0, 0, 0, 0),
                                     ElementsAre(0, 0, 0, 0, 0, 0, 0, 0)));
    records.clear();
    EXPECT_EQ(ZR_OP(HAL_QOS_SetPriMapZr)(1, 8, map, 9), 1U);
    EXPECT_EQ(ZR_OP(HAL_QOS_SetPriMapZr)(1, 8, map, 0x40000001), 1U) << "whose bytes wrap to 4";
    EXPECT_EQ(ZR_OP(HAL_QOS_SetPriMapZr)(1, 8, nullptr, 8), 4U);
    dev.fail("memcpy_s", 1);
    EXPECT_EQ(ZR_OP(HAL_QOS_SetPriMapZr)(1, 8, map, 8), 4U);
    EXPECT_THAT(records, IsEmpty());
}

TEST_F(QosTest, SelectionAndWeightRecordsHoldTheCallersValues)
{
    capture("l2sw_qos_priSel_set");
    capture("l2sw_qos_schedulingQueue_set");
    const uint32_t values[8] = {11, 12, 13, 14, 15, 16, 17, 18};
    EXPECT_EQ(ZR_OP(HAL_QOS_SetPriSelZr)(1, 1, values), 0U);
    EXPECT_EQ(ZR_OP(HAL_QOS_SetPortcheduleWeightZr)(1, 9, values), 0U);
    EXPECT_THAT(records, ElementsAre(ElementsAre(11, 12, 13, 14, 15, 0, 0, 0),
                                     ElementsAre(11, 12, 13, 14, 15, 16, 17, 18)));

    // A status with the top bit set counts as a failure of the library's own.
    dev.clearInjections();
    dev.fail("l2sw_qos_schedulingQueue_set", 0x80000000);
    EXPECT_EQ(ZR_OP(HAL_QOS_SetPortcheduleWeightZr)(1, 9, values), LSW_CHIP_FAILED);
}

} // namespace
} // namespace zrtest
