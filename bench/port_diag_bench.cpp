// Counters, isolation and paged PHY registers through the port table beside hand-written code.
#include "bench/pair.h"
#include "platform/chip_sdk.h"
#include "platform/manager.h"

namespace
{

using zrbench_pair::opaque;
using zrbench_pair::pair;
using zrbench_pair::tables;

uint32_t lastOdrop;
uint64_t odropTotal;

uint32_t readStatistics(uint32_t unit, uint32_t port, LswmPortStatistics *record)
{
    SdkPortCounters chip{};
    if (l2sw_stat_port_getAll(unit, port, &chip) != 0)
        return LSW_CHIP_FAILED;
    if (l2sw_setAsicReg(static_cast<uint8_t>(unit), 0x3208, 0x4001 | (port + 24) << 4) != 0)
        return LSW_CHIP_FAILED;
    uint32_t reading = 0;
    if (l2sw_getAsicReg(static_cast<uint8_t>(unit), 0x3213, &reading) != 0)
        reading = lastOdrop;
    *record = {};
    odropTotal += (lastOdrop > reading ? 0xFFFFULL : 0) + reading - lastOdrop;
    lastOdrop = reading;
    const uint32_t *word = chip.word;
    uint64_t *to = record->counter;
    to[0] = chip.wide[0];
    to[1] = word[8];
    to[3] = word[32];
    to[5] = chip.wide[11];
    to[6] = word[33];
    to[8] = odropTotal;
    to[11] = word[62] + word[63] + word[8];
    to[12] = word[34] + word[35] + word[33];
    to[14] = word[9];
    to[17] = word[12];
    to[18] = word[6];
    to[19] = word[14];
    to[22] = word[15];
    to[25] = word[16];
    to[28] = word[17];
    to[31] = word[18];
    to[40] = word[13];
    to[41] = word[7];
    to[49] = word[2];
    to[51] = word[25];
    to[53] = word[26];
    to[54] = word[27];
    to[55] = word[29];
    to[58] = word[3];
    to[60] = word[4];
    to[61] = word[30];
    to[63] = word[8];
    to[64] = word[62];
    to[65] = word[63];
    to[67] = word[33];
    to[68] = word[34];
    to[69] = word[35];
    return LSW_OK;
}

uint32_t isolateAll(uint32_t unit)
{
    uint32_t valid = 0;
    if (l2sw_switch_logPortMask_get(unit, &valid) != 0)
        return LSW_CHIP_FAILED;
    const LswmUnitInfo &info = g_lswmInfo[unit];
    const uint32_t others = valid & ~(1U << info.reservedPort % 32);
    for (uint32_t port = 0; port < LSWM_PORTS; ++port) {
        if ((info.portMap[LSWM_SET_VALID].word[port / 32] >> port % 32 & 1) == 0 || port == info.reservedPort)
            continue;
        uint32_t permit = 0;
        uint32_t validNow = 0;
        if (l2sw_port_isolation_get(unit, port, &permit) != 0 ||
            l2sw_switch_logPortMask_get(unit, &validNow) != 0)
            return LSW_CHIP_FAILED;
        permit &= validNow & ~(others & ~(1U << port % 32));
        if (l2sw_port_isolation_set(unit, port, permit) != 0)
            return LSW_CHIP_FAILED;
    }
    return LSW_OK;
}

uint32_t readPaged(uint32_t unit, uint32_t port, uint32_t reg, uint16_t *value)
{
    uint32_t read = 0;
    if (l2sw_port_phyReg_set(unit, port, 31, reg >> 16) != 0 ||
        l2sw_port_phyReg_get(unit, port, reg & 0xFFFF, &read) != 0 ||
        l2sw_port_phyReg_set(unit, port, 31, 0) != 0)
        return LSW_CHIP_FAILED;
    *value = static_cast<uint16_t>(read);
    return LSW_OK;
}

LswmPortStatistics record;

const bool registered =
    pair(
        "port statistics",
        [] { benchmark::DoNotOptimize(tables().port.getStatistics(opaque(1U), opaque(3U), &record)); },
        [] { benchmark::DoNotOptimize(readStatistics(opaque(1U), opaque(3U), &record)); }) &&
    pair(
        "isolate all", [] { benchmark::DoNotOptimize(tables().port.setAllIsolate(opaque(1U), opaque(1U))); },
        [] { benchmark::DoNotOptimize(isolateAll(opaque(1U))); }) &&
    pair(
        "phy register, paged",
        [] {
            uint16_t value = 0;
            benchmark::DoNotOptimize(
                tables().port.regRead(opaque(1U), opaque(3U), opaque(0U), opaque(0x30010U), &value));
            benchmark::DoNotOptimize(value);
        },
        [] {
            uint16_t value = 0;
            benchmark::DoNotOptimize(readPaged(opaque(1U), opaque(3U), opaque(0x30010U), &value));
            benchmark::DoNotOptimize(value);
        });

} // namespace
