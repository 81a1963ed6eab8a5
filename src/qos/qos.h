// QoS: brings a unit's queueing and priority handling into its fixed state at start-up. There is no
// run-time QoS configuration.
//
// The ZR_QOS_* operations print one line each (module 5) for a failure below them and return its status
// unchanged, so one failing chip call prints a cascade up to ZR_QOS_Init. The first failure stops; what
// was set stays set. Those that walk the unit's ports refuse a unit above 2 with LSW_INVALID_ARGUMENT
// before any chip call.
#pragma once

#include "platform/abi.h"

ZR_EXTERN_C_BEGIN

enum {
    ZR_QOS_QUEUES = 8,             // queues, and internal priorities 0 to 7
    ZR_QOS_PAUSE_THRESHOLD = 1535, // system-based flow control
    ZR_QOS_PRISEL_INDEX = 0,       // the priority-selection table in use
    ZR_QOS_PRISEL_VALUES = 5,
    ZR_QOS_DSCPS = 64
};

// ---- start-up -------------------------------------------------------------------------------

// QoS table: the three stages below, in order.
ZR_EXPORT uint32_t ZR_QOS_Init(uint32_t unit);

// Stage 1: the chip's QoS with ZR_QOS_QUEUES queues.
ZR_EXPORT uint32_t ZR_QOS_ChipInit(uint32_t unit);
// Stage 2: ZR_QOS_PAUSE_THRESHOLD.
ZR_EXPORT uint32_t ZR_QOS_MmuBuffInit(uint32_t unit);
// Stage 3: priority selection, its ports, the maps, the scheduling.
ZR_EXPORT uint32_t ZR_QOS_EgrInit(uint32_t unit);

// Fills the priority-selection table.
ZR_EXPORT uint32_t ZR_QOS_PriSelInit(uint32_t unit);
// Binds the ports of LSWM_SET_PRISEL_A, then of LSWM_SET_PRISEL_B, to that table; a port of both twice.
ZR_EXPORT uint32_t ZR_QOS_PortPriSelInit(uint32_t unit);
// The three maps that follow.
ZR_EXPORT uint32_t ZR_QOS_QueueMapInit(uint32_t unit);
// Internal priority to queue of the same number.
ZR_EXPORT uint32_t ZR_QOS_PriMapInit(uint32_t unit);
// DSCP to internal priority by its class selector, the upper three of its six bits (RFC 2474).
ZR_EXPORT uint32_t ZR_QOS_DscpPriMapInit(uint32_t unit);
// IEEE 802.1p priority to internal priority of the same number.
ZR_EXPORT uint32_t ZR_QOS_PqPriMapInit(uint32_t unit);
// Weight 0 for every queue of every valid port.
ZR_EXPORT uint32_t ZR_QOS_QueScheduleInit(uint32_t unit);

// ---- chip operations ------------------------------------------------------------------------

// They print nothing and hand up the SDK's own status unless said otherwise; a null
// record is LSW_NULL_POINTER.

// LSW_CHIP_FAILED for every SDK failure.
ZR_EXPORT uint32_t HAL_QOS_ChipInitZr(uint32_t unit);
ZR_EXPORT uint32_t HAL_QOS_SetSysBasedFCThreshZr(uint32_t unit, uint32_t threshold);
// ZR_QOS_PRISEL_VALUES values.
ZR_EXPORT uint32_t HAL_QOS_SetPriSelZr(uint32_t unit, uint32_t index, const uint32_t *values);
ZR_EXPORT uint32_t HAL_QOS_SetPortPriSelZr(uint32_t unit, uint32_t port, uint32_t index);
// `count` queues for priorities 0 upwards, 0 for the rest. A count above 8: LSW_INVALID_ARGUMENT; a map that
// cannot be copied (null): LSW_CHIP_FAILED; both without a chip call.
ZR_EXPORT uint32_t HAL_QOS_SetPriMapZr(uint32_t unit, uint32_t selector, const uint32_t *map, uint32_t count);
ZR_EXPORT uint32_t HAL_QOS_SetDscpPriMapZr(uint32_t unit, uint32_t dscp, uint32_t priority);
ZR_EXPORT uint32_t HAL_QOS_Set1pPriMapZr(uint32_t unit, uint32_t p8021, uint32_t priority);
// ZR_QOS_QUEUES weights. An SDK status that is negative in 32 bits becomes LSW_CHIP_FAILED, a positive one is
// handed up.
ZR_EXPORT uint32_t HAL_QOS_SetPortcheduleWeightZr(uint32_t unit, uint32_t port, const uint32_t *weights);

ZR_EXTERN_C_END
