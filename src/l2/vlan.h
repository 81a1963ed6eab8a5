// VLANs: the chip's VLAN table, its member-configuration table, and the per-port VLAN settings.
//
// A VLAN stands in two chip tables that are kept in step: the VLAN table (one entry per VLAN id: member
// and untagged masks) and the small member-configuration table, which gives a VLAN an entry, its member
// index, with the first member and does not get it back. Nothing is kept here: every change is a
// read-modify-write of one chip entry, and a change that fails half-way stays as far as it came.
//
// Port masks are one word: bit (port mod 32). Units, ports and VLAN ids are not judged, they go to the chip
// SDK as they come. Every failure of the SDK is printed with the SDK's status (module 4) and answered with
// LSW_CHIP_FAILED where nothing else is said; ZR_ operations that change members also trace (detail) the
// step that failed.
#pragma once

#include "platform/abi.h"

ZR_EXTERN_C_BEGIN

// ---- life of a VLAN ---------------------------------------------------------------------------

// Starts the unit's VLAN function: untagged frames take their priority from the DSCP, the reserved port
// leaves VLAN 1 and has ingress filtering off, every other valid port has it on. Stops at the first failure
// and prints it; a port whose filter cannot be set does not count as one. LSW_INVALID_ARGUMENT for a unit
// without record, before any chip call.
ZR_EXPORT uint32_t ZR_VLAN_Init(uint32_t unit);
ZR_EXPORT uint32_t HAL_VLAN_InitZr(uint32_t unit);

// Whether untagged frames take their priority from the DSCP. `enable` is 0 or 1.
ZR_EXPORT uint32_t HAL_VLAN_UntagDscpPriorityEnableZr(uint32_t unit, uint32_t enable);

// Creates a VLAN that learns independently, with the unit's cascade ports as tagged members. When a cascade
// port fails, the VLAN and the cascade ports before it stay. Prints what failed. LSW_INVALID_ARGUMENT for a
// unit without record, before any chip call.
ZR_EXPORT uint32_t ZR_VLAN_Create(uint32_t unit, uint32_t vlan);
ZR_EXPORT uint32_t HAL_VLAN_CreateZr(uint32_t unit, uint32_t vlan); // without members

// Takes the cascade ports out of a VLAN, then clears its VLAN table entry. When a cascade port fails, the
// VLAN is not destroyed. Other members keep their bits in the member configuration. LSW_INVALID_ARGUMENT
// for a unit without record, before any chip call.
ZR_EXPORT uint32_t ZR_VLAN_Delete(uint32_t unit, uint32_t vlan);
ZR_EXPORT uint32_t HAL_VLAN_DestroyZr(uint32_t unit, uint32_t vlan);

// Reads a VLAN's masks. LSW_NULL_POINTER for a null output; both outputs stay unwritten on failure.
ZR_EXPORT uint32_t ZR_VLAN_GetPortMap(uint32_t unit, uint32_t vlan, uint32_t *memberMask, uint32_t *untagMask);
ZR_EXPORT uint32_t HAL_VLAN_GetPortMapZr(uint32_t unit, uint32_t vlan, uint32_t *memberMask,
                                         uint32_t *untagMask);

// ---- members ----------------------------------------------------------------------------------

enum {
    ZR_VLAN_LIST_PORTS = 32, // entries of a port list and of its untag list
    ZR_VLAN_LIST_END = 255   // port that ends a shorter list
};

// Adds a port to the VLAN table, then to the VLAN's member configuration. `untag` nonzero: the port leaves
// the VLAN untagged; 0 leaves a port that is untagged already as it is. When the member configuration fails
// (LSW_CHIP_FAILED, also when its table is full), the port stays in the VLAN table. One that cannot be read
// is not a failure: it starts empty, unprinted.
ZR_EXPORT uint32_t ZR_VLAN_AddMember(uint32_t unit, uint32_t port, uint32_t vlan, uint32_t untag);
ZR_EXPORT uint32_t HAL_VLAN_AddMemberZr(uint32_t unit, uint32_t port, uint32_t vlan, uint32_t untag);
ZR_EXPORT uint32_t HAL_VLAN_AddMbrTabZr(uint32_t unit, uint32_t port, uint32_t vlan);

// The VLAN's member index, taken for it when it has none. LSW_NULL_POINTER for a null output,
// LSW_NO_RESOURCE when no member configuration is free; `index` stays unwritten on failure.
ZR_EXPORT uint32_t HAL_VLAN_CreateMbrIdxZr(uint32_t unit, uint32_t vlan, uint32_t *index);

// Adds ports[i] with untags[i], up to ZR_VLAN_LIST_PORTS entries or the first ZR_VLAN_LIST_END. Stops at
// the first failure; the ports before it stay members. LSW_NULL_POINTER for a null list.
ZR_EXPORT uint32_t ZR_VLAN_AddMultiMember(uint32_t unit, uint32_t vlan, const uint32_t *ports,
                                          const uint32_t *untags);

// Takes a port out of the VLAN's member configuration, then out of both masks of the VLAN table. Only
// the second step decides the status; the first is printed when it fails.
ZR_EXPORT uint32_t ZR_VLAN_DelMember(uint32_t unit, uint32_t port, uint32_t vlan);
ZR_EXPORT uint32_t HAL_VLAN_DelMemberZr(uint32_t unit, uint32_t port, uint32_t vlan);

// The SDK's own status when the VLAN has no readable member index. The index is not given back.
ZR_EXPORT uint32_t HAL_VLAN_DelMbrTabZr(uint32_t unit, uint32_t port, uint32_t vlan);

// ---- per port ---------------------------------------------------------------------------------

// VLAN of the port's untagged frames, with priority 0. A failed read stores 0; LSW_NULL_POINTER for a null
// output.
ZR_EXPORT uint32_t ZR_VLAN_SetPortPvid(uint32_t unit, uint32_t port, uint32_t vlan);
ZR_EXPORT uint32_t HAL_VLAN_SetPortPvidZr(uint32_t unit, uint32_t port, uint32_t vlan);
ZR_EXPORT uint32_t ZR_VLAN_GetPortPvid(uint32_t unit, uint32_t port, uint32_t *vlan);
ZR_EXPORT uint32_t HAL_VLAN_GetPortPvidZr(uint32_t unit, uint32_t port, uint32_t *vlan);

// Whether the port drops frames of VLANs that it is no member of. A refusal is printed; the module
// operation answers LSW_OK all the same, the chip operation what the print service answered.
ZR_EXPORT uint32_t ZR_VLAN_SetIgrPortFilter(uint32_t unit, uint32_t port, uint32_t enable);
ZR_EXPORT uint32_t HAL_VLAN_SetPortFilterZr(uint32_t unit, uint32_t port, uint32_t enable);

// Egress tag mode, 0 to 3 in the chip's own numbering; another mode is printed and does not reach the
// chip. On failure the result is the print service's.
ZR_EXPORT uint32_t HAL_VLAN_SetTagModeZr(uint32_t unit, uint32_t port, uint32_t tagMode);

ZR_EXTERN_C_END
