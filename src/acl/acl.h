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

#include "platform/abi.h"
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

ZR_EXTERN_C_END
