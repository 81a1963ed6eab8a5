// Conversion of ACL rules between the manager's records and the chip SDK's. Nothing here programs an
// entry: the entry operations hand what a conversion yields to the SDK.
//
// Forward: every match field of the manager's rule becomes one chip field node, a block of the
// manager's memory that l2sw_filter_igrAcl_field_add chains into the configuration. From then on the
// node belongs to the chain and the caller frees it with the chain; a node that the SDK refuses is
// freed here. Backward: the eight raw fields of a chip entry become match fields again. The raw form
// does not tell outer VLAN, outer priority and the user-defined field apart from other words, so these
// do not come back, nor does the layer-3 type.
#pragma once

#include "platform/chip_records.h"
#include "platform/manager_records.h"

ZR_EXTERN_C_BEGIN

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
