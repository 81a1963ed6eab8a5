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
#include "sim/chip/status.h"
#include "sim/gate.h"

namespace zrsim
{

class Sdk
{
public:
    uint32_t registerServices(const SdkServices &services);
    uint32_t init(uint32_t unit);
    // Since the chip was last reset.
    bool initialised(uint32_t unit) const { return initialisedAt_[unit] == board().chip(unit).resets(); }
    bool hasServices() const { return services_.regRead != nullptr; }
    void reset();

    // Chip registers over the unit's own path; also before the unit is initialised.
    uint32_t readRegister(uint32_t unit, uint32_t reg, uint32_t *value);
    uint32_t writeRegister(uint32_t unit, uint32_t reg, uint32_t value);
    // Whether the unit's tables can be accessed now.
    uint32_t ready(uint32_t unit);

private:
    class Locked;
    SdkServices services_{};
    std::array<unsigned, kUnits> initialisedAt_{}; // the chip's count of resets then; 0: never
};

Sdk &sdk();

// A body without a result succeeds.
template <class Body> uint32_t statusOf(Body &&body)
{
    if constexpr (std::is_void_v<decltype(body())>)
        return body(), kSdkOk;
    else
        return body();
}

// One SDK function over a chip's tables, whose first argument is the unit: passes the gate, makes sure that the
// unit can be accessed, refuses null pointers, and runs `body` on the unit's chip.
template <class Body> uint32_t onChip(const Shim &shim, Body &&body)
{
    return pass(shim, [&]() -> uint32_t {
        const uint32_t unit = shim.number(0);
        if (uint32_t status = sdk().ready(unit); status != kSdkOk)
            return status;
        if (shim.anyNull())
            return kSdkNull;
        return statusOf([&] { return body(board().chip(unit)); });
    });
}

} // namespace zrsim
