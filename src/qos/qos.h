// QoS: brings a unit's queueing and priority handling into its fixed state at start-up. There is no
// run-time QoS configuration.
//
// The ZR_QOS_* operations log one line each under LSW_MODULE_QOS for a failure below them and return its
// status unchanged, so that one refusal by the chip prints a line per level, up to ZR_QOS_Init. They stop at
// the first failure; what was set stays set. ZR_QOS_Init, ZR_QOS_EgrInit and the two that walk the unit's
// ports return LSW_INVALID_ARGUMENT for a unit above 2, unprinted and before any chip call; the others pass
// the unit to the SDK unchecked.
//
// The HAL_QOS_* operations print nothing. They pass their arguments to the SDK unchecked and return its status
// unchanged where nothing else is said.
#pragma once

#include "platform/abi.h"

ZR_EXTERN_C_BEGIN

enum {
    ZR_QOS_QUEUES = 8,             // queues, and internal priorities 0 to 7
    ZR_QOS_PAUSE_THRESHOLD = 1535, // in the chip's unit
    ZR_QOS_PRISEL_INDEX = 0,       // the priority-selection table in use
    ZR_QOS_PRISEL_VALUES = 5,      // values of a priority-selection table
    ZR_QOS_DSCPS = 64              // DSCPs 0 to 63
};

// QoS table: the three stages that follow, in their order.
ZR_EXPORT uint32_t ZR_QOS_Init(uint32_t unit);

// ---- stage 1: the chip's QoS with ZR_QOS_QUEUES queues ----------------------------------------

// Initialises the chip's QoS. LSW_CHIP_FAILED for every failure of the SDK.
ZR_EXPORT uint32_t ZR_QOS_ChipInit(uint32_t unit);
ZR_EXPORT uint32_t HAL_QOS_ChipInitZr(uint32_t unit);

// ---- stage 2: flow control --------------------------------------------------------------------

// The system-based pause threshold, ZR_QOS_PAUSE_THRESHOLD at start-up, in the chip's unit.
ZR_EXPORT uint32_t ZR_QOS_MmuBuffInit(uint32_t unit);
ZR_EXPORT uint32_t HAL_QOS_SetSysBasedFCThreshZr(uint32_t unit, uint32_t threshold);

// ---- stage 3: priorities and scheduling -------------------------------------------------------

// Priority selection, its ports, the three maps, the scheduling, in the order below.
ZR_EXPORT uint32_t ZR_QOS_EgrInit(uint32_t unit);

// Fills the table ZR_QOS_PRISEL_INDEX with 1, 5, 7, 6, 0.
ZR_EXPORT uint32_t ZR_QOS_PriSelInit(uint32_t unit);
// `values` are ZR_QOS_PRISEL_VALUES words. LSW_NULL_POINTER for null, without a chip call.
ZR_EXPORT uint32_t HAL_QOS_SetPriSelZr(uint32_t unit, uint32_t index, const uint32_t *values);

// Binds the ports of LSWM_SET_PRISEL_A, then those of LSWM_SET_PRISEL_B, to that table; a port in both sets
// is bound twice.
ZR_EXPORT uint32_t ZR_QOS_PortPriSelInit(uint32_t unit);
ZR_EXPORT uint32_t HAL_QOS_SetPortPriSelZr(uint32_t unit, uint32_t port, uint32_t index);

// The three maps that follow.
ZR_EXPORT uint32_t ZR_QOS_QueueMapInit(uint32_t unit);

// Maps each internal priority to the queue of the same number.
ZR_EXPORT uint32_t ZR_QOS_PriMapInit(uint32_t unit);
// `map` holds the queues of the priorities 0 to `count` - 1; the other priorities get queue 0. Start-up gives
// the number of queues as `selector`. LSW_INVALID_ARGUMENT for a count above ZR_QOS_QUEUES,
// LSW_CHIP_FAILED for a map that cannot be copied (null), both without a chip call.
ZR_EXPORT uint32_t HAL_QOS_SetPriMapZr(uint32_t unit, uint32_t selector, const uint32_t *map, uint32_t count);

// Maps each DSCP to the internal priority of its class selector, the upper three of its six bits (RFC 2474).
ZR_EXPORT uint32_t ZR_QOS_DscpPriMapInit(uint32_t unit);
ZR_EXPORT uint32_t HAL_QOS_SetDscpPriMapZr(uint32_t unit, uint32_t dscp, uint32_t priority);

// Maps each priority of a VLAN tag (IEEE 802.1Q, PCP) to the internal priority of the same number.
ZR_EXPORT uint32_t ZR_QOS_PqPriMapInit(uint32_t unit);
ZR_EXPORT uint32_t HAL_QOS_Set1pPriMapZr(uint32_t unit, uint32_t p8021, uint32_t priority);

// Weight 0 for every queue of every port of LSWM_SET_VALID.
ZR_EXPORT uint32_t ZR_QOS_QueScheduleInit(uint32_t unit);
// `weights` are ZR_QOS_QUEUES words. LSW_NULL_POINTER for null, without a chip call. An SDK status that is
// negative as a signed number becomes LSW_CHIP_FAILED; any other is returned unchanged.
ZR_EXPORT uint32_t HAL_QOS_SetPortcheduleWeightZr(uint32_t unit, uint32_t port, const uint32_t *weights);

ZR_EXTERN_C_END
