// The library's single entry and the fillers of the operation tables.
#pragma once

#include "frame/op_tables.h"

ZR_EXTERN_C_BEGIN

// Registers the operations with the manager: fetches the twelve operation tables, passing `value` unchanged
// to each getter, and fills each in turn (common, port, MAC, VLAN, QoS, ACL, CAR, multicast, storm control,
// spanning tree, link aggregation, fault monitoring). A table whose getter returns null is skipped. Must run
// before any table is used; may be called again. Prints nothing, cannot fail.
ZR_EXPORT void ZR_COMMON_FuncListInit(uint32_t value);

// Each writes its module's operations into `ops`; reserved slots keep what they held. Null is ignored.
ZR_EXPORT void ZR_COMMON_FuncInit(ZrCommonOps *ops);
ZR_EXPORT void ZR_PORT_FuncInit(ZrPortOps *ops);
ZR_EXPORT void ZR_MAC_FuncInit(ZrMacOps *ops);
ZR_EXPORT void ZR_VLAN_FuncInit(ZrVlanOps *ops);
ZR_EXPORT void ZR_QOS_FuncInit(ZrQosOps *ops);
ZR_EXPORT void ZR_ACL_FuncInit(ZrAclOps *ops);
ZR_EXPORT void ZR_HSEC_FuncInit(ZrHsecOps *ops);
ZR_EXPORT void ZR_MC_FuncInit(ZrMcOps *ops);
ZR_EXPORT void ZR_STORMCTL_FuncInit(ZrStormctlOps *ops);
ZR_EXPORT void ZR_STP_FuncInit(ZrStpOps *ops);
ZR_EXPORT void ZR_TRUNK_FuncInit(ZrTrunkOps *ops);
ZR_EXPORT void ZR_FMEA_FuncInit(ZrFmeaOps *ops);

ZR_EXTERN_C_END
