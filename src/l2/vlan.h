// VLANs: the chip's VLAN table, its member-configuration table, and the per-port VLAN settings.
//
// A VLAN is kept in two chip tables, in step: the VLAN table, one entry per VLAN with its member and untagged
// masks, and the small member-configuration table, in which the SDK gives a VLAN an entry, its member index,
// with the first member. The library never returns that entry, and keeps nothing itself: every change is a
// read-modify-write of one chip entry, and a change that fails half-way leaves done what was done.
//
// Port masks are one word: port p is bit (p mod 32), so ports above 31 share the bits of ports 0 to 31. Units,
// ports and VLANs are passed to the SDK unchecked where nothing else is said. Where nothing else is said, a
// failure of the SDK is logged under LSW_MODULE_VLAN with the SDK's status and returns LSW_CHIP_FAILED, and the
// ZR_ operations return the status of the step that failed unchanged. ZR_VLAN_AddMember,
// ZR_VLAN_AddMultiMember and ZR_VLAN_DelMember trace (detail) that step.
#pragma once

#include "platform/abi.h"

ZR_EXTERN_C_BEGIN

// ---- life of a VLAN ---------------------------------------------------------------------------

// Initialises the chip's VLANs and lets untagged frames take their priority from the DSCP; then, port by port
// of LSWM_SET_VALID, the reserved port leaves VLAN 1 and has ingress filtering off, every other port has it on.
// Stops at the first failure and prints a line of its own for it, but none for the DSCP step. A port whose
// filter cannot be set is printed and skipped. LSW_INVALID_ARGUMENT, unprinted and before any chip call, for a
// unit above 2.
ZR_EXPORT uint32_t ZR_VLAN_Init(uint32_t unit);
ZR_EXPORT uint32_t HAL_VLAN_InitZr(uint32_t unit);

// Whether untagged frames take their priority from the DSCP: `enable` 1 or 0, passed unchecked.
ZR_EXPORT uint32_t HAL_VLAN_UntagDscpPriorityEnableZr(uint32_t unit, uint32_t enable);

// Creates a VLAN with independent learning, without members, and adds the unit's cascade ports as tagged
// members. When a cascade port fails, the VLAN and the cascade ports before it stay. Prints a line of its own
// for a failure. LSW_INVALID_ARGUMENT, unprinted and before any chip call, for a unit above 2.
ZR_EXPORT uint32_t ZR_VLAN_Create(uint32_t unit, uint32_t vlan);
ZR_EXPORT uint32_t HAL_VLAN_CreateZr(uint32_t unit, uint32_t vlan); // without members

// Takes the cascade ports out of a VLAN, then clears its VLAN table entry. When a cascade port fails, the VLAN
// is not destroyed. Other members keep their bits in the member configuration. Prints and refuses as
// ZR_VLAN_Create.
ZR_EXPORT uint32_t ZR_VLAN_Delete(uint32_t unit, uint32_t vlan);
ZR_EXPORT uint32_t HAL_VLAN_DestroyZr(uint32_t unit, uint32_t vlan); // the VLAN table entry alone

// Reads a VLAN's masks from the VLAN table. LSW_NULL_POINTER, unprinted, for a null output; both outputs stay
// unwritten on failure.
ZR_EXPORT uint32_t ZR_VLAN_GetPortMap(uint32_t unit, uint32_t vlan, uint32_t *memberMask, uint32_t *untagMask);
ZR_EXPORT uint32_t HAL_VLAN_GetPortMapZr(uint32_t unit, uint32_t vlan, uint32_t *memberMask,
                                         uint32_t *untagMask);

// ---- members ----------------------------------------------------------------------------------

enum {
    ZR_VLAN_LIST_PORTS = 32, // entries of a port list and of its untag list
    ZR_VLAN_LIST_END = 255   // port that ends a shorter list
};

// Adds a port to the VLAN table, then to the VLAN's member configuration. `untag` nonzero: the port leaves
// the VLAN untagged; 0 leaves a port that is untagged already as it is. When the member configuration fails,
// the port stays in the VLAN table.
ZR_EXPORT uint32_t ZR_VLAN_AddMember(uint32_t unit, uint32_t port, uint32_t vlan, uint32_t untag);
ZR_EXPORT uint32_t HAL_VLAN_AddMemberZr(uint32_t unit, uint32_t port, uint32_t vlan, uint32_t untag);

// Adds a port to the VLAN's member configuration and writes the low 16 bits of `vlan` to it. A configuration
// that cannot be read starts empty, unprinted. LSW_CHIP_FAILED also when the table is full.
ZR_EXPORT uint32_t HAL_VLAN_AddMbrTabZr(uint32_t unit, uint32_t port, uint32_t vlan);

// The VLAN's member index, which the SDK gives it now when it has none. LSW_NULL_POINTER, unprinted, for a null
// output; LSW_NO_RESOURCE, printed, when no member configuration is free. `index` stays unwritten on failure.
ZR_EXPORT uint32_t HAL_VLAN_CreateMbrIdxZr(uint32_t unit, uint32_t vlan, uint32_t *index);

// Adds ports[i] with untags[i], up to ZR_VLAN_LIST_PORTS entries or the first port ZR_VLAN_LIST_END. Stops at
// the first failure; the ports before it stay members. LSW_NULL_POINTER, unprinted, for a null list.
ZR_EXPORT uint32_t ZR_VLAN_AddMultiMember(uint32_t unit, uint32_t vlan, const uint32_t *ports,
                                          const uint32_t *untags);

// Takes a port out of the VLAN's member configuration, then out of both masks of the VLAN table. Only the
// second step decides the status; a failure of the first is printed and traced.
ZR_EXPORT uint32_t ZR_VLAN_DelMember(uint32_t unit, uint32_t port, uint32_t vlan);
ZR_EXPORT uint32_t HAL_VLAN_DelMemberZr(uint32_t unit, uint32_t port, uint32_t vlan);

// Takes a port out of the VLAN's member configuration alone; the VLAN keeps its member index. Returns the SDK's
// status unchanged when the member index cannot be read.
ZR_EXPORT uint32_t HAL_VLAN_DelMbrTabZr(uint32_t unit, uint32_t port, uint32_t vlan);

// ---- per port ---------------------------------------------------------------------------------

// The port's PVID (IEEE 802.1Q), the VLAN of its untagged frames, set with priority 0.
ZR_EXPORT uint32_t ZR_VLAN_SetPortPvid(uint32_t unit, uint32_t port, uint32_t vlan);
ZR_EXPORT uint32_t HAL_VLAN_SetPortPvidZr(uint32_t unit, uint32_t port, uint32_t vlan);

// Reads the PVID; a read that fails writes 0. LSW_NULL_POINTER, unprinted, for a null output.
ZR_EXPORT uint32_t ZR_VLAN_GetPortPvid(uint32_t unit, uint32_t port, uint32_t *vlan);
ZR_EXPORT uint32_t HAL_VLAN_GetPortPvidZr(uint32_t unit, uint32_t port, uint32_t *vlan);

// Ingress filtering: whether the port drops frames of VLANs that it is not a member of. `enable` is passed
// unchecked. After a failure the chip operation returns what LSWM_ConfigFailPrint returned, the module
// operation LSW_OK.
ZR_EXPORT uint32_t ZR_VLAN_SetIgrPortFilter(uint32_t unit, uint32_t port, uint32_t enable);
ZR_EXPORT uint32_t HAL_VLAN_SetPortFilterZr(uint32_t unit, uint32_t port, uint32_t enable);

// Egress tag mode, 0 to 3 in the SDK's numbering. A mode above 3 is printed with LSW_INVALID_ARGUMENT and does
// not reach the chip. After either failure it returns what LSWM_ConfigFailPrint returned.
ZR_EXPORT uint32_t HAL_VLAN_SetTagModeZr(uint32_t unit, uint32_t port, uint32_t tagMode);

ZR_EXTERN_C_END
