// The closed SDK's own side: what it keeps, and how its functions reach a chip. Given: it keeps a copy of
// the services registered at bring-up, reaches unit 0 directly and units 1 and 2 through the registered
// register transport only, and knows a unit's revision once it has initialised the unit. The model's own
// choice: a table access is one read of the chip's table status over that transport, taken under the
// registered mutex, and then the table itself; a function for a unit that has not been initialised fails.
#pragma once

#include <array>
#include <cstdint>
#include <utility>

#include "platform/chip_sdk.h"
#include "sim/board/board.h"
#include "sim/gate.h"

namespace zrsim
{

// Statuses of the SDK besides those that the library knows by name.
enum : uint32_t {
    kSdkOk = 0,
    kSdkFailed = 0xFFFFFFFF,
    kSdkBadUnit = 0x10001,
    kSdkBadPort = 0x10002,
    kSdkBadArgument = 0x10003,
    kSdkNull = 0x10004,
    kSdkNotInitialised = 0x10005,
    kSdkNoTransport = 0x10006,
    kSdkBusy = 0x10007, // the chip does not answer as a running chip does
    kSdkNotModelled = 0x10008,
};

class Sdk
{
public:
    uint32_t registerServices(const SdkServices &services);
    uint32_t init(uint32_t unit);
    // The unit's chip was reset: it needs initialising again.
    void forget(uint32_t unit) { initialised_[unit] = false; }
    bool initialised(uint32_t unit) const { return initialised_[unit]; }
    bool hasServices() const { return services_.regRead != nullptr; }
    void reset();

    // Chip registers over the unit's own path; also before the unit is initialised.
    uint32_t readRegister(uint32_t unit, uint32_t reg, uint32_t &value);
    uint32_t writeRegister(uint32_t unit, uint32_t reg, uint32_t value);
    // Whether the unit's tables can be accessed now.
    uint32_t ready(uint32_t unit);

private:
    class Locked;
    SdkServices services_{};
    std::array<bool, kUnits> initialised_{};
};

Sdk &sdk();

// One SDK function over a chip's tables: passes the gate, makes sure that the unit can be accessed, and
// runs `body` on its chip. `args` are the function's arguments after the unit, for the trace.
template <class Body, class... Args>
uint32_t onChip(const char *name, uint32_t unit, Body &&body, const Args &...args)
{
    return pass(
        name,
        [&]() -> uint32_t {
            if (uint32_t status = sdk().ready(unit); status != kSdkOk)
                return status;
            return body(board().chip(unit));
        },
        unit, args...);
}

} // namespace zrsim
