// QoS start-up: what reaches the chip and in which order, and what a failure prints on its way up.
#include <fmt/format.h>
#include <gmock/gmock.h>

#include <cstring>

#include "platform/manager.h"
#include "qos/qos.h"
#include "tests/kit/device.h"

namespace zrtest
{
namespace
{

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

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

TEST_F(QosTest, AFrameLandsInTheQueueOfItsPriority)
{
    ASSERT_EQ(dev.ops().qos.init(2), 0U);
    const zrsim::Qos &qos = dev.chip(2).qos;
    EXPECT_EQ(qos.classify(0, {}, {}).queue, 0U);
    EXPECT_EQ(qos.classify(0, 6, {}).queue, 6U);
    EXPECT_EQ(qos.classify(0, 6, 46).queue, 5U) << "DSCP weighs more than 802.1p";
    const std::pair<uint32_t, uint32_t> queueOfDscp[] = {{0, 0},  {7, 0},  {8, 1}, {40, 5},
                                                         {55, 6}, {56, 7}, {63, 7}};
    for (auto [dscp, queue] : queueOfDscp)
        EXPECT_EQ(qos.classify(3, {}, dscp).queue, queue) << dscp;
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

// Which call fails, which of its kind, what the SDK answers; what the manager sees; calls made.
struct Cascade {
    const char *call;
    unsigned nth;
    uint32_t sdk;
    uint32_t status;
    size_t calls;
    Texts lines;
};

TEST_F(QosTest, AFailurePrintsALineOnEachLevelAndStops)
{
    const Cascade cascades[] = {
        {"l2sw_qos_init",
         1,
         22,
         4,
         1,
         {"5/4 HAL QOS chip init failed Zr unitId = 1, ret = 4",
          "5/4 Zr qos init failed unitId = 1, ret=0x4."}},
        {"l2sw_Flow_Control_Pause_All_set",
         1,
         22,
         22,
         2,
         {"5/22 Set SysBasedFCThresh Zr unitId = 1, ret = 22",
          "5/22 Mmu buffer init failed unitId = 1, ret = 22"}},
        {"l2sw_qos_priSel_set",
         1,
         22,
         22,
         3,
         {"5/22 HAL QOS Set PriSel Zr unitId = 1, ret = 22", "5/22 PriSel Init Zr unitId = 1, ret = 22",
          "5/22 Zr qos egress init failed unitId = 1, ret=0x16."}},
        {"l2sw_qos_portPriSelIndex_set",
         4,
         22,
         22,
         7,
         {"5/22 HAL QOS Set PriSel Zr unitId = 1, ret = 22, portId = 3",
          "5/22 PortPriSel Init Zr unitId = 1, ret = 22",
          "5/22 Zr qos egress init failed unitId = 1, ret=0x16."}},
        {"l2sw_qos_priMap_set",
         1,
         0xFFFFFFFF,
         0xFFFFFFFF,
         9,
         {"5/4294967295 HAL QOS Set PriMap Zr unitId = 1, ret = 4294967295",
          "5/4294967295 PriMap Init Zr unitId = 1, ret = 4294967295",
          "5/4294967295 QueueMap Init Zr unitId = 1, ret = 4294967295",
          "5/4294967295 Zr qos egress init failed unitId = 1, ret=0xffffffff."}},
        {"l2sw_qos_dscpPriRemap_set",
         47,
         22,
         22,
         56,
         {"5/22 HAL QOS Set DscpPriMap Zr unitId = 1, loop = 46, ret = 22",
          "5/22 DscpPriMap Init Zr unitId = 1, ret = 22", "5/22 QueueMap Init Zr unitId = 1, ret = 22",
          "5/22 Zr qos egress init failed unitId = 1, ret=0x16."}},
        {"l2sw_qos_1pPriRemap_set",
         8,
         22,
         22,
         81,
         {"5/22 HAL QOS Set 1pPriMap Zr unitId = 1, loop = 7, ret = 22",
          "5/22 PqPriMap Init Zr unitId = 1, ret = 22", "5/22 QueueMap Init Zr unitId = 1, ret = 22",
          "5/22 Zr qos egress init failed unitId = 1, ret=0x16."}},
        {"l2sw_qos_schedulingQueue_set",
         6,
         3,
         3,
         87,
         {"5/3 HAL QOS queue schedule init failed Zr unitId = 1, portId = 15, ret = 0x3",
          "5/3 Queue schedule Init Zr unitId = 1, ret = 3",
          "5/3 Zr qos egress init failed unitId = 1, ret=0x3."}},
        {"l2sw_qos_schedulingQueue_set",
         1,
         0x80000000,
         4,
         82,
         {"5/4 HAL QOS queue schedule init failed Zr unitId = 1, portId = 0, ret = 0x4",
          "5/4 Queue schedule Init Zr unitId = 1, ret = 4",
          "5/4 Zr qos egress init failed unitId = 1, ret=0x4."}},
    };
    for (const Cascade &cascade : cascades) {
        SCOPED_TRACE(fmt::format("{} {} = {:#x}", cascade.call, cascade.nth, cascade.sdk));
        dev.forget();
        dev.fail(cascade.call, cascade.sdk, cascade.nth);
        EXPECT_EQ(dev.ops().qos.init(1), cascade.status);
        EXPECT_EQ(dev.takeFailures(), cascade.lines);
        EXPECT_THAT(dev.calls(), SizeIs(cascade.calls));
        dev.clearInjections();
    }
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
    records.clear();
    EXPECT_EQ(ZR_OP(HAL_QOS_SetPriSelZr)(1, 1, nullptr), 2U);
    EXPECT_EQ(ZR_OP(HAL_QOS_SetPortcheduleWeightZr)(1, 9, nullptr), 2U);
    EXPECT_THAT(records, IsEmpty());
}

TEST_F(QosTest, AUnitWithoutUnitInformationIsRefusedBeforeTheChip)
{
    for (uint32_t unit : {3U, 256U, 0xFFFFFFFFU}) {
        EXPECT_EQ(dev.ops().qos.init(unit), 1U);
        EXPECT_EQ(ZR_OP(ZR_QOS_EgrInit)(unit), 1U);
        EXPECT_EQ(ZR_OP(ZR_QOS_PortPriSelInit)(unit), 1U);
        EXPECT_EQ(ZR_OP(ZR_QOS_QueScheduleInit)(unit), 1U);
    }
    EXPECT_THAT(dev.calls(), IsEmpty());
}

} // namespace
} // namespace zrtest
