#include "qos/qos.h"

#include "base/port_set.h"
#include "base/print.h"
#include "platform/bounded.h"
#include "platform/chip_sdk.h"
#include "platform/manager.h"

uint32_t ZR_QOS_Init(uint32_t unit)
{
    if (zr::unitInfo(unit) == nullptr)
        return LSW_INVALID_ARGUMENT;
    if (uint32_t ret = ZR_QOS_ChipInit(unit); ret != LSW_OK)
        return ZR_FAILED(QOS, ret, "Zr qos init failed unitId = %u, ret=0x%x.", unit, ret);
    if (uint32_t ret = ZR_QOS_MmuBuffInit(unit); ret != LSW_OK)
        return ZR_FAILED(QOS, ret, "Mmu buffer init failed unitId = %u, ret = %u", unit, ret);
    if (uint32_t ret = ZR_QOS_EgrInit(unit); ret != LSW_OK)
        return ZR_FAILED(QOS, ret, "Zr qos egress init failed unitId = %u, ret=0x%x.", unit, ret);
    return LSW_OK;
}

uint32_t ZR_QOS_ChipInit(uint32_t unit)
{
    if (uint32_t ret = HAL_QOS_ChipInitZr(unit); ret != LSW_OK)
        return ZR_FAILED(QOS, ret, "HAL QOS chip init failed Zr unitId = %u, ret = %u", unit, ret);
    return LSW_OK;
}

uint32_t HAL_QOS_ChipInitZr(uint32_t unit)
{
    return l2sw_qos_init(unit, ZR_QOS_QUEUES) == 0 ? LSW_OK : LSW_CHIP_FAILED;
}

uint32_t ZR_QOS_MmuBuffInit(uint32_t unit)
{
    if (uint32_t ret = HAL_QOS_SetSysBasedFCThreshZr(unit, ZR_QOS_PAUSE_THRESHOLD); ret != LSW_OK)
        return ZR_FAILED(QOS, ret, "Set SysBasedFCThresh Zr unitId = %u, ret = %u", unit, ret);
    return LSW_OK;
}

uint32_t HAL_QOS_SetSysBasedFCThreshZr(uint32_t unit, uint32_t threshold)
{
    return l2sw_Flow_Control_Pause_All_set(unit, threshold);
}

uint32_t ZR_QOS_EgrInit(uint32_t unit)
{
    if (zr::unitInfo(unit) == nullptr)
        return LSW_INVALID_ARGUMENT;
    if (uint32_t ret = ZR_QOS_PriSelInit(unit); ret != LSW_OK)
        return ZR_FAILED(QOS, ret, "PriSel Init Zr unitId = %u, ret = %u", unit, ret);
    if (uint32_t ret = ZR_QOS_PortPriSelInit(unit); ret != LSW_OK)
        return ZR_FAILED(QOS, ret, "PortPriSel Init Zr unitId = %u, ret = %u", unit, ret);
    if (uint32_t ret = ZR_QOS_QueueMapInit(unit); ret != LSW_OK)
        return ZR_FAILED(QOS, ret, "QueueMap Init Zr unitId = %u, ret = %u", unit, ret);
    if (uint32_t ret = ZR_QOS_QueScheduleInit(unit); ret != LSW_OK)
        return ZR_FAILED(QOS, ret, "Queue schedule Init Zr unitId = %u, ret = %u", unit, ret);
    return LSW_OK;
}

uint32_t ZR_QOS_PriSelInit(uint32_t unit)
{
    static constexpr uint32_t kPriSel[ZR_QOS_PRISEL_VALUES] = {1, 5, 7, 6, 0};
    if (uint32_t ret = HAL_QOS_SetPriSelZr(unit, ZR_QOS_PRISEL_INDEX, kPriSel); ret != LSW_OK)
        return ZR_FAILED(QOS, ret, "HAL QOS Set PriSel Zr unitId = %u, ret = %u", unit, ret);
    return LSW_OK;
}

uint32_t HAL_QOS_SetPriSelZr(uint32_t unit, uint32_t index, const uint32_t *values)
{
    if (values == nullptr)
        return LSW_NULL_POINTER;
    SdkQosRecord record{};
    memcpy_s(record.word, sizeof(record.word), values, ZR_QOS_PRISEL_VALUES * sizeof(uint32_t));
    return l2sw_qos_priSel_set(unit, index, &record);
}

uint32_t ZR_QOS_PortPriSelInit(uint32_t unit)
{
    if (zr::unitInfo(unit) == nullptr)
        return LSW_INVALID_ARGUMENT;
    static constexpr uint32_t kSets[] = {LSWM_SET_PRISEL_A, LSWM_SET_PRISEL_B};
    for (uint32_t set : kSets) {
        for (uint32_t port : zr::PortSet(unit, set)) {
            if (uint32_t ret = HAL_QOS_SetPortPriSelZr(unit, port, ZR_QOS_PRISEL_INDEX); ret != LSW_OK)
                return ZR_FAILED(QOS, ret, "HAL QOS Set PriSel Zr unitId = %u, ret = %u, portId = %u", unit,
                                 ret, port);
        }
    }
    return LSW_OK;
}

uint32_t HAL_QOS_SetPortPriSelZr(uint32_t unit, uint32_t port, uint32_t index)
{
    return l2sw_qos_portPriSelIndex_set(unit, port, index);
}

uint32_t ZR_QOS_QueueMapInit(uint32_t unit)
{
    if (uint32_t ret = ZR_QOS_PriMapInit(unit); ret != LSW_OK)
        return ZR_FAILED(QOS, ret, "PriMap Init Zr unitId = %u, ret = %u", unit, ret);
    if (uint32_t ret = ZR_QOS_DscpPriMapInit(unit); ret != LSW_OK)
        return ZR_FAILED(QOS, ret, "DscpPriMap Init Zr unitId = %u, ret = %u", unit, ret);
    if (uint32_t ret = ZR_QOS_PqPriMapInit(unit); ret != LSW_OK)
        return ZR_FAILED(QOS, ret, "PqPriMap Init Zr unitId = %u, ret = %u", unit, ret);
    return LSW_OK;
}

uint32_t ZR_QOS_PriMapInit(uint32_t unit)
{
    static constexpr uint32_t kQueueOfPriority[ZR_QOS_QUEUES] = {0, 1, 2, 3, 4, 5, 6, 7};
    // The selector is the number of queues that HAL_QOS_ChipInitZr gave to the chip.
    if (uint32_t ret = HAL_QOS_SetPriMapZr(unit, ZR_QOS_QUEUES, kQueueOfPriority, ZR_QOS_QUEUES); ret != LSW_OK)
        return ZR_FAILED(QOS, ret, "HAL QOS Set PriMap Zr unitId = %u, ret = %u", unit, ret);
    return LSW_OK;
}

uint32_t HAL_QOS_SetPriMapZr(uint32_t unit, uint32_t selector, const uint32_t *map, uint32_t count)
{
    if (count > ZR_QOS_QUEUES)
        return LSW_INVALID_ARGUMENT;
    SdkQosRecord record{};
    if (memcpy_s(record.word, sizeof(record.word), map, count * sizeof(uint32_t)) != 0)
        return LSW_CHIP_FAILED;
    return l2sw_qos_priMap_set(unit, selector, &record);
}

uint32_t ZR_QOS_DscpPriMapInit(uint32_t unit)
{
    for (uint32_t dscp = 0; dscp < ZR_QOS_DSCPS; ++dscp) {
        if (uint32_t ret = HAL_QOS_SetDscpPriMapZr(unit, dscp, dscp >> 3); ret != LSW_OK)
            return ZR_FAILED(QOS, ret, "HAL QOS Set DscpPriMap Zr unitId = %u, loop = %u, ret = %u", unit, dscp,
                             ret);
    }
    return LSW_OK;
}

uint32_t HAL_QOS_SetDscpPriMapZr(uint32_t unit, uint32_t dscp, uint32_t priority)
{
    return l2sw_qos_dscpPriRemap_set(unit, dscp, priority);
}

uint32_t ZR_QOS_PqPriMapInit(uint32_t unit)
{
    for (uint32_t p8021 = 0; p8021 < ZR_QOS_QUEUES; ++p8021) {
        if (uint32_t ret = HAL_QOS_Set1pPriMapZr(unit, p8021, p8021); ret != LSW_OK)
            return ZR_FAILED(QOS, ret, "HAL QOS Set 1pPriMap Zr unitId = %u, loop = %u, ret = %u", unit, p8021,
                             ret);
    }
    return LSW_OK;
}

uint32_t HAL_QOS_Set1pPriMapZr(uint32_t unit, uint32_t p8021, uint32_t priority)
{
    return l2sw_qos_1pPriRemap_set(unit, p8021, priority);
}

uint32_t ZR_QOS_QueScheduleInit(uint32_t unit)
{
    if (zr::unitInfo(unit) == nullptr)
        return LSW_INVALID_ARGUMENT;
    static constexpr uint32_t kWeights[ZR_QOS_QUEUES] = {};
    for (uint32_t port : zr::PortSet(unit, LSWM_SET_VALID)) {
        if (uint32_t ret = HAL_QOS_SetPortcheduleWeightZr(unit, port, kWeights); ret != LSW_OK)
            return ZR_FAILED(QOS, ret,
                             "HAL QOS queue schedule init failed Zr unitId = %u, portId = %u, ret = 0x%x", unit,
                             port, ret);
    }
    return LSW_OK;
}

uint32_t HAL_QOS_SetPortcheduleWeightZr(uint32_t unit, uint32_t port, const uint32_t *weights)
{
    if (weights == nullptr)
        return LSW_NULL_POINTER;
    SdkQosRecord record{};
    memcpy_s(record.word, sizeof(record.word), weights, ZR_QOS_QUEUES * sizeof(uint32_t));
    const uint32_t ret = l2sw_qos_schedulingQueue_set(unit, port, &record);
    return static_cast<int32_t>(ret) < 0 ? uint32_t{LSW_CHIP_FAILED} : ret;
}
