// Traffic counters and the accumulated odrop count.
#include "port/port.h"

#include "base/memory.h"
#include "base/print.h"
#include "base/unit.h"
#include "platform/chip_sdk.h"
#include "platform/manager.h"

namespace
{

struct CounterSource {
    uint8_t counter; // manager's number
    uint8_t word;    // of the chip's record
};

constexpr CounterSource kCounterSources[] = {
    {1, 8},   {3, 32},  {6, 33},  {8, 64},  {14, 9},  {17, 12}, {18, 6},  {19, 14}, {22, 15}, {25, 16},
    {28, 17}, {31, 18}, {40, 13}, {41, 7},  {49, 2},  {51, 25}, {53, 26}, {54, 27}, {55, 29}, {58, 3},
    {60, 4},  {61, 30}, {63, 8},  {64, 62}, {65, 63}, {67, 33}, {68, 34}, {69, 35},
};

constexpr uint32_t kOdropCommandReg = 0x3208;
constexpr uint32_t kOdropValueReg = 0x3213;
constexpr uint32_t kOdropCounter = 8; // manager's number
constexpr uint32_t kOdropPorts = 32;

enum OdropCommand : uint32_t { kOdropLatch = 1, kOdropClear = 2 };

uint32_t g_lastOdrop[kOdropPorts];
uint64_t g_odropTotal[kOdropPorts];

uint32_t commandOdrop(uint32_t unit, uint32_t port, OdropCommand command)
{
    return l2sw_setAsicReg(zr::unit8(unit), kOdropCommandReg, 0x4000 | (port + 24) << 4 | command);
}

// Across a wrap of the 16-bit count the manager's counter advances by 0xFFFF, not 0x10000.
void accumulateOdrop(uint32_t port, uint32_t reading)
{
    const uint32_t last = g_lastOdrop[port];
    const uint64_t wrap = last > reading ? 0xFFFF : 0;
    g_odropTotal[port] += wrap + reading - last;
    g_lastOdrop[port] = reading;
}

} // namespace

uint32_t ZR_PORT_GetStatistics(uint32_t unit, uint32_t port, LswmPortStatistics *statistics)
{
    return HAL_PORT_GetStatisticZr(unit, port, statistics);
}

uint32_t HAL_PORT_GetStatisticZr(uint32_t unit, uint32_t port, LswmPortStatistics *statistics)
{
    if (port >= kOdropPorts)
        return LSW_INVALID_ARGUMENT;
    if (statistics == nullptr)
        return LSW_NULL_POINTER;
    SdkPortCounters counters{};
    if (uint32_t ret = l2sw_stat_port_getAll(unit, port, &counters); ret != 0)
        return ZR_CHIP_FAILED(PORT, ret, "HAL PORT GetStatisticZr failed (unit = %u, port = %u, ret = %u).",
                              unit, port, ret);
    if (uint32_t ret = commandOdrop(unit, port, kOdropLatch); ret != 0)
        return ZR_CHIP_FAILED(PORT, ret,
                              "HAL PORT GetStatisticZr odrop write failed (unit = %u, port = %u, ret = %u).",
                              unit, port, ret);
    uint32_t reading = 0;
    if (l2sw_getAsicReg(zr::unit8(unit), kOdropValueReg, &reading) != 0)
        reading = g_lastOdrop[port];
    zr::clear(*statistics);
    accumulateOdrop(port, reading);
    HAL_PORT_TranslateHwStatZr(&counters, statistics);
    statistics->counter[kOdropCounter] = g_odropTotal[port];
    return LSW_OK;
}

uint32_t ZR_PORT_ClearStatistics(uint32_t unit, uint32_t port)
{
    return HAL_PORT_ClearStatisticsZr(unit, port);
}

uint32_t HAL_PORT_ClearStatisticsZr(uint32_t unit, uint32_t port)
{
    if (port >= kOdropPorts)
        return LSW_INVALID_ARGUMENT;
    g_lastOdrop[port] = 0;
    g_odropTotal[port] = 0;
    if (uint32_t ret = l2sw_stat_port_reset(unit, port); ret != 0)
        return ZR_CHIP_FAILED(PORT, ret, "Port clear stat failed(ret = %u, unit = %u, portId, enable = %u).",
                              ret, unit, port);
    if (uint32_t ret = commandOdrop(unit, port, kOdropClear); ret != 0)
        return ZR_CHIP_FAILED(PORT, ret, "Port clear odrop failed(ret = %u, unit = %u, portId, enable = %u).",
                              ret, unit, port);
    return LSW_OK;
}

void HAL_PORT_TranslateHwStatZr(const SdkPortCounters *counters, LswmPortStatistics *statistics)
{
    if (counters == nullptr || statistics == nullptr)
        return;
    const uint32_t *word = counters->word;
    uint64_t *counter = statistics->counter;
    for (const CounterSource &source : kCounterSources)
        counter[source.counter] = word[source.word];
    counter[0] = counters->wide[0];  // words 0 and 1
    counter[5] = counters->wide[11]; // words 22 and 23
    // Totals of 32-bit counters, 32 bits wide like them: they wrap.
    counter[11] = word[62] + word[63] + word[8];
    counter[12] = word[34] + word[35] + word[33];
}
