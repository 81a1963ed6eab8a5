#include "frame/func_list.h"

#include "acl/acl.h"
#include "chip/chip.h"
#include "frame/fmea.h"
#include "l2/mac.h"
#include "l2/stp.h"
#include "l2/trunk.h"
#include "l2/vlan.h"
#include "platform/manager.h"
#include "port/port.h"
#include "qos/hsec.h"
#include "qos/qos.h"
#include "qos/rma.h"
#include "qos/stormctl.h"
#include "records/acl_records.h"
#include "records/meter_records.h"

#define FILL_SLOT(table, slot, member, operation) ops->member = operation;
#define DEFINE_FILLER(name, parameter, slots)                                                                  \
    void name(parameter)                                                                                       \
    {                                                                                                          \
        if (ops != nullptr) {                                                                                  \
            slots(FILL_SLOT)                                                                                   \
        }                                                                                                      \
    }

DEFINE_FILLER(ZR_COMMON_FuncInit, ZrCommonOps *ops, ZR_COMMON_SLOTS)
DEFINE_FILLER(ZR_PORT_FuncInit, ZrPortOps *ops, ZR_PORT_SLOTS)
DEFINE_FILLER(ZR_MAC_FuncInit, ZrMacOps *ops, ZR_MAC_SLOTS)
DEFINE_FILLER(ZR_VLAN_FuncInit, ZrVlanOps *ops, ZR_VLAN_SLOTS)
DEFINE_FILLER(ZR_QOS_FuncInit, ZrQosOps *ops, ZR_QOS_SLOTS)
DEFINE_FILLER(ZR_ACL_FuncInit, ZrAclOps *ops, ZR_ACL_SLOTS)
DEFINE_FILLER(ZR_HSEC_FuncInit, ZrHsecOps *ops, ZR_HSEC_SLOTS)
DEFINE_FILLER(ZR_MC_FuncInit, ZrMcOps *ops, ZR_MC_SLOTS)
DEFINE_FILLER(ZR_STORMCTL_FuncInit, ZrStormctlOps *ops, ZR_STORMCTL_SLOTS)
DEFINE_FILLER(ZR_STP_FuncInit, ZrStpOps *ops, ZR_STP_SLOTS)
DEFINE_FILLER(ZR_TRUNK_FuncInit, ZrTrunkOps *ops, ZR_TRUNK_SLOTS)
DEFINE_FILLER(ZR_FMEA_FuncInit, ZrFmeaOps *ops, ZR_FMEA_SLOTS)

void ZR_COMMON_FuncListInit(uint32_t value)
{
    ZR_COMMON_FuncInit(static_cast<ZrCommonOps *>(LSW_Common_GetFuncPtr(value)));
    ZR_PORT_FuncInit(static_cast<ZrPortOps *>(LSW_PORT_GetFuncPtr(value)));
    ZR_MAC_FuncInit(static_cast<ZrMacOps *>(LSW_MAC_GetFuncPtr(value)));
    ZR_VLAN_FuncInit(static_cast<ZrVlanOps *>(LSW_VLAN_GetFuncPtr(value)));
    ZR_QOS_FuncInit(static_cast<ZrQosOps *>(LSW_QOS_GetFuncPtr(value)));
    ZR_ACL_FuncInit(static_cast<ZrAclOps *>(LSW_ACL_GetFuncPtr(value)));
    ZR_HSEC_FuncInit(static_cast<ZrHsecOps *>(LSW_HSEC_GetFuncPtr(value)));
    ZR_MC_FuncInit(static_cast<ZrMcOps *>(LSW_MC_GetFuncPtr(value)));
    ZR_STORMCTL_FuncInit(static_cast<ZrStormctlOps *>(LSW_STORMCTL_GetFuncPtr(value)));
    ZR_STP_FuncInit(static_cast<ZrStpOps *>(LSW_STP_GetFuncPtr(value)));
    ZR_TRUNK_FuncInit(static_cast<ZrTrunkOps *>(LSW_TRUNK_GetFuncPtr(value)));
    ZR_FMEA_FuncInit(static_cast<ZrFmeaOps *>(LSW_FMEA_GetFuncPtr(value)));
}
