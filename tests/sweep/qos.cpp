// QoS, meters, storm control, reserved multicast addresses, and the meter and statistics records.
#include "qos/qos.h"
#include "qos/hsec.h"
#include "qos/rma.h"
#include "qos/stormctl.h"
#include "records/acl_records.h"
#include "records/meter_records.h"
#include "records/stat_records.h"
#include "tests/sweep/sweep.h"

namespace zrtest
{
namespace
{

const uint32_t kEight[8] = {0, 1, 2, 3, 4, 5, 6, 7};
const LswmCar kCar{0, 1000, 1000};
const LswmStormControl kStorm{0, 2, 1, 7};
const LswmStormControl kNoStorm{0, 3, 1, 7};

void meters()
{
    ZR_OP(COM_HSEC_MeterInfoInit)(1, 0, 0, 64, 1);
}

void recordedMeter()
{
    meters();
    ZR_OP(COM_HSEC_SetMeterEntry)(1, 0, 3, 9);
}

void recordedStat()
{
    ZR_OP(COM_QOS_StatInfoInit)(1, 2, 4);
    ZR_OP(COM_QOS_SetStatEntry)(1, 2, 17, 5);
}

void countedRule()
{
    ZR_OP(COM_ACL_RuleInfoInit)(1, 96);
    ZR_OP(COM_ACL_CounterInfoInit)(1, 32);
    ZR_OP(COM_ACL_SetRuleCounterMapEntry)(1, 20, 5, 1);
}

const Number type = id("type", 0, ZR_HSEC_METER_TYPES);
const Number meter = id("meter", 7, 64);
const Number statType = id("type", 2, 8);

// As many as the bitmaps hold.
Number logic(uint32_t number)
{
    return id("logic", number, 128);
}
Number chip(uint32_t number)
{
    return id("chip", number, 128);
}

const bool added = addSweeps(
    "qos",
    {
        SWEEP(ZR_QOS_Init, unit),
        SWEEP(ZR_QOS_ChipInit, unit),
        SWEEP(ZR_QOS_MmuBuffInit, unit),
        SWEEP(ZR_QOS_EgrInit, unit),
        SWEEP(ZR_QOS_PriSelInit, unit),
        SWEEP(ZR_QOS_PortPriSelInit, unit),
        SWEEP(ZR_QOS_QueueMapInit, unit),
        SWEEP(ZR_QOS_PriMapInit, unit),
        SWEEP(ZR_QOS_DscpPriMapInit, unit),
        SWEEP(ZR_QOS_PqPriMapInit, unit),
        SWEEP_BOTH(ZR_QOS_QueScheduleInit, HAL_QOS_ChipInitZr, unit),
        SWEEP(HAL_QOS_SetSysBasedFCThreshZr, unit, 100),
        SWEEP(HAL_QOS_SetPriSelZr, unit, id("index", 0, 4), in(kEight)),
        SWEEP(HAL_QOS_SetPortPriSelZr, unit, port(4), id("index", 0, 4)),
        SWEEP(HAL_QOS_SetPriMapZr, unit, id("selector", 8, 9), in(kEight), of("count", 8, {9, 0xFFFFFFFF})),
        SWEEP(HAL_QOS_SetDscpPriMapZr, unit, id("dscp", 46, 64), id("priority", 5, 8)),
        SWEEP(HAL_QOS_Set1pPriMapZr, unit, id("p8021", 3, 8), id("priority", 3, 8)),
        SWEEP(HAL_QOS_SetPortcheduleWeightZr, unit, port(4), in(kEight)),
        SWEEP(ZR_HSEC_Init, unit),
        SWEEP_BOTH(ZR_HSEC_ConfigCar, HAL_HSEC_ConfigCarZr, unit, meter, in(kCar)),
        SWEEP_BOTH(ZR_HSEC_GetCar, HAL_HSEC_GetCarZr, unit, meter, out),
        SWEEP(HAL_HSEC_GetSharedMeterZr, unit, meter, out, out),
        SWEEP_BOTH(ZR_HSEC_DelCar, HAL_HSEC_DelCarZr, unit, meter),
        SWEEP(HAL_HSEC_GetCntZr, unit, id("counter", 5, 32), out),
        SWEEP(ZR_STORMCTL_Init, unit),
        SWEEP_BOTH(ZR_STORMCTL_Set, HAL_STORMCTL_SetZr, unit, port(4), in(kStorm)),
        SWEEP_BOTH(ZR_STORMCTL_Set, HAL_STORMCTL_SetZr, unit, port(4), in(kNoStorm, "unknown packet type")),
        SWEEP(HAL_STORMCTL_AdaptBucketSizeZr, unit, meter),
        SWEEP_BOTH(ZR_MC_Init, HAL_RMA_InitZr, unit),
        SWEEP(HAL_RMA_RmaTypeToZrType, id("type", 7, ZR_RMA_TYPES + 1), out),
        SWEEP(HAL_RMA_ActionSet, unit, id("type", 14, ZR_RMA_TYPES + 1), of("action", 1, {3, 0xFFFFFFFF})),
        SWEEP(HAL_RMA_LldpEnableSet, unit, 1),
    });

const bool added2 = addSweeps("qos", countedRule,
                              {
                                  SWEEP(ZR_HSEC_GetStat, unit, id("entry", 20, 96), out),
                              });

const bool recordsAdded = addSweeps(
    "qos_records", {
                       SWEEP(COM_HSEC_GetMeterInfo, unit, type),
                       SWEEP(COM_HSEC_MeterInfoInit, unit, id("type", 2, ZR_HSEC_METER_TYPES), 0,
                             of("count", 8, {513, 0xFFFFFFFF}), 0),
                       SWEEP(COM_QOS_GetStatInfo, unit),
                       SWEEP(COM_QOS_GetStatPartInfo, unit, statType),
                       SWEEP(COM_QOS_StatInfoInit, unit, statType, of("count", 4, {513, 0xFFFFFFFF})),
                       SWEEP(COM_QOS_StatMapInfoInit, unit, statType, of("count", 4, {513, 0xFFFFFFFF})),
                   });

const bool recordsAdded2 = addSweeps("qos_records", recordedMeter,
                                     {
                                         SWEEP(COM_HSEC_IsLogicMeterInUse, unit, type, logic(3)),
                                         SWEEP(COM_HSEC_LogicMeterToChipMeter, unit, type, logic(3), out),
                                         SWEEP(COM_HSEC_ChipMeterToLogicMeter, unit, type, chip(9), out),
                                         SWEEP(COM_HSEC_ReleseHsecRecord, unit, type, logic(3)),
                                     });

const bool recordsAdded3 =
    addSweeps("qos_records", meters,
              {
                  SWEEP(COM_HSEC_AllocLogicMeterId, unit, type, out),
                  SWEEP(COM_HSEC_AllocChipMeter, unit, type, out),
                  SWEEP(COM_HSEC_AllocMeterId, unit, type, out, out),
                  SWEEP(COM_HSEC_SetMeterEntry, unit, type, logic(3), chip(9)),
                  SWEEP(COM_HSEC_EntryIdToLogicMeter, unit, type, id("entry", 63, 64), out),
              });

const bool recordsAdded4 = addSweeps("qos_records", recordedStat,
                                     {
                                         SWEEP(COM_QOS_IsLogicStatIdInUse, unit, statType, logic(17)),
                                         SWEEP(COM_QOS_SetStatEntry, unit, statType, logic(18), chip(6)),
                                         SWEEP(COM_QOS_StatLogicIdToChipId, unit, statType, logic(17), out),
                                         SWEEP(COM_QOS_StatChipIdToLogicId, unit, statType, chip(5), out),
                                         SWEEP(COM_QOS_ReleseStatRecord, unit, statType, logic(17)),
                                     });

} // namespace
} // namespace zrtest
