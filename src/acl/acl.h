// ACL rules on the chip: programming, reading back, changing ports, removing; start-up and the default
// policies of LAN and WAN ports.
//
// A rule occupies a run of consecutive entries of the chip's ingress ACL table; the chip SDK decides how
// many. Its life: ZR_ACL_AddEntry programs the entries and books counter and meter at the first chip rule
// id; ZR_ACL_SetRuleMapEntry records the run, from which on the rule is found, read and changed;
// ZR_ACL_DelEntry clears the entries and frees the counter; COM_ACL_ReleseRuleRecord gives the ids back.
// Nothing is rolled back: a failure after entries were written leaves them on the chip, unrecorded, and a
// later rule may be placed over them.
//
// Operations on a recorded rule take its first chip rule id. An id inside the rule's run stands for the
// same rule: they work from the first id and never reach an entry outside the run.
//
// Common to all: a null pointer gives LSW_NULL_POINTER before anything else happens; failures are printed
// for the ACL module with the status that caused them; outputs are written only on success unless said
// otherwise. Port bitmaps are arrays of words of which only word 0 is read, cut to the chip ports that a
// rule can name (ZR_ACL_CHIP_PORTS).
#pragma once

#include "platform/chip_records.h"
#include "platform/manager_records.h"

ZR_EXTERN_C_BEGIN

// ---- adding ---------------------------------------------------------------------------------------

// Programs a rule: draws a counter if the rule counts, sizes it, finds a free run in the chip partition of
// the rule's number, writes the entries, books meter and counter. When no counter is free the rule is
// programmed without: the line is printed and the count flag cleared in `rule`; a drawn counter's number is
// written into `rule`. `place` holds the length that the SDK wrote, cut to 8 bits, and is handed back as
// soon as the entries are written. LSW_CHIP_FAILED when the chip refuses, or a conversion's status
// (acl/convert.h); LSW_INVALID_ARGUMENT for a partition above 3 or a unit above 2, found once the SDK has
// sized the rule; LSW_NO_RESOURCE when there is no run of the length, or, not printed, the counter cannot
// be booked.
ZR_EXPORT uint32_t ZR_ACL_AddEntry(uint32_t unit, LswmAclRule *rule, AclEntryPlace *place);

// Draws a logic rule id, programs the rule and records it. The partition number selects the logic and the
// chip partition; LSW_CHIP_FAILED when it is above 3, LSW_INVALID_ARGUMENT or LSW_NO_RESOURCE when no id
// is drawn, all silently. When recording fails the rule stays on the chip.
ZR_EXPORT uint32_t ZR_ACL_AddLogicEntry(uint32_t unit, LswmAclRule *rule, uint32_t *logicRuleId);

// The steps of adding. Recording and drawing are those of records/acl_records.h.
ZR_EXPORT uint32_t ZR_ACL_SetRuleMapEntry(uint32_t unit, uint32_t logicRuleId, uint32_t firstChipId,
                                          uint32_t count);
ZR_EXPORT uint32_t ZR_ACL_AllocEntryId(uint32_t unit, uint32_t partition, uint32_t count,
                                       uint32_t *firstChipId);

// Writes the lowest free counter into an action that counts; LSW_CHIP_FAILED when none is free.
ZR_EXPORT uint32_t ZR_ACL_AssignCounterId(uint32_t unit, LswmAclAction *action);

// Book the counter of an action that counts and the meter (low 8 bits) of an action that is policed at the
// rule's first chip rule id; LSW_OK when the action has none.
ZR_EXPORT uint32_t ZR_ACL_SetRuleCounterMapEntry(uint32_t unit, uint32_t firstChipId,
                                                 const LswmAclAction *action);
ZR_EXPORT uint32_t ZR_ACL_SetRuleCarMapEntry(uint32_t unit, uint32_t firstChipId, const LswmAclAction *action);

// How many entries the rule needs; `count` is also written when the SDK fails (LSW_CHIP_FAILED), not when
// the conversion does (its status). Silent.
ZR_EXPORT uint32_t HAL_ACL_GetEntryCntZr(uint32_t unit, const LswmAclMatch *match, const LswmAclAction *action,
                                         uint32_t *count);

// Writes the rule into the entries from `firstChipId` on; `count` is how many the SDK wrote.
// LSW_CHIP_FAILED when it fails, or the conversion's status. Silent.
ZR_EXPORT uint32_t HAL_ACL_AddEntryZr(uint32_t unit, uint32_t firstChipId, const LswmAclMatch *match,
                                      const LswmAclAction *action, uint32_t *count);

// ---- reading back, removing -----------------------------------------------------------------------

// Reads the rule's first entry into a record that the caller has cleared: fields are ORed in, and a rule
// whose entry reads back empty leaves it untouched. What the chip does not tell is named in acl/convert.h.
// LSW_CHIP_FAILED when no rule is recorded there (silently) or the chip fails.
ZR_EXPORT uint32_t ZR_ACL_GetEntry(uint32_t unit, uint32_t firstChipId, LswmAclRule *rule);
ZR_EXPORT uint32_t HAL_ACL_GetEntryZr(uint32_t unit, uint32_t chipRuleId, LswmAclMatch *match,
                                      LswmAclAction *action);

// Clears every entry of the rule and unbooks meter and counter; the record stays for
// COM_ACL_ReleseRuleRecord. An entry that the chip does not clear is printed, with the sum of the statuses
// so far, and is no failure: the status is that of the unbooking, printed for the meter only.
// LSW_CHIP_FAILED when no rule is recorded there (silently).
ZR_EXPORT uint32_t ZR_ACL_DelEntry(uint32_t unit, uint32_t firstChipId);
// One entry. LSW_CHIP_FAILED, silently, when the chip does not clear it.
ZR_EXPORT uint32_t HAL_ACL_DelEntryZr(uint32_t unit, uint32_t chipRuleId);

// ---- ports of a rule ------------------------------------------------------------------------------

// Replace, extend and reduce the ports of every entry of the rule. The first entry that the chip refuses
// ends the operation with the SDK's own status; entries before it stay changed. LSW_NOT_FOUND when nothing
// is recorded at the id, LSW_CHIP_FAILED when the id is marked but no rule covers it, LSW_INVALID_ARGUMENT
// for a bad unit. Every failure is printed.
ZR_EXPORT uint32_t ZR_ACL_ModifyEntryPortmap(uint32_t unit, uint32_t firstChipId, const uint32_t *ports);
ZR_EXPORT uint32_t ZR_ACL_AddEntryPortmap(uint32_t unit, uint32_t firstChipId, const uint32_t *ports);
ZR_EXPORT uint32_t ZR_ACL_RemoveEntryPortmap(uint32_t unit, uint32_t firstChipId, const uint32_t *ports);
ZR_EXPORT uint32_t HAL_ACL_ModifyEntryBitmapZr(uint32_t unit, uint32_t firstChipId, const uint32_t *ports);
ZR_EXPORT uint32_t HAL_ACL_AddEntryBitmapZr(uint32_t unit, uint32_t firstChipId, const uint32_t *ports);
ZR_EXPORT uint32_t HAL_ACL_RemoveEntryBitmapZr(uint32_t unit, uint32_t firstChipId, const uint32_t *ports);

// ---- start-up -------------------------------------------------------------------------------------

enum {
    ZR_ACL_RULES = 96,   // rule ids of a unit, logic and chip alike
    ZR_ACL_COUNTERS = 32 // hit counters of a unit
};

// Initialises a unit's ACLs: records, counters, chip partitions, default policies, field selectors. The
// first step that fails is printed and ends it with its status; what was done stays. LSW_IN_USE on a second
// call.
ZR_EXPORT uint32_t ZR_ACL_Init(uint32_t unit);

// Cuts the chip rule ids into 0-15, 16-73, 74-79 and 80-95. Prints and returns the sum of the statuses.
ZR_EXPORT uint32_t ZR_ACL_InitPartInfo(uint32_t unit);

// Set the selectors of the packet words that rules can match: selector 15 for the user-defined field, 3 and
// 4 for the two CAPWAP words (set by the second alone). The unit reaches the chip by its low 8 bits.
// LSW_CHIP_FAILED at the first failure, silently.
ZR_EXPORT uint32_t HAL_ACL_InitFieldSelectorZr(uint32_t unit);
ZR_EXPORT uint32_t HAL_ACL_InitCapwapKeepaliveFiled(uint32_t unit);

// ---- default policies -----------------------------------------------------------------------------

// Install the policies that catch ARP, NTP, DHCP (both directions) and CoAP on WAN ports, in that order:
// counted rules in partition 0 that start on no port. LSW_CHIP_FAILED when one cannot be installed; the
// later ones are then left out. The lines printed are those of adding a rule.
ZR_EXPORT uint32_t ZR_ACL_InitLanWanDefualtPolicy(uint32_t unit);
ZR_EXPORT uint32_t ZR_ACL_InitLanWanARPPolicy(uint32_t unit);
ZR_EXPORT uint32_t ZR_ACL_InitLanWanNtpPolicy(uint32_t unit);
ZR_EXPORT uint32_t ZR_ACL_InitLanWanDhcpReqPolicy(uint32_t unit);
ZR_EXPORT uint32_t ZR_ACL_InitLanWanDhcpRepPolicy(uint32_t unit);
ZR_EXPORT uint32_t ZR_ACL_InitLanWanCoapPolicy(uint32_t unit);

// Tells whether a chip port faces the WAN (`portType` 1) or the LAN (anything else): a WAN port joins all
// default policies of the unit, a LAN port leaves them. LSW_INVALID_ARGUMENT for a unit above 2 or a port
// above 127; LSW_CHIP_FAILED at the first policy that fails, with those before it updated. Ports that a
// rule cannot name change nothing.
ZR_EXPORT uint32_t ZR_ACL_UpdateLANWanPolicy(uint32_t unit, uint32_t port, uint32_t portType);
ZR_EXPORT uint32_t ZR_ACL_UpdateWanDefaultPolicy(uint32_t unit, uint32_t port);
ZR_EXPORT uint32_t ZR_ACL_UpdateLANDefaultPolicy(uint32_t unit, uint32_t port);

// Conversion of ACL rules between the manager's records and the chip SDK's. Nothing here programs an
// entry: the entry operations hand what a conversion yields to the SDK.
//
// Forward: every match field of the manager's rule becomes one chip field node, a block of the
// manager's memory that l2sw_filter_igrAcl_field_add chains into the configuration. From then on the
// node belongs to the chain and the caller frees it with the chain; a node that the SDK refuses is
// freed here. Backward: the eight raw fields of a chip entry become match fields again. The raw form
// does not tell outer VLAN, outer priority and the user-defined field apart from other words, so these
// do not come back, nor does the layer-3 type.

// The chip ports that a rule can name: 0 to 4 and 15 to 17.
enum { ZR_ACL_CHIP_PORTS = 0x3801F };

// ---- match, manager to chip -----------------------------------------------------------------------

// Converts the whole match part into a configuration that the caller has cleared: layer 2, then IPv4 when
// the layer-3 type is 0, then the ports. A match without fields becomes a destination MAC of mask 0, which
// every frame matches. Returns LSW_OK or the sum of the fields' statuses (LSW_NO_MEMORY and
// LSW_CHIP_FAILED) of the layer that failed; the layers after it are then left out and the ports unset,
// while the nodes chained so far stay in the chain.
ZR_EXPORT uint32_t HAL_ACL_ConvertRuleInfoZr(uint32_t unit, const LswmAclMatch *match, FilterCfg *cfg);

// Convert the fields of one layer whose flags are set, each of them even after a failure. Return the
// sum of the fields' statuses.
ZR_EXPORT uint32_t HAL_ACL_ConvertL2InfoZr(uint32_t unit, const LswmAclMatch *match, FilterCfg *cfg);
ZR_EXPORT uint32_t HAL_ACL_ConvertIpv4InfoZr(uint32_t unit, const LswmAclMatch *match, FilterCfg *cfg);

// Chains the field that matches every frame into a configuration that has no field: every rule carries at
// least one. LSW_OK, or the status of the field.
ZR_EXPORT uint32_t HAL_ACL_EmptyMatchHandle(uint32_t unit, FilterCfg *cfg);

// One field each. LSW_OK; LSW_NO_MEMORY when there is no memory for the node, silently; LSW_CHIP_FAILED
// when the SDK refuses the field: prints "Convert<field> acl field add type" with the SDK's status.

// Six bytes of address and of mask, as on the wire.
ZR_EXPORT uint32_t HAL_ACL_ConvertDMacZr(uint32_t unit, const uint8_t *mac, const uint8_t *mask,
                                         FilterCfg *cfg);
ZR_EXPORT uint32_t HAL_ACL_ConvertSMacZr(uint32_t unit, const uint8_t *mac, const uint8_t *mask,
                                         FilterCfg *cfg);
ZR_EXPORT uint32_t HAL_ACL_ConvertEthTypeZr(uint32_t unit, uint32_t value, uint32_t mask, FilterCfg *cfg);
// Outer VLAN and outer priority share one node, read from the match's flags: the one whose flag is clear
// matches anything (value and mask 0). With both flags clear nothing is added.
ZR_EXPORT uint32_t HAL_ACL_ConvertOuterVlanAndPriZr(uint32_t unit, const LswmAclMatch *match, FilterCfg *cfg);
// `fieldType` is SDK_FIELD_SELECTOR_15. `value` and `mask` are 16 bits wide.
ZR_EXPORT uint32_t HAL_ACL_ConvertUdfDataZr(uint32_t unit, uint32_t fieldType, uint32_t value, uint32_t mask,
                                            FilterCfg *cfg);
// One of the two 16-bit words in the four bytes of `capwap`: the first with SDK_FIELD_SELECTOR_3, the
// second with SDK_FIELD_SELECTOR_4. The low 16 bits of `mask` count.
ZR_EXPORT uint32_t HAL_ACL_ConvertCapWapZr(uint32_t unit, uint32_t fieldType, const uint8_t *capwap,
                                           uint32_t mask, FilterCfg *cfg);
// IPv4 addresses are 32-bit numbers: 192.0.2.1 is 0xC0000201.
ZR_EXPORT uint32_t HAL_ACL_ConvertSrcIpZr(uint32_t unit, uint32_t value, uint32_t mask, FilterCfg *cfg);
ZR_EXPORT uint32_t HAL_ACL_ConvertDstIpZr(uint32_t unit, uint32_t value, uint32_t mask, FilterCfg *cfg);
ZR_EXPORT uint32_t HAL_ACL_ConvertIpProtocolZr(uint32_t unit, uint32_t value, uint32_t mask, FilterCfg *cfg);
// `tcp` nonzero takes the TCP field, 0 the UDP field.
ZR_EXPORT uint32_t HAL_ACL_ConvertSrcPortZr(uint32_t unit, uint32_t tcp, uint32_t value, uint32_t mask,
                                            FilterCfg *cfg);
// A destination port is always matched whole: `mask` is not read, the chip gets 0xFFFF.
ZR_EXPORT uint32_t HAL_ACL_ConvertDstPortZr(uint32_t unit, uint32_t tcp, uint32_t value, uint32_t mask,
                                            FilterCfg *cfg);

// ---- action, manager to chip ----------------------------------------------------------------------

// Fills an action record that the caller has cleared. Of the forwarding actions only the first of A, B,
// C, D/E that is set counts. The values A, B and C share one argument. A port of LSWM_ACTION_PORT above
// 31 has no bit in the chip's port word: the action is switched on with no port.
ZR_EXPORT void HAL_ACL_ConvertFwdActionZr(const LswmAclAction *action, FilterAct *act);

// ---- chip to manager ------------------------------------------------------------------------------

// Fill a record that the caller has cleared: flags and IPv4 halves are ORed into it. Raw fields without
// a place in the manager's record are skipped. The port bitmap comes as the chip has it.
ZR_EXPORT void HAL_ACL_FilterCfgToRuleZr(LswmAclMatch *match, const FilterCfgRaw *raw);
ZR_EXPORT void HAL_ACL_FieldToRuleCfgZr(uint32_t rawId, uint16_t value, uint16_t mask, LswmAclMatch *match);

// Writes bits 16*part+15 to 16*part of a MAC address, and of the mask that follows its six bytes. A part
// above 2 writes nothing.
ZR_EXPORT void HAL_ACL_MacFieldToRuleMacZr(uint16_t part, uint16_t value, uint16_t mask, uint8_t *macAndMask);

// ORs the flags into the action and writes the arguments of those that have one. The chip does not give
// back the switch of forwarding action D/E alone, nor the port of LSWM_ACTION_PORT.
ZR_EXPORT void HAL_ACL_FilterActToLswmActionZr(LswmAclAction *action, const FilterAct *act);

// ---- names ----------------------------------------------------------------------------------------

// Copies the printable name of a raw field id. LSW_OK; LSW_NOT_FOUND for an id without a name;
// LSW_CHIP_FAILED when `buffer` of `size` bytes is too small.
ZR_EXPORT uint32_t HAL_ACL_FieldType2Name(uint32_t id, char *buffer, uint32_t size);

ZR_EXTERN_C_END
