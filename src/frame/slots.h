// The slots that the library fills, each listed once: table, number, member, operation. The asserts of
// op_tables.h, the fillers of func_list.cpp and `zrbench ops` expand these lists.
#pragma once

#include "platform/abi.h"

#define ZR_COMMON_SLOTS(X)                                                                                     \
    X(ZrCommonOps, 0, initChip, ZR_COMMON_InitChip)                                                            \
    X(ZrCommonOps, 1, chipRegRead, ZR_COMMON_ChipRegRead)                                                      \
    X(ZrCommonOps, 2, chipRegWrite, ZR_COMMON_ChipRegWrite)                                                    \
    X(ZrCommonOps, 3, cliCmdPrase, ZR_COMMON_CliCmdPrase)                                                      \
    X(ZrCommonOps, 8, chipCaptureDropReasonEnable, ZR_COMMON_ChipCaptureDropReasonEnable)                      \
    X(ZrCommonOps, 9, chipGetDropReason, ZR_COMMON_ChipGetDropReason)

#define ZR_PORT_SLOTS(X)                                                                                       \
    X(ZrPortOps, 0, init, ZR_PORT_Init)                                                                        \
    X(ZrPortOps, 1, regRead, ZR_PORT_RegRead)                                                                  \
    X(ZrPortOps, 2, regWrite, ZR_PORT_RegWrite)                                                                \
    X(ZrPortOps, 3, setEnable, ZR_PORT_SetEnable)                                                              \
    X(ZrPortOps, 4, getEnable, ZR_PORT_GetEnable)                                                              \
    X(ZrPortOps, 5, cpuInit, ZR_PORT_CpuInit)                                                                  \
    X(ZrPortOps, 6, getLinkStatus, ZR_PORT_GetLinkStatus)                                                      \
    X(ZrPortOps, 7, linkEvt, ZR_PORT_LinkEvt)                                                                  \
    X(ZrPortOps, 8, linkScanWar, ZR_PORT_LinkScanWar)                                                          \
    X(ZrPortOps, 9, getSpeed, ZR_PORT_GetSpeed)                                                                \
    X(ZrPortOps, 10, setSpeed, ZR_PORT_SetSpeed)                                                               \
    X(ZrPortOps, 11, getAutonegEnable, ZR_PORT_GetAutonegEnable)                                               \
    X(ZrPortOps, 12, setAutonegEnable, ZR_PORT_SetAutonegEnable)                                               \
    X(ZrPortOps, 13, getAutonegAbility, ZR_PORT_GetAutonegAbility)                                             \
    X(ZrPortOps, 14, getRemoteAutonegAbility, ZR_PORT_GetRemoteAutonegAbility)                                 \
    X(ZrPortOps, 15, getStatistics, ZR_PORT_GetStatistics)                                                     \
    X(ZrPortOps, 16, clearStatistics, ZR_PORT_ClearStatistics)                                                 \
    X(ZrPortOps, 17, setDuplex, ZR_PORT_SetDuplex)                                                             \
    X(ZrPortOps, 18, getDuplex, ZR_PORT_GetDuplex)                                                             \
    X(ZrPortOps, 19, getMaxFrame, ZR_PORT_GetMaxFrame)                                                         \
    X(ZrPortOps, 20, setIsolate, ZR_PORT_SetIsolate)                                                           \
    X(ZrPortOps, 21, getLoopback, ZR_PORT_GetLoopback)                                                         \
    X(ZrPortOps, 22, setLoopback, ZR_PORT_SetLoopback)                                                         \
    X(ZrPortOps, 23, getDebugInfo, ZR_PORT_GetDebugInfo)                                                       \
    X(ZrPortOps, 24, getSnr, ZR_PORT_GetSnr)                                                                   \
    X(ZrPortOps, 25, getKhCheck, ZR_PORT_GetKhCheck)                                                           \
    X(ZrPortOps, 26, getChipId, ZR_PORT_GetChipId)                                                             \
    X(ZrPortOps, 27, setLedForce, ZR_PORT_SetLEDForce)                                                         \
    X(ZrPortOps, 28, getLinkDownPhyReg, ZR_GetLinkDownPhyReg)                                                  \
    X(ZrPortOps, 29, setAllIsolate, ZR_PORT_SetAllIsolate)                                                     \
    X(ZrPortOps, 30, getIsolateMap, ZR_PORT_GetIsolateMap)                                                     \
    X(ZrPortOps, 31, setAdvert, ZR_PORT_SetAdvert)

#define ZR_MAC_SLOTS(X)                                                                                        \
    X(ZrMacOps, 0, init, ZR_MAC_Init)                                                                          \
    X(ZrMacOps, 1, syncMacInsert, ZR_MAC_SyncMacInsert)                                                        \
    X(ZrMacOps, 2, addMac, ZR_MAC_AddMac)                                                                      \
    X(ZrMacOps, 3, setAgeTime, ZR_MAC_SetAgeTime)                                                              \
    X(ZrMacOps, 4, getAgeTime, ZR_MAC_GetAgeTime)                                                              \
    X(ZrMacOps, 5, delAllMac, ZR_MAC_DelAllMac)                                                                \
    X(ZrMacOps, 6, delByVlanMac, ZR_MAC_DelByVlanMac)                                                          \
    X(ZrMacOps, 7, delByPort, ZR_MAC_DelByPort)                                                                \
    X(ZrMacOps, 8, delByVlan, ZR_MAC_DelByVlan)                                                                \
    X(ZrMacOps, 9, delByPortVlan, ZR_MAC_DelByPortVlan)                                                        \
    X(ZrMacOps, 10, delByMac, ZR_MAC_DelByMac)                                                                 \
    X(ZrMacOps, 11, delDynMac, ZR_MAC_DelDynMac)                                                               \
    X(ZrMacOps, 12, getMacEntry, ZR_MAC_GetMacEntry)                                                           \
    X(ZrMacOps, 13, setPortLearnMode, ZR_MAC_SetPortLearnMode)                                                 \
    X(ZrMacOps, 14, getPortLearnMode, ZR_MAC_GetPortLearnMode)                                                 \
    X(ZrMacOps, 16, getCapacity, ZR_MAC_GetCapacity)                                                           \
    X(ZrMacOps, 17, registerCallBack, ZR_MAC_RegisterCallBack)

#define ZR_VLAN_SLOTS(X)                                                                                       \
    X(ZrVlanOps, 0, init, ZR_VLAN_Init)                                                                        \
    X(ZrVlanOps, 1, create, ZR_VLAN_Create)                                                                    \
    X(ZrVlanOps, 2, destroy, ZR_VLAN_Delete)                                                                   \
    X(ZrVlanOps, 3, addMember, ZR_VLAN_AddMember)                                                              \
    X(ZrVlanOps, 4, addMultiMember, ZR_VLAN_AddMultiMember)                                                    \
    X(ZrVlanOps, 5, delMember, ZR_VLAN_DelMember)                                                              \
    X(ZrVlanOps, 6, getPortMap, ZR_VLAN_GetPortMap)                                                            \
    X(ZrVlanOps, 7, setPortPvid, ZR_VLAN_SetPortPvid)                                                          \
    X(ZrVlanOps, 8, getPortPvid, ZR_VLAN_GetPortPvid)                                                          \
    X(ZrVlanOps, 9, setIgrPortFilter, ZR_VLAN_SetIgrPortFilter)                                                \
    X(ZrVlanOps, 11, setTagMode, HAL_VLAN_SetTagModeZr)

#define ZR_QOS_SLOTS(X) X(ZrQosOps, 0, init, ZR_QOS_Init)

#define ZR_ACL_SLOTS(X)                                                                                        \
    X(ZrAclOps, 0, isLogicRuleInUse, COM_ACL_IsLogicRuleInUse)                                                 \
    X(ZrAclOps, 1, allocLogicRuleId, COM_ACL_AllocLogicRuleId)                                                 \
    X(ZrAclOps, 2, logicRuleToChipRule, COM_ACL_LogicRuleToChipRule)                                           \
    X(ZrAclOps, 3, updateLanWanPolicy, ZR_ACL_UpdateLANWanPolicy)                                              \
    X(ZrAclOps, 4, setRuleMapEntry, ZR_ACL_SetRuleMapEntry)                                                    \
    X(ZrAclOps, 5, releaseRuleRecord, COM_ACL_ReleseRuleRecord)                                                \
    X(ZrAclOps, 6, addEntry, ZR_ACL_AddEntry)                                                                  \
    X(ZrAclOps, 7, getEntry, ZR_ACL_GetEntry)                                                                  \
    X(ZrAclOps, 8, delEntry, ZR_ACL_DelEntry)                                                                  \
    X(ZrAclOps, 9, modifyEntryPortmap, ZR_ACL_ModifyEntryPortmap)                                              \
    X(ZrAclOps, 10, addEntryPortmap, ZR_ACL_AddEntryPortmap)                                                   \
    X(ZrAclOps, 11, removeEntryPortmap, ZR_ACL_RemoveEntryPortmap)                                             \
    X(ZrAclOps, 13, init, ZR_ACL_Init)

#define ZR_HSEC_SLOTS(X)                                                                                       \
    X(ZrHsecOps, 0, isLogicMeterInUse, COM_HSEC_IsLogicMeterInUse)                                             \
    X(ZrHsecOps, 1, logicMeterToChipMeter, COM_HSEC_LogicMeterToChipMeter)                                     \
    X(ZrHsecOps, 2, chipMeterToLogicMeter, COM_HSEC_ChipMeterToLogicMeter)                                     \
    X(ZrHsecOps, 3, entryIdToLogicMeter, COM_HSEC_EntryIdToLogicMeter)                                         \
    X(ZrHsecOps, 4, getStat, ZR_HSEC_GetStat)                                                                  \
    X(ZrHsecOps, 5, setMeterEntry, COM_HSEC_SetMeterEntry)                                                     \
    X(ZrHsecOps, 6, releaseRecord, COM_HSEC_ReleseHsecRecord)                                                  \
    X(ZrHsecOps, 7, getCar, ZR_HSEC_GetCar)                                                                    \
    X(ZrHsecOps, 8, configCar, ZR_HSEC_ConfigCar)                                                              \
    X(ZrHsecOps, 9, delCar, ZR_HSEC_DelCar)                                                                    \
    X(ZrHsecOps, 11, allocMeterId, COM_HSEC_AllocMeterId)                                                      \
    X(ZrHsecOps, 12, allocChipMeter, COM_HSEC_AllocChipMeter)                                                  \
    X(ZrHsecOps, 13, init, ZR_HSEC_Init)

#define ZR_MC_SLOTS(X) X(ZrMcOps, 0, init, ZR_MC_Init)

#define ZR_STORMCTL_SLOTS(X)                                                                                   \
    X(ZrStormctlOps, 0, init, ZR_STORMCTL_Init)                                                                \
    X(ZrStormctlOps, 1, set, ZR_STORMCTL_Set)

#define ZR_STP_SLOTS(X)                                                                                        \
    X(ZrStpOps, 0, stgCreate, ZR_STP_stgCreate)                                                                \
    X(ZrStpOps, 1, setVlanInstanceid, ZR_STP_SetVlanInstanceid)                                                \
    X(ZrStpOps, 2, setStpMode, ZR_STP_SetStpMode)                                                              \
    X(ZrStpOps, 3, flushMacByPortInstance, ZR_STP_FlushMacByPortInstance)                                      \
    X(ZrStpOps, 4, flushMacByPortVlan, ZR_STP_FlushMacByPortVlan)                                              \
    X(ZrStpOps, 5, flushMacByPort, ZR_STP_FlushMacByPort)

#define ZR_TRUNK_SLOTS(X)                                                                                      \
    X(ZrTrunkOps, 0, addMember, ZR_TRUNK_AddMember)                                                            \
    X(ZrTrunkOps, 1, delMember, ZR_TRUNK_DelMember)                                                            \
    X(ZrTrunkOps, 2, getMember, ZR_TRUNK_GetMember)                                                            \
    X(ZrTrunkOps, 3, create, ZR_TRUNK_Create)                                                                  \
    X(ZrTrunkOps, 4, destroy, ZR_TRUNK_Delete)                                                                 \
    X(ZrTrunkOps, 5, getTrunkNum, ZR_TRUNK_GetTrunkNum)

#define ZR_FMEA_SLOTS(X) X(ZrFmeaOps, 0, monitorUnitReg, ZR_FMEA_MonitorUnitReg)

// All of them.
#define ZR_SLOTS(X)                                                                                            \
    ZR_COMMON_SLOTS(X)                                                                                         \
    ZR_PORT_SLOTS(X)                                                                                           \
    ZR_MAC_SLOTS(X)                                                                                            \
    ZR_VLAN_SLOTS(X)                                                                                           \
    ZR_QOS_SLOTS(X)                                                                                            \
    ZR_ACL_SLOTS(X)                                                                                            \
    ZR_HSEC_SLOTS(X)                                                                                           \
    ZR_MC_SLOTS(X)                                                                                             \
    ZR_STORMCTL_SLOTS(X)                                                                                       \
    ZR_STP_SLOTS(X)                                                                                            \
    ZR_TRUNK_SLOTS(X)                                                                                          \
    ZR_FMEA_SLOTS(X)
