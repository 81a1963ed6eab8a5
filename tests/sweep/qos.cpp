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

const bool added = addSweep({
    {"ZR_QOS_Init", [](Outputs &) { return ZR_OP(ZR_QOS_Init)(1); }},
    {"ZR_QOS_ChipInit", [](Outputs &) { return ZR_OP(ZR_QOS_ChipInit)(1); }},
    {"ZR_QOS_MmuBuffInit", [](Outputs &) { return ZR_OP(ZR_QOS_MmuBuffInit)(1); }},
    {"ZR_QOS_EgrInit", [](Outputs &) { return ZR_OP(ZR_QOS_EgrInit)(1); }},
    {"ZR_QOS_PriSelInit", [](Outputs &) { return ZR_OP(ZR_QOS_PriSelInit)(1); }},
    {"ZR_QOS_PortPriSelInit", [](Outputs &) { return ZR_OP(ZR_QOS_PortPriSelInit)(1); }},
    {"ZR_QOS_QueueMapInit", [](Outputs &) { return ZR_OP(ZR_QOS_QueueMapInit)(1); }},
    {"ZR_QOS_PriMapInit", [](Outputs &) { return ZR_OP(ZR_QOS_PriMapInit)(1); }},
    {"ZR_QOS_DscpPriMapInit", [](Outputs &) { return ZR_OP(ZR_QOS_DscpPriMapInit)(1); }},
    {"ZR_QOS_PqPriMapInit", [](Outputs &) { return ZR_OP(ZR_QOS_PqPriMapInit)(1); }},
    {"ZR_QOS_QueScheduleInit", [](Outputs &) { return ZR_OP(ZR_QOS_QueScheduleInit)(1); }},
    {"HAL_QOS_ChipInitZr", [](Outputs &) { return ZR_OP(HAL_QOS_ChipInitZr)(1); }},
    {"HAL_QOS_SetSysBasedFCThreshZr", [](Outputs &) { return ZR_OP(HAL_QOS_SetSysBasedFCThreshZr)(1, 100); }},
    {"HAL_QOS_SetPriSelZr", [](Outputs &) { return ZR_OP(HAL_QOS_SetPriSelZr)(1, 0, kEight); }},
    {"HAL_QOS_SetPortPriSelZr", [](Outputs &) { return ZR_OP(HAL_QOS_SetPortPriSelZr)(1, 4, 0); }},
    {"HAL_QOS_SetPriMapZr", [](Outputs &) { return ZR_OP(HAL_QOS_SetPriMapZr)(1, 8, kEight, 8); }},
    {"HAL_QOS_SetDscpPriMapZr", [](Outputs &) { return ZR_OP(HAL_QOS_SetDscpPriMapZr)(1, 46, 5); }},
    {"HAL_QOS_Set1pPriMapZr", [](Outputs &) { return ZR_OP(HAL_QOS_Set1pPriMapZr)(1, 3, 3); }},
    {"HAL_QOS_SetPortcheduleWeightZr",
     [](Outputs &) { return ZR_OP(HAL_QOS_SetPortcheduleWeightZr)(1, 4, kEight); }},

    {"ZR_HSEC_Init", [](Outputs &) { return ZR_OP(ZR_HSEC_Init)(1); }},
    {"ZR_HSEC_ConfigCar", [](Outputs &) { return ZR_OP(ZR_HSEC_ConfigCar)(1, 7, &kCar); }},
    {.operation = "ZR_HSEC_GetCar",
     .run = [](Outputs &out) { return ZR_OP(ZR_HSEC_GetCar)(1, 7, out.make<LswmCar>()); },
     .writesOnFailure = true},
    {"ZR_HSEC_DelCar", [](Outputs &) { return ZR_OP(ZR_HSEC_DelCar)(1, 7); }},
    {"ZR_HSEC_GetStat", [](Outputs &out) { return ZR_OP(ZR_HSEC_GetStat)(1, 20, out.make<LswmCounter>()); },
     countedRule},
    {"HAL_HSEC_ConfigCarZr", [](Outputs &) { return ZR_OP(HAL_HSEC_ConfigCarZr)(1, 7, &kCar); }},
    {"HAL_HSEC_GetSharedMeterZr",
     [](Outputs &out) {
         return ZR_OP(HAL_HSEC_GetSharedMeterZr)(1, 7, out.make<uint32_t>(), out.make<uint32_t>());
     }},
    {.operation = "HAL_HSEC_GetCarZr",
     .run = [](Outputs &out) { return ZR_OP(HAL_HSEC_GetCarZr)(1, 7, out.make<LswmCar>()); },
     .writesOnFailure = true},
    {"HAL_HSEC_GetCntZr", [](Outputs &out) { return ZR_OP(HAL_HSEC_GetCntZr)(1, 5, out.make<LswmCounter>()); }},
    {"HAL_HSEC_DelCarZr", [](Outputs &) { return ZR_OP(HAL_HSEC_DelCarZr)(1, 7); }},

    {"ZR_STORMCTL_Init", [](Outputs &) { return ZR_OP(ZR_STORMCTL_Init)(1); }},
    {"ZR_STORMCTL_Set", [](Outputs &) { return ZR_OP(ZR_STORMCTL_Set)(1, 4, &kStorm); }},
    {"HAL_STORMCTL_SetZr", [](Outputs &) { return ZR_OP(HAL_STORMCTL_SetZr)(1, 4, &kStorm); }},
    {"HAL_STORMCTL_AdaptBucketSizeZr", [](Outputs &) { return ZR_OP(HAL_STORMCTL_AdaptBucketSizeZr)(1, 7); }},

    {"ZR_MC_Init", [](Outputs &) { return ZR_OP(ZR_MC_Init)(1); }},
    {"HAL_RMA_InitZr", [](Outputs &) { return ZR_OP(HAL_RMA_InitZr)(1); }},
    {"HAL_RMA_RmaTypeToZrType",
     [](Outputs &out) {
         ZR_OP(HAL_RMA_RmaTypeToZrType)(7, out.make<uint32_t>());
         return 0U;
     }},
    {"HAL_RMA_ActionSet", [](Outputs &) { return ZR_OP(HAL_RMA_ActionSet)(1, 14, 1); }},
    {"HAL_RMA_LldpEnableSet", [](Outputs &) { return ZR_OP(HAL_RMA_LldpEnableSet)(1, 1); }},

    {"COM_HSEC_GetMeterInfo",
     [](Outputs &) { return ZR_OP(COM_HSEC_GetMeterInfo)(1, 0) == nullptr ? 1U : 0U; }},
    {"COM_HSEC_MeterInfoInit", [](Outputs &) { return ZR_OP(COM_HSEC_MeterInfoInit)(1, 2, 0, 8, 0); }},
    {"COM_HSEC_IsLogicMeterInUse", [](Outputs &) { return ZR_OP(COM_HSEC_IsLogicMeterInUse)(1, 0, 5); },
     meters},
    {"COM_HSEC_AllocLogicMeterId",
     [](Outputs &out) { return ZR_OP(COM_HSEC_AllocLogicMeterId)(1, 0, out.make<uint32_t>()); }, meters},
    {"COM_HSEC_AllocChipMeter",
     [](Outputs &out) { return ZR_OP(COM_HSEC_AllocChipMeter)(1, 0, out.make<uint32_t>()); }, meters},
    {"COM_HSEC_AllocMeterId",
     [](Outputs &out) {
         return ZR_OP(COM_HSEC_AllocMeterId)(1, 0, out.make<uint32_t>(), out.make<uint32_t>());
     },
     meters},
    {"COM_HSEC_SetMeterEntry", [](Outputs &) { return ZR_OP(COM_HSEC_SetMeterEntry)(1, 0, 3, 9); }, meters},
    {"COM_HSEC_LogicMeterToChipMeter",
     [](Outputs &out) { return ZR_OP(COM_HSEC_LogicMeterToChipMeter)(1, 0, 3, out.make<uint32_t>()); },
     recordedMeter},
    {"COM_HSEC_ChipMeterToLogicMeter",
     [](Outputs &out) { return ZR_OP(COM_HSEC_ChipMeterToLogicMeter)(1, 0, 9, out.make<uint32_t>()); },
     recordedMeter},
    {"COM_HSEC_ReleseHsecRecord", [](Outputs &) { return ZR_OP(COM_HSEC_ReleseHsecRecord)(1, 0, 3); },
     recordedMeter},
    {"COM_HSEC_EntryIdToLogicMeter",
     [](Outputs &out) { return ZR_OP(COM_HSEC_EntryIdToLogicMeter)(1, 0, 63, out.make<uint32_t>()); }, meters},

    {"COM_QOS_GetStatInfo", [](Outputs &) { return ZR_OP(COM_QOS_GetStatInfo)(1) == nullptr ? 1U : 0U; }},
    {"COM_QOS_GetStatPartInfo",
     [](Outputs &) { return ZR_OP(COM_QOS_GetStatPartInfo)(1, 7) == nullptr ? 1U : 0U; }},
    {"COM_QOS_StatInfoInit", [](Outputs &) { return ZR_OP(COM_QOS_StatInfoInit)(1, 2, 4); }},
    {"COM_QOS_StatMapInfoInit", [](Outputs &) { return ZR_OP(COM_QOS_StatMapInfoInit)(1, 2, 4); }},
    {"COM_QOS_IsLogicStatIdInUse",
     [](Outputs &) { return ZR_OP(COM_QOS_IsLogicStatIdInUse)(1, 2, 17) == 1 ? 0U : 1U; }, recordedStat},
    {"COM_QOS_SetStatEntry", [](Outputs &) { return ZR_OP(COM_QOS_SetStatEntry)(1, 2, 18, 6); }, recordedStat},
    {"COM_QOS_StatLogicIdToChipId",
     [](Outputs &out) { return ZR_OP(COM_QOS_StatLogicIdToChipId)(1, 2, 17, out.make<uint32_t>()); },
     recordedStat},
    {"COM_QOS_StatChipIdToLogicId",
     [](Outputs &out) { return ZR_OP(COM_QOS_StatChipIdToLogicId)(1, 2, 5, out.make<uint32_t>()); },
     recordedStat},
    {"COM_QOS_ReleseStatRecord", [](Outputs &) { return ZR_OP(COM_QOS_ReleseStatRecord)(1, 2, 17); },
     recordedStat},
});

} // namespace
} // namespace zrtest
