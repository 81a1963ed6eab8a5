// Port traffic counters: the chip's counter record turned into the manager's, and the odrop count.
//
// The chip keeps a port's odrop count apart from its counter record, 16 bits wide and behind a command
// register. The library accumulates it over the readings in two tables of 32 entries, by port number
// and shared by all units; they start at 0 and only a clear resets them. Between two readings the
// count may wrap once. No lock: one statistics operation at a time per port number.
//
// ZR_PORT_GetStatistics and ZR_PORT_ClearStatistics (port/port.h) forward to the first two operations.
#pragma once

#include "platform/chip_records.h"
#include "platform/manager_records.h"

ZR_EXTERN_C_BEGIN

// Reads the counters of `port`, 0 to 31. Counters that the chip does not have are 0; counter 8 is the
// accumulated odrop count. Statuses: LSW_INVALID_ARGUMENT for a port of 32 or more and LSW_NULL_POINTER,
// both silent and before any chip call; LSW_CHIP_FAILED, printed, when the counter record cannot be read
// or the odrop count not be latched: `statistics` and the odrop tables then stay as they were. A latched
// count that cannot be read adds nothing and fails nothing.
ZR_EXPORT uint32_t HAL_PORT_GetStatisticZr(uint32_t unit, uint32_t port, LswmPortStatistics *statistics);

// Clears the counters of `port`, 0 to 31: first the library's odrop count, then the chip's counters, then
// the chip's odrop count. Statuses: LSW_INVALID_ARGUMENT, silent, for a port of 32 or more;
// LSW_CHIP_FAILED, printed, at the first chip call that fails.
ZR_EXPORT uint32_t HAL_PORT_ClearStatisticsZr(uint32_t unit, uint32_t port);

// Writes the manager counters that have a source in the chip's record; the others stay untouched. Both
// records are required.
ZR_EXPORT void HAL_PORT_TranslateHwStatZr(const SdkPortCounters *counters, LswmPortStatistics *statistics);

ZR_EXTERN_C_END
