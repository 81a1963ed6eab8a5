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

void ZR_COMMON_FuncInit(ZrCommonOps *ops)
{
    if (ops == nullptr)
        return;
    ops->initChip = ZR_COMMON_InitChip;
    ops->chipRegRead = ZR_COMMON_ChipRegRead;
    ops->chipRegWrite = ZR_COMMON_ChipRegWrite;
    ops->cliCmdPrase = ZR_COMMON_CliCmdPrase;
    ops->chipCaptureDropReasonEnable = ZR_COMMON_ChipCaptureDropReasonEnable;
    ops->chipGetDropReason = ZR_COMMON_ChipGetDropReason;
}

void ZR_PORT_FuncInit(ZrPortOps *ops)
{
    if (ops == nullptr)
        return;
    ops->init = ZR_PORT_Init;
    ops->regRead = ZR_PORT_RegRead;
    ops->regWrite = ZR_PORT_RegWrite;
    ops->setEnable = ZR_PORT_SetEnable;
    ops->getEnable = ZR_PORT_GetEnable;
    ops->cpuInit = ZR_PORT_CpuInit;
    ops->getLinkStatus = ZR_PORT_GetLinkStatus;
    ops->linkEvt = ZR_PORT_LinkEvt;
    ops->linkScanWar = ZR_PORT_LinkScanWar;
    ops->getSpeed = ZR_PORT_GetSpeed;
    ops->setSpeed = ZR_PORT_SetSpeed;
    ops->getAutonegEnable = ZR_PORT_GetAutonegEnable;
    ops->setAutonegEnable = ZR_PORT_SetAutonegEnable;
    ops->getAutonegAbility = ZR_PORT_GetAutonegAbility;
    ops->getRemoteAutonegAbility = ZR_PORT_GetRemoteAutonegAbility;
    ops->getStatistics = ZR_PORT_GetStatistics;
    ops->clearStatistics = ZR_PORT_ClearStatistics;
    ops->setDuplex = ZR_PORT_SetDuplex;
    ops->getDuplex = ZR_PORT_GetDuplex;
    ops->getMaxFrame = ZR_PORT_GetMaxFrame;
    ops->setIsolate = ZR_PORT_SetIsolate;
    ops->getLoopback = ZR_PORT_GetLoopback;
    ops->setLoopback = ZR_PORT_SetLoopback;
    ops->getDebugInfo = ZR_PORT_GetDebugInfo;
    ops->getSnr = ZR_PORT_GetSnr;
    ops->getKhCheck = ZR_PORT_GetKhCheck;
    ops->getChipId = ZR_PORT_GetChipId;
    ops->setLedForce = ZR_PORT_SetLEDForce;
    ops->getLinkDownPhyReg = ZR_GetLinkDownPhyReg;
    ops->setAllIsolate = ZR_PORT_SetAllIsolate;
    ops->getIsolateMap = ZR_PORT_GetIsolateMap;
    ops->setAdvert = ZR_PORT_SetAdvert;
}

void ZR_MAC_FuncInit(ZrMacOps *ops)
{
    if (ops == nullptr)
        return;
    ops->init = ZR_MAC_Init;
    ops->syncMacInsert = ZR_MAC_SyncMacInsert;
    ops->addMac = ZR_MAC_AddMac;
    ops->setAgeTime = ZR_MAC_SetAgeTime;
    ops->getAgeTime = ZR_MAC_GetAgeTime;
    ops->delAllMac = ZR_MAC_DelAllMac;
    ops->delByVlanMac = ZR_MAC_DelByVlanMac;
    ops->delByPort = ZR_MAC_DelByPort;
    ops->delByVlan = ZR_MAC_DelByVlan;
    ops->delByPortVlan = ZR_MAC_DelByPortVlan;
    ops->delByMac = ZR_MAC_DelByMac;
    ops->delDynMac = ZR_MAC_DelDynMac;
    ops->getMacEntry = ZR_MAC_GetMacEntry;
    ops->setPortLearnMode = ZR_MAC_SetPortLearnMode;
    ops->getPortLearnMode = ZR_MAC_GetPortLearnMode;
    ops->getCapacity = ZR_MAC_GetCapacity;
    ops->registerCallBack = ZR_MAC_RegisterCallBack;
}

void ZR_VLAN_FuncInit(ZrVlanOps *ops)
{
    if (ops == nullptr)
        return;
    ops->init = ZR_VLAN_Init;
    ops->create = ZR_VLAN_Create;
    ops->destroy = ZR_VLAN_Delete;
    ops->addMember = ZR_VLAN_AddMember;
    ops->addMultiMember = ZR_VLAN_AddMultiMember;
    ops->delMember = ZR_VLAN_DelMember;
    ops->getPortMap = ZR_VLAN_GetPortMap;
    ops->setPortPvid = ZR_VLAN_SetPortPvid;
    ops->getPortPvid = ZR_VLAN_GetPortPvid;
    ops->setIgrPortFilter = ZR_VLAN_SetIgrPortFilter;
    ops->setTagMode = HAL_VLAN_SetTagModeZr;
}

void ZR_QOS_FuncInit(ZrQosOps *ops)
{
    if (ops == nullptr)
        return;
    ops->init = ZR_QOS_Init;
}

void ZR_ACL_FuncInit(ZrAclOps *ops)
{
    if (ops == nullptr)
        return;
    ops->isLogicRuleInUse = COM_ACL_IsLogicRuleInUse;
    ops->allocLogicRuleId = COM_ACL_AllocLogicRuleId;
    ops->logicRuleToChipRule = COM_ACL_LogicRuleToChipRule;
    ops->updateLanWanPolicy = ZR_ACL_UpdateLANWanPolicy;
    ops->setRuleMapEntry = ZR_ACL_SetRuleMapEntry;
    ops->releaseRuleRecord = COM_ACL_ReleseRuleRecord;
    ops->addEntry = ZR_ACL_AddEntry;
    ops->getEntry = ZR_ACL_GetEntry;
    ops->delEntry = ZR_ACL_DelEntry;
    ops->modifyEntryPortmap = ZR_ACL_ModifyEntryPortmap;
    ops->addEntryPortmap = ZR_ACL_AddEntryPortmap;
    ops->removeEntryPortmap = ZR_ACL_RemoveEntryPortmap;
    ops->init = ZR_ACL_Init;
}

void ZR_HSEC_FuncInit(ZrHsecOps *ops)
{
    if (ops == nullptr)
        return;
    ops->isLogicMeterInUse = COM_HSEC_IsLogicMeterInUse;
    ops->logicMeterToChipMeter = COM_HSEC_LogicMeterToChipMeter;
    ops->chipMeterToLogicMeter = COM_HSEC_ChipMeterToLogicMeter;
    ops->entryIdToLogicMeter = COM_HSEC_EntryIdToLogicMeter;
    ops->getStat = ZR_HSEC_GetStat;
    ops->setMeterEntry = COM_HSEC_SetMeterEntry;
    ops->releaseRecord = COM_HSEC_ReleseHsecRecord;
    ops->getCar = ZR_HSEC_GetCar;
    ops->configCar = ZR_HSEC_ConfigCar;
    ops->delCar = ZR_HSEC_DelCar;
    ops->allocMeterId = COM_HSEC_AllocMeterId;
    ops->allocChipMeter = COM_HSEC_AllocChipMeter;
    ops->init = ZR_HSEC_Init;
}

void ZR_MC_FuncInit(ZrMcOps *ops)
{
    if (ops == nullptr)
        return;
    ops->init = ZR_MC_Init;
}

void ZR_STORMCTL_FuncInit(ZrStormctlOps *ops)
{
    if (ops == nullptr)
        return;
    ops->init = ZR_STORMCTL_Init;
    ops->set = ZR_STORMCTL_Set;
}

void ZR_STP_FuncInit(ZrStpOps *ops)
{
    if (ops == nullptr)
        return;
    ops->stgCreate = ZR_STP_stgCreate;
    ops->setVlanInstanceid = ZR_STP_SetVlanInstanceid;
    ops->setStpMode = ZR_STP_SetStpMode;
    ops->flushMacByPortInstance = ZR_STP_FlushMacByPortInstance;
    ops->flushMacByPortVlan = ZR_STP_FlushMacByPortVlan;
    ops->flushMacByPort = ZR_STP_FlushMacByPort;
}

void ZR_TRUNK_FuncInit(ZrTrunkOps *ops)
{
    if (ops == nullptr)
        return;
    ops->addMember = ZR_TRUNK_AddMember;
    ops->delMember = ZR_TRUNK_DelMember;
    ops->getMember = ZR_TRUNK_GetMember;
    ops->create = ZR_TRUNK_Create;
    ops->destroy = ZR_TRUNK_Delete;
    ops->getTrunkNum = ZR_TRUNK_GetTrunkNum;
}

void ZR_FMEA_FuncInit(ZrFmeaOps *ops)
{
    if (ops == nullptr)
        return;
    ops->monitorUnitReg = ZR_FMEA_MonitorUnitReg;
}

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
