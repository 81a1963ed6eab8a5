// Chip registers through the common table beside the SDK calls themselves.
#include "bench/pair.h"
#include "platform/chip_sdk.h"

namespace
{

using zrbench_pair::opaque;
using zrbench_pair::pair;
using zrbench_pair::tables;

const bool registered =
    pair(
        "register read",
        [] {
            uint32_t value = 0;
            benchmark::DoNotOptimize(tables().common.chipRegRead(opaque(1U), opaque(0x1300U), &value));
        },
        [] {
            uint32_t value = 0;
            benchmark::DoNotOptimize(
                l2sw_getAsicReg(static_cast<uint8_t>(opaque(1U)), opaque(0x1300U), &value));
        }) &&
    pair(
        "register write",
        [] { benchmark::DoNotOptimize(tables().common.chipRegWrite(opaque(1U), opaque(0x1300U), opaque(7U))); },
        [] {
            benchmark::DoNotOptimize(
                l2sw_setAsicReg(static_cast<uint8_t>(opaque(1U)), opaque(0x1300U), opaque(7U)));
        });

} // namespace
