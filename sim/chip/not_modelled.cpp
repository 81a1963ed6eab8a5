// Interim: SDK functions that no model serves yet.
#include "sim/chip/sdk.h"
using namespace zrsim;

__attribute__((weak)) uint32_t l2sw_switch_port_L2P_get(uint32_t , uint32_t )
{
    return pass("l2sw_switch_port_L2P_get", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_switch_isExtPort(uint32_t , uint32_t )
{
    return pass("l2sw_switch_isExtPort", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_switch_logPortMask_get(uint32_t , uint32_t *)
{
    return pass("l2sw_switch_logPortMask_get", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_filter_igrAcl_field_add(uint32_t , FilterCfg *, FilterField *)
{
    return pass("l2sw_filter_igrAcl_field_add", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2swFilterIgrAclRuleNumGet(uint32_t , FilterCfg *, FilterAct *, uint32_t *)
{
    return pass("l2swFilterIgrAclRuleNumGet", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_filter_igrAcl_cfg_add(uint32_t , uint32_t , FilterCfg *, FilterAct *, uint32_t *)
{
    return pass("l2sw_filter_igrAcl_cfg_add", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_filter_igrAcl_cfg_get(uint32_t , uint32_t , FilterCfgRaw *, FilterAct *)
{
    return pass("l2sw_filter_igrAcl_cfg_get", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_filter_igrAcl_cfg_del(uint32_t , uint32_t )
{
    return pass("l2sw_filter_igrAcl_cfg_del", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_filter_igrAcl_entry_modifybitmap(uint8_t , uint32_t , uint32_t )
{
    return pass("l2sw_filter_igrAcl_entry_modifybitmap", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_filter_igrAcl_entry_addbitmap(uint8_t , uint32_t , uint32_t )
{
    return pass("l2sw_filter_igrAcl_entry_addbitmap", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_filter_igrAcl_entry_removebitmap(uint8_t , uint32_t , uint32_t )
{
    return pass("l2sw_filter_igrAcl_entry_removebitmap", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_filter_igrAcl_field_sel_set(uint8_t , uint32_t , uint32_t , uint32_t )
{
    return pass("l2sw_filter_igrAcl_field_sel_set", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_l2_init(uint32_t )
{
    return pass("l2sw_l2_init", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_l2_table_clear(uint32_t )
{
    return pass("l2sw_l2_table_clear", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_l2_aging_set(uint32_t , uint32_t )
{
    return pass("l2sw_l2_aging_set", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_l2_aging_get(uint32_t , uint32_t *)
{
    return pass("l2sw_l2_aging_get", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_l2_addr_add(uint32_t , const uint8_t [6], L2UcastAddr *)
{
    return pass("l2sw_l2_addr_add", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_l2_addr_del(uint32_t , const uint8_t [6], L2UcastAddr *)
{
    return pass("l2sw_l2_addr_del", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_l2_addr_get(uint32_t , const uint8_t [6], L2UcastAddr *)
{
    return pass("l2sw_l2_addr_get", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_l2_ucastAddr_flush(uint32_t , L2FlushCfg *)
{
    return pass("l2sw_l2_ucastAddr_flush", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_l2_entry_get(uint32_t , L2TableEntry *)
{
    return pass("l2sw_l2_entry_get", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_l2_learningCnt_get(uint32_t , uint32_t , uint32_t *)
{
    return pass("l2sw_l2_learningCnt_get", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_l2_limitLearningCnt_set(uint32_t , uint32_t , uint32_t )
{
    return pass("l2sw_l2_limitLearningCnt_set", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_l2_limitLearningCnt_get(uint32_t , uint32_t , uint32_t *)
{
    return pass("l2sw_l2_limitLearningCnt_get", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_vlan_init(uint32_t )
{
    return pass("l2sw_vlan_init", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_vlan_get(uint32_t , uint32_t , VlanCfg *)
{
    return pass("l2sw_vlan_get", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_vlan_set(uint32_t , uint32_t , VlanCfg *)
{
    return pass("l2sw_vlan_set", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_vlan_checkAndCreateMbr(uint32_t , uint32_t , uint32_t *)
{
    return pass("l2sw_vlan_checkAndCreateMbr", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_vlan_GetMbrIdx(uint32_t , uint32_t , uint32_t *)
{
    return pass("l2sw_vlan_GetMbrIdx", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_vlan_mbrCfg_get(uint32_t , uint32_t , VlanMbrCfg *)
{
    return pass("l2sw_vlan_mbrCfg_get", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_vlan_mbrCfg_set(uint32_t , uint32_t , VlanMbrCfg *)
{
    return pass("l2sw_vlan_mbrCfg_set", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_vlan_portPvid_set(uint32_t , uint32_t , uint32_t , uint32_t )
{
    return pass("l2sw_vlan_portPvid_set", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_vlan_portPvid_get(uint32_t , uint32_t , uint32_t *, uint32_t *)
{
    return pass("l2sw_vlan_portPvid_get", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_vlan_portIgrFilterEnable_set(uint32_t , uint32_t , uint32_t )
{
    return pass("l2sw_vlan_portIgrFilterEnable_set", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_vlan_tagMode_set(uint32_t , uint32_t , uint32_t )
{
    return pass("l2sw_vlan_tagMode_set", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_vlan_UntagDscpPriorityEnable_set(uint32_t , uint32_t )
{
    return pass("l2sw_vlan_UntagDscpPriorityEnable_set", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_vlan_stg_set(uint32_t , uint32_t , uint32_t )
{
    return pass("l2sw_vlan_stg_set", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_vlan_stg_get(uint32_t , uint32_t , uint32_t *)
{
    return pass("l2sw_vlan_stg_get", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_stp_mstpState_set(uint32_t , uint32_t , uint32_t , uint32_t )
{
    return pass("l2sw_stp_mstpState_set", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_trunk_port_get(uint32_t , uint32_t , uint32_t *)
{
    return pass("l2sw_trunk_port_get", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_trunk_port_set(uint32_t , uint32_t , uint32_t )
{
    return pass("l2sw_trunk_port_set", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_trunk_mode_set(uint32_t , uint32_t )
{
    return pass("l2sw_trunk_mode_set", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_trunk_distributionAlgorithm_set(uint32_t , uint32_t , uint32_t )
{
    return pass("l2sw_trunk_distributionAlgorithm_set", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_port_mtu_set(uint32_t , uint32_t , uint32_t )
{
    return pass("l2sw_port_mtu_set", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_port_mtu_get(uint32_t , uint32_t *)
{
    return pass("l2sw_port_mtu_get", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_cpu_tagPort_set(uint32_t , uint32_t , uint32_t )
{
    return pass("l2sw_cpu_tagPort_set", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_cpu_enable_set(uint32_t , uint32_t )
{
    return pass("l2sw_cpu_enable_set", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_cpu_tag_ethertype_set(uint32_t , uint32_t )
{
    return pass("l2sw_cpu_tag_ethertype_set", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_port_adminEnable_set(uint32_t , uint32_t , uint32_t )
{
    return pass("l2sw_port_adminEnable_set", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_port_adminEnable_get(uint32_t , uint32_t , uint32_t *)
{
    return pass("l2sw_port_adminEnable_get", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_port_phyStatus_get(uint32_t , uint32_t , uint32_t *, uint32_t *, uint32_t *)
{
    return pass("l2sw_port_phyStatus_get", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_port_macForceLinkExt_get(uint32_t , uint32_t , uint32_t *, SdkMacLink *)
{
    return pass("l2sw_port_macForceLinkExt_get", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_port_macStatus_get(uint32_t , uint32_t , SdkMacLink *)
{
    return pass("l2sw_port_macStatus_get", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_port_phyAutoNegoAbility_get(uint32_t , uint32_t , SdkPortAbility *)
{
    return pass("l2sw_port_phyAutoNegoAbility_get", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_port_phyAutoNegoAbility_set(uint32_t , uint32_t , SdkPortAbility *)
{
    return pass("l2sw_port_phyAutoNegoAbility_set", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_port_phyForceModeAbility_get(uint32_t , uint32_t , SdkPortAbility *)
{
    return pass("l2sw_port_phyForceModeAbility_get", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_port_phyForceModeAbility_set(uint32_t , uint32_t , SdkPortAbility *)
{
    return pass("l2sw_port_phyForceModeAbility_set", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_port_phyReg_get(uint32_t , uint32_t , uint32_t , uint32_t *)
{
    return pass("l2sw_port_phyReg_get", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_port_phyReg_set(uint32_t , uint32_t , uint32_t , uint32_t )
{
    return pass("l2sw_port_phyReg_set", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_port_macLocalLoopbackEnable_set(uint32_t , uint32_t , uint32_t )
{
    return pass("l2sw_port_macLocalLoopbackEnable_set", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_port_macLocalLoopbackEnable_get(uint32_t , uint32_t , uint32_t *)
{
    return pass("l2sw_port_macLocalLoopbackEnable_get", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_port_phyLocalLoopbackEnable_set(uint32_t , uint32_t , uint32_t )
{
    return pass("l2sw_port_phyLocalLoopbackEnable_set", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_stat_port_getAll(uint32_t , uint32_t , SdkPortCounters *)
{
    return pass("l2sw_stat_port_getAll", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_stat_port_reset(uint32_t , uint32_t )
{
    return pass("l2sw_stat_port_reset", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_port_snr_get(uint32_t , uint32_t , SdkPortSnr *)
{
    return pass("l2sw_port_snr_get", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_port_led_force_set(uint32_t , uint32_t , uint32_t , uint32_t )
{
    return pass("l2sw_port_led_force_set", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_gephy_workaround_04_parallel(uint32_t , uint32_t , uint32_t )
{
    return pass("l2sw_gephy_workaround_04_parallel", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_port_isolation_get(uint32_t , uint32_t , uint32_t *)
{
    return pass("l2sw_port_isolation_get", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_port_isolation_set(uint32_t , uint32_t , uint32_t )
{
    return pass("l2sw_port_isolation_set", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_qos_init(uint32_t , uint32_t )
{
    return pass("l2sw_qos_init", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_Flow_Control_Pause_All_set(uint32_t , uint32_t )
{
    return pass("l2sw_Flow_Control_Pause_All_set", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_qos_priSel_set(uint32_t , uint32_t , SdkQosRecord *)
{
    return pass("l2sw_qos_priSel_set", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_qos_portPriSelIndex_set(uint32_t , uint32_t , uint32_t )
{
    return pass("l2sw_qos_portPriSelIndex_set", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_qos_priMap_set(uint32_t , uint32_t , SdkQosRecord *)
{
    return pass("l2sw_qos_priMap_set", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_qos_schedulingQueue_set(uint32_t , uint32_t , SdkQosRecord *)
{
    return pass("l2sw_qos_schedulingQueue_set", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_qos_dscpPriRemap_set(uint32_t , uint32_t , uint32_t )
{
    return pass("l2sw_qos_dscpPriRemap_set", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_qos_1pPriRemap_set(uint32_t , uint32_t , uint32_t )
{
    return pass("l2sw_qos_1pPriRemap_set", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_rate_shareMeter_set(uint8_t , uint32_t , uint32_t , uint32_t , uint32_t )
{
    return pass("l2sw_rate_shareMeter_set", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_rate_shareMeter_get(uint8_t , uint32_t , uint32_t *, uint32_t *, uint32_t *)
{
    return pass("l2sw_rate_shareMeter_get", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_rate_shareMeterBucket_set(uint8_t , uint32_t , uint32_t )
{
    return pass("l2sw_rate_shareMeterBucket_set", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_rate_shareMeterBucket_get(uint8_t , uint32_t , uint32_t *)
{
    return pass("l2sw_rate_shareMeterBucket_get", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_rate_stormControlEnable_set(uint8_t , uint32_t )
{
    return pass("l2sw_rate_stormControlEnable_set", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_rate_stormControlMeterIdx_set(uint8_t , uint32_t , uint32_t , uint32_t )
{
    return pass("l2sw_rate_stormControlMeterIdx_set", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_rate_stormControlPortEnable_set(uint8_t , uint32_t , uint32_t , uint32_t )
{
    return pass("l2sw_rate_stormControlPortEnable_set", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_stat_logging_counter_get(uint32_t , uint32_t , uint32_t *)
{
    return pass("l2sw_stat_logging_counter_get", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_trap_rmaAction_set(uint32_t , uint32_t , uint32_t )
{
    return pass("l2sw_trap_rmaAction_set", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}

__attribute__((weak)) uint32_t l2sw_trap_lldpEnable_set(uint32_t , uint32_t )
{
    return pass("l2sw_trap_lldpEnable_set", [] { return static_cast<uint32_t>(kSdkNotModelled); });
}
