// ACL rules on the chip: start-up and default policies; programming, reading back, removing a rule and
// changing its ports; the conversions between the manager's records and the chip SDK's.
//
// A rule occupies a run of consecutive entries of the chip's ingress ACL table; the chip SDK decides how
// many. Its life: ZR_ACL_AddEntry programs the entries and records counter and meter at the first chip rule
// id; ZR_ACL_SetRuleMapEntry records the run, and from then on the rule can be found, read and changed;
// ZR_ACL_DelEntry clears the entries and releases the counter; COM_ACL_ReleseRuleRecord frees the ids.
// Nothing is rolled back: a failure after entries were written leaves them on the chip, unrecorded, and a
// later rule may be placed over them.
//
// Operations on a recorded rule take its first chip rule id. An id inside the rule's run stands for the
// same rule: they work from the first id and never reach an entry outside the run.
//
// Common to all: a null pointer gives LSW_NULL_POINTER before anything else happens, and an operation
// without status then does nothing. Failures are printed for the ACL module with the status that caused
// them, unless said to be silent. Outputs are written only on success unless said otherwise. Where no range
// is named, arguments are passed to the SDK unchecked.
#pragma once

#include "platform/chip_records.h"
#include "platform/manager_records.h"

ZR_EXTERN_C_BEGIN

enum {
    ZR_ACL_RULES = 96,          // rule ids of a unit, logic and chip alike
    ZR_ACL_COUNTERS = 32,       // hit counters of a unit
    ZR_ACL_CHIP_PORTS = 0x3801F // the chip ports that a rule can name: 0 to 4 and 15 to 17
};

// ---- start-up -------------------------------------------------------------------------------------

// Initialises a unit's ACLs: records, counters, chip partitions, default policies, field selectors. The
// first step that fails is printed and its status returned; what was done stays. LSW_IN_USE on a second
// call, LSW_INVALID_ARGUMENT for a unit above 2, LSW_NULL_POINTER when there is no memory for the records.
ZR_EXPORT uint32_t ZR_ACL_Init(uint32_t unit);

// Cuts the chip rule ids into the partitions 0-15, 16-73, 74-79 and 80-95. Returns the number of partitions
// that do not fit the unit's records (the sum of their statuses, LSW_INVALID_ARGUMENT each) and prints it
// unless it is 0. ZR_ACL_Init prints the same text once more.
ZR_EXPORT uint32_t ZR_ACL_InitPartInfo(uint32_t unit);

// Set the selectors of the packet words that rules can match: selector 15 for the user-defined field, 3 and
// 4 for the two CAPWAP words (these by the second operation alone). LSW_CHIP_FAILED at the first failure,
// silently. A unit above 255 acts on its low 8 bits.
ZR_EXPORT uint32_t HAL_ACL_InitFieldSelectorZr(uint32_t unit);
ZR_EXPORT uint32_t HAL_ACL_InitCapwapKeepaliveFiled(uint32_t unit);

// ---- default policies -----------------------------------------------------------------------------

// Install the policies that catch ARP, NTP, DHCP (both directions) and CoAP on WAN ports, all of them in
// this order or one: rules in partition 0 that start on no port, each with a hit counter as long as one is
// free. LSW_CHIP_FAILED at the first that cannot be installed; the lines printed are those of
// ZR_ACL_AddLogicEntry, none when no logic rule id is free. Policies beyond the 96th of a unit are
// installed, but their ports are not updated.
ZR_EXPORT uint32_t ZR_ACL_InitLanWanDefualtPolicy(uint32_t unit);
ZR_EXPORT uint32_t ZR_ACL_InitLanWanARPPolicy(uint32_t unit);
ZR_EXPORT uint32_t ZR_ACL_InitLanWanNtpPolicy(uint32_t unit);
ZR_EXPORT uint32_t ZR_ACL_InitLanWanDhcpReqPolicy(uint32_t unit);
ZR_EXPORT uint32_t ZR_ACL_InitLanWanDhcpRepPolicy(uint32_t unit);
ZR_EXPORT uint32_t ZR_ACL_InitLanWanCoapPolicy(uint32_t unit);

// Tell whether a chip port faces the WAN (`portType` 1) or the LAN (anything else): a WAN port joins all
// default policies of the unit, a LAN port leaves them. LSW_INVALID_ARGUMENT for a unit above 2 or a port
// above 127, silently. LSW_CHIP_FAILED at the first policy that fails, those before it updated: silently
// when the policy's rule is no longer recorded, else with the line of changing ports. For a port that a
// rule cannot name the policies are walked with no port, which changes nothing.
ZR_EXPORT uint32_t ZR_ACL_UpdateLANWanPolicy(uint32_t unit, uint32_t port, uint32_t portType);
ZR_EXPORT uint32_t ZR_ACL_UpdateWanDefaultPolicy(uint32_t unit, uint32_t port);
ZR_EXPORT uint32_t ZR_ACL_UpdateLANDefaultPolicy(uint32_t unit, uint32_t port);

// ---- adding ---------------------------------------------------------------------------------------

// Programs a rule: allocates a counter if the rule counts, sizes the rule, finds a free run in the chip
// partition of its number, writes the entries, records meter and counter. The counter's number is written
// into `rule`; when none can be allocated (LSW_CHIP_FAILED, printed) the count flag is cleared in `rule` and
// the rule programmed without. `place` is written as soon as the entries are: the first chip rule id, and
// the number of entries that the SDK wrote, cut to 8 bits. LSW_CHIP_FAILED when the SDK refuses, or the
// status of HAL_ACL_ConvertRuleInfoZr; LSW_INVALID_ARGUMENT for a partition above 3 or a unit above 2, found
// once the SDK has sized the rule; LSW_NO_RESOURCE when there is no run of the length. Recording meter and
// counter fails only for ids beyond the records, LSW_INVALID_ARGUMENT or LSW_NO_RESOURCE; the counter's
// failure is silent.
ZR_EXPORT uint32_t ZR_ACL_AddEntry(uint32_t unit, LswmAclRule *rule, AclEntryPlace *place);

// Writes the rule into the entries from `firstChipId` on; `count` is how many the SDK wrote. LSW_CHIP_FAILED
// when the SDK refuses, silently, or the status of HAL_ACL_ConvertRuleInfoZr, which prints.
ZR_EXPORT uint32_t HAL_ACL_AddEntryZr(uint32_t unit, uint32_t firstChipId, const LswmAclMatch *match,
                                      const LswmAclAction *action, uint32_t *count);

// Allocates a logic rule id, programs the rule as ZR_ACL_AddEntry does and records it. The partition number
// selects the logic and the chip partition; LSW_CHIP_FAILED when it is above 3, LSW_INVALID_ARGUMENT or
// LSW_NO_RESOURCE when no id can be allocated, all silently. When recording fails (LSW_NO_RESOURCE) the rule
// stays on the chip.
ZR_EXPORT uint32_t ZR_ACL_AddLogicEntry(uint32_t unit, LswmAclRule *rule, uint32_t *logicRuleId);

// The steps of adding, in their order; all of them are silent but for the conversion of the rule.

// Writes the number of the lowest free counter into an action that counts, without marking it taken;
// LSW_CHIP_FAILED when none is free or for a unit above 2. LSW_OK when the action does not count.
ZR_EXPORT uint32_t ZR_ACL_AssignCounterId(uint32_t unit, LswmAclAction *action);

// How many entries the rule needs. LSW_CHIP_FAILED when the SDK refuses; `count` is written all the same.
// The status of HAL_ACL_ConvertRuleInfoZr, which prints, leaves it unwritten.
ZR_EXPORT uint32_t HAL_ACL_GetEntryCntZr(uint32_t unit, const LswmAclMatch *match, const LswmAclAction *action,
                                         uint32_t *count);

// COM_ACL_AllocChipRuleId (records/acl_records.h).
ZR_EXPORT uint32_t ZR_ACL_AllocEntryId(uint32_t unit, uint32_t partition, uint32_t count,
                                       uint32_t *firstChipId);

// Record the meter (low 8 bits) of an action that is policed, and the counter of an action that counts, at
// the rule's first chip rule id; the counter is marked taken. LSW_OK when the action has none. Statuses as
// COM_ACL_SetRuleCarMapEntry and COM_ACL_SetRuleCounterMapEntry.
ZR_EXPORT uint32_t ZR_ACL_SetRuleCarMapEntry(uint32_t unit, uint32_t firstChipId, const LswmAclAction *action);
ZR_EXPORT uint32_t ZR_ACL_SetRuleCounterMapEntry(uint32_t unit, uint32_t firstChipId,
                                                 const LswmAclAction *action);

// COM_ACL_SetRuleRecord.
ZR_EXPORT uint32_t ZR_ACL_SetRuleMapEntry(uint32_t unit, uint32_t logicRuleId, uint32_t firstChipId,
                                          uint32_t count);

// ---- reading back, removing -----------------------------------------------------------------------

// Read a rule's first entry into a record that the caller has cleared (HAL_ACL_FilterCfgToRuleZr and
// HAL_ACL_FilterActToLswmActionZr tell what is read back); an entry that reads back empty leaves it
// untouched. LSW_CHIP_FAILED when the SDK refuses, printed by the module operation only, and silently when
// no rule is recorded at the id. The chip operation reads any entry, recorded or not.
ZR_EXPORT uint32_t ZR_ACL_GetEntry(uint32_t unit, uint32_t firstChipId, LswmAclRule *rule);
ZR_EXPORT uint32_t HAL_ACL_GetEntryZr(uint32_t unit, uint32_t chipRuleId, LswmAclMatch *match,
                                      LswmAclAction *action);

// Clears every entry of the rule and releases meter and counter; the record stays for
// COM_ACL_ReleseRuleRecord. An entry that the SDK does not clear is no failure: it and every later entry are
// printed with the sum of the statuses so far (LSW_CHIP_FAILED each). The status is that of the release,
// printed for the meter only. LSW_CHIP_FAILED when no rule is recorded at the id, silently.
ZR_EXPORT uint32_t ZR_ACL_DelEntry(uint32_t unit, uint32_t firstChipId);

// Clears one entry. LSW_CHIP_FAILED when the SDK refuses, silently.
ZR_EXPORT uint32_t HAL_ACL_DelEntryZr(uint32_t unit, uint32_t chipRuleId);

// ---- ports of a rule ------------------------------------------------------------------------------

// Replace, extend and reduce the ports of every entry of the rule. `ports` is an array of words of which
// only word 0 is read (bit n = chip port n), cut to ZR_ACL_CHIP_PORTS. The first entry that the SDK refuses
// ends the operation with the SDK's status unchanged; entries before it stay changed. LSW_NOT_FOUND when
// nothing is recorded at the id, LSW_CHIP_FAILED when the id is marked but no rule covers it,
// LSW_INVALID_ARGUMENT for a unit above 2. Every failure but a null pointer is printed.
ZR_EXPORT uint32_t ZR_ACL_ModifyEntryPortmap(uint32_t unit, uint32_t firstChipId, const uint32_t *ports);
ZR_EXPORT uint32_t HAL_ACL_ModifyEntryBitmapZr(uint32_t unit, uint32_t firstChipId, const uint32_t *ports);
ZR_EXPORT uint32_t ZR_ACL_AddEntryPortmap(uint32_t unit, uint32_t firstChipId, const uint32_t *ports);
ZR_EXPORT uint32_t HAL_ACL_AddEntryBitmapZr(uint32_t unit, uint32_t firstChipId, const uint32_t *ports);
ZR_EXPORT uint32_t ZR_ACL_RemoveEntryPortmap(uint32_t unit, uint32_t firstChipId, const uint32_t *ports);
ZR_EXPORT uint32_t HAL_ACL_RemoveEntryBitmapZr(uint32_t unit, uint32_t firstChipId, const uint32_t *ports);

// ---- match, manager to chip -----------------------------------------------------------------------

// Every match field becomes one chip field node, a block of the manager's memory that
// l2sw_filter_igrAcl_field_add chains into the configuration. From then on the node belongs to the chain,
// and the caller frees it with the chain; a node that the SDK refuses is freed here.

// Converts the whole match part into a configuration that the caller has cleared: layer 2, then IPv4 when
// the layer-3 type is 0, then the ports, cut to ZR_ACL_CHIP_PORTS. A match without fields becomes a
// destination MAC of mask 0, which every frame matches. Returns LSW_OK or the sum of the fields' statuses
// (LSW_NO_MEMORY and LSW_CHIP_FAILED) of the layer that failed; the layers after it are then left out and
// the ports unset, while the nodes chained so far stay in the chain.
ZR_EXPORT uint32_t HAL_ACL_ConvertRuleInfoZr(uint32_t unit, const LswmAclMatch *match, FilterCfg *cfg);

// Convert the fields of one layer whose flags are set, each of them even after a failure. Return the
// sum of the fields' statuses.
ZR_EXPORT uint32_t HAL_ACL_ConvertL2InfoZr(uint32_t unit, const LswmAclMatch *match, FilterCfg *cfg);
ZR_EXPORT uint32_t HAL_ACL_ConvertIpv4InfoZr(uint32_t unit, const LswmAclMatch *match, FilterCfg *cfg);

// Chains the field that matches every frame into a configuration that has no field: every rule carries at
// least one. LSW_OK, or the status of the field.
ZR_EXPORT uint32_t HAL_ACL_EmptyMatchHandle(uint32_t unit, FilterCfg *cfg);

// One field each. LSW_OK; LSW_NO_MEMORY when there is no memory for the node, silently; LSW_CHIP_FAILED
// when the SDK refuses the field: prints "Convert<field> acl field add type" with the SDK's status. Values
// and masks of 32 bits are passed to the SDK as they are, whatever the field's width.

// Six bytes of address and of mask, as on the wire.
ZR_EXPORT uint32_t HAL_ACL_ConvertDMacZr(uint32_t unit, const uint8_t *mac, const uint8_t *mask,
                                         FilterCfg *cfg);
ZR_EXPORT uint32_t HAL_ACL_ConvertSMacZr(uint32_t unit, const uint8_t *mac, const uint8_t *mask,
                                         FilterCfg *cfg);
ZR_EXPORT uint32_t HAL_ACL_ConvertEthTypeZr(uint32_t unit, uint32_t value, uint32_t mask, FilterCfg *cfg);
// The user-defined field, 16 bits wide; `fieldType` is SDK_FIELD_SELECTOR_15.
ZR_EXPORT uint32_t HAL_ACL_ConvertUdfDataZr(uint32_t unit, uint32_t fieldType, uint32_t value, uint32_t mask,
                                            FilterCfg *cfg);
// Outer VLAN and outer priority share one node, read from the match's flags: the one whose flag is clear
// matches anything (value and mask 0). With both flags clear nothing is added.
ZR_EXPORT uint32_t HAL_ACL_ConvertOuterVlanAndPriZr(uint32_t unit, const LswmAclMatch *match, FilterCfg *cfg);
// One of the two 16-bit words in the four bytes of `capwap`: the first with SDK_FIELD_SELECTOR_3, the
// second with any other type (SDK_FIELD_SELECTOR_4). Of `mask` the low 16 bits are passed on.
ZR_EXPORT uint32_t HAL_ACL_ConvertCapWapZr(uint32_t unit, uint32_t fieldType, const uint8_t *capwap,
                                           uint32_t mask, FilterCfg *cfg);
// IPv4 addresses are 32-bit numbers: 192.0.2.1 is 0xC0000201.
ZR_EXPORT uint32_t HAL_ACL_ConvertDstIpZr(uint32_t unit, uint32_t value, uint32_t mask, FilterCfg *cfg);
ZR_EXPORT uint32_t HAL_ACL_ConvertSrcIpZr(uint32_t unit, uint32_t value, uint32_t mask, FilterCfg *cfg);
ZR_EXPORT uint32_t HAL_ACL_ConvertIpProtocolZr(uint32_t unit, uint32_t value, uint32_t mask, FilterCfg *cfg);
// `tcp` nonzero takes the TCP field, 0 the UDP field.
ZR_EXPORT uint32_t HAL_ACL_ConvertSrcPortZr(uint32_t unit, uint32_t tcp, uint32_t value, uint32_t mask,
                                            FilterCfg *cfg);
// A destination port is always matched whole: `mask` is not read, the SDK gets 0xFFFF.
ZR_EXPORT uint32_t HAL_ACL_ConvertDstPortZr(uint32_t unit, uint32_t tcp, uint32_t value, uint32_t mask,
                                            FilterCfg *cfg);

// ---- match, chip to manager -----------------------------------------------------------------------

// Fill a record that the caller has cleared, the first from all raw fields of an entry and its ports, which
// are not cut, the second from one raw field. Match flags and the halves of IPv4 addresses and masks are
// ORed into the record, other fields overwritten. The library reads back neither outer VLAN and priority,
// nor the user-defined field, nor the layer-3 type; raw fields that it does not know are skipped.
ZR_EXPORT void HAL_ACL_FilterCfgToRuleZr(LswmAclMatch *match, const FilterCfgRaw *raw);
ZR_EXPORT void HAL_ACL_FieldToRuleCfgZr(uint32_t rawId, uint16_t value, uint16_t mask, LswmAclMatch *match);

// Writes bits 16*part+15 to 16*part of a MAC address of six bytes, and of the mask that follows it. A part
// above 2 writes nothing.
ZR_EXPORT void HAL_ACL_MacFieldToRuleMacZr(uint16_t part, uint16_t value, uint16_t mask, uint8_t *macAndMask);

// ---- action, both ways ----------------------------------------------------------------------------

// Fills an action record that the caller has cleared. Of the forwarding actions only the first of A, B,
// C, D/E that is set counts. The values A, B and C share one argument. A port of LSWM_ACTION_PORT above
// 31 has no bit in the chip's port word: the action is switched on with no port.
ZR_EXPORT void HAL_ACL_ConvertFwdActionZr(const LswmAclAction *action, FilterAct *act);

// ORs the flags into the action and overwrites the arguments of those that have one. The library does not
// read back the switch of the forwarding actions D and E, nor LSWM_ACTION_PORT and its port; D and E are
// set for forwarding action A with bit 16 of the chip's port word.
ZR_EXPORT void HAL_ACL_FilterActToLswmActionZr(LswmAclAction *action, const FilterAct *act);

// ---- names ----------------------------------------------------------------------------------------

// Copies the printable name of a raw field id. LSW_OK; LSW_NOT_FOUND for an id without a name;
// LSW_CHIP_FAILED when `buffer` of `size` bytes is too small or null, and holds what strncpy_s then leaves.
// All silently.
ZR_EXPORT uint32_t HAL_ACL_FieldType2Name(uint32_t id, char *buffer, uint32_t size);

ZR_EXTERN_C_END
