// The chip SDK's functions, as the library calls them. Every function returns a status, 0 for success, unless
// said otherwise. Ports are the manager's port numbers unless named chip ports. Where `unit` has 8 bits, a
// unit above 255 acts on its low 8 bits: the library cuts it without a check.
#pragma once

#include "platform/chip_records.h"

ZR_EXTERN_C_BEGIN

// Chip revision per unit, valid once the SDK has initialised the unit.
extern uint8_t l2sw_eco[3];

// Bring-up, registers, LEDs.
uint32_t l2sw_fun_regist(const SdkServices *services);
uint32_t l2sw_switch_init(uint32_t unit);
uint32_t l2sw_switch_ahb_read(uint32_t unit, uint32_t address, uint32_t *value);
uint32_t l2sw_getAsicReg(uint8_t unit, uint32_t reg, uint32_t *value);
uint32_t l2sw_setAsicReg(uint8_t unit, uint32_t reg, uint32_t value);
uint32_t l2sw_led_groupConfig_set(uint8_t unit, uint32_t group, uint32_t mode);
uint32_t l2sw_led_blinkRate_set(uint8_t unit, uint32_t rate);

// Port numbering. The first two return the value itself, not a status.
uint32_t l2sw_switch_port_L2P_get(uint32_t unit, uint32_t port); // the chip port
uint32_t l2sw_switch_isExtPort(uint32_t unit, uint32_t port);    // nonzero: read through its PHY
uint32_t l2sw_switch_logPortMask_get(uint32_t unit, uint32_t *mask);

// Ingress ACL.
uint32_t l2sw_filter_igrAcl_field_add(uint32_t unit, FilterCfg *cfg, FilterField *field);
uint32_t l2swFilterIgrAclRuleNumGet(uint32_t unit, FilterCfg *cfg, FilterAct *act, uint32_t *count);
uint32_t l2sw_filter_igrAcl_cfg_add(uint32_t unit, uint32_t id, FilterCfg *cfg, FilterAct *act,
                                    uint32_t *written);
uint32_t l2sw_filter_igrAcl_cfg_get(uint32_t unit, uint32_t id, FilterCfgRaw *raw, FilterAct *act);
uint32_t l2sw_filter_igrAcl_cfg_del(uint32_t unit, uint32_t id);
uint32_t l2sw_filter_igrAcl_entry_modifybitmap(uint8_t unit, uint32_t id, uint32_t mask);
uint32_t l2sw_filter_igrAcl_entry_addbitmap(uint8_t unit, uint32_t id, uint32_t mask);
uint32_t l2sw_filter_igrAcl_entry_removebitmap(uint8_t unit, uint32_t id, uint32_t mask);
uint32_t l2sw_filter_igrAcl_field_sel_set(uint8_t unit, uint32_t selector, uint32_t format, uint32_t offset);

// Address table.
uint32_t l2sw_l2_init(uint32_t unit);
uint32_t l2sw_l2_table_clear(uint32_t unit);
uint32_t l2sw_l2_aging_set(uint32_t unit, uint32_t time);
uint32_t l2sw_l2_aging_get(uint32_t unit, uint32_t *time);
uint32_t l2sw_l2_addr_add(uint32_t unit, const uint8_t mac[6], L2UcastAddr *addr);
uint32_t l2sw_l2_addr_del(uint32_t unit, const uint8_t mac[6], L2UcastAddr *addr);
uint32_t l2sw_l2_addr_get(uint32_t unit, const uint8_t mac[6], L2UcastAddr *addr);
uint32_t l2sw_l2_ucastAddr_flush(uint32_t unit, L2FlushCfg *cfg);
uint32_t l2sw_l2_entry_get(uint32_t unit, L2TableEntry *entry);
uint32_t l2sw_l2_learningCnt_get(uint32_t unit, uint32_t port, uint32_t *count);
uint32_t l2sw_l2_limitLearningCnt_set(uint32_t unit, uint32_t port, uint32_t limit);
uint32_t l2sw_l2_limitLearningCnt_get(uint32_t unit, uint32_t port, uint32_t *limit);

// VLANs and spanning tree.
uint32_t l2sw_vlan_init(uint32_t unit);
uint32_t l2sw_vlan_get(uint32_t unit, uint32_t vlan, VlanCfg *cfg);
uint32_t l2sw_vlan_set(uint32_t unit, uint32_t vlan, VlanCfg *cfg);
uint32_t l2sw_vlan_checkAndCreateMbr(uint32_t unit, uint32_t vlan, uint32_t *index);
uint32_t l2sw_vlan_GetMbrIdx(uint32_t unit, uint32_t vlan, uint32_t *index);
uint32_t l2sw_vlan_mbrCfg_get(uint32_t unit, uint32_t index, VlanMbrCfg *cfg);
uint32_t l2sw_vlan_mbrCfg_set(uint32_t unit, uint32_t index, VlanMbrCfg *cfg);
uint32_t l2sw_vlan_portPvid_set(uint32_t unit, uint32_t port, uint32_t vlan, uint32_t priority);
uint32_t l2sw_vlan_portPvid_get(uint32_t unit, uint32_t port, uint32_t *vlan, uint32_t *priority);
uint32_t l2sw_vlan_portIgrFilterEnable_set(uint32_t unit, uint32_t port, uint32_t enable);
uint32_t l2sw_vlan_tagMode_set(uint32_t unit, uint32_t port, uint32_t mode);
uint32_t l2sw_vlan_UntagDscpPriorityEnable_set(uint32_t unit, uint32_t enable);
uint32_t l2sw_vlan_stg_set(uint32_t unit, uint32_t vlan, uint32_t instance);
uint32_t l2sw_vlan_stg_get(uint32_t unit, uint32_t vlan, uint32_t *instance);
uint32_t l2sw_stp_mstpState_set(uint32_t unit, uint32_t instance, uint32_t port, uint32_t state);

// Link aggregation.
uint32_t l2sw_trunk_port_get(uint32_t unit, uint32_t group, uint32_t *mask);
uint32_t l2sw_trunk_port_set(uint32_t unit, uint32_t group, uint32_t mask);
uint32_t l2sw_trunk_mode_set(uint32_t unit, uint32_t mode);
uint32_t l2sw_trunk_distributionAlgorithm_set(uint32_t unit, uint32_t group, uint32_t mask);

// Ports.
uint32_t l2sw_port_mtu_set(uint32_t unit, uint32_t index, uint32_t sameIndex);
uint32_t l2sw_port_mtu_get(uint32_t unit, uint32_t *index);
uint32_t l2sw_cpu_tagPort_set(uint32_t unit, uint32_t port, uint32_t mode);
uint32_t l2sw_cpu_enable_set(uint32_t unit, uint32_t enable);
uint32_t l2sw_cpu_tag_ethertype_set(uint32_t unit, uint32_t etherType);
uint32_t l2sw_port_adminEnable_set(uint32_t unit, uint32_t port, uint32_t enable);
uint32_t l2sw_port_adminEnable_get(uint32_t unit, uint32_t port, uint32_t *enable);
uint32_t l2sw_port_phyStatus_get(uint32_t unit, uint32_t port, uint32_t *link, uint32_t *speed,
                                 uint32_t *duplex);
uint32_t l2sw_port_macForceLinkExt_get(uint32_t unit, uint32_t port, uint32_t *flag, SdkMacLink *link);
uint32_t l2sw_port_macStatus_get(uint32_t unit, uint32_t port, SdkMacLink *link);
uint32_t l2sw_port_phyAutoNegoAbility_get(uint32_t unit, uint32_t port, SdkPortAbility *ability);
uint32_t l2sw_port_phyAutoNegoAbility_set(uint32_t unit, uint32_t port, SdkPortAbility *ability);
uint32_t l2sw_port_phyForceModeAbility_get(uint32_t unit, uint32_t port, SdkPortAbility *ability);
uint32_t l2sw_port_phyForceModeAbility_set(uint32_t unit, uint32_t port, SdkPortAbility *ability);
uint32_t l2sw_port_phyReg_get(uint32_t unit, uint32_t port, uint32_t reg, uint32_t *value);
uint32_t l2sw_port_phyReg_set(uint32_t unit, uint32_t port, uint32_t reg, uint32_t value);
uint32_t l2sw_port_macLocalLoopbackEnable_set(uint32_t unit, uint32_t port, uint32_t on);
uint32_t l2sw_port_macLocalLoopbackEnable_get(uint32_t unit, uint32_t port, uint32_t *on);
uint32_t l2sw_port_phyLocalLoopbackEnable_set(uint32_t unit, uint32_t port, uint32_t on);
uint32_t l2sw_stat_port_getAll(uint32_t unit, uint32_t port, SdkPortCounters *counters);
uint32_t l2sw_stat_port_reset(uint32_t unit, uint32_t port);
uint32_t l2sw_port_snr_get(uint32_t unit, uint32_t port, SdkPortSnr *snr);
uint32_t l2sw_port_led_force_set(uint32_t unit, uint32_t port, uint32_t a, uint32_t b);
uint32_t l2sw_gephy_workaround_04_parallel(uint32_t unit, uint32_t port, uint32_t zero);
uint32_t l2sw_port_isolation_get(uint32_t unit, uint32_t port, uint32_t *mask);
uint32_t l2sw_port_isolation_set(uint32_t unit, uint32_t port, uint32_t mask);

// QoS, rates, reserved multicast.
uint32_t l2sw_qos_init(uint32_t unit, uint32_t queues);
uint32_t l2sw_Flow_Control_Pause_All_set(uint32_t unit, uint32_t threshold);
uint32_t l2sw_qos_priSel_set(uint32_t unit, uint32_t index, SdkQosRecord *record);
uint32_t l2sw_qos_portPriSelIndex_set(uint32_t unit, uint32_t port, uint32_t index);
uint32_t l2sw_qos_priMap_set(uint32_t unit, uint32_t selector, SdkQosRecord *record);
uint32_t l2sw_qos_schedulingQueue_set(uint32_t unit, uint32_t port, SdkQosRecord *record);
uint32_t l2sw_qos_dscpPriRemap_set(uint32_t unit, uint32_t dscp, uint32_t priority);
uint32_t l2sw_qos_1pPriRemap_set(uint32_t unit, uint32_t p8021, uint32_t priority);
uint32_t l2sw_rate_shareMeter_set(uint8_t unit, uint32_t meter, uint32_t mode, uint32_t rate, uint32_t one);
uint32_t l2sw_rate_shareMeter_get(uint8_t unit, uint32_t meter, uint32_t *mode, uint32_t *rate,
                                  uint32_t *third);
uint32_t l2sw_rate_shareMeterBucket_set(uint8_t unit, uint32_t meter, uint32_t bucket);
uint32_t l2sw_rate_shareMeterBucket_get(uint8_t unit, uint32_t meter, uint32_t *bucket);
uint32_t l2sw_rate_stormControlEnable_set(uint8_t unit, uint32_t on);
uint32_t l2sw_rate_stormControlMeterIdx_set(uint8_t unit, uint32_t port, uint32_t type, uint32_t meter);
uint32_t l2sw_rate_stormControlPortEnable_set(uint8_t unit, uint32_t port, uint32_t type, uint32_t enable);
uint32_t l2sw_stat_logging_counter_get(uint32_t unit, uint32_t counter, uint32_t *count);
uint32_t l2sw_trap_rmaAction_set(uint32_t unit, uint32_t type, uint32_t action);
uint32_t l2sw_trap_lldpEnable_set(uint32_t unit, uint32_t flag);

ZR_EXTERN_C_END
