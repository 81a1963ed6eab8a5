// The SDK's QoS functions.
#include "sim/sdk/sdk.h"

using namespace zrsim;

uint32_t l2sw_qos_init(uint32_t unit, uint32_t queues)
{
    return onChip({__func__, {unit, queues}}, [&](Chip &chip) { return chip.qos.init(queues); });
}

uint32_t l2sw_Flow_Control_Pause_All_set(uint32_t unit, uint32_t threshold)
{
    return onChip({__func__, {unit, threshold}},
                  [&](Chip &chip) { return chip.qos.setPauseThreshold(threshold); });
}

uint32_t l2sw_qos_priSel_set(uint32_t unit, uint32_t index, SdkQosRecord *record)
{
    return onChip({__func__, {unit, index, record}},
                  [&](Chip &chip) { return chip.qos.setPriSel(index, *record); });
}

uint32_t l2sw_qos_portPriSelIndex_set(uint32_t unit, uint32_t port, uint32_t index)
{
    return onChip({__func__, {unit, port, index}}, [&](Chip &chip) { return chip.qos.bindPort(port, index); });
}

uint32_t l2sw_qos_priMap_set(uint32_t unit, uint32_t selector, SdkQosRecord *record)
{
    return onChip({__func__, {unit, selector, record}},
                  [&](Chip &chip) { return chip.qos.setQueueMap(selector, *record); });
}

uint32_t l2sw_qos_schedulingQueue_set(uint32_t unit, uint32_t port, SdkQosRecord *record)
{
    return onChip({__func__, {unit, port, record}},
                  [&](Chip &chip) { return chip.qos.setWeights(port, *record); });
}

uint32_t l2sw_qos_dscpPriRemap_set(uint32_t unit, uint32_t dscp, uint32_t priority)
{
    return onChip({__func__, {unit, dscp, priority}},
                  [&](Chip &chip) { return chip.qos.mapDscp(dscp, priority); });
}

uint32_t l2sw_qos_1pPriRemap_set(uint32_t unit, uint32_t p8021, uint32_t priority)
{
    return onChip({__func__, {unit, p8021, priority}},
                  [&](Chip &chip) { return chip.qos.map8021p(p8021, priority); });
}
